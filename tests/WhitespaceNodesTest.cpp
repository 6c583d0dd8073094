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

/// The items of a run as letters: E a line end, S a line start (B if its line is blank), W whitespace, P a
/// separator, C a comment. One that should have a token and has none, or the reverse, gets a `!`.
std::string describeItems(const WhitespaceNode& run) {
    std::string text;
    for (const WhitespaceItem& item : run.getItems()) {
        const bool isStart = item.kind == WhitespaceItemKind::LineStartItem;
        text += isStart && item.isBlankLine ? 'B' : "ESWPC"[static_cast<std::size_t>(item.kind)];
        text += item.token != nullptr || isStart ? "" : "!";
        text += item.token != nullptr && isStart ? "w" : "";
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

/// A gap of the given step after `xy`, some levels deep, in a container of kind None.
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

TEST(WhitespaceNodes, StartNoLineBeforeTheFirst) {
    TreeBuilder builder(u"  % c\n");
    EXPECT_EQ(describeItems(static_cast<const WhitespaceNode&>(*builder.take("L").front())), "CES");
}

TEST(WhitespaceNodes, CountARewrittenLineStartAsOneLevelHoweverDeepItIs) {
    EXPECT_EQ(Gap(u"\n", 'L', 0).render(indent), (Rendered{u"\n", 4}));
    EXPECT_EQ(Gap(u"\n", 'L', 2).render(indent), (Rendered{u"\n        ", 4}));
    EXPECT_EQ(Gap(u"\n \n", 'L').render(indentBlank), (Rendered{u"\n    \n    ", 4}));
}

/// Where no line can break, the text is the source's or one that is always the same, and no line start is
/// rewritten.
TEST(WhitespaceNodes, MeasureAndRenderWhereNoLineCanBreak) {
    struct Row {
        const char16_t* run;
        char step;
        TestOptions options;
        Rendered rendered;
        std::optional<std::uint64_t> width; ///< on one line
    };
    const std::optional<std::uint64_t> unknown;
    const Row rows[] = {
        {u" \r\n ", 'N', indent, {u" \r\n ", 4}, unknown},
        {u" \r\n ", 'U', {}, {u" \r\n ", 1}, unknown},
        {u" \n ", 'N', trim, {u" ", 3}, 1},
        {u" \n ", 'U', trim, {u"", 2}, 0},
        {u"", 'N', trim, {u" ", 3}, 1},
        {u"", 'N', {}, {u"", 2}, 0},
        {u" \t", 'N', {}, {u" \t", 4}, 2},
        {u" ...", 'U', {}, {u" ...", 6}, 4},
        {u"% c\r\n", 'N', {}, {u"% c\n", 0}, unknown},
        {u"% c", 'U', trim, {u"% c", 5}, unknown},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(testing::PrintToString(Rendered{row.run, 0}) + row.step);
        Gap gap(row.run, row.step);
        EXPECT_EQ(gap.render(row.options), row.rendered);
        EXPECT_EQ(gap.node->getInlineWidth(makeConfig(row.options)), row.width);
    }
    EXPECT_EQ(Gap(u" \n", 'L').node->getInlineWidth(makeConfig({})), 2U);
    EXPECT_EQ(Gap(u" \n", 'B').node->getInlineWidth(makeConfig({})), 1U);
    EXPECT_EQ(Gap(u" ...c", 'L').node->getOriginalWidth(), unknown);
    EXPECT_EQ(Gap(u" ;,", 'L').node->getOriginalWidth(), 3U);
}
