#pragma once

#include <ca/lexer/Token.h>

#include <type_traits>

// What both formatters expect of the host's tokens, as code: the groups of numbers that they treat alike, and
// the checks that make a host with other numbers fail to compile.

namespace ca::formatting {

using ca::lexer::Token;
using ca::lexer::TokenType;

constexpr bool isLineEnding(TokenType type) {
    return type == TokenType::LineEnding75 || type == TokenType::LineEnding76 ||
           type == TokenType::LineEnding77;
}

/// A token that is a whole physical line, line end included.
constexpr bool isBlockCommentLine(TokenType type) {
    return type == TokenType::BlockCommentOpen || type == TokenType::BlockCommentBody ||
           type == TokenType::BlockCommentClose;
}

namespace contract {

static_assert(std::is_same_v<decltype(Token::lexeme), std::u16string>);
static_assert(sizeof(TokenType) == 4);
static_assert(sizeof(Token::line) == 4 && std::is_unsigned_v<decltype(Token::line)>);
static_assert(sizeof(Token::column) == 4 && std::is_unsigned_v<decltype(Token::column)>);

constexpr bool has(TokenType type, int number) {
    return static_cast<int>(type) == number;
}

static_assert(has(TokenType::EndOfInput, 0) && has(TokenType::Function, 1) && has(TokenType::End, 8));
static_assert(has(TokenType::OpeningKeyword3, 3) && has(TokenType::OpeningKeyword4, 4) &&
              has(TokenType::OpeningKeyword5, 5) && has(TokenType::OpeningKeyword6, 6) &&
              has(TokenType::OpeningKeyword7, 7) && has(TokenType::OpeningKeyword13, 13) &&
              has(TokenType::OpeningKeyword21, 21) && has(TokenType::OpeningKeyword23, 23) &&
              has(TokenType::OpeningKeyword24, 24) && has(TokenType::OpeningKeyword25, 25) &&
              has(TokenType::OpeningKeyword26, 26));
static_assert(has(TokenType::SecondaryKeyword9, 9) && has(TokenType::SecondaryKeyword10, 10) &&
              has(TokenType::SecondaryKeyword16, 16) && has(TokenType::SecondaryIndentedKeyword18, 18) &&
              has(TokenType::SecondaryIndentedKeyword19, 19));
static_assert(has(TokenType::ClassLevelKeyword20, 20) && has(TokenType::ClassLevelKeyword22, 22));
static_assert(has(TokenType::NameToken27, 27) && has(TokenType::NameToken28, 28) &&
              has(TokenType::NumberToken29, 29) && has(TokenType::NumberToken30, 30) &&
              has(TokenType::NumberToken99, 99) && has(TokenType::NumberToken100, 100) &&
              has(TokenType::Unmeasured33, 33));
static_assert(has(TokenType::PrefixOperator34, 34) && has(TokenType::PrefixOperator45, 45) &&
              has(TokenType::PostfixOperator43, 43) && has(TokenType::PostfixOperator44, 44));
static_assert(has(TokenType::Semicolon, 35) && has(TokenType::Comma, 36) &&
              has(TokenType::OpenParenthesis, 37) && has(TokenType::CloseParenthesis, 38) &&
              has(TokenType::OpenSquareBracket, 39) && has(TokenType::CloseSquareBracket, 40) &&
              has(TokenType::OpenBrace, 41) && has(TokenType::CloseBrace, 42) && has(TokenType::At, 46) &&
              has(TokenType::Dot, 58));
static_assert(has(TokenType::PlusMinusOperator51, 51) && has(TokenType::PlusMinusOperator52, 52) &&
              has(TokenType::MultiplyDivideOperator53, 53) && has(TokenType::MultiplyDivideOperator54, 54) &&
              has(TokenType::MultiplyDivideOperator55, 55) && has(TokenType::MultiplyDivideOperator59, 59) &&
              has(TokenType::MultiplyDivideOperator60, 60) && has(TokenType::MultiplyDivideOperator61, 61) &&
              has(TokenType::ExponentOperator56, 56) && has(TokenType::ExponentOperator62, 62));
static_assert(has(TokenType::LogicalOperator63, 63) && has(TokenType::LogicalOperator64, 64) &&
              has(TokenType::LogicalOperator65, 65) && has(TokenType::LogicalOperator66, 66) &&
              has(TokenType::ComparisonOperator67, 67) && has(TokenType::ComparisonOperator68, 68) &&
              has(TokenType::ComparisonOperator69, 69) && has(TokenType::ComparisonOperator70, 70) &&
              has(TokenType::ComparisonOperator71, 71) && has(TokenType::ComparisonOperator72, 72));
static_assert(has(TokenType::LineEnding75, 75) && has(TokenType::LineEnding76, 76) &&
              has(TokenType::LineEnding77, 77) && has(TokenType::LineTail, 78) &&
              has(TokenType::BlockCommentOpen, 79) && has(TokenType::BlockCommentBody, 80) &&
              has(TokenType::BlockCommentClose, 81) && has(TokenType::LineComment, 82) &&
              has(TokenType::TrailingComment, 83) && has(TokenType::Continuation, 84) &&
              has(TokenType::Whitespace, 88));

} // namespace contract

} // namespace ca::formatting
