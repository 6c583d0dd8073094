#include <ca/lexer/Token.h>

#include <gtest/gtest.h>

#include <set>

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

TEST(Token, NamesEachTypeOnceAndByItsNumberWhereThereIsOneInTheName) {
    std::set<std::u16string> names;
    for (int number = 0; number <= 100; ++number) {
        std::basic_stringstream<char16_t> stream;
        stream << static_cast<TokenType>(number);
        const std::u16string name = stream.str();
        EXPECT_TRUE(name == u"Unknown" || names.insert(name).second) << number;
        std::string digits;
        for (const char16_t c : name.substr(name.find_last_not_of(u"0123456789") + 1)) {
            digits += static_cast<char>(c);
        }
        EXPECT_TRUE(digits.empty() || digits == std::to_string(number)) << number;
    }
    EXPECT_GT(names.size(), 80U);
}
