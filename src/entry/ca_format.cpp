#include "ca/formatting/ca_format.h"

#include "ca/formatting/LegacyFormatter.h"

#include <ca/lexer/lex.h>

#include <array>
#include <cstring>

namespace {

using ca::formatting::legacy::BlankLineStyle;
using ca::formatting::legacy::FunctionStyle;
using ca::formatting::legacy::LegacyFormatter;
using ca::formatting::legacy::Settings;
using ArrayPointer = std::unique_ptr<kzArray_tag, matrix::detail::kzDestroy_deleter>;

FunctionStyle readFunctionStyle(std::u16string_view text) {
    if (text == u"ClassicFunctionIndent") {
        return FunctionStyle::Classic;
    }
    return text == u"MixedFunctionIndent" ? FunctionStyle::Mixed : FunctionStyle::All;
}

BlankLineStyle readBlankLineStyle(std::u16string_view text) {
    if (text == u"Ignore") {
        return BlankLineStyle::Ignore;
    }
    return text == u"Indent" ? BlankLineStyle::Indent : BlankLineStyle::Trim;
}

/// Both token lists are gone when this returns, so that they and the array are never in memory together.
std::u16string formatText(LegacyFormatter& formatter, const std::u16string& text) {
    const auto tokens = ca::lexer::lex(text);
    return formatter.getFormattedText(formatter.indentCode(tokens));
}

ArrayPointer makeRow(const std::u16string& text) {
    const std::array<std::size_t, 2> dimensions = {1, text.size()};
    ArrayPointer row = matrix::detail::do_create_uninitnumeric(
        {dimensions.data(), dimensions.data() + dimensions.size()}, kzCHAR_CLASS, kzREAL);
    if (!text.empty()) {
        std::memcpy(row->data, text.data(), text.size() * sizeof(char16_t));
    }
    return row;
}

} // namespace

void ca_format(int, ArrayPointer*, int, kzArray_tag**) {}

ArrayPointer ca_format(const std::u16string& text, unsigned int firstLine, unsigned int lastLine,
                       bool useSpaces, unsigned int tabSize, std::u16string_view functionIndentStyle,
                       unsigned int indentSize, std::u16string_view blankLineStyle) {
    const FunctionStyle functionStyle = readFunctionStyle(functionIndentStyle);
    const BlankLineStyle blankStyle = readBlankLineStyle(blankLineStyle);
    LegacyFormatter formatter(
        Settings{firstLine, lastLine, useSpaces ? 1U : 0U, tabSize, indentSize, functionStyle, blankStyle});
    return makeRow(formatText(formatter, text));
}
