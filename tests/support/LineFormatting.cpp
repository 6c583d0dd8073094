#include "support/LineFormatting.h"

#include "format/LineEngine.h"

#include <ca/formatting/LegacyFormatter.h>
#include <ca/formatting/ca_format.h>

#include <algorithm>
#include <functional>
#include <stdexcept>
#include <string_view>

namespace {

using ca::formatting::legacy::BlankLineStyle;
using ca::formatting::legacy::FunctionStyle;

std::uint32_t readNumber(const std::string& text) {
    return static_cast<std::uint32_t>(std::stoul(text));
}

std::u16string widen(const std::string& text) {
    return {text.begin(), text.end()};
}

void readRange(LineOptions& options, const std::string& text) {
    options.firstLine = readNumber(text);
    options.lastLine = readNumber(text.substr(text.find('-') + 1));
}

using Setter = std::function<void(LineOptions&, const std::string&)>;

const std::map<std::string, Setter>& getSetters() {
    static const std::map<std::string, Setter> setters = {
        {"formatter", [](LineOptions&, const std::string&) {}},
        {"lines", readRange},
        {"useSpaces", [](LineOptions& o, const std::string& text) { o.useSpaces = text == "true"; }},
        {"tabSize", [](LineOptions& o, const std::string& text) { o.tabSize = readNumber(text); }},
        {"indentSize", [](LineOptions& o, const std::string& text) { o.indentSize = readNumber(text); }},
        {"functionIndentStyle",
         [](LineOptions& o, const std::string& text) {
             o.functionIndentStyle = widen(text) + u"FunctionIndent";
         }},
        {"blankLineStyle", [](LineOptions& o, const std::string& text) { o.blankLineStyle = widen(text); }},
    };
    return setters;
}

FunctionStyle getFunctionStyle(const LineOptions& options) {
    if (options.functionIndentStyle == u"AllFunctionIndent") {
        return FunctionStyle::All;
    }
    return options.functionIndentStyle == u"MixedFunctionIndent" ? FunctionStyle::Mixed
                                                                 : FunctionStyle::Classic;
}

BlankLineStyle getBlankLineStyle(const LineOptions& options) {
    if (options.blankLineStyle == u"Trim") {
        return BlankLineStyle::Trim;
    }
    return options.blankLineStyle == u"Ignore" ? BlankLineStyle::Ignore : BlankLineStyle::Indent;
}

/// The lines of a text, each with its line end.
std::vector<std::u16string_view> splitLines(std::u16string_view text) {
    std::vector<std::u16string_view> lines;
    while (!text.empty()) {
        std::size_t end = std::min(text.find_first_of(u"\r\n"), text.size());
        end += text.substr(end).starts_with(u"\r\n") ? 2 : 1;
        lines.push_back(text.substr(0, end));
        text.remove_prefix(std::min(end, text.size()));
    }
    return lines;
}

/// A line without the whitespace at its start and before its line end.
std::u16string stripWhitespace(std::u16string_view line) {
    const std::size_t end = std::min(line.find_first_of(u"\r\n"), line.size());
    const std::u16string_view inner = line.substr(0, end);
    const std::size_t first = std::min(inner.find_first_not_of(u" \t"), end);
    const std::size_t last = inner.find_last_not_of(u" \t") + 1;
    return std::u16string(inner.substr(first, std::max(first, last) - first)) +
           std::u16string(line.substr(end));
}

} // namespace

LineOptions readLineOptions(const GoldenOptions& options) {
    LineOptions result;
    for (const auto& [key, value] : options) {
        const auto setter = getSetters().find(key);
        if (setter == getSetters().end()) {
            throw std::runtime_error("no option of the line formatter: " + key);
        }
        setter->second(result, value);
    }
    return result;
}

std::u16string formatLines(const std::u16string& text, const LineOptions& options) {
    const auto array =
        ca_format(text, options.firstLine, options.lastLine, options.useSpaces, options.tabSize,
                  options.functionIndentStyle, options.indentSize, options.blankLineStyle);
    const auto* const data = static_cast<const char16_t*>(array->data);
    return {data, data + array->dimensions[1]};
}

ca::formatting::legacy::Settings makeSettings(const LineOptions& options) {
    return {options.firstLine,  options.lastLine,          options.useSpaces ? 1U : 0U, options.tabSize,
            options.indentSize, getFunctionStyle(options), getBlankLineStyle(options)};
}

std::optional<std::u16string> formatWithEngine(const std::u16string& text, const LineOptions& options) {
    const ombrel::LineOptions line{options.indentSize, options.tabSize, !options.useSpaces,
                                   getFunctionStyle(options), getBlankLineStyle(options)};
    const ombrel::LineRange range{std::max(options.firstLine, 1U), options.lastLine}; // ca_format takes a 0
    const auto result = ombrel::formatLines(text, line, {range}, {});
    if (result) {
        return ombrel::applyEdits(text, *result);
    }
    const bool isRunaway = result.error().front().code == ombrel::Code::RunawayIndentation;
    return isRunaway ? std::nullopt : std::optional(text);
}

std::vector<ca::lexer::Token> indentTokens(const std::vector<ca::lexer::Token>& tokens,
                                           const LineOptions& options) {
    return ca::formatting::legacy::LegacyFormatter(makeSettings(options)).indentCode(tokens);
}

std::string findForeignChange(const std::u16string& before, const std::u16string& after,
                              const LineOptions& options) {
    const auto oldLines = splitLines(before);
    const auto newLines = splitLines(after);
    const std::size_t count = std::max(oldLines.size(), newLines.size());
    for (std::size_t i = 0; i < count; ++i) {
        const std::u16string_view oldLine = i < oldLines.size() ? oldLines[i] : std::u16string_view();
        const std::u16string_view newLine = i < newLines.size() ? newLines[i] : std::u16string_view();
        const bool isInRange = options.firstLine <= i + 1 && i + 1 <= options.lastLine;
        if (isInRange ? stripWhitespace(oldLine) != stripWhitespace(newLine) : oldLine != newLine) {
            return "line " + std::to_string(i + 1) + " changed in more than the whitespace at its edges";
        }
    }
    return {};
}
