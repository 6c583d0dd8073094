#include "format/TokenKinds.h"

namespace ombrel {

using ca::lexer::TokenType;

bool isName(TokenType type) {
    return type == TokenType::NameToken27 || type == TokenType::NameToken28;
}

bool isNumber(TokenType type) {
    return type == TokenType::NumberToken29 || type == TokenType::NumberToken30 ||
           type == TokenType::NumberToken99 || type == TokenType::NumberToken100;
}

bool isLiteral(TokenType type) {
    return type == TokenType::CharacterLiteral || type == TokenType::StringLiteral;
}

bool isClosing(TokenType type) {
    return type == TokenType::CloseParenthesis || type == TokenType::CloseSquareBracket ||
           type == TokenType::CloseBrace;
}

bool isOpening(TokenType type) {
    return type == TokenType::OpenParenthesis || type == TokenType::OpenSquareBracket ||
           type == TokenType::OpenBrace;
}

bool isTranspose(TokenType type) {
    return type == TokenType::PostfixOperator43 || type == TokenType::PostfixOperator44;
}

bool endsOperand(TokenType type) {
    return isName(type) || isNumber(type) || isLiteral(type) || isClosing(type) || isTranspose(type) ||
           type == TokenType::EndIndex;
}

bool isSign(TokenType type) {
    return type == TokenType::PlusMinusOperator51 || type == TokenType::PlusMinusOperator52;
}

bool isSeparator(TokenType type) {
    return type == TokenType::Semicolon || type == TokenType::Comma;
}

bool isShellLine(TokenType type) {
    return type == TokenType::Unmeasured33;
}

} // namespace ombrel
