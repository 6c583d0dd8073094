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

/// A text of nested parts: as many of each as asked for.
struct Nest {
    std::u16string_view head, open, middle, close;

    std::u16string make(std::size_t levels) const {
        return std::u16string(head) + repeat(open, levels) + std::u16string(middle) + repeat(close, levels);
    }
};

TEST(Syntax, NestingIsLimitedToFiveHundredLevels) {
    const Nest nests[] = {
        {u"x = ", u"(", u"1", u")"},
        {u"x = ", u"[", u"1", u"]"},
        {u"x = ", u"{", u"1", u"}"},
        {u"x = ", u"1 || 2 + 3 * a(", u"1", u")"},
        {u"x = ", u"a{", u"1", u"}"},
        {u"x = ", u"a.(", u"b", u")"},
        {u"x = ", u"-", u"1", u""},
        {u"x = ", u"@() ", u"1", u""},
        {u"x = a", u"", u"", u"(1)"},
        {u"x = a", u"", u"", u"'"},
        {u"x = 1:1:1", u"", u"", u":1:1"},
        {u"", u"if a\n", u"", u"end\n"},
        {u"", u"if a\nelse\n", u"", u"end\n"},
        {u"", u"for i = 1\n", u"", u"end\n"},
        {u"", u"parfor i = 1\n", u"", u"end\n"},
        {u"", u"while a\n", u"", u"end\n"},
        {u"", u"switch a\ncase 1\n", u"", u"end\n"},
        {u"", u"try\ncatch\n", u"", u"end\n"},
        {u"", u"spmd\n", u"", u"end\n"},
        {u"", u"function f\n", u"", u"end\n"},
    };
    runOnSmallStack([&] {
        for (const Nest& nest : nests) {
            EXPECT_EQ(u"", listErrors(nest.make(500)).substr(0, 200)) << showGoldenText(nest.make(1));
            for (const std::size_t levels : {501, 60'000}) {
                const std::u16string errors = listErrors(nest.make(levels));
                EXPECT_NE(errors.npos, errors.find(u"NestingTooDeep")) << showGoldenText(nest.make(1));
                EXPECT_EQ(1, std::count(errors.begin(), errors.end(), u'\n')) << showGoldenText(nest.make(1));
            }
        }
        for (const char16_t* keyword :
             {u"if", u"for", u"parfor", u"while", u"switch", u"try", u"spmd", u"function", u"classdef",
              u"classdef a\nmethods\nfunction f", u"classdef a\nproperties", u"function f\narguments",
              u"else", u"case", u"catch", u"end"}) {
            EXPECT_NE(u"", listErrors(repeat(std::u16string(keyword) + u'\n', 60'000)));
        }
    });
    expectClaims(nests[3].make(100));
    expectClaims(nests[12].make(100));
}

TEST(Syntax, ChainsHaveNoLimit) {
    const std::size_t many = 100'000;
    const std::u16string chains[] = {u"x = a" + repeat(u" + 1", many), u"x = a" + repeat(u"^1", many),
                                     u"x = [1" + repeat(u" 1;", many) + u"];",
                                     u"if a\n" + repeat(u"elseif b\n", many) + u"end"};
    for (const std::u16string& text : chains) {
        runOnSmallStack([&] { EXPECT_EQ(u"", listErrors(text).substr(0, 200)); });
        expectClaims(text);
    }
}

TEST(Syntax, MessagesShowTheStartOfATokenOnOneLine) {
    const std::u16string name(29, u'n');
    const std::u16string unrecognized = u" UnrecognizedText: unrecognised text '";
    const std::u16string smile = u"\U0001F600";
    EXPECT_EQ(listErrors(u"x ="),
              u"1:4+0 UnexpectedText: expected an expression before the end of the file\n");
    EXPECT_EQ(listErrors(u"\x01\x1B"), u"1:1+2" + unrecognized + u"\\u0001\\u001B'\n");
    EXPECT_EQ(listErrors(u"x = 1" + name + u"n"),
              u"1:6+30 MalformedNumber: a number can't be followed directly by '" + name + u"n'\n");
    EXPECT_EQ(listErrors(u"x = 1" + name + u"nn"),
              u"1:6+31 MalformedNumber: a number can't be followed directly by '" + name + u"n...'\n");
    EXPECT_EQ(listErrors(std::u16string(29, u'#') + smile),
              u"1:1+31" + unrecognized + std::u16string(29, u'#') + u"...'\n");
}

TEST(Syntax, StopsAtAHundredFaults) {
    const std::u16string faults = listErrors(repeat(u"x = ;\n", 1000));
    EXPECT_EQ(100, std::count(faults.begin(), faults.end(), u'\n'));
    EXPECT_NE(faults.npos, faults.find(u"100:5+1"));
    const std::u16string slips = listErrors(repeat(u"f(a,\nb)\n", 1000));
    EXPECT_EQ(100, std::count(slips.begin(), slips.end(), u'\n'));
    EXPECT_NE(slips.npos,
              slips.find(u"99:2+1 UnclosedBracket: '(' is not closed on its line; did you forget"));
}
