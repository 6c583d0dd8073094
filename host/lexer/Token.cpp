// Predicates, names and a printable form of tokens. What is whitespace or a comment is a range of numbers.

#include "ca/lexer/TokenSpan.h"

#include <string_view>

namespace ca::lexer {

namespace {

bool isControl(char16_t c) {
    return c < 0x20 || (0x7F <= c && c < 0xA0) || c == 0x2028 || c == 0x2029;
}

bool isHighSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xD800;
}

bool isLowSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xDC00;
}

/// Whether the character at `i` is half of a pair whose other half isn't there.
bool isLoneSurrogate(std::u16string_view text, std::size_t i) {
    if (isHighSurrogate(text[i])) {
        return i + 1 == text.size() || !isLowSurrogate(text[i + 1]);
    }
    return isLowSurrogate(text[i]) && (i == 0 || !isHighSurrogate(text[i - 1]));
}

void appendEscape(std::u16string& out, char16_t c) {
    switch (c) {
    case u'\n':
        out += u"\\n";
        return;
    case u'\r':
        out += u"\\r";
        return;
    case u'\t':
        out += u"\\t";
        return;
    default:
        out += u"\\u";
        for (int shift = 12; shift >= 0; shift -= 4) {
            out += u"0123456789ABCDEF"[(c >> shift) & 0xF];
        }
    }
}

} // namespace

bool Token::isWhitespace() const {
    return lexer::isWhitespace(type);
}

bool Token::isComment() const {
    return lexer::isComment(type);
}

bool Token::isEndOfLine() const {
    return lexer::isEndOfLine(type);
}

std::u16string Token::escapeLexeme() const {
    std::u16string out;
    out.reserve(lexeme.size());
    for (std::size_t i = 0; i < lexeme.size(); ++i) {
        if (isControl(lexeme[i]) || isLoneSurrogate(lexeme, i)) {
            appendEscape(out, lexeme[i]);
        } else {
            out += lexeme[i];
        }
    }
    return out;
}

