// What holds for every text: the tokens are the text, only blanks at line edges of the range change, and
// formatting a result again changes nothing. Tried on all example programs and on soups of pieces.

#include "format/IndentationGuard.h"
#include "support/ExampleFiles.h"
#include "support/LineFormatting.h"
#include "support/TokenContractChecker.h"

#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

#include <random>

namespace {

std::vector<LineOptions> makeOptionSets() {
    std::vector<LineOptions> sets(6);
    sets[1].functionIndentStyle = u"ClassicFunctionIndent";
    sets[1].blankLineStyle = u"Indent";
    sets[2].functionIndentStyle = u"MixedFunctionIndent";
    sets[2].useSpaces = false;
    sets[3].indentSize = 0;
    sets[3].blankLineStyle = u"Ignore";
    sets[4].firstLine = 3;
    sets[4].lastLine = 7;
    sets[5].indentSize = 3;
    sets[5].tabSize = 8;
    sets[5].useSpaces = false;
    sets[5].firstLine = 5;
    return sets;
}

void expectProperties(const std::u16string& text, const LineOptions& options, const std::string& where) {
    const std::u16string once = formatLines(text, options);
    ASSERT_EQ(findForeignChange(text, once, options), "") << where;
    ASSERT_TRUE(formatLines(once, options) == once) << where << ": formatting again changes the text";
}

} // namespace

TEST(LineFormatter, KeepsItsPropertiesOnAllExamples) {
    for (const auto& [path, text] : readExamples()) {
        const std::vector<ca::lexer::Token> tokens = ca::lexer::lex(text);
        EXPECT_EQ(checkTokenContract(text, tokens), std::vector<std::string>()) << path;
        for (const ca::lexer::Token& token : tokens) {
            EXPECT_NE(token.type, ca::lexer::TokenType::Unrecognized) << path << ":" << token.line;
        }
        for (const LineOptions& options : makeOptionSets()) {
            expectProperties(text, options, path);
        }
    }
}

TEST(LineFormatter, KeepsItsPropertiesOnSoupsOfPieces) {
    static constexpr std::u16string_view pieces[] = {
        u"if a\n",
        u"end\n",
        u"  end, ",
        u"function f\n",
        u"classdef c\n",
        u"methods\n",
        u"else ",
        u"\tcase 1\n",
        u"x = [1, ...\n",
        u"{2 3\n",
        u"]",
        u"};\n",
        u"(...\n",
        u")",
        u"% note \n",
        u"%{\n",
        u" %}\n",
        u"\n",
        u"   \n",
        u"\r\n",
        u"\t",
        u"  ",
        u"x ... t ",
        u"'s'",
    };
    std::minstd_rand random(7);
    const std::vector<LineOptions> sets = makeOptionSets();
    for (int round = 0; round < 6000; ++round) {
        std::u16string text;
        for (auto count = random() % 16; count > 0; --count) {
            text += pieces[random() % std::size(pieces)];
        }
        const LineOptions& options = sets[random() % sets.size()];
        if (!ombrel::findRunawayIndentation(ca::lexer::lex(text), makeSettings(options))) {
            expectProperties(text, options, "round " + std::to_string(round));
        }
    }
}
