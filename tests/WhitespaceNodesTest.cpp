#include "tree/WhitespaceNodes.h"

#include "pass/FormatPass.h"
#include "support/TestConfig.h"
#include "support/TreeBuilder.h"

#include <ca/lexer/lex.h>

#include <gtest/gtest.h>

using namespace ca::formatting;
using ca::lexer::Token;
using Kind = FormattingConfig::ContainerKind;

namespace {

/// The items of a run as letters: E a line end, S a line start (B if its line is blank), W blanks, P a
/// separator, C a comment. One that should have a token and has none, or the reverse, gets a `!`.
std::string describeItems(const WhitespaceNode& run) {
    std::string text;
    for (const WhitespaceItem& item : run.getItems()) {
        const bool isStart = item.kind == WhitespaceItemKind::LineStartItem;
        text += isStart && item.isBlankLine ? 'B' : "ESWPC"[static_cast<std::size_t>(item.kind)];
        text += item.token || isStart ? "" : "!";
        text += item.token && isStart ? "w" : "";
    }
    return text;
}

struct Rendered {
    std::u16string text;
    std::uint64_t column;

    friend bool operator==(const Rendered&, const Rendered&) = default;
};

void PrintTo(const Rendered& rendered, std::ostream* stream) {
    *stream << std::string(rendered.text.begin(), rendered.text.end()) << "|" << rendered.column;
}

/// A gap of the given step behind `xy`, some levels deep, in a container of kind None.
struct Gap {
    Gap(const std::u16string& run, char step, std::size_t levels = 1) : builder(u"xy" + run) {
        auto children = builder.take("T");
        for (std::size_t i = 0; i < levels; ++i) {
            builder.enterLevel();
        }
        children.push_back(builder.take(std::string(1, step)).front());
        node = static_cast<WhitespaceNode*>(children.back());
        tree = builder.finish(builder.container(Kind::None, children));
    }

    Rendered render(const TestOptions& options) {
        FormatPass pass(tree, makeConfig(options));
        return {pass.run().substr(2), pass.getEndColumn(*node)};
    }

    TreeBuilder builder;
    WhitespaceNode* node;
    std::shared_ptr<FormatTree> tree;
};

struct RunCase {
    const char16_t* run;
    const char* items;
    Rendered plain;    ///< all off
    Rendered trimmed;  ///< trim
    Rendered indented; ///< indentation, width 4
};

const TestOptions trim{.trim = true};
const TestOptions indent{.indentation = true};
const TestOptions indentBlank{.indentation = true, .indentBlankLines = true};

} // namespace

TEST(WhitespaceNodes, ClassifyAndRenderRuns) {
    const RunCase cases[] = {
        {u"", "", {u"", 2}, {u"", 2}, {u"", 2}},
        {u" \t", "W", {u" \t", 4}, {u"", 2}, {u" \t", 4}},
        {u"\n", "ES", {u"\n", 0}, {u"\n", 0}, {u"\n    ", 4}},
        {u"\r\n  ", "ESw", {u"\n  ", 2}, {u"\n  ", 2}, {u"\n    ", 4}},
        {u" ;\n\n  ", "WPEBESw", {u" ;\n\n  ", 2}, {u";\n\n  ", 2}, {u" ;\n\n    ", 4}},
        {u"\n  \n", "EBwES", {u"\n  \n", 0}, {u"\n\n", 0}, {u"\n\n    ", 4}},
        {u"\n\n\n", "EBEBES", {u"\n\n\n", 0}, {u"\n\n\n", 0}, {u"\n\n\n    ", 4}},
        {u"\n;,", "ESPP", {u"\n;,", 2}, {u"\n;,", 2}, {u"\n    ;,", 6}},
        {u"\n ; ;", "ESwPWP", {u"\n ; ;", 4}, {u"\n ;;", 3}, {u"\n    ; ;", 7}},
        {u" % c\n", "WCES", {u" % c\n", 0}, {u"% c\n", 0}, {u" % c\n    ", 4}},
        {u"\n  % c\n", "ESCES", {u"\n  % c\n", 0}, {u"\n  % c\n", 0}, {u"\n      % c\n    ", 4}},
        {u" ... t\n  ", "WPWCESw", {u" ... t\n  ", 2}, {u"...t\n  ", 2}, {u" ... t\n    ", 4}},
        {u"\n%{\nb\n%}\n ",
         "ESCCCW",
         {u"\n%{\nb\n%}\n ", 9},
         {u"\n%{\nb\n%}\n", 8},
         {u"\n    %{\nb\n%}\n ", 13}},
    };
    for (const RunCase& expected : cases) {
        Gap gap(expected.run, 'L');
        SCOPED_TRACE(testing::PrintToString(Rendered{expected.run, 0}));
        EXPECT_EQ(describeItems(*gap.node), expected.items);
        EXPECT_EQ(gap.render({}), expected.plain);
        EXPECT_EQ(gap.render(trim), expected.trimmed);
        EXPECT_EQ(gap.render(indent), expected.indented);
    }
}

