// What the tree engine promises for every program under every option: the same program, the same comments,
// and a second run that changes nothing. Tried on the examples and on generated programs, under option sets
// that have every pair of option values together.

#include "entry/FormattingExplorerBridgeImpl.h"
#include "support/ExampleFiles.h"
#include "support/GoldenFile.h"
#include "support/ProgramGenerator.h"
#include "support/SyntaxSketch.h"

#include "format/EditAdoption.h"
#include "format/Escalation.h"
#include "format/Gap.h"
#include "format/GapEditor.h"
#include "format/GapEdits.h"
#include "format/SyntaxContext.h"
#include "format/TreeEngine.h"
#include "format/TreeSafetyCheck.h"
#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <iostream>
#include <set>

namespace {

using namespace ombrel;

const TreeFormatter bridge = [](const ca::formatting::TreeFormatRequest& request) {
    return FormattingExplorerBridgeImpl().formatParsed(request);
};

const std::vector<std::vector<std::string>> optionValues = {
    {R"("trimUnnecessaryWhitespace": true)", R"("trimUnnecessaryWhitespace": false)"},
    {R"("lineBreakingEnabled": true)", R"("lineBreakingEnabled": false)"},
    {R"("lineBreakBehavior": "AllowMultiplePerLine")", R"("lineBreakBehavior": "SeparateLines")",
     R"("lineBreakBehavior": "AllowSingleLine")"},
    {R"("columnLimit": 20)", R"("columnLimit": 40)", R"("columnLimit": 80)"},
    {R"("separatorPlacement": "StartOfLine")", R"("separatorPlacement": "EndOfLine")"},
    {R"("indentationEnabled": true)", R"("indentationEnabled": false)"},
    {R"("functionIndentStyle": "IndentAll")", R"("functionIndentStyle": "Classic")",
     R"("functionIndentStyle": "IndentNested")"},
    {R"("indentCaseBlocks": true)", R"("indentCaseBlocks": false)"},
    {R"("indentBlankLines": true)", R"("indentBlankLines": false)"},
    {R"("indentCharacter": "Space")", R"("indentCharacter": "Tab", "indentWidth": 1)"},
};

/// How many pairs of values of two options there are.
std::size_t countPairs() {
    std::size_t pairs = 0;
    std::size_t valuesBefore = 0;
    for (const auto& values : optionValues) {
        pairs += valuesBefore * values.size();
        valuesBefore += values.size();
    }
    return pairs;
}

/// Sets of one value for each option, so that each pair of values is in one of them: of some random sets, the
/// one with the most new pairs, again and again.
std::vector<std::vector<std::string>> makeOptionSets() {
    std::set<std::pair<std::string, std::string>> seen;
    std::vector<std::vector<std::string>> sets;
    std::uint32_t random = 1;
    for (std::size_t misses = 0; misses < 3;) {
        std::vector<std::string> best;
        std::set<std::pair<std::string, std::string>> bestPairs;
        for (int attempt = 0; attempt < 200; ++attempt) {
            std::vector<std::string> set;
            std::set<std::pair<std::string, std::string>> pairs;
            for (const auto& values : optionValues) {
                random = random * 1'664'525 + 1'013'904'223;
                const std::string& value = values[(random >> 16) % values.size()];
                for (const std::string& other : set) {
                    seen.contains({other, value}) ? void() : void(pairs.insert({other, value}));
                }
                set.push_back(value);
            }
            if (pairs.size() > bestPairs.size()) {
                best = set;
                bestPairs = pairs;
            }
        }
        misses += bestPairs.empty() ? 1 : 0;
        if (!bestPairs.empty()) {
            seen.merge(bestPairs);
            sets.push_back(best);
        }
    }
    EXPECT_EQ(seen.size(), countPairs());
    return sets;
}

std::string joinOptions(const std::vector<std::string>& set) {
    std::string json = R"({"formatting": {)";
    for (const std::string& option : set) {
        json += (json.ends_with('{') ? "" : ", ") + option;
    }
    return json + "}}";
}

struct Counts {
    std::size_t tried = 0;
    std::size_t repaired = 0;
    std::size_t kept = 0;
    std::size_t refused = 0;
};

std::string sketch(const std::u16string& text) {
    return sketchSyntax(*ca::createSingleFileAnalyzer()->parseSourceCode(text)->getProgramFile());
}

/// What the formatter makes of the text by itself.
std::u16string formatAlone(const std::u16string& text, const TreeOptions& options) {
    const auto result =
        bridge({ca::formatting::parseSource(text), options.config, ca::formatting::CommentLines::Aligned});
    return std::get<std::u16string>(result);
}

/// What the engine makes of the text or of some of its lines; fails if it refuses the text.
TreeResult format(const std::u16string& text, const TreeOptions& options,
                  std::vector<LineRange> ranges = {}) {
    auto outcome = formatTree(text, options, bridge, ranges);
    if (!outcome) {
        ADD_FAILURE() << outcome.error().front().line << ": " << outcome.error().front().text;
        return {};
    }
    return *std::move(outcome);
}

void checkWhole(const std::u16string& text, const TreeOptions& options, Counts& counts) {
    const TreeResult result = format(text, options);
    const std::u16string once = applyEdits(text, result.edits);
    ++counts.tried;
    counts.refused += testing::Test::HasFailure() ? 1 : 0;
    counts.kept += result.notes.empty() ? 0 : 1;
    counts.repaired += once == formatAlone(text, options) ? 0 : 1;
    EXPECT_EQ(sketch(text), sketch(once));
    EXPECT_EQ(showGoldenText(once), showGoldenText(applyEdits(once, format(once, options).edits)));
}

std::uint32_t countLines(std::u16string_view text) {
    std::uint32_t count = 0;
    for (LineSplitter lines(text); lines.getNext();) {
        ++count;
    }
    return count;
}

bool contains(const std::vector<Edit>& edits, const EditView& wanted) {
    return std::any_of(edits.begin(), edits.end(), [&](const Edit& edit) {
        return edit.offset == wanted.offset && edit.length == wanted.length && edit.text == wanted.text;
    });
}

/// The places of block comments, which are edited as a whole.
bool isInBlockComment(const std::u16string& text, std::size_t offset) {
    for (const ca::lexer::Token& token : ca::lexer::lex(text)) {
        if (offset < token.lexeme.size()) {
            return isLineOfBlock(token.type);
        }
        offset -= token.lexeme.size();
    }
    return false;
}

/// Whether a place is in a literal of a statement that starts at this line or before it. Its rows move with
/// the statement, so they stay if that isn't in the range.
bool isInLiteralSince(const std::u16string& text, std::size_t offset, std::uint32_t line) {
    const ParsedText source(text);
    const GapList gaps(text, source.getTokens());
    const SyntaxContext syntax(gaps, *source.parsed.analysis->getProgramFile());
    const std::size_t gap = gaps.find(offset);
    return syntax.getLiteral(gap) && findLine(text, gaps.getEnd(syntax.getUnit(gap))) <= line;
}

/// Formats the text in two parts. Each changes its own lines only, and nothing when it is formatted again;
/// both together come to the whole, but for edits that reach over the border.
void checkRanges(const std::u16string& text, std::uint32_t line, const TreeOptions& options) {
    const std::uint32_t count = countLines(text);
    const Edits whole = format(text, options).edits;
    std::vector<Edit> parts;
    for (const LineRange& range : {LineRange{1, line}, LineRange{line + 1, count}}) {
        if (range.first > range.last) {
            continue;
        }
        const Edits edits = format(text, options, {range}).edits;
        for (const EditView edit : edits) {
            EXPECT_TRUE(range.first <= findLine(text, edit.offset) &&
                        findLine(text, edit.offset + edit.length) <= range.last);
            parts.push_back(Edit(edit));
        }
        const std::u16string once = applyEdits(text, edits);
        const LineRange again{range.first, range.last + countLines(once) - count};
        if (again.first <= again.last) {
            EXPECT_EQ(showGoldenText(once),
                      showGoldenText(applyEdits(once, format(once, options, {again}).edits)));
        }
    }
    for (const EditView edit : whole) {
        const bool crosses =
            isInBlockComment(text, edit.offset) ||
            (findLine(text, edit.offset) <= line && findLine(text, edit.offset + edit.length) > line);
        EXPECT_TRUE(crosses || contains(parts, edit) || isInLiteralSince(text, edit.getEnd(), line))
            << edit.offset;
    }
}

/// Lists in which separators and comments come before a line start, which must not move with each run, and a
/// separator that takes the place of a continuation on the line before.
constexpr const char16_t* oddSeparators[] = {
    u"v=[;, % e\n1];\n",
    u"v={;,% e\n1;;2};\n",
    u"x = [1 % c\n, ...\n2];\n",
    u"x=[1,...\n% c\n2 3\n% o\n , ...\n 4];\n",
    u"x = [1, % a\n2, % b\n];\n",
    u"x ...\n;,f ...\n(1);\n",
    u"x=[1\t, ...\n% c\n  \n  2 % d\n3];\n",
};

std::vector<std::u16string> makePrograms(std::uint32_t count) {
    std::vector<std::u16string> programs;
    for (const ExampleFile& example : readExamples()) {
        programs.push_back(example.text);
    }
    for (const char16_t* list : oddSeparators) {
        programs.emplace_back(list);
    }
    for (std::uint32_t seed = 1; seed <= count; ++seed) {
        programs.push_back(generateProgram(seed));
    }
    return programs;
}

TEST(TreeEdits, KeepEveryProgramUnderAllPairsOfOptions) {
#ifdef __SANITIZE_THREAD__
    GTEST_SKIP() << "takes minutes on one thread, where the thread sanitizer has nothing to find";
#endif
    const std::vector<std::u16string> programs = makePrograms(60);
    Counts counts;
    std::uint32_t line = 0;
    for (const auto& set : makeOptionSets()) {
        const TreeOptions options = getTreeOptions(decodeLossy(joinOptions(set)));
        for (std::size_t i = 0; i < programs.size() && !HasFailure(); ++i) {
            SCOPED_TRACE(joinOptions(set) + "\n" + showGoldenText(programs[i]));
            checkWhole(programs[i], options, counts);
            checkRanges(programs[i], ++line % countLines(programs[i]) + 1, options);
        }
    }
    std::cout << "programs formatted: " << counts.tried << ", repaired: " << counts.repaired
              << ", with statements kept: " << counts.kept << ", refused: " << counts.refused << '\n';
    EXPECT_GT(counts.repaired, counts.tried / 4);
    EXPECT_EQ(counts.kept, 0u) << "a rule is missing";
}

/// The second run, in which nothing changes, is part of each row.
TEST(TreeEdits, MoveRowsWithTheirStatement) {
    struct Row {
        const char16_t* before;
        const char16_t* after;
        std::vector<LineRange> ranges;
    };
    const Row rows[] = {
        {u"if a\nx = [1\n  2\n\n{3\n4}];\nend\n",
         u"if a\n    x = [1\n      2\n\n    {3\n    4}];\nend\n",
         {}},
        {u"a\n      x = {1\n         2\n   3};\n", u"a\nx = {1\n   2\n3};\n", {}},
        {u"a\r\n\tx = {1\r\n\t  2\r\n 3};\r\n", u"a\r\nx = {1\r\n  2\r\n3};\r\n", {}},
        {u"a; x = [1\n2];\n", u"a; x = [1\n2];\n", {}},
        {u"a\n x = [1\n 2\n 3];\n", u"a\nx = [1\n2\n 3];\n", {LineRange{1, 3}}},   // the last row isn't in it
        {u"a\n x = [1\n 2\n 3];\n", u"a\n x = [1\n 2\n 3];\n", {LineRange{3, 4}}}, // the statement isn't
    };
    const TreeOptions options = getTreeOptions(uR"({"formatting": {"indentationEnabled": true}})");
    for (const Row& row : rows) {
        const std::u16string once = applyEdits(row.before, format(row.before, options, row.ranges).edits);
        EXPECT_EQ(showGoldenText(once), showGoldenText(row.after));
        EXPECT_EQ(applyEdits(once, format(once, options, row.ranges).edits), once);
    }
}

/// A formatter with a fault: what the bridge writes, with something else in its place.
TreeFormatter plant(std::u16string_view text, std::u16string_view fault) {
    return [=](const ca::formatting::TreeFormatRequest& request) -> ca::formatting::TreeFormatResult {
        auto result = std::get<std::u16string>(bridge(request));
        const std::size_t place = result.find(text);
        return place == result.npos ? result : result.replace(place, text.size(), fault);
    };
}

TEST(TreeEdits, AreNotMadeOfAFaultyText) {
    const std::u16string source = u"x = f(a, 'b  c'); % why\n%{\n d\n%}\nif a  b ;  end\n";
    const TreeOptions options = getTreeOptions(uR"({"formatting": {"trimUnnecessaryWhitespace": true}})");
    const std::pair<std::u16string_view, std::u16string_view> faults[] = {
        {u"f(a", u"(a"}, // a token is missing
        {u"a,'b  c'", u"'b  c',a"},
        {u"% why", u""},
        {u"% why", u"% what"},
        {u"%{\n d", u"%{\nd e"},
        {u"'b  c'", u"'b c'"}, // whitespace in a string
        {u"f(a", u"ff(a"},
        {u"end\n", u"end\nx"},
    };
    for (const auto& [text, fault] : faults) {
        const auto outcome = formatTree(source, options, plant(text, fault));
        ASSERT_FALSE(outcome) << showGoldenText(std::u16string(fault));
        EXPECT_EQ(outcome.error().front().code, Code::UnsafeResult);
    }
}

/// Where no rule helps: the statement keeps its text, and in the end its neighbours do.
TEST(TreeEdits, AreTakenBackStepByStep) {
    const std::u16string source = u"a = 1;\nb = [2\n3];\nc = 4;\n";
    const ParsedText parsed(source);
    const GapList gaps(source, parsed.getTokens());
    const auto alignment = GapAlignment::make(gaps, u"a=1;\n\nb= [ 2\n3];\n\nc=4;\n");
    ASSERT_TRUE(alignment);
    GapChoices choices(gaps, *alignment);
    const SyntaxContext syntax(gaps, *parsed.parsed.analysis->getProgramFile());
    const GapRuleInput input{gaps, syntax, true, true, [] { return nullptr; }};
    Escalation escalation(input, choices);
    const EditSelection all(source, {}, {});
    const std::pair<std::u16string, std::size_t> steps[] = {
        {u"a=1;\nb = [2\n3];\nc=4;\n", 0},
        {u"a=1;\nb = [2\n3];\nc=4;\n", 1},
        {u"a=1;\nb = [2\n3];\nc=4;\n", 1},
        {source, 3},
    };
    for (const auto& [text, keptCount] : steps) {
        EXPECT_TRUE(escalation.raise({source.find(u'2')}));
        EXPECT_EQ(showGoldenText(applyEdits(source, makeEdits(gaps, choices, all))), showGoldenText(text));
        EXPECT_EQ(escalation.getKeptLines().size(), keptCount);
    }
    EXPECT_EQ(escalation.getKeptLines()[1].last, 3u);
    EXPECT_FALSE(escalation.raise({source.find(u'2')}));
}

Edits makeGapEdits(const GapList& gaps, const std::vector<Edit>& edits) {
    GapEditor editor(gaps);
    for (const Edit& edit : edits) {
        editor.enter(gaps.find(edit.getEnd()));
        editor.add(edit);
    }
    return editor.take();
}

/// Faults that edits can't have: GapEditor makes none of them. And those that only the last check can find.
TEST(TreeEdits, AreCheckedAfterAll) {
    const std::u16string source = u"x = [1, 2; 3 4]; y = 'b  c'; % why\n";
    const ParsedText parsed(source);
    const GapList gaps(source, parsed.getTokens());
    const std::vector<Edit> impossible[] = {
        {{9, 1, u""}, {8, 1, u""}}, // in another order, the second in a token
        {{23, 2, u" "}},            // in a string
        {{30, 1, u"  "}},           // in a comment
        {{28, 2, u" "}},            // the comment's start
        {{6, 1, u"."}},
        {{34, 0, u"...."}},
    };
    for (const auto& edits : impossible) {
        EXPECT_THROW(makeGapEdits(gaps, edits), std::logic_error) << edits.front().offset;
    }
    const std::vector<Edit> faults[] = {
        {{9, 2, u" "}},             // the row's separator
        {{6, 1, u""}, {7, 1, u""}}, // an element's, shifted by one
        {{27, 1, u""}},             // the semicolon before the comment
        {{12, 1, u""}},             // a gap's text from another place: 34 is a number
        {{15, 2, u"..."}},          // what follows becomes a comment
    };
    for (const auto& wanted : faults) {
        const Edits edits = makeGapEdits(gaps, wanted);
        const auto differences = findDifferences(parsed, applyEdits(source, edits), edits);
        EXPECT_FALSE(differences.places.empty()) << edits.front().offset;
        EXPECT_TRUE(differences.first);
        EXPECT_FALSE(adoptEdits(source, wanted));
    }
    EXPECT_TRUE(findDifferences(parsed, source, {}).places.empty());
    EXPECT_EQ(applyEdits(source, adoptEdits(source, {{7, 1, u""}, {34, 0, u" "}}).value()),
              u"x = [1,2; 3 4]; y = 'b  c'; % why \n");
    EXPECT_FALSE(adoptEdits(u"x = [", {{5, 0, u"\n"}}));
    EXPECT_TRUE(adoptEdits(u"x = [ ", {{5, 1, u""}}));
}

} // namespace
