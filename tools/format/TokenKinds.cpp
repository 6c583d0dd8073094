#include "format/TokenKinds.h"

namespace ombrel {

using ca::lexer::Token;
using ca::lexer::TokenType;

bool isName(const Token& token) {
    return token.type == TokenType::NameToken27 || token.type == TokenType::NameToken28;
}

bool isNumber(const Token& token) {
    return token.type == TokenType::NumberToken29 || token.type == TokenType::NumberToken30 ||
           token.type == TokenType::NumberToken99 || token.type == TokenType::NumberToken100;
}

bool isLiteral(const Token& token) {
    return token.type == TokenType::CharacterLiteral || token.type == TokenType::StringLiteral;
}

bool isClosing(const Token& token) {
    return token.type == TokenType::CloseParenthesis || token.type == TokenType::CloseSquareBracket ||
           token.type == TokenType::CloseBrace;
}

bool isOpening(const Token& token) {
    return token.type == TokenType::OpenParenthesis || token.type == TokenType::OpenSquareBracket ||
           token.type == TokenType::OpenBrace;
}

bool isTranspose(const Token& token) {
    return token.type == TokenType::PostfixOperator43 || token.type == TokenType::PostfixOperator44;
}

bool endsOperand(const Token& token) {
    return isName(token) || isNumber(token) || isLiteral(token) || isClosing(token) || isTranspose(token) ||
           token.type == TokenType::EndIndex;
}

bool isSign(const Token& token) {
    return token.type == TokenType::PlusMinusOperator51 || token.type == TokenType::PlusMinusOperator52;
}

bool isShellLine(const Token& token) {
    return token.type == TokenType::Unmeasured33;
}

} // namespace ombrel
