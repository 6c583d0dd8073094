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

JsonValue getValue(const OptionValues& values, const Option& option) {
    const JsonValue* value = values.get(option);
    return value == nullptr ? parseValue(option, option.factory).value() : *value;
}

bool getBoolean(const OptionValues& values, std::string_view name) {
    return getValue(values, *findOption(name)).getBoolean();
}

std::uint32_t getNumber(const OptionValues& values, std::string_view name) {
    return static_cast<std::uint32_t>(getValue(values, *findOption(name)).getNumber());
}

std::u16string getWord(const OptionValues& values, std::string_view name) {
    return getValue(values, *findOption(name)).getString();
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

/// Whether the library would do something else without the option's value.
bool isToBeSaid(const Option& option, const JsonValue* value) {
    return option.section == ca::formatting::treeOptionSection &&
           (value != nullptr || option.factory != ca::formatting::getTreeOption(option.key).factory);
}

std::u16string makeFormattingJson(const OptionValues& values) {
    std::vector<std::string> fields;
    for (const Option& option : getOptions()) {
        if (isToBeSaid(option, values.get(option))) {
            fields.push_back(fmt::format("\"{}\": {}", option.key, getJson(getValue(values, option))));
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
