#pragma once

#include "ca/lexer/Token.h"

/// The types of keywords by the words that have them. The contract names types by numbers.
namespace ca::lexer::keyword {

inline constexpr TokenType For = TokenType::OpeningKeyword3;
inline constexpr TokenType If = TokenType::OpeningKeyword4;
inline constexpr TokenType Parfor = TokenType::OpeningKeyword5;
inline constexpr TokenType Switch = TokenType::OpeningKeyword6;
inline constexpr TokenType While = TokenType::OpeningKeyword7;
inline constexpr TokenType Else = TokenType::SecondaryKeyword9;
inline constexpr TokenType Elseif = TokenType::SecondaryKeyword10;
inline constexpr TokenType Try = TokenType::OpeningKeyword13;
inline constexpr TokenType Catch = TokenType::SecondaryKeyword16;
inline constexpr TokenType Case = TokenType::SecondaryIndentedKeyword18;
inline constexpr TokenType Otherwise = TokenType::SecondaryIndentedKeyword19;
inline constexpr TokenType Classdef = TokenType::ClassLevelKeyword20;
inline constexpr TokenType Properties = TokenType::OpeningKeyword21;
inline constexpr TokenType Methods = TokenType::ClassLevelKeyword22;
inline constexpr TokenType Events = TokenType::OpeningKeyword23;
inline constexpr TokenType Enumeration = TokenType::OpeningKeyword24;
inline constexpr TokenType Spmd = TokenType::OpeningKeyword25;
inline constexpr TokenType Arguments = TokenType::OpeningKeyword26;

} // namespace ca::lexer::keyword

namespace ca::lexer {

/// Whether the keyword begins a block, which an `end` closes.
constexpr bool opensBlock(TokenType type) {
    switch (type) {
    case TokenType::Function:
    case keyword::For:
    case keyword::If:
    case keyword::Parfor:
    case keyword::Switch:
    case keyword::While:
    case keyword::Try:
    case keyword::Classdef:
    case keyword::Properties:
    case keyword::Methods:
    case keyword::Events:
    case keyword::Enumeration:
    case keyword::Spmd:
    case keyword::Arguments:
        return true;
    default:
        return false;
    }
}

/// Whether the keyword begins another part of a block.
constexpr bool dividesBlock(TokenType type) {
    switch (type) {
    case keyword::Else:
    case keyword::Elseif:
    case keyword::Catch:
    case keyword::Case:
    case keyword::Otherwise:
        return true;
    default:
        return false;
    }
}

} // namespace ca::lexer
