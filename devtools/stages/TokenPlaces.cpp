#include "stages/TokenPlaces.h"

#include <ca/lexer/KeywordTypes.h>

#include <algorithm>
#include <iterator>

namespace ombrel {

namespace {

using ca::lexer::TokenType;

/// The bracket that closes this one; EndOfInput for what is no opening bracket.
TokenType getClosingBracket(TokenType type) {
    switch (type) {
    case TokenType::OpenParenthesis:
        return TokenType::CloseParenthesis;
    case TokenType::OpenSquareBracket:
        return TokenType::CloseSquareBracket;
    case TokenType::OpenBrace:
        return TokenType::CloseBrace;
    default:
        return TokenType::EndOfInput;
    }
}

} // namespace

TokenPlaces::TokenPlaces(const Tokens& tokens) : tokens(tokens) {
    std::vector<std::size_t> blocks;
    std::vector<std::size_t> brackets;
    std::size_t offset = 0;
    for (std::size_t i = 0; i < tokens.size(); ++i) {
        const TokenType type = tokens[i].type;
        offsets.push_back(offset);
        closers.push_back(i);
        offset += tokens[i].lexeme.size();
        if (ca::lexer::opensBlock(type)) {
            blocks.push_back(i);
        } else if (type == TokenType::End && !blocks.empty()) {
            closers[blocks.back()] = i;
            blocks.pop_back();
        } else if (getClosingBracket(type) != TokenType::EndOfInput) {
            brackets.push_back(i);
        } else if (!brackets.empty() && getClosingBracket(tokens[brackets.back()].type) == type) {
            closers[brackets.back()] = i;
            brackets.pop_back();
        }
    }
}

std::size_t TokenPlaces::find(std::size_t offset) const {
    const auto next = std::upper_bound(offsets.begin(), offsets.end(), offset);
    return static_cast<std::size_t>(std::distance(offsets.begin(), next)) - 1;
}

std::size_t TokenPlaces::getNextCode(std::size_t token) const {
    do {
        ++token;
    } while (token + 1 < tokens.size() && tokens[token].isWhitespace());
    return std::min(token, tokens.size() - 1);
}

} // namespace ombrel
