#include "OptionCases.h"

#include "options/OptionTable.h"

#include <algorithm>
#include <iterator>
#include <numeric>
#include <regex>
#include <set>
#include <string_view>
#include <utility>

#include <nlohmann/json.hpp>

namespace {

using Json = nlohmann::ordered_json;
using ombrel::Option;
using ombrel::TreeOptionType;

struct Parameter {
    Json::json_pointer path; ///< in an options file
    std::vector<Json> values;
    std::size_t factory; ///< the number of its default
};

std::vector<Json> getValues(const Option& option) {
    if (option.type == TreeOptionType::Boolean) {
        return {false, true};
    }
    if (option.type != TreeOptionType::Number) {
        return {option.words.begin(), option.words.end()};
    }
    const std::uint32_t high = option.key == "indentWidth" ? 8 : option.high; // text grows with it
    std::set<std::uint32_t> numbers = {option.low, 1, 4, 40, 80, high};
    numbers.erase(numbers.upper_bound(high), numbers.end());
    return {numbers.lower_bound(option.low), numbers.end()};
}

void addParameters(std::vector<Parameter>& parameters, const Json::json_pointer& path, const Option& option,
                   const ombrel::Construct& construct) {
    for (const ombrel::Construct& child : construct.children) {
        addParameters(parameters, path / std::string(child.name), option, child);
    }
    if (!construct.isGroup()) {
        std::vector<Json> values = getValues(option);
        const auto factory = std::find_if(values.begin(), values.end(), [&](const Json& value) {
            return (value.is_string() ? value.get<std::string>() : value.dump()) == option.factory;
        });
        const auto number = static_cast<std::size_t>(factory - values.begin());
        parameters.push_back({path, std::move(values), number});
    }
}

std::vector<Parameter> makeParameters() {
    std::vector<Parameter> parameters;
    for (const Option& option : ombrel::getOptions()) {
        const Json::json_pointer section(option.section.empty() ? "" : '/' + std::string(option.section));
        addParameters(parameters, section / std::string(option.key), option,
                      option.type == TreeOptionType::PerConstruct ? ca::formatting::treeConstructs
                                                                  : ombrel::Construct{});
    }
    return parameters;
}

const std::vector<Parameter>& getParameters() {
    static const std::vector<Parameter> parameters = makeParameters();
    return parameters;
}

/// The numbers of a parameter and of one of its values.
using Value = std::pair<std::size_t, std::size_t>;
using Pairs = std::set<std::pair<Value, Value>>;
constexpr std::size_t unset = SIZE_MAX;

Pairs listPairs() {
    std::vector<Value> values;
    Pairs pairs;
    for (std::size_t i = 0; i < getParameters().size(); ++i) {
        const std::vector<Value> before = values;
        for (std::size_t j = 0; j < getParameters()[i].values.size(); ++j) {
            values.emplace_back(i, j);
            for (const Value& value : before) {
                pairs.emplace(value, values.back());
            }
        }
    }
    return pairs;
}

/// The value of a parameter that meets most others of the row for the first time.
std::size_t chooseValue(std::size_t parameter, const OptionRow& row, const Pairs& missing) {
    std::vector<std::size_t> gains(getParameters()[parameter].values.size());
    for (std::size_t i = 0; i < gains.size(); ++i) {
        for (std::size_t other = 0; other < row.size(); ++other) {
            const auto pair = std::minmax(Value(parameter, i), Value(other, row[other]));
            gains[i] += missing.contains(pair) ? 1 : 0;
        }
    }
    return static_cast<std::size_t>(std::max_element(gains.begin(), gains.end()) - gains.begin());
}

std::vector<OptionRow> makePairwiseRows() {
    std::vector<OptionRow> rows;
    for (Pairs missing = listPairs(); !missing.empty();) {
        OptionRow row(getParameters().size(), unset);
        for (const Value& value : {missing.begin()->first, missing.begin()->second}) {
            row[value.first] = value.second;
        }
        for (std::size_t i = 0; i < row.size(); ++i) {
            row[i] = row[i] == unset ? chooseValue(i, row, missing) : row[i];
        }
        std::erase_if(missing, [&](const auto& pair) {
            return row[pair.first.first] == pair.first.second && row[pair.second.first] == pair.second.second;
        });
        rows.push_back(std::move(row));
    }
    return rows;
}

std::vector<OptionRow> makeSingleRows() {
    OptionRow factory;
    for (const Parameter& parameter : getParameters()) {
        factory.push_back(parameter.factory);
    }
    std::vector<OptionRow> rows;
    for (std::size_t i = 0; i < factory.size(); ++i) {
        for (std::size_t j = 0; j < getParameters()[i].values.size(); ++j) {
            rows.push_back(factory);
            rows.back()[i] = j;
        }
    }
    return rows;
}

std::vector<std::size_t> makeOrder(const OptionRow& row) {
    std::vector<std::size_t> order(row.size());
    std::iota(order.begin(), order.end(), 0);
    return order;
}

Json makeJson(const OptionRow& row, const std::vector<std::size_t>& order) {
    Json json;
    for (const std::size_t i : order) {
        json[getParameters()[i].path] = getParameters()[i].values[row[i]];
    }
    return json;
}

} // namespace

const std::vector<OptionRow>& getPairwiseRows() {
    static const std::vector<OptionRow> rows = makePairwiseRows();
    return rows;
}

const std::vector<OptionRow>& getSingleRows() {
    static const std::vector<OptionRow> rows = makeSingleRows();
    return rows;
}

std::string writeOptions(const OptionRow& row) {
    return makeJson(row, makeOrder(row)).dump();
}

std::string respellOptions(const OptionRow& row, std::minstd_rand& random, bool loss) {
    std::vector<std::size_t> order = makeOrder(row);
    std::shuffle(order.begin(), order.end(), random);
    order.resize(order.size() - (loss ? 1 : 0));
    std::string text;
    for (const char c : makeJson(row, order).dump(static_cast<int>(random() % 4) - 1, '\t')) {
        const bool isFirst = text.ends_with('"') && std::isalpha(static_cast<unsigned char>(c)) != 0;
        if (isFirst && random() % 2 == 0) {
            static constexpr char digits[] = "0123456789abcdef";
            text += {'\\', 'u', '0', '0', digits[c / 16], digits[c % 16]};
        } else {
            text += c;
            text += c == '{' && random() % 4 == 0 ? "// {\n\r\n/*\"*/" : "";
        }
    }
    return text;
}

void damageOptions(std::string& text, std::minstd_rand& random) {
    using namespace std::string_view_literals;
    // clang-format off
    static constexpr std::string_view pieces[] = {
        "{", "}", "[", "]", ",", ":", "\"", "\\", "/", "*/", "//", "/*", "-", "1", "e", "\xFF", "\xEF\xBB\xBF", "\n", "\0"sv,
        "\\ud800", "null", "\"line\":", "\"engine\":\"tree\"", "1e400"};
    // clang-format on
    const std::size_t at = random() % text.size();
    const std::string piece = text.substr(at, random() % 12);
    switch (random() % 3) {
    case 0:
        text.erase(at, piece.size());
        break;
    case 1:
        text.insert(random() % text.size(), piece);
        break;
    default:
        text.insert(at, pieces[random() % std::size(pieces)]);
    }
}

bool isSurelyWrong(const std::string& text) {
    static const std::regex lastComma(R"(,\s*(/[*/][^]*)?[}\]])");
    return !Json::accept(text, true) && !std::regex_search(text, lastComma);
}
