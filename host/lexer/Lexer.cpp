#include "ca/lexer/lex.h"

namespace ca::lexer {

std::vector<Token> lex(const std::u16string& text) {
    std::vector<Token> tokens;
    if (!text.empty()) {
        tokens.push_back({TokenType::Unrecognized, text, 1, 1});
    }
    tokens.push_back({TokenType::EndOfInput, {}, 1, 1});
    return tokens;
}

} // namespace ca::lexer
