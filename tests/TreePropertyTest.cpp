// What holds for every program, tried on the examples and on generated programs, and what no program may do
// to stack and time.

#include "support/DeepInput.h"
#include "support/ExampleFiles.h"
#include "support/GoldenFile.h"
#include "support/ProgramGenerator.h"
#include "support/SyntaxSketch.h"
#include "support/TreeFormatting.h"
#include "support/TreeProperties.h"

#include <ca/Analyzer.h>
#include <tree/FormatTree.h>

#include <gtest/gtest.h>

#include <regex>
#include <set>

namespace {

std::string sketch(const std::u16string& text) {
    return sketchSyntax(*ca::createSingleFileAnalyzer()->parseSourceCode(text)->getProgramFile());
}

/// As `sketch`, but tells too when the text doesn't parse.
std::string tryToSketch(const std::u16string& text) {
    try {
        return sketch(text);
    } catch (const ca::SyntaxErrorException& exception) {
        const ca::SyntaxError& error = exception.getErrors().front();
        return std::to_string(error.line) + ": " + std::string(error.message.begin(), error.message.end());
    }
}

/// Option sets as a golden file writes them, without trimming and with it.
std::vector<GoldenOptions> makeOptionSets(bool trim) {
    std::vector<GoldenOptions> sets = {
        {{"indentationEnabled", "true"}, {"functionIndentStyle", "Classic"}, {"indentBlankLines", "true"}},
        {{"indentationEnabled", "true"},
         {"functionIndentStyle", "IndentNested"},
         {"indentCaseBlocks", "false"}},
        {{"lineBreakingEnabled", "true"},
         {"lineBreakBehavior", "SeparateLines"},
         {"indentationEnabled", "true"}},
        {{"lineBreakingEnabled", "true"}, {"lineBreakBehavior", "AllowSingleLine"}, {"columnLimit", "30"}},
        {{"lineBreakingEnabled", "true"}, {"columnLimit", "20"}, {"separatorPlacement", "EndOfLine"}},
        {{"lineBreakingEnabled", "true"}, {"columnLimit", "40"}, {"indentationEnabled", "true"}},
    };
    for (GoldenOptions& options : sets) {
        options["trimUnnecessaryWhitespace"] = trim ? "true" : "false";
    }
    return sets;
}

std::u16string prepareAndFormat(const std::u16string& text, const TestOptions& options) {
    return formatText(prepareText(text, options), options);
}

/// Without the space before `}` that only the first run leaves, where it trims `{1;}`.
std::u16string withoutBlankInCells(std::u16string text) {
    for (std::size_t at = text.find(u" }"); at != text.npos; at = text.find(u" }", at)) {
        text.erase(at, 1);
    }
    return text;
}

/// Without trimming a program stays the program it was, unless lines are joined after a shell line.
void checkWithoutTrimming(const std::u16string& text, const TestOptions& options) {
    const std::u16string once = prepareAndFormat(text, options);
    if (options.lineBreaking && text.find(u'!') != text.npos) {
        return;
    }
    ASSERT_EQ(sketch(text), tryToSketch(once));
    ASSERT_EQ(showGoldenText(once), showGoldenText(prepareAndFormat(once, options))) << "in the second run";
}

/// Trimming may turn a program into another. Where it doesn't, a second run changes nothing. Tells whether it
/// didn't.
bool checkTrimming(const std::u16string& text, const TestOptions& options) {
    const std::u16string once = prepareAndFormat(text, options);
    if (sketch(text) != tryToSketch(once)) {
        return false;
    }
    EXPECT_EQ(showGoldenText(withoutBlankInCells(once)),
              showGoldenText(withoutBlankInCells(prepareAndFormat(once, options))))
        << "in the second run";
    return true;
}

/// Gives the number of option sets under which trimming kept the program.
std::size_t checkProgram(const std::u16string& text) {
    for (const GoldenOptions& set : makeOptionSets(false)) {
        const TestOptions options = readTreeOptions(set);
        checkWithoutTrimming(text, options);
    }
    std::size_t kept = 0;
    for (const GoldenOptions& set : makeOptionSets(true)) {
        const TestOptions options = readTreeOptions(set);
        EXPECT_EQ(findTreeFault(text, options), "");
        kept += checkTrimming(text, options) ? 1 : 0;
    }
    return kept;
}

} // namespace