const char* getTokenTypeName(TokenType type) {
    switch (type) {
    case TokenType::EndOfInput:
        return "EndOfInput";
    case TokenType::Function:
        return "Function";
    case TokenType::Break:
        return "Break";
    case TokenType::OpeningKeyword3:
        return "OpeningKeyword3";
    case TokenType::OpeningKeyword4:
        return "OpeningKeyword4";
    case TokenType::OpeningKeyword5:
        return "OpeningKeyword5";
    case TokenType::OpeningKeyword6:
        return "OpeningKeyword6";
    case TokenType::OpeningKeyword7:
        return "OpeningKeyword7";
    case TokenType::End:
        return "End";
    case TokenType::SecondaryKeyword9:
        return "SecondaryKeyword9";
    case TokenType::SecondaryKeyword10:
        return "SecondaryKeyword10";
    case TokenType::Continue:
        return "Continue";
    case TokenType::Global:
        return "Global";
    case TokenType::OpeningKeyword13:
        return "OpeningKeyword13";
    case TokenType::Persistent:
        return "Persistent";
    case TokenType::Return:
        return "Return";
    case TokenType::SecondaryKeyword16:
        return "SecondaryKeyword16";
    case TokenType::Import:
        return "Import";
    case TokenType::SecondaryIndentedKeyword18:
        return "SecondaryIndentedKeyword18";
    case TokenType::SecondaryIndentedKeyword19:
        return "SecondaryIndentedKeyword19";
    case TokenType::ClassLevelKeyword20:
        return "ClassLevelKeyword20";
    case TokenType::OpeningKeyword21:
        return "OpeningKeyword21";
    case TokenType::ClassLevelKeyword22:
        return "ClassLevelKeyword22";
    case TokenType::OpeningKeyword23:
        return "OpeningKeyword23";
    case TokenType::OpeningKeyword24:
        return "OpeningKeyword24";
    case TokenType::OpeningKeyword25:
        return "OpeningKeyword25";
    case TokenType::OpeningKeyword26:
        return "OpeningKeyword26";
    case TokenType::NameToken27:
        return "NameToken27";
    case TokenType::NameToken28:
        return "NameToken28";
    case TokenType::NumberToken29:
        return "NumberToken29";
    case TokenType::NumberToken30:
        return "NumberToken30";
    case TokenType::CharacterLiteral:
        return "CharacterLiteral";
    case TokenType::StringLiteral:
        return "StringLiteral";
    case TokenType::Unmeasured33:
        return "Unmeasured33";
    case TokenType::PrefixOperator34:
        return "PrefixOperator34";
    case TokenType::Semicolon:
        return "Semicolon";
    case TokenType::Comma:
        return "Comma";
    case TokenType::OpenParenthesis:
        return "OpenParenthesis";
    case TokenType::CloseParenthesis:
        return "CloseParenthesis";
    case TokenType::OpenSquareBracket:
        return "OpenSquareBracket";
    case TokenType::CloseSquareBracket:
        return "CloseSquareBracket";
    case TokenType::OpenBrace:
        return "OpenBrace";
    case TokenType::CloseBrace:
        return "CloseBrace";
    case TokenType::PostfixOperator43:
        return "PostfixOperator43";
    case TokenType::PostfixOperator44:
        return "PostfixOperator44";
    case TokenType::PrefixOperator45:
        return "PrefixOperator45";
    case TokenType::At:
        return "At";
    case TokenType::Assign:
        return "Assign";
    case TokenType::Colon:
        return "Colon";
    case TokenType::PlusMinusOperator51:
        return "PlusMinusOperator51";
    case TokenType::PlusMinusOperator52:
        return "PlusMinusOperator52";
    case TokenType::MultiplyDivideOperator53:
        return "MultiplyDivideOperator53";
    case TokenType::MultiplyDivideOperator54:
        return "MultiplyDivideOperator54";
    case TokenType::MultiplyDivideOperator55:
        return "MultiplyDivideOperator55";
    case TokenType::ExponentOperator56:
        return "ExponentOperator56";
    case TokenType::Dot:
        return "Dot";
    case TokenType::MultiplyDivideOperator59:
        return "MultiplyDivideOperator59";
    case TokenType::MultiplyDivideOperator60:
        return "MultiplyDivideOperator60";
    case TokenType::MultiplyDivideOperator61:
        return "MultiplyDivideOperator61";
    case TokenType::ExponentOperator62:
        return "ExponentOperator62";
    case TokenType::LogicalOperator63:
        return "LogicalOperator63";
    case TokenType::LogicalOperator64:
        return "LogicalOperator64";
    case TokenType::LogicalOperator65:
        return "LogicalOperator65";
    case TokenType::LogicalOperator66:
        return "LogicalOperator66";
    case TokenType::ComparisonOperator67:
        return "ComparisonOperator67";
    case TokenType::ComparisonOperator68:
        return "ComparisonOperator68";
    case TokenType::ComparisonOperator69:
        return "ComparisonOperator69";
    case TokenType::ComparisonOperator70:
        return "ComparisonOperator70";
    case TokenType::ComparisonOperator71:
        return "ComparisonOperator71";
    case TokenType::ComparisonOperator72:
        return "ComparisonOperator72";
    case TokenType::LineEnding75:
        return "LineEnding75";
    case TokenType::LineEnding76:
        return "LineEnding76";
    case TokenType::LineEnding77:
        return "LineEnding77";
    case TokenType::LineTail:
        return "LineTail";
    case TokenType::BlockCommentOpen:
        return "BlockCommentOpen";
    case TokenType::BlockCommentBody:
        return "BlockCommentBody";
    case TokenType::BlockCommentClose:
        return "BlockCommentClose";
    case TokenType::LineComment:
        return "LineComment";
    case TokenType::TrailingComment:
        return "TrailingComment";
    case TokenType::Continuation:
        return "Continuation";
    case TokenType::CommandWord:
        return "CommandWord";
    case TokenType::EndIndex:
        return "EndIndex";
    case TokenType::Unrecognized:
        return "Unrecognized";
    case TokenType::Whitespace:
        return "Whitespace";
    case TokenType::NumberToken99:
        return "NumberToken99";
    case TokenType::NumberToken100:
        return "NumberToken100";
    }
    return "Unknown";
}

std::basic_stringstream<char16_t>& operator<<(std::basic_stringstream<char16_t>& stream,
                                              const TokenType& type) {
    for (const char c : std::string_view(getTokenTypeName(type))) {
        stream.put(static_cast<char16_t>(c));
    }
    return stream;
}

} // namespace ca::lexer
