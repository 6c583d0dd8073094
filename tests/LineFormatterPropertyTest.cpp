// What is true for every text: the tokens are the text, only whitespace at line edges of the range changes,
// formatting a result again changes nothing, and the tools' engine has the same result as the library. Tried
// on all example programs; tests/reliability tries random texts.

#include "support/ExampleFiles.h"
#include "support/LineFormatting.h"
#include "support/TokenContractChecker.h"

#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

namespace {

std::vector<LineOptions> makeOptionSets() {
    std::vector<LineOptions> sets(6);
    sets[1].functionIndentStyle = u"ClassicFunctionIndent";
    sets[1].blankLineStyle = u"Indent";
    sets[2].functionIndentStyle = u"MixedFunctionIndent";
    sets[2].useSpaces = false;
    sets[3].indentSize = 0;
    sets[3].blankLineStyle = u"Ignore";
    sets[3].firstLine = 0;
    sets[4].firstLine = 3;
    sets[4].lastLine = 7;
    sets[5].indentSize = 3;
    sets[5].tabSize = 8;
    sets[5].useSpaces = false;
    sets[5].firstLine = 5;
    return sets;
}

void expectProperties(const std::u16string& text, const LineOptions& options, const std::string& where) {
    const std::optional<std::u16string> edited = formatWithEngine(text, options);
    if (!edited) {
        return;
    }
    const std::u16string once = formatLines(text, options);
    ASSERT_TRUE(*edited == once) << where << ": the engine has another result than the library";
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

TEST(LineFormatter, KeepsItsPropertiesWhereABlockCommentEndsTheText) {
    for (const std::u16string text :
         {u"if a\n  %{\n b  ", u"if a\r\n%{\r\n  b\r\n  %}", u"%{", u"a %\r%{\r"}) {
        for (const LineOptions& options : makeOptionSets()) {
            expectProperties(text, options, showGoldenText(text));
        }
    }
}

// The library makes one line end of a CR and an LF that were only kept apart by the whitespace of a blank
// line.
TEST(LineFormatter, KeepsLineEndsApartInTheEngine) {
    EXPECT_EQ(formatWithEngine(u"if a\r  \nx\r\n  \r\n  \n%{\r \n%}\r\nend", {}),
              u"if a\r  \n    x\r\n\r\n\n    %{\r \n    %}\r\nend");
}
