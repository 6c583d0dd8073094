#include "support/ClaimChecker.h"
#include "support/DeepInput.h"
#include "support/ExampleFiles.h"
#include "support/GoldenSuite.h"
#include "support/SyntaxSketch.h"

#include <ca/Analyzer.h>
#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

// Trees and faults are golden files; whatever parses has its claims checked against its tokens.

namespace {

std::shared_ptr<ca::AnalysisResult> parse(const std::u16string& text) {
    return ca::createSingleFileAnalyzer()->parseSourceCode(text);
}

void expectClaims(const std::u16string& text) {
    EXPECT_EQ("", checkClaims(*parse(text)->getProgramFile(), ca::lexer::lex(text))) << showGoldenText(text);
}

/// Each on a line as "line:column+length Identifier: message".
std::u16string listErrors(const std::u16string& text) {
    try {
        parse(text);
        return u"";
    } catch (const ca::SyntaxErrorException& exception) {
        std::u16string out;
        for (const ca::SyntaxError& error : exception.getErrors()) {
            const std::string place = std::to_string(error.line) + ":" + std::to_string(error.column) + "+" +
                                      std::to_string(error.length) + " ";
            out +=
                std::u16string(place.begin(), place.end()) + error.identifier + u": " + error.message + u'\n';
        }
        return out;
    }
}

std::u16string produceSketch(const std::u16string& text, const GoldenOptions&) {
    const std::string sketch = sketchSyntax(*parse(text)->getProgramFile());
    return {sketch.begin(), sketch.end()};
}

std::u16string produceErrors(const std::u16string& text, const GoldenOptions&) {
    return listErrors(text);
}

class SyntaxCase : public testing::TestWithParam<GoldenCase> {};
class SyntaxErrorCase : public testing::TestWithParam<GoldenCase> {};

TEST_P(SyntaxCase, HasItsTree) {
    expectClaims(GetParam().input);
    expectGolden(GetParam(), GetParam().results.front(), produceSketch);
}

TEST_P(SyntaxErrorCase, HasItsFaults) {
    expectGolden(GetParam(), GetParam().results.front(), produceErrors);
}

INSTANTIATE_TEST_SUITE_P(Golden, SyntaxCase, testing::ValuesIn(loadGoldenCases("syntax", produceSketch)),
                         getGoldenName);
INSTANTIATE_TEST_SUITE_P(Golden, SyntaxErrorCase,
                         testing::ValuesIn(loadGoldenCases("syntax-errors", produceErrors)), getGoldenName);

} // namespace

TEST(Syntax, ClaimsOfEveryExample) {
    for (const auto& [path, text] : readExamples()) {
        SCOPED_TRACE(path.string());
        expectClaims(text);
    }
}

/// Every short sequence of these pieces either parses, with claims that hold, or has errors in the text's
/// order.
TEST(Syntax, SequencesOfPieces) {
    const std::u16string_view pieces[] = {
        u"a",   u"(",       u")",    u"[",     u"]",   u"{",    u"}",   u",",     u";",         u"\n",
        u" ",   u"'",       u"-",    u"@",     u".b",  u"1",    u":",   u"=",     u"~",         u"if x",
        u"end", u"for i=1", u"else", u"...\n", u"a=b", u"%c\n", u"try", u"catch", u"function f"};
    const std::size_t count = std::size(pieces);
    std::size_t parsed = 0;
    for (std::size_t number = 0; number < count * count * count * 4; ++number) {
        const std::u16string_view heads[] = {u"", u"x = [a", u"switch a, case 1, ", u"function f\n"};
        std::u16string text(heads[number % 4]);
        for (std::size_t rest = number / 4, i = 0; i < 3; ++i, rest /= count) {
            text += pieces[rest % count];
        }
        try {
            const auto result = parse(text);
            ASSERT_EQ("", checkClaims(*result->getProgramFile(), ca::lexer::lex(text)))
                << showGoldenText(text);
            ++parsed;
        } catch (const ca::SyntaxErrorException& exception) {
            ASSERT_FALSE(exception.getErrors().empty());
        }
    }
    EXPECT_GT(parsed, 1000u);
}

