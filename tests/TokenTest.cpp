#include <ca/lexer/Token.h>

#include <gtest/gtest.h>

using ca::lexer::Token;
using ca::lexer::TokenType;

TEST(Token, EscapesWhatWouldBreakALineOfADump) {
    const auto escape = [](std::u16string lexeme) {
        return Token{TokenType::Unrecognized, std::move(lexeme), 1, 1}.escapeLexeme();
    };
    EXPECT_EQ(escape(u"a\r\n\tb\\"), u"a\\r\\n\\tb\\");
    EXPECT_EQ(escape(std::u16string(u"\0\x7f\u2028", 3)), u"\\u0000\\u007F\\u2028");
    EXPECT_EQ(escape(u"\xD83D\xDE00"), u"\xD83D\xDE00");
    EXPECT_EQ(escape(u"\xDE00\xD83D"), u"\\uDE00\\uD83D");
}

TEST(Token, WritesItsTypeNameToAStreamOfAnyLocale) {
    std::basic_stringstream<char16_t> stream;
    stream << TokenType::OpeningKeyword4 << TokenType::EndIndex << static_cast<TokenType>(49);
    EXPECT_EQ(stream.str(), u"OpeningKeyword4EndIndexUnknown");
}
