#pragma once

#include "ombrel/api.h"

#include <cstdint>
#include <sstream>
#include <string>

namespace ca::lexer {

/// What a token is. The numbers are a contract with every user of the token list and never change; within a
/// group (the opening keywords, the operators of one precedence) users treat all numbers alike.
enum class TokenType : std::int32_t {
    EndOfInput = 0, ///< empty, always last

    Function = 1,                    ///< function
    Break = 2,                       ///< break
    OpeningKeyword3 = 3,             ///< for
    OpeningKeyword4 = 4,             ///< if
    OpeningKeyword5 = 5,             ///< parfor
    OpeningKeyword6 = 6,             ///< switch
    OpeningKeyword7 = 7,             ///< while
    End = 8,                         ///< end, where it closes a block
    SecondaryKeyword9 = 9,           ///< else
    SecondaryKeyword10 = 10,         ///< elseif
    Continue = 11,                   ///< continue
    Global = 12,                     ///< global
    OpeningKeyword13 = 13,           ///< try
    Persistent = 14,                 ///< persistent
    Return = 15,                     ///< return
    SecondaryKeyword16 = 16,         ///< catch
    Import = 17,                     ///< import, before a statement's words
    SecondaryIndentedKeyword18 = 18, ///< case
    SecondaryIndentedKeyword19 = 19, ///< otherwise
    ClassLevelKeyword20 = 20,        ///< classdef
    OpeningKeyword21 = 21,           ///< properties, as a class block
    ClassLevelKeyword22 = 22,        ///< methods, as a class block
    OpeningKeyword23 = 23,           ///< events, as a class block
    OpeningKeyword24 = 24,           ///< enumeration, as a class block
    OpeningKeyword25 = 25,           ///< spmd
    OpeningKeyword26 = 26,           ///< arguments, as a function's block

    NameToken27 = 27,      ///< a name
    NameToken28 = 28,      ///< a name that is spelled like a keyword
    NumberToken29 = 29,    ///< a decimal number
    NumberToken30 = 30,    ///< an imaginary number
    CharacterLiteral = 31, ///< '...'
    StringLiteral = 32,    ///< "..."
    Unmeasured33 = 33,     ///< a shell line, from its ! to the end of the line

    PrefixOperator34 = 34,   ///< ~
    Semicolon = 35,          ///< ;
    Comma = 36,              ///< ,
    OpenParenthesis = 37,    ///< (
    CloseParenthesis = 38,   ///< )
    OpenSquareBracket = 39,  ///< [
    CloseSquareBracket = 40, ///< ]
    OpenBrace = 41,          ///< {
    CloseBrace = 42,         ///< }
    PostfixOperator43 = 43,  ///< ' as transpose
    PostfixOperator44 = 44,  ///< .'
    PrefixOperator45 = 45,   ///< ?
    At = 46,                 ///< @
    Assign = 47,             ///< =
    Colon = 48,              ///< :

    PlusMinusOperator51 = 51,      ///< +
    PlusMinusOperator52 = 52,      ///< -
    MultiplyDivideOperator53 = 53, ///< *
    MultiplyDivideOperator54 = 54, ///< /
    MultiplyDivideOperator55 = 55, ///< backslash
    ExponentOperator56 = 56,       ///< ^
    Dot = 58,                      ///< .
    MultiplyDivideOperator59 = 59, ///< .*
    MultiplyDivideOperator60 = 60, ///< ./
    MultiplyDivideOperator61 = 61, ///< . and backslash
    ExponentOperator62 = 62,       ///< .^
    LogicalOperator63 = 63,        ///< &
    LogicalOperator64 = 64,        ///< |
    LogicalOperator65 = 65,        ///< &&
    LogicalOperator66 = 66,        ///< ||
    ComparisonOperator67 = 67,     ///< ==
    ComparisonOperator68 = 68,     ///< ~=
    ComparisonOperator69 = 69,     ///< <
    ComparisonOperator70 = 70,     ///< <=
    ComparisonOperator71 = 71,     ///< >
    ComparisonOperator72 = 72,     ///< >=

    LineEnding75 = 75,      ///< LF
    LineEnding76 = 76,      ///< CRLF
    LineEnding77 = 77,      ///< CR
    LineTail = 78,          ///< the text after a continuation
    BlockCommentOpen = 79,  ///< the whole physical line of a %{, line end included
    BlockCommentBody = 80,  ///< a whole physical line inside a block comment
    BlockCommentClose = 81, ///< the whole physical line of a %}
    LineComment = 82,       ///< a comment first on its line, leading whitespace included
    TrailingComment = 83,   ///< a comment after code
    Continuation = 84,      ///< ...
    CommandWord = 85,       ///< one word of a command or an import
    EndIndex = 86,          ///< end as an index, or with nothing to close
    Unrecognized = 87,      ///< a run of characters that start no token, or an unclosed string
    Whitespace = 88,        ///< a run of spaces and tabs

    NumberToken99 = 99,   ///< a hexadecimal number
    NumberToken100 = 100, ///< a binary number
};

/// One token. A plain record that owns its text; formatters read and write the fields directly.
struct OMBREL_HOST_API Token {
    TokenType type;
    std::u16string lexeme; ///< the text as it is in the source
    std::uint32_t line;    ///< physical line, from 1
    std::uint32_t column;  ///< place of the first character in its line: 16-bit characters, from 1

    /// True for what carries no syntax: spaces and tabs, line ends, comments of every kind, continuations.
    bool isWhitespace() const;

    /// True for comments of every kind, the text after a continuation included.
    bool isComment() const;

    /// True for LF, CRLF and CR. The line end that a block comment's line holds is not asked for.
    bool isEndOfLine() const;

    /// The lexeme in a form that fits on one line: `\n`, `\r` and `\t`, and `\uXXXX` for every other control
    /// character, U+2028, U+2029 and every lone surrogate. A backslash stays as it is.
    std::u16string escapeLexeme() const;
};

/// The enumerator's name in ASCII, "Unknown" for a number that is no enumerator. Never null, lives forever.
OMBREL_HOST_API const char* getTokenTypeName(TokenType type);

/// Writes the enumerator's name. Needs no facet of the stream's locale.
OMBREL_HOST_API std::basic_stringstream<char16_t>& operator<<(std::basic_stringstream<char16_t>& stream,
                                                              const TokenType& type);

} // namespace ca::lexer
