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
    const Option* option;
    std::vector<Json> values;
    std::size_t factory = 0; ///< the number of its default
};

std::vector<Json> getValues(const Option& option) {
    if (option.type == TreeOptionType::Boolean) {
        return {false, true};
    }
    if (option.type != TreeOptionType::Number) {
        return {option.words.begin(), option.words.end()};
    }
    std::vector<Json> values;
    const std::uint32_t high = option.key == "indentWidth" ? 8 : option.high; // text grows with it
    for (const std::uint32_t number : {option.low, 1U, 4U, 40U, 80U, high}) {
        if (number >= option.low && number <= high && std::count(values.begin(), values.end(), number) == 0) {
            values.emplace_back(number);
        }
    }
    return values;
}

void addParameter(std::vector<Parameter>& parameters, const Json::json_pointer& path, const Option& option) {
    Parameter parameter{path, &option, getValues(option)};
    const auto isFactory = [&](const Json& value) {
        return (value.is_string() ? value.get<std::string>() : value.dump()) == option.factory;
    };
    parameter.factory = static_cast<std::size_t>(
        std::find_if(parameter.values.begin(), parameter.values.end(), isFactory) - parameter.values.begin());
    parameters.push_back(std::move(parameter));
}

void addConstructs(std::vector<Parameter>& parameters, const Json::json_pointer& path, const Option& option,
                   const ombrel::Construct& construct) {
    if (!construct.isGroup()) {
        addParameter(parameters, path, option);
    }
    for (const ombrel::Construct& child : construct.children) {
        addConstructs(parameters, path / std::string(child.name), option, child);
    }
}

