#include "format/IndentationGuard.h"

#include "support/DeepInput.h"

#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace {

using namespace ca::formatting::legacy;
using ca::lexer::lex;
using ombrel::findRunawayIndentation;

Settings makeSettings(std::uint32_t indentSize, FunctionStyle style = FunctionStyle::All) {
    return {1, 0xFFFFFFFF, 1, 4, indentSize, style, BlankLineStyle::Trim};
}

TEST(IndentationGuard, FindsRunawayTexts) {
    const std::u16string deep = repeat(u"if a, ", 1'563) + u"\nx\n";
    EXPECT_EQ(findRunawayIndentation(lex(deep), makeSettings(4)), std::nullopt);
    const auto wide = findRunawayIndentation(lex(deep), makeSettings(64));
    ASSERT_TRUE(wide);
    EXPECT_EQ(wide->line, 2U);
    EXPECT_EQ(wide->width, 100'032U);

    EXPECT_TRUE(findRunawayIndentation(lex(repeat(u"else\n", 30'000)), makeSettings(4)));
    EXPECT_TRUE(findRunawayIndentation(lex(repeat(u"if a\ncase end\n", 30'000)), makeSettings(4)));
    EXPECT_TRUE(findRunawayIndentation(lex(repeat(u"[\ncase ]\n", 30'000)), makeSettings(4)));
    const auto total =
        findRunawayIndentation(lex(repeat(u"if a\n", 900) + repeat(u"x\n", 50'000)), makeSettings(64));
    ASSERT_TRUE(total);
    EXPECT_EQ(total->width, 57'600U);
}

TEST(IndentationGuard, CountsLinesInFrontOfTheRange) {
    Settings settings = makeSettings(4);
    settings.firstLine = 2;
    const std::u16string text = std::u16string(50'000, u' ') + u"x\n" + repeat(u"x\n", 10);
    EXPECT_EQ(findRunawayIndentation(lex(text), settings), std::nullopt);
    settings.firstLine = 3;
    EXPECT_TRUE(findRunawayIndentation(lex(std::u16string(200'000, u' ') + u"x\n\nx\n"), settings));
}

TEST(IndentationGuard, AgreesWithTheFormatterOnTokenSoup) {
    const std::u16string_view words[] = {
        u"if a",   u"for i=1", u"switch x",   u"case 1",     u"else",    u"catch", u"end",  u"[", u"]",
        u"{",      u"}",       u"\n",         u"\n",         u"\n",      u"...\n", u"\n  ", u"x", u"%c\n",
        u"\n%{\n", u"\n%}\n",  u"function f", u"classdef A", u"methods", u", ",    u"try"};
    std::minstd_rand random(1);
    int runaways = 0;
    for (int round = 0; round < 60; ++round) {
        std::u16string text;
        const std::size_t part = 1 + random() % 8;
        for (std::size_t i = 0; i < part; ++i) {
            text += std::u16string(words[random() % std::size(words)]) + u' ';
        }
        text = repeat(text, 2'000);
        // 64 columns a level make the guard's limit as near as it gets.
        const Settings settings = makeSettings(64, static_cast<FunctionStyle>(random() % 3));
        const auto tokens = lex(text);
        if (findRunawayIndentation(tokens, settings)) {
            ++runaways;
            continue;
        }
        LegacyFormatter formatter(settings);
        for (const auto& line : formatter.getLines(formatter.indentCode(tokens))) {
            const std::size_t width =
                std::min(line[0].lexeme.find_first_not_of(u" \t"), line[0].lexeme.size());
            ASSERT_LE(width, ombrel::maximalIndentation);
        }
    }
    EXPECT_LT(runaways, 60);
}

} // namespace