TEST(Syntax, NestingIsLimitedAndChainsAreNot) {
    const std::size_t many = 100'000;
    const std::u16string tooDeep[] = {repeat(u"(", many),
                                      u"x = " + repeat(u"[", many),
                                      u"x = " + repeat(u"-", many) + u"1",
                                      u"x = a" + repeat(u"(1)", many),
                                      u"x = a" + repeat(u"'", many),
                                      u"x = " + repeat(u"@() ", many) + u"1",
                                      u"x = " + repeat(u"(1 || 2 + 3 * a(", 130),
                                      u"x = 1" + repeat(u":1", many),
                                      repeat(u"if a\n", many),
                                      repeat(u"if a, try\n", many),
                                      repeat(u"function f\n", many) + u"end"};
    const std::u16string endless[] = {u"x = a" + repeat(u" + 1", many),
                                      u"x = a" + repeat(u"^1", many),
                                      u"x = [1" + repeat(u" 1;", many) + u"];",
                                      u"if a\n" + repeat(u"elseif b\n", many) + u"end",
                                      repeat(u"(", 256) + u"1" + repeat(u")", 256),
                                      repeat(u"if a\n", 255) + u"(x)\n" + repeat(u"end\n", 255)};
    runOnSmallStack([&] {
        for (const std::u16string& text : tooDeep) {
            const std::u16string errors = listErrors(text);
            EXPECT_NE(std::u16string::npos, errors.find(u"NestingTooDeep"))
                << showGoldenText(text.substr(0, 20));
            EXPECT_EQ(1, std::count(errors.begin(), errors.end(), u'\n'))
                << showGoldenText(text.substr(0, 20));
        }
        for (const std::u16string& text : endless) {
            EXPECT_EQ(u"", listErrors(text).substr(0, 200));
        }
    });
    for (const std::u16string& text : endless) {
        expectClaims(text);
    }
}

TEST(Syntax, MessagesShowTheStartOfATokenOnOneLine) {
    const std::u16string name(29, u'n');
    const std::u16string unrecognized = u" UnrecognizedText: unrecognised text '";
    const std::u16string smile = u"\U0001F600";
    EXPECT_EQ(listErrors(u"\x01\x1B"), u"1:1+2" + unrecognized + u"\\u0001\\u001B'\n");
    EXPECT_EQ(listErrors(u"x = 1" + name + u"n"),
              u"1:6+30 MalformedNumber: a number can't be followed directly by '" + name + u"n'\n");
    EXPECT_EQ(listErrors(u"x = 1" + name + u"nn"),
              u"1:6+31 MalformedNumber: a number can't be followed directly by '" + name + u"n...'\n");
    EXPECT_EQ(listErrors(std::u16string(29, u'#') + smile),
              u"1:1+31" + unrecognized + std::u16string(29, u'#') + u"...'\n");
}

TEST(Syntax, StopsAtAHundredFaults) {
    try {
        parse(repeat(u"x = ;\n", 1000));
        FAIL();
    } catch (const ca::SyntaxErrorException& exception) {
        ASSERT_EQ(100u, exception.getErrors().size());
        EXPECT_EQ(100u, exception.getErrors().back().line);
    }
}

TEST(Syntax, NestedFunctionsAreThoseInsideFunctions) {
    const auto result = parse(u"classdef a\nmethods\nfunction f\nfunction g\nend\nx = 1;\nend\nend\nend\n");
    const auto& a =
        lf::astapi::as<lf::astapi::ClassDefinition>(*result->getProgramFile()->statements.front());
    const auto& methods = lf::astapi::as<lf::astapi::MethodsBlock>(*a.members.front());
    const auto& outer = lf::astapi::as<lf::astapi::MethodDefinition>(*methods.members.front());
    EXPECT_FALSE(ca::astapi::isNestedFunction(&outer));
    EXPECT_TRUE(ca::astapi::isNestedFunction(outer.body[0]));
    EXPECT_FALSE(ca::astapi::isNestedFunction(outer.body[1]));
    EXPECT_EQ(4, outer.body[0]->getLine());
    EXPECT_EQ(6, outer.body[1]->getLine());
}
