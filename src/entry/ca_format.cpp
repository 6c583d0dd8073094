#include "ca/formatting/ca_format.h"

#include "ca/formatting/LegacyFormatter.h"
#include "ca/formatting/lineWalk.h"

#include <ca/lexer/lex.h>

#include <array>
#include <cstring>
#include <iterator>

namespace {

using namespace ca::formatting::legacy;
using ca::lexer::Token;
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

/// What getFormattedText(indentCode()) returns, without the second token list: lines are joined one by one.
/// The tokens are freed before the array is made.
std::u16string formatText(LegacyFormatter& formatter, const std::u16string& text) {
    std::vector<Token> tokens = ca::lexer::lex(text);
    formatter.functionsHaveEnds = formatter.checkForFunctionEnds(tokens) ? 1 : 0;
    std::u16string result;
    result.reserve(text.size() + text.size() / 4);
    std::uint32_t number = 0;
    forEachLine(std::move_iterator(tokens.begin()), std::move_iterator(tokens.end()),
                [&](std::vector<Token>& line) {
                    formatLine(formatter, getLinePlace(formatter.settings, ++number), line);
                    for (const Token& token : line) {
                        result += token.lexeme;
                    }
                    return true;
                });
    return result;
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
