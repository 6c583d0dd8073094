// A value comes from JSON or from the command line. Both are checked against the same row of the option
// table, and a word that isn't one of the option's gets the most similar one as a suggestion.
#include "options/OptionValue.h"

#include "diagnostics/Suggestion.h"
#include "text/Printable.h"
#include "text/TextEncoding.h"

#include <ca/utils/JsonDocument.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

using ca::utils::JsonObject;
using ca::utils::JsonValue;

std::string getExpectation(const Option& option) {
    switch (option.type) {
    case TreeOptionType::Boolean:
        return "expected true or false";
    case TreeOptionType::Number:
        return fmt::format("expected a number from {} to {}", option.low, option.high);
    case TreeOptionType::Word:
        return "expected " + joinWords(option.words);
    case TreeOptionType::PerConstruct:
        break;
    }
    return fmt::format("expected {}, or an object for the constructs one by one", joinWords(option.words));
}

bool isWord(const Option& option, std::string_view text) {
    return std::find(option.words.begin(), option.words.end(), text) != option.words.end();
}

bool isNumber(const Option& option, const JsonValue& value) {
    return value.getKind() == JsonValue::NumberKind && std::trunc(value.getNumber()) == value.getNumber() &&
           option.low <= value.getNumber() && value.getNumber() <= option.high;
}

std::string suggestWord(const Option& option, std::string_view text) {
    return suggest(text, {option.words.begin(), option.words.end()});
}

std::vector<std::string> getNames(std::span<const Construct> constructs) {
    std::vector<std::string> names;
    for (const Construct& construct : constructs) {
        names.emplace_back(construct.name);
    }
    return names;
}

/// The names that lead to a construct, such as "Statements.ForParfor.For"; empty if it isn't in the group.
std::string findPath(const Construct& group, std::string_view name) {
    for (const Construct& child : group.children) {
        if (child.name == name) {
            return std::string(name);
        }
        if (const std::string path = findPath(child, name); !path.empty()) {
            return fmt::format("{}.{}", child.name, path);
        }
    }
    return {};
}

class ValueChecker {
public:
    explicit ValueChecker(const Option& option) : option(option) {}

    void check(const JsonValue& value) {
        switch (option.type) {
        case TreeOptionType::Boolean:
            expect(value.getKind() == JsonValue::BooleanKind, value);
            break;
        case TreeOptionType::Number:
            expect(isNumber(option, value), value);
            break;
        case TreeOptionType::Word:
            checkWord(value, getExpectation(option));
            break;
        case TreeOptionType::PerConstruct:
            checkConstruct(ca::formatting::treeConstructs, value);
            break;
        }
    }

    Problems takeProblems() { return std::move(problems); }

private:
    void addProblem(Code code, const std::optional<ca::utils::JsonSpan>& place, std::string text) {
        problems.push_back(makeProblem(code, place, std::move(text)));
    }

    void expect(bool isGood, const JsonValue& value) {
        if (!isGood) {
            addProblem(Code::InvalidValue, value.getSpan(), getExpectation(option));
        }
    }

    void checkWord(const JsonValue& value, const std::string& expectation) {
        const bool isString = value.getKind() == JsonValue::StringKind;
        const std::string text = isString ? encodeLossy(value.getString()) : std::string();
        if (!isWord(option, text)) {
            addProblem(Code::InvalidValue, value.getSpan(), expectation + suggestWord(option, text));
        }
    }

    void checkConstruct(const Construct& construct, const JsonValue& value) {
        if (construct.children.empty()) {
            checkWord(value, "expected " + joinWords(option.words));
        } else if (value.getKind() == JsonValue::ObjectKind) {
            checkGroup(construct, value);
        } else {
            checkWord(value, getExpectation(option));
        }
    }

