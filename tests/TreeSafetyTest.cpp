#include "entry/FormattingExplorerBridgeImpl.h"
#include "support/GoldenSuite.h"
#include "support/HostCalls.h"
#include "support/ProgramRun.h"
#include "support/TreeFormatting.h"

#include "format/TreeEngine.h"
#include "format/TreeSafetyCheck.h"
#include "text/TextEncoding.h"

#include <gtest/gtest.h>
#include <resource_core/caConfig.h>

// The golden files of tree-meaning are the list of what the tree formatter's rules do to a program's meaning:
// each case has the difference that the check names in the formatter's own text, and what the engine makes of
// the text instead.

namespace {

using namespace ca::formatting;
using namespace ombrel;

constexpr std::string_view notice = "; nothing was written";

/// "line:column what the formatter would do".
std::string show(const Problem& problem) {
    const std::string text = problem.text.substr(0, problem.text.size() - notice.size());
    return std::to_string(problem.line) + ":" + std::to_string(problem.column) + " " + text;
}

std::u16string toText(const std::string& ascii) {
    return {ascii.begin(), ascii.end()};
}

/// The engine with a formatter that takes its options from here. A formatter that breaks no lines is asked
/// for by another configuration, whatever there is in it.
std::u16string format(const std::u16string& text, const TestOptions& options) {
    static const TreeOptions configs = getTreeOptions(uR"({"formatting": {"lineBreakingEnabled": true}})");
    const auto formatter = [&](const TreeFormatRequest& request) {
        TestOptions asked = options;
        asked.lineBreaking = options.lineBreaking && request.config == configs.config;
        return formatParsed(request, asked);
    };
    const auto outcome = formatTree(text, {configs.config, configs.unbrokenConfig, options.trim}, formatter);
    if (!outcome) {
        return toText(outcome.error().front().text);
    }
    return outcome->notes.empty() ? applyEdits(text, outcome->edits) : u"a statement was kept";
}

/// What the formatter's own text is to the program, and the text that the engine makes.
std::u16string repair(const std::u16string& input, const GoldenOptions& options) {
    const TestOptions config = readTreeOptions(options);
    const auto problem = checkSameProgram(ParsedText(input), formatText(input, config));
    const std::string difference = problem ? show(*problem) : "the same program";
    return toText(difference) + u"\n" + format(input, config);
}

class MeaningCase : public testing::TestWithParam<GoldenCase> {};

TEST_P(MeaningCase, IsRepaired) {
    for (const GoldenResult& wanted : GetParam().results) {
        expectGolden(GetParam(), wanted, repair);
        const std::u16string text = wanted.text.substr(wanted.text.find(u'\n') + 1);
        EXPECT_NE(wanted.text, u"the same program\n" + text);
        EXPECT_EQ(showGoldenText(format(text, readTreeOptions(wanted.options))), showGoldenText(text));
    }
}

INSTANTIATE_TEST_SUITE_P(Golden, MeaningCase, testing::ValuesIn(loadGoldenCases("tree-meaning", repair)),
                         getGoldenName);

/// The difference that the check finds, empty if there is none.
std::string compare(const std::u16string& before, const std::u16string& after) {
    const auto problem = checkSameProgram(ParsedText(before), after);
    return problem ? show(*problem) : std::string();
}

struct Row {
    const char16_t* before;
    const char16_t* after;
    const char* difference;
};

TEST(TreeSafetyCheck, AllowsOtherBlanksLineEndsAndSeparatorsOfNoMeaning) {
    const Row rows[] = {
        {u"", u"\n\n", ""},
        {u"a;\r\n  b = 1 ; % c  \r\n", u"a;b=1;% c", ""},
        {u"if a, b;, end", u";if a\n b;\nend;", ""},
        {u"x = [1, 2\n3 4];", u"x = [ 1 2; ...\n3, 4 ];", ""},
        {u"a + ... why\n b", u"a+...why\nb", ""},
        {u"a % b\n  % c\n", u"a\n% b\n% c", ""},
        {u"  %{\n a\n  %}\nb", u"%{\r\na\r\n%}\r\nb", ""},
        {u"function f, x, function g, y", u"function f\nx\nfunction g\ny", ""},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(compare(row.before, row.after), row.difference);
    }
}

TEST(TreeSafetyCheck, NamesTheFirstDifferenceAtItsPlaceInTheSource) {
    const Row rows[] = {
        // tokens
        {u"a\nb", u"a", "2:1 the formatter would turn 'b' into the end of the text"},
        {u"x = 1.0;", u"x = 1.;", "1:5 the formatter would turn '1.0' into '1.'"},
        {u"function f\nend", u"function f", "2:1 the formatter would turn 'end' into the end of the text"},
        {u"hold  on", u"hold of", "1:7 the formatter would turn 'on' into 'of'"},
        {u"classdef A\nproperties\np@b.c\nend\nend", u"classdef A\nproperties\np@b.d\nend\nend",
         "3:5 the formatter would turn 'c' into 'd'"},
        // comments
        {u"a\n\t% b\nc", u"a\nc", "2:2 the formatter would turn '% b' into 'c'"},
        {u"a % b\n% c", u"a % c\n% b", "1:3 the formatter would turn '% b' into '% c'"},
        {u"a % b\nc", u"a % b c", "1:3 the formatter would turn '% b' into '% b c'"},
        {u"a % b\nc", u"a\nc % b", "1:3 the formatter would turn '% b' into 'c'"},
        {u"%{\na\n%}", u"% {\n% a\n% }", "1:1 the formatter would turn '%{' into '% {'"},
        {u"%{\na\n%}", u"x %{\n% a\n%}", "1:1 the formatter would turn '%{' into 'x'"},
        {u"a + ... % b\nc", u"a + c % b", "1:9 the formatter would turn '% b' into 'c'"},
        // the tree alone
        {u"a;\nb;", u"a;\nb",
         "2:1 the formatter would turn this expression statement into a printing statement"},
        {u"a\nb;", u"a;\nb;",
         "1:1 the formatter would turn this printing statement into an expression statement"},
        {u"if a, b, end", u"if (a), b, end", "1:4 the formatter would turn 'a' into '('"},
        {u"a - b", u"a -b", "1:1 the formatter would turn this expression statement into a command syntax"},
        {u"x = [1 2 3];", u"x = [1 2; 3];",
         "1:10 the formatter would take this number literal out of its matrix row"},
        {u"x = [1; 2];", u"x = [1 2];",
         "1:9 the formatter would put this number literal into the matrix row before it"},
        {u"x = [;1];", u"x = [,1];", "1:7 the formatter would change this separator"},
        {u"x = {a {1}};", u"x = {a{1}};",
         "1:6 the formatter would turn this identifier into a brace indexing"},
        {u"if a\nb, end", u"if a b, end\n", ""},
        {u"try, a, catch\nb\nend", u"try, a, catch b\nend",
         "2:1 the formatter would put this identifier into the catch block before it"},
        // what doesn't parse
        {u"x = [1\n2];", u"x = (1\n2);", "1:5 the formatter would turn '[' into '('"},
        {u"f(a, b)", u"f(a; b)", "1:6 the formatter would make a text that doesn't parse here: "},
    };
    for (const Row& row : rows) {
        const std::string difference = compare(row.before, row.after);
        EXPECT_EQ(difference.substr(0, std::string(row.difference).size()), row.difference);
        EXPECT_EQ(difference.empty(), *row.difference == '\0') << difference;
    }
}

TEST(TreeSafetyCheck, ShowsLongAndUnprintableLexemesOnOneLine) {
    const std::u16string longName(100, u'a');
    EXPECT_EQ(compare(longName, u"b"),
              "1:1 the formatter would turn '" + std::string(40, 'a') + "...' into 'b'");
    EXPECT_EQ(compare(u"% a\u0007", u"% b"), "1:1 the formatter would turn '% a\\u0007' into '% b'");
}

/// Chains have no limit, and each operand is one level of the tree deeper.
TEST(TreeSafetyCheck, TakesNoStackForDeepTrees) {
    std::u16string chain = u"x = 1";
    for (int i = 0; i < 50'000; ++i) {
        chain += u" + 1";
    }
    EXPECT_EQ(compare(chain + u" - 1;", chain + u" - 1 ;"), "");
    EXPECT_EQ(compare(chain + u";", chain),
              "1:1 the formatter would turn this assignment into a printing statement");
}

/// A formatter that changes nothing.
TreeFormatResult echo(const TreeFormatRequest& request) {
    Tokens tokens;
    request.reader->read(SIZE_MAX, tokens);
    std::u16string text;
    for (const ca::lexer::Token& token : tokens) {
        text += token.lexeme;
    }
    return text;
}

Problems getProblems(const std::u16string& text, const TreeFormatter& formatter) {
    auto outcome = formatTree(text, {}, formatter);
    return outcome ? Problems() : outcome.error();
}

TEST(TreeEngine, ReportsWhatKeepsATextFromBeingFormatted) {
    EXPECT_TRUE(getProblems(u"a;\r%{\rb\r%}\r\n!ls", echo).empty());

    const auto errors = getProblems(u"x = ;\r\nif a\n", echo);
    ASSERT_EQ(errors.size(), 2u);
    EXPECT_EQ(errors[0].code, Code::UnexpectedText);
    EXPECT_EQ(errors[0].line, 1u);
    EXPECT_EQ(errors[0].column, 5u);
    EXPECT_EQ(errors[1].line, 3u);

    const auto unsafe = getProblems(u"a;", [](const auto&) { return u"b;"; });
    ASSERT_EQ(unsafe.size(), 1u);
    EXPECT_EQ(unsafe[0].code, Code::UnsafeResult);

    const auto failed = getProblems(
        u"a;", [](const auto&) -> std::u16string { throw std::out_of_range("unordered_map::at"); });
    ASSERT_EQ(failed.size(), 1u);
    EXPECT_EQ(failed[0].code, Code::InternalError);
    EXPECT_EQ(failed[0].text, "the tree formatter failed: unordered_map::at");
}

TEST(TreeEngine, KeepsLineEndsAndGivesNewOnesThoseBefore) {
    const TestOptions all{.indentation = true, .lineBreaking = true};
    for (const std::u16string end : {u"\n", u"\r\n", u"\r"}) {
        const std::u16string text = u"a" + end + u"%{" + end + u"b" + end + u"%}" + end;
        EXPECT_EQ(format(text, all), text);
        EXPECT_EQ(format(u"if a, b, end" + end, all), u"if a" + end + u"    b" + end + u"end" + end);
    }
    const TestOptions trimming{.trim = true, .indentation = true};
    struct Row {
        const char16_t* before;
        TestOptions options;
        const char16_t* after;
    };
    const Row rows[] = {
        {u"", all, u""},
        {u"if a, b, end", all, u"if a\n    b\nend"},
        {u"a\r\nif b, c, end\n\rd", all, u"a\r\nif b\r\n    c\r\nend\n\rd"},
        {u"if a\r\nb\rend\n", all, u"if a\r\n    b\rend\n"},
        {u"f(1,...\r\n2)\n", trimming, u"f(1,2)\n"},
        {u"if a\r   \nx\nend", trimming, u"if a\r   \n    x\nend"}, // two line ends, not a CRLF
    };
    for (const Row& row : rows) {
        EXPECT_EQ(showGoldenText(format(row.before, row.options)), showGoldenText(row.after));
        EXPECT_EQ(showGoldenText(format(row.after, row.options)), showGoldenText(row.after));
    }
}

struct CommentRow {
    const char16_t* before;
    const char16_t* after;
};

TEST(TreeEngine, PutsCommentsAtTheirLevelOnce) {
    const CommentRow rows[] = {
        {u"  % a\nif a\n% b\n      % c\n  x % d\n% e\nend\n",
         u"% a\nif a\n    % b\n    % c\n    x % d\n% e\nend\n"},
        // the lines of a block comment go along, blank ones and those further left don't
        {u"if a\n  %{\n  b\n    c\n\nd\n  %{\n  %}\n  %}\n\n  x\nend\n",
         u"if a\n    %{\n    b\n      c\n\nd\n    %{\n    %}\n    %}\n\n    x\nend\n"},
        {u"      %{\n      b\n\t%}\nx\n", u"%{\nb\n\t%}\nx\n"},
        // what follows a block comment directly isn't indented by the formatter: comments get help
        {u"if a\n%{\n%}\n% b\n% c\nx\nend\n", u"if a\n    %{\n    %}\n    % b\n    % c\n    x\nend\n"},
        {u"if a\n%{\n%}\n  %{\n  b\n  %}\n\nx\nend\n",
         u"if a\n    %{\n    %}\n    %{\n    b\n    %}\n\n    x\nend\n"},
        {u"y = [1\n%{\nb\n%}\n2];\n", u"y = [1\n%{\nb\n%}\n2];\n"},
    };
    const TestOptions indenting{.indentation = true};
    for (const CommentRow& row : rows) {
        EXPECT_EQ(showGoldenText(format(row.before, indenting)), showGoldenText(row.after));
        EXPECT_EQ(showGoldenText(format(row.after, indenting)), showGoldenText(row.after));
    }
    EXPECT_EQ(format(rows[0].before, {}), rows[0].before);
}

/// Breaking lines counts the characters of a comment, so the ones of a block comment have to be in their
/// place before that.
TEST(TreeEngine, BreaksLinesAfterABlockCommentInTheSameWayTwice) {
    const TestOptions filling{.indentation = true, .lineBreaking = true, .columnLimit = 30};
    for (int length = 0; length < 20; ++length) {
        const std::u16string comment(static_cast<std::size_t>(length), u'c');
        const std::u16string once = format(u"if a\n\n%{\n" + comment + u"\n%}\n;b < c\nend\n", filling);
        EXPECT_EQ(showGoldenText(once), showGoldenText(format(once, filling)));
    }
}

TEST(TreeEngine, ReportsTheReasonsThatTheFormatterGives) {
    const ca::config::ConfigIssue issue(std::make_shared<CodeAnalyzer::caConfig::PlaceholderError>(u"why"),
                                        ca::config::Severity::Error, {}, {}, {});
    const auto refused = getProblems(u"", [&](const auto&) { return std::vector{issue}; });
    ASSERT_EQ(refused.size(), 1u);
    EXPECT_EQ(refused[0].code, Code::RefusedOptions);
    EXPECT_EQ(refused[0].text, "the tree formatter doesn't take these options: why");

    const ca::SyntaxError error{u"Identifier", u"message", 1, 2, 0};
    const auto broken = getProblems(u"a", [&](const auto&) { return std::vector{error}; });
    ASSERT_EQ(broken.size(), 1u);
    EXPECT_EQ(broken[0].code, Code::SyntaxError);
    EXPECT_EQ(broken[0].text, "message");
}

TEST(TreeEngine, ReadsEqualOptionsOnce) {
    EXPECT_EQ(getTreeOptions(u"{}").config, getTreeOptions(u"{}").config);
    EXPECT_NE(getTreeOptions(u"{}").config, getTreeOptions(u"{ }").config);
}

/// Source and result, once each, whatever the text holds.
TEST(TreeEngine, ParsesTwiceAndTokenizesNothingElse) {
    const std::u16string text = u"if a\n%{\nb\n%}\n% c\nx=1;\nend\n";
    const TreeFormatter formatter = [](const TreeFormatRequest& request) {
        return FormattingExplorerBridgeImpl().formatParsed(request);
    };
    const TreeOptions options = getTreeOptions(uR"({"formatting": {"indentationEnabled": true}})");
    resetHostCalls();
    const auto outcome = formatTree(text, options, formatter);
    EXPECT_EQ(getHostCalls().parsed, 2u);
    EXPECT_EQ(getHostCalls().tokenized, 0u);
    EXPECT_EQ(applyEdits(text, outcome.value().edits),
              u"if a\n    %{\n    b\n    %}\n    % c\n    x=1;\nend\n");
}

TEST(LineEngine, TokenizesOnceAndParsesNothing) {
    resetHostCalls();
    EXPECT_EQ(runProgram({"--engine", "line"}, "if a\nx\nend\n").out, "if a\n    x\nend\n");
    EXPECT_EQ(getHostCalls().parsed, 0u);
    EXPECT_EQ(getHostCalls().tokenized, 1u);
}

} // namespace