std::vector<Parameter> makeParameters() {
    std::vector<Parameter> parameters;
    for (const Option& option : ombrel::getOptions()) {
        const Json::json_pointer section(option.section.empty() ? "" : '/' + std::string(option.section));
        const Json::json_pointer path = section / std::string(option.key);
        if (option.type == TreeOptionType::PerConstruct) {
            addConstructs(parameters, path, option, ca::formatting::treeConstructs);
        } else {
            addParameter(parameters, path, option);
        }
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
    const auto& parameters = getParameters();
    std::vector<Value> values;
    for (std::size_t i = 0; i < parameters.size(); ++i) {
        for (std::size_t j = 0; j < parameters[i].values.size(); ++j) {
            values.emplace_back(i, j);
        }
    }
    Pairs pairs;
    for (const Value& a : values) {
        for (const Value& b : values) {
            if (a.first < b.first) {
                pairs.emplace(a, b);
            }
        }
    }
    return pairs;
}

/// The pairs of a value with what the row has so far.
Pairs pairWithRow(const Value& value, const OptionRow& row) {
    Pairs pairs;
    for (std::size_t i = 0; i < row.size(); ++i) {
        if (i != value.first && row[i] != unset) {
            pairs.insert(std::minmax(value, Value(i, row[i])));
        }
    }
    return pairs;
}

/// The value of a parameter that meets most others of the row for the first time.
std::size_t chooseValue(std::size_t parameter, const OptionRow& row, const Pairs& missing) {
    std::size_t best = 0;
    std::ptrdiff_t most = -1;
    for (std::size_t i = 0; i < getParameters()[parameter].values.size(); ++i) {
        const Pairs pairs = pairWithRow({parameter, i}, row);
        const auto isMissing = [&](const auto& pair) { return missing.contains(pair); };
        const std::ptrdiff_t gain = std::count_if(pairs.begin(), pairs.end(), isMissing);
        if (gain > most) {
            best = i;
            most = gain;
        }
    }
    return best;
}

std::vector<OptionRow> makePairwiseRows() {
    std::vector<OptionRow> rows;
    for (Pairs missing = listPairs(); !missing.empty();) {
        OptionRow row(getParameters().size(), unset);
        const auto [a, b] = *missing.begin();
        row[a.first] = a.second;
        row[b.first] = b.second;
        for (std::size_t i = 0; i < row.size(); ++i) {
            row[i] = row[i] == unset ? chooseValue(i, row, missing) : row[i];
            for (const auto& pair : pairWithRow({i, row[i]}, row)) {
                missing.erase(pair);
            }
        }
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

Json makeJson(const OptionRow& row, const std::vector<std::size_t>& order) {
    Json json;
    for (const std::size_t i : order) {
        json[getParameters()[i].path] = getParameters()[i].values[row[i]];
    }
    return json;
}

std::vector<std::size_t> makeOrder(const OptionRow& row) {
    std::vector<std::size_t> order(row.size());
    std::iota(order.begin(), order.end(), 0);
    return order;
}

/// The parameters of one to four options.
std::vector<std::size_t> pickSomeOptions(std::minstd_rand& random) {
    std::vector<std::size_t> order;
    const auto options = ombrel::getOptions();
    for (std::size_t count = 1 + random() % 4; count > 0; --count) {
        const Option* option = &options[random() % options.size()];
        for (std::size_t i = 0; i < getParameters().size(); ++i) {
            if (getParameters()[i].option == option && std::count(order.begin(), order.end(), i) == 0) {
                order.push_back(i);
            }
        }
    }
    return order;
}

/// JSON with comments, and other whitespace and escapes each time.
std::string spell(const Json& json, std::minstd_rand& random) {
    std::string text;
    for (const char c : json.dump(static_cast<int>(random() % 4) - 1, '\t')) {
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

/// Values that no option of the type can have.
std::vector<std::string_view> getWrongValues(const Option& option) {
    std::vector<std::string_view> values = {"null", "[4]", "\"\"", "\"4\"", "1e308", "-0.5", "NaN"};
    if (option.type != TreeOptionType::Boolean) {
        values.insert(values.end(),
                      {"true", "\"line \"", "-1", "1e999", "4294967296", "9223372036854775808"});
    }
    if (option.type != TreeOptionType::Number) {
        values.insert(values.end(), {"0", "1"});
    }
    return values;
}

std::string_view pickOne(const std::vector<std::string_view>& values, std::minstd_rand& random) {
    return values[random() % values.size()];
}

/// Cuts, doubles or inserts a piece somewhere.
void damage(std::string& text, std::minstd_rand& random) {
    // clang-format off
    static const std::vector<std::string_view> pieces = {
        "{", "}", "[", "]", ",", ":", "\"", "\\", "/", "*/", "//", "/*", "-", "1", "e", "\xFF", "\xEF\xBB\xBF", "\n",
        std::string_view("\0", 1), "\\ud800", "null", "\"line\":", "\"engine\":\"tree\"", "1e400"};
    // clang-format on
    const std::size_t at = random() % text.size();
    const std::size_t size = random() % 12;
    switch (random() % 3) {
    case 0:
        text.erase(at, size);
        break;
    case 1:
        text.insert(random() % text.size(), text.substr(at, size));
        break;
    default:
        text.insert(at, pickOne(pieces, random));
    }
}

/// Whether it is wrong for all that an independent reader of JSON says. It doesn't accept commas at the end,
/// which options files may have.
std::optional<bool> judge(const std::string& text) {
    static const std::regex lastComma(R"(,\s*(/[*/][^]*)?[}\]])");
    const bool isWrong = !Json::accept(text, true) && !std::regex_search(text, lastComma);
    return isWrong ? std::optional(true) : std::nullopt;
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
    return spell(makeJson(row, order), random);
}

HostileOptions makeHostileOptions(std::minstd_rand& random) {
    const OptionRow& row = getPairwiseRows()[random() % getPairwiseRows().size()];
    const std::vector<std::size_t> order = pickSomeOptions(random);
    std::string text = spell(makeJson(row, order), random);
    switch (random() % 3) {
    case 0:
        return {std::move(text), false};
    case 1:
        damage(text, random);
        return {text, text.empty() ? std::nullopt : judge(text)};
    default:
        const Parameter& victim = getParameters()[order[random() % order.size()]];
        Json json = makeJson(row, order);
        json[victim.path] = "VICTIM";
        text = json.dump();
        text.replace(text.find("\"VICTIM\""), 8, pickOne(getWrongValues(*victim.option), random));
        return {std::move(text), true};
    }
}
