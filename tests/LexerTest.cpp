#include "support/GoldenSuite.h"
#include "support/TokenContractChecker.h"

#include <ca/lexer/LineTokenizer.h>
#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

// Golden files hold texts, one per line with its line ends escaped, and after each its tokens: as a lexeme, a
// colon and a number. Blanks and the end of the input are left out, and a line end is written as it is
// escaped.

namespace {

using ca::lexer::Token;
using ca::lexer::TokenType;

std::u16string unescape(std::u16string text) {
    const std::u16string letters = u"nrt";
    for (std::size_t at = 0; (at = text.find(u'\\', at)) != std::u16string::npos; ++at) {
        const std::size_t letter = at + 1 < text.size() ? letters.find(text[at + 1]) : std::u16string::npos;
        if (letter != std::u16string::npos) {
            text.replace(at, 2, 1, u"\n\r\t"[letter]);
        }
    }
    return text;
}

std::u16string describe(const std::u16string& text) {
    std::u16string all;
    const std::vector<Token> tokens = ca::lexer::lex(text);
    for (const std::string& fault : checkTokenContract(text, tokens)) {
        all += u" FAULT " + std::u16string(fault.begin(), fault.end());
    }
    for (const Token& token : tokens) {
        if (token.type != TokenType::Whitespace && token.type != TokenType::EndOfInput) {
            const std::string number = ":" + std::to_string(static_cast<int>(token.type));
            all += u' ' + token.escapeLexeme();
            all.append(number.begin(), token.isEndOfLine() ? number.begin() : number.end());
        }
    }
    return all;
}

/// The texts of a case with their tokens, whatever tokens the case gives them.
std::u16string produceTokens(const std::u16string& table, const GoldenOptions&) {
    std::u16string produced;
    for (std::size_t begin = 0, end = 0; begin < table.size(); begin = end + 1) {
        end = table.find(u'\n', begin);
        const std::u16string text = table.substr(begin, end - begin);
        if (!text.starts_with(u"=>")) {
            produced += text + u"\n=>" + describe(unescape(text)) + u'\n';
        }
    }
    return produced;
}

class Lexing : public testing::TestWithParam<GoldenCase> {};

TEST_P(Lexing, CutsTextsIntoTokens) {
    expectGolden(GetParam(), GetParam().results.front(), produceTokens);
}

INSTANTIATE_TEST_SUITE_P(Golden, Lexing, testing::ValuesIn(loadGoldenCases("lexer", produceTokens)),
                         getGoldenName);

} // namespace

TEST(Lexer, TakesHalfCharactersAndControlCharacters) {
    EXPECT_EQ(describe(std::u16string(u"\0\xD800x", 3)), u" \\u0000\\uD800:87 x:27");
    EXPECT_EQ(describe(std::u16string(u"'\0'", 3)), u" '\\u0000':31");
    EXPECT_EQ(describe(u"$#_a \x01`"), u" $#_:87 a:27 \\u0001`:87");
}

TEST(LineTokenizer, LeavesOutOnlyUnwantedTokensInTheMiddleOfLongLines) {
    std::u16string text = u"x = [1, 2]\n  x = ";
    for (int i = 0; i < 30'000; ++i) {
        text += i % 1'000 == 0 ? u"[1], " : u"1 + ";
    }
    using Place = std::tuple<std::size_t, TokenType, std::size_t>; // in the line, type, length
    using Lines = std::vector<std::vector<Place>>;
    const auto read = [&](ca::lexer::TokenFilter filter) {
        Lines lines;
        ca::lexer::LineTokenizer tokenizer(text, filter);
        for (auto tokens = tokenizer.next(); !tokens.empty(); tokens = tokenizer.next()) {
            lines.emplace_back();
            std::size_t place = 0;
            for (const auto& [type, length] : tokens) {
                lines.back().emplace_back(place, type, length);
                place += length;
            }
        }
        return lines;
    };
    Lines all = read(nullptr);
    const Lines some = read([](TokenType type) { return type == TokenType::OpenSquareBracket; });
    EXPECT_EQ(some[0], all[0]);
    EXPECT_LT(some[1].size(), 8'192U);
    EXPECT_GT(all[1].size(), 100'000U);
    std::erase_if(all[1], [third = all[1][2], end = *(all[1].end() - 3)](const Place& token) {
        return third <= token && token < end && std::get<1>(token) != TokenType::OpenSquareBracket;
    });
    EXPECT_TRUE(std::includes(some[1].begin(), some[1].end(), all[1].begin(), all[1].end()));
}

/// Any sequence of pieces keeps the token contract, and a text is cut alike before a line that starts
/// afresh.
TEST(Lexer, KeepsTheContractForEverySoupOfPieces) {
    static constexpr std::u16string_view pieces[] = {
        u"a", u"if", u"end", u"function", u"classdef", u"methods", u"arguments", u"catch", u"spmd", u"import",
        u" ", u"\t", u"\n",  u"\r\n",     u"\r",       u"'",       u"\"",        u"%",     u"%{\n", u"%}\n",
        u"(", u")",  u"[",   u"]",        u"{",        u"}",       u",",         u";",     u"=",    u"...",
        u".", u"-",  u"1",   u"0x",       u"!",        u"\u00E9",  u"\xD800",    u"else",  u"case", u"@",
    };
    std::minstd_rand random(20);
    for (int round = 0; round < 20000; ++round) {
        std::u16string text;
        for (auto count = random() % 14; count > 0; --count) {
            text += pieces[random() % std::size(pieces)];
        }
        const std::vector<Token> tokens = ca::lexer::lex(text);
        ASSERT_EQ(checkTokenContract(text, tokens), std::vector<std::string>()) << showGoldenText(text);
    }
}