TEST(WhitespaceNodes, StartNoLineInFrontOfAFile) {
    TreeBuilder builder(u"  % c\n");
    const auto* run = static_cast<WhitespaceNode*>(builder.take("L").front());
    EXPECT_EQ(describeItems(*run), "CES");
}

TEST(WhitespaceNodes, CountARewrittenLineStartAsOneLevelHoweverDeepItIs) {
    EXPECT_EQ(Gap(u"\n", 'L', 0).render(indent), (Rendered{u"\n", 4}));
    EXPECT_EQ(Gap(u"\n", 'L', 2).render(indent), (Rendered{u"\n        ", 4}));
}

TEST(WhitespaceNodes, IndentBlankLinesOnRequest) {
    EXPECT_EQ(Gap(u"\n \n", 'L').render(indentBlank), (Rendered{u"\n    \n    ", 4}));
}

TEST(WhitespaceNodes, TakeTheSourceOrTheTrimmedTextWhereNoLineCanBreak) {
    EXPECT_EQ(Gap(u" \r\n ", 'N').render(indent), (Rendered{u" \r\n ", 4}));
    EXPECT_EQ(Gap(u" \r\n ", 'U').render({}), (Rendered{u" \r\n ", 1}));
    EXPECT_EQ(Gap(u" \n ", 'N').render(trim), (Rendered{u" ", 3}));
    EXPECT_EQ(Gap(u"", 'N').render(trim), (Rendered{u" ", 3}));
    EXPECT_EQ(Gap(u"", 'N').render({}), (Rendered{u"", 2}));
    EXPECT_EQ(Gap(u" \n ", 'U').render(trim), (Rendered{u"", 2}));
    EXPECT_EQ(Gap(u"% c\r\n", 'N').render({}), (Rendered{u"% c\n", 0}));
}

TEST(WhitespaceNodes, MeasureThemselvesOnOneLine) {
    const auto getWidth = [](const std::u16string& run, char step, const TestOptions& options) {
        return Gap(run, step).node->getInlineWidth(makeConfig(options));
    };
    EXPECT_EQ(getWidth(u" \t", 'N', {}), 2U);
    EXPECT_EQ(getWidth(u" \n", 'N', trim), 1U);
    EXPECT_EQ(getWidth(u" \n", 'N', {}), std::nullopt);
    EXPECT_EQ(getWidth(u" \n", 'U', trim), 0U);
    EXPECT_EQ(getWidth(u" ...", 'U', {}), 4U);
    EXPECT_EQ(getWidth(u" \n", 'L', {}), 2U);
    EXPECT_EQ(getWidth(u" \n", 'B', {}), 1U);
    EXPECT_EQ(getWidth(u"% c", 'U', trim), std::nullopt);
}
