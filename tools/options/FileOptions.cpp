#include "options/FileOptions.h"

#include "options/OptionValue.h"
#include "text/TextEncoding.h"

#include <iterator>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

using ca::formatting::legacy::BlankLineStyle;
using ca::formatting::legacy::FunctionStyle;
using ca::utils::JsonValue;

JsonValue getValue(const OptionValues& values, std::string_view name) {
    const Option& option = *findOption(name);
    const JsonValue* value = values.get(option);
    return value == nullptr ? parseValue(option, option.factory).value() : *value;
}

bool getBoolean(const OptionValues& values, std::string_view name) {
    return getValue(values, name).getBoolean();
}

std::uint32_t getNumber(const OptionValues& values, std::string_view name) {
    return static_cast<std::uint32_t>(getValue(values, name).getNumber());
}

std::u16string getWord(const OptionValues& values, std::string_view name) {
    return getValue(values, name).getString();
}

FunctionStyle getFunctionStyle(const std::u16string& word) {
    if (word == u"classic") {
        return FunctionStyle::Classic;
    }
    return word == u"mixed" ? FunctionStyle::Mixed : FunctionStyle::All;
}

BlankLineStyle getBlankLineStyle(const std::u16string& word) {
    if (word == u"ignore") {
        return BlankLineStyle::Ignore;
    }
    return word == u"indent" ? BlankLineStyle::Indent : BlankLineStyle::Trim;
}

std::u16string makeFormattingJson(const OptionValues& values) {
    std::vector<std::string> fields;
    for (const Option& option : getOptions()) {
        const JsonValue* value = values.get(option);
        if (option.section == "formatting" && value != nullptr) {
            fields.push_back(fmt::format("\"{}\": {}", option.key, getJson(*value)));
        }
    }
    return decodeLossy(fmt::format("{{\"formatting\": {{{}}}}}", fmt::join(fields, ", ")));
}

} // namespace

FileOptions makeFileOptions(const OptionValues& values) {
    FileOptions options;
    options.engine = getWord(values, "engine") == u"tree" ? Engine::Tree : Engine::Line;
    options.line.indentSize = getNumber(values, "line.indentSize");
    options.line.tabSize = getNumber(values, "line.tabSize");
    options.line.useTabs = getBoolean(values, "line.useTabs");
    options.line.functionStyle = getFunctionStyle(getWord(values, "line.functionStyle"));
    options.line.blankLines = getBlankLineStyle(getWord(values, "line.blankLines"));
    options.formattingJson = makeFormattingJson(values);
    return options;
}

} // namespace ombrel