    void checkGroup(const Construct& group, const JsonValue& value) {
        const JsonObject object = value.getObject();
        std::vector<std::string> missing = getNames(group.children);
        for (const auto& [name, field] : getOrderedFields(object)) {
            const auto child = std::find_if(group.children.begin(), group.children.end(),
                                            [&name = name](const Construct& c) { return c.name == name; });
            if (child == group.children.end()) {
                addProblem(
                    Code::UnknownOption, field->nameSpan,
                    fmt::format("unknown construct {}{}", getPrintableName(name), suggestName(group, name)));
            } else {
                std::erase(missing, name);
                checkConstruct(*child, field->value);
            }
        }
        if (!missing.empty()) {
            addProblem(Code::InvalidValue, value.getSpan(),
                       fmt::format("this object has to name every part of its group: missing {}",
                                   fmt::join(missing, ", ")));
        }
    }

    static std::string suggestName(const Construct& group, std::string_view name) {
        const std::string elsewhere = findPath(ca::formatting::treeConstructs, name);
        return elsewhere.empty() ? suggest(name, getNames(group.children))
                                 : fmt::format("; did you mean {}?", elsewhere);
    }

    const Option& option;
    Problems problems;
};

std::optional<JsonValue> readObject(std::string_view text) {
    const auto document = ca::utils::readJson(decodeLossy(text));
    if (!document.root || !document.faults.empty()) {
        return std::nullopt;
    }
    return JsonValue(*document.root, std::nullopt);
}

std::optional<JsonValue> readNumber(std::string_view text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return JsonValue(static_cast<double>(number), std::nullopt);
}

/// The value that the text stands for, whether or not it is a possible one.
std::optional<JsonValue> readText(const Option& option, std::string_view text) {
    switch (option.type) {
    case TreeOptionType::Boolean:
        return text == "true" || text == "false" ? std::optional(JsonValue(text == "true", std::nullopt))
                                                 : std::nullopt;
    case TreeOptionType::Number:
        return readNumber(text);
    case TreeOptionType::PerConstruct:
        if (text.starts_with('{')) {
            return readObject(text);
        }
        break;
    case TreeOptionType::Word:
        break;
    }
    return JsonValue(decodeLossy(text), std::nullopt);
}

} // namespace

Result<JsonValue> parseValue(const Option& option, std::string_view text) {
    const auto value = readText(option, text);
    if (!value) {
        return fail(Code::InvalidValue, getExpectation(option));
    }
    if (auto problems = checkValue(option, *value); !problems.empty()) {
        return fail(std::move(problems));
    }
    return *value;
}

Problems checkValue(const Option& option, const JsonValue& value) {
    ValueChecker checker(option);
    checker.check(value);
    return checker.takeProblems();
}

Problem makeProblem(Code code, const std::optional<ca::utils::JsonSpan>& span, std::string text) {
    const auto [line, column] = span ? span->start : ca::utils::JsonPosition{0, 0};
    return {code, std::move(text), line, column};
}

std::vector<NamedField> getOrderedFields(const JsonObject& object) {
    std::vector<NamedField> fields;
    for (const auto& [name, field] : object.viewFields()) {
        fields.emplace_back(encodeLossy(name), &field);
    }
    std::sort(fields.begin(), fields.end(), [](const NamedField& a, const NamedField& b) {
        const auto getStart = [](const NamedField& field) {
            return field.second->nameSpan ? field.second->nameSpan->start : ca::utils::JsonPosition{0, 0};
        };
        return getStart(a) < getStart(b);
    });
    return fields;
}

std::string getJson(const JsonValue& value) {
    switch (value.getKind()) {
    case JsonValue::BooleanKind:
        return value.getBoolean() ? "true" : "false";
    case JsonValue::NumberKind:
        return fmt::format("{}", static_cast<std::uint32_t>(value.getNumber()));
    case JsonValue::ObjectKind: {
        const JsonObject object = value.getObject();
        std::vector<std::string> fields;
        for (const auto& [name, field] : getOrderedFields(object)) {
            fields.push_back(fmt::format("\"{}\": {}", name, getJson(field->value)));
        }
        return fmt::format("{{{}}}", fmt::join(fields, ", "));
    }
    default:
        return fmt::format("\"{}\"", encodeLossy(value.getString()));
    }
}

} // namespace ombrel