TEST(TreeFormatter, KeepsItsPropertiesOnAllExamples) {
    for (const auto& [path, text] : readExamples()) {
        SCOPED_TRACE(path.string());
        checkProgram(text);
    }
}

TEST(TreeFormatter, KeepsItsPropertiesOnGeneratedPrograms) {
    std::size_t kept = 0;
    for (std::uint32_t seed = 1; seed <= 120 && !testing::Test::HasFailure(); ++seed) {
        const std::u16string text = generateProgram(seed);
        SCOPED_TRACE("seed " + std::to_string(seed) + "\n" + showGoldenText(text));
        ASSERT_NO_THROW(kept += checkProgram(text)) << tryToSketch(text);
    }
    EXPECT_GT(kept, 300u) << "trimming is hardly tried";
}

/// The golden cases have every kind of node that the parser delivers, but for names and the root.
TEST(TreeFormatter, CoversEveryKindOfNode) {
    std::string sketches;
    for (const GoldenFile& file :
         readGoldenFolder(std::filesystem::path(OMBREL_SOURCE_DIR) / "tests/golden/tree")) {
        for (const GoldenCase& golden : file.cases) {
            sketches += sketch(golden.input);
        }
    }
    const std::set<int> never = {7, 24, 25, 26, 37, 55, 65};
    for (int number = 1; number <= 66; ++number) {
        const std::string name = lf::astapi::getNodeKindName(static_cast<lf::astapi::NodeKind>(number));
        EXPECT_EQ(std::regex_search(sketches, std::regex("\\b" + name + "\\b")), !never.contains(number))
            << name;
    }
}

TEST(TreeFormatter, FormatsLongChainsAndRefusesDeepNesting) {
#ifdef NDEBUG
    const std::size_t many = 100'000;
#else
    const std::size_t many = 20'000; // enough to overflow the small stack, and quick under sanitizers
#endif
    const std::u16string tooDeep[] = {
        u"x = a" + repeat(u"(1)", many),        u"x = a" + repeat(u"'", many),
        u"x = " + repeat(u"-", many) + u"a",    u"x = " + repeat(u"[", many) + repeat(u"]", many),
        u"x = " + repeat(u"@() ", many) + u"1", u"x = a" + repeat(u"'^a", many)};
    const std::u16string endless[] = {u"x = a" + repeat(u".b", many),
                                      u"x = a" + repeat(u" + 1", many),
                                      u"x = a" + repeat(u"&&b||c", many),
                                      u"x = [1" + repeat(u", 1", many) + u"];",
                                      u"x = {1" + repeat(u"\n1", many) + u"};",
                                      u"f(1" + repeat(u", x", many) + u");",
                                      u"if a\n" + repeat(u"elseif b\nc\n", many) + u"end",
                                      u"switch a\n" + repeat(u"case b\nc;\n", many) + u"end",
                                      u"try\n" + repeat(u"x = 1;\n", many) + u"end",
                                      u"x" + repeat(u"\n% c", many),
                                      u"x = 1" + repeat(u" ...\n", many) + u" + 2",
                                      u"global a" + repeat(u" a", many),
                                      repeat(u"function f\nx\n", many),
                                      repeat(u"if a\n", 255) + u"(x)\n" + repeat(u"end\n", 255),
                                      u"x = " + repeat(u"1 || 2 && 3 | 4 & 5 == 6:7 + 8 * (", 500) + u"1" +
                                          repeat(u")", 500),
                                      u"x = " + repeat(u"a(x=[", 250) + u"1" + repeat(u"])", 250),
                                      u"x = " + repeat(u"@() -a{", 166) + u"1" + repeat(u"}", 166)};
    TestOptions options{.indentation = true, .lineBreaking = true, .columnLimit = 40};
    options.lineBreakBehavior = ca::formatting::FormattingConfig::LineBreakBehavior::AllowMultiplePerLine;
    runOnSmallStack([&] {
        for (const std::u16string& text : tooDeep) {
            EXPECT_THROW(formatText(text, options), ca::SyntaxErrorException)
                << showGoldenText(text.substr(0, 20));
        }
        for (const std::u16string& text : endless) {
            EXPECT_FALSE(formatText(text, options).empty()) << showGoldenText(text.substr(0, 20));
        }
        const ca::formatting::FormatTree deepest(u"x = " + repeat(u"(", 500) + u"1" + repeat(u")", 500));
        EXPECT_GT(deepest.dumpTextTree().size(), 500U * 500U);
    });
}
