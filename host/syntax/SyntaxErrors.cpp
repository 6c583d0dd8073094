#include "syntax/SyntaxErrors.h"

#include <algorithm>
#include <string>
#include <tuple>
#include <utility>

namespace ca::syntax {

void SyntaxErrors::report(std::u16string_view identifier, std::u16string message, const Token& token) {
    const bool hasText = !token.isEndOfLine();
    reportAt(identifier, std::move(message), token.line, token.column,
             hasText ? static_cast<std::uint32_t>(token.lexeme.size()) : 0);
}

void SyntaxErrors::reportAt(std::u16string_view identifier, std::u16string message, std::uint32_t line,
                            std::uint32_t column, std::uint32_t length) {
    errors.push_back({std::u16string(identifier), std::move(message), line, column, length});
}

std::vector<SyntaxError> SyntaxErrors::take() {
    std::stable_sort(errors.begin(), errors.end(), [](const SyntaxError& left, const SyntaxError& right) {
        return std::tie(left.line, left.column) < std::tie(right.line, right.column);
    });
    if (errors.size() > limit) {
        errors.resize(limit);
    }
    return std::exchange(errors, {});
}

/// Lexemes are cut before they are escaped, so that no escape sequence is cut.
std::u16string quoteToken(const Token& token) {
    constexpr std::size_t longest = 30;
    if (token.type == TokenType::EndOfInput) {
        return u"the end of the file";
    }
    if (token.isEndOfLine()) {
        return u"the end of the line";
    }
    if (token.lexeme.size() <= longest) {
        return u"'" + token.escapeLexeme() + u"'";
    }
    const bool cutsPair = (token.lexeme[longest - 1] & 0xFC00) == 0xD800;
    Token start = token;
    start.lexeme.resize(cutsPair ? longest - 1 : longest);
    return u"'" + start.escapeLexeme() + u"...'";
}

std::u16string toText(std::uint32_t number) {
    const std::string digits = std::to_string(number);
    return {digits.begin(), digits.end()};
}

} // namespace ca::syntax
