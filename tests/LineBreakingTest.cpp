#include "pass/FormatPass.h"
#include "support/TestConfig.h"
#include "support/TreeBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <sstream>

using namespace ca::formatting;
using Behavior = FormattingConfig::LineBreakBehavior;
using Kind = FormattingConfig::ContainerKind;
using Placement = FormattingConfig::SeparatorPlacement;

namespace {

TestOptions makeOptions(Behavior behavior, std::uint32_t limit, Placement placement = {}) {
    return {.lineBreaking = true,
            .columnLimit = limit,
            .lineBreakBehavior = behavior,
            .separatorPlacement = placement};
}

/// `text`, a chain of operators and operands, one level deep and of the given kind.
std::shared_ptr<FormatTree> makeChain(const std::u16string& text, Kind kind, std::size_t operators) {
    TreeBuilder builder(text);
    builder.enterLevel();
    std::string steps = "T";
    for (std::size_t i = 0; i < operators; ++i) {
        steps += "BTAT";
    }
    return builder.finish(builder.container(kind, steps));
}

std::u16string formatChain(const std::u16string& text, std::size_t operators, const TestOptions& options,
                           Kind kind = Kind::PlusMinus) {
    return formatTree(makeChain(text, kind, operators), makeConfig(options));
}

/// Items in a container of one kind, of some widths and with line separators between some of them. Width 0
/// stands for an item whose width can't be told.
struct Items {
    std::vector<std::size_t> widths;
    unsigned separators; ///< bit i: a separator stands in front of item i

    bool hasSeparator(std::size_t i) const { return (separators >> i & 1) != 0; }
};

/// The gaps of a formatted tree of items: which separators were broken, and the text.
struct Filled {
    std::vector<WhitespaceDecision> decisions; ///< by item; Preserve where no separator stands
    std::u16string text;
};

Filled fill(const Items& items, const TestOptions& options) {
    std::vector<ca::lexer::Token> tokens;
    std::string steps;
    const auto addItem = [&](std::size_t width) {
        const auto type = width == 0 ? ca::lexer::TokenType::Unmeasured33 : ca::lexer::TokenType::NameToken27;
        tokens.push_back({type, std::u16string(std::max<std::size_t>(width, 1), u'x'), 1, 1});
    };
    for (std::size_t i = 0; i < items.widths.size(); ++i) {
        steps += items.hasSeparator(i) ? "LT" : "T";
        addItem(items.widths[i]);
    }
    TreeBuilder builder(std::move(tokens));
    const auto children = [&] {
        auto lead = builder.take(steps.substr(0, 1));
        builder.enterLevel();
        const auto rest = builder.take(steps.substr(1));
        lead.insert(lead.end(), rest.begin(), rest.end());
        return lead;
    }();
    FormatPass pass(builder.finish(builder.container(Kind::If, children)), makeConfig(options));
    Filled filled{{}, pass.run()};
    for (std::size_t i = 0, child = 0; i < items.widths.size(); ++i, ++child) {
        filled.decisions.push_back(WhitespaceDecision::Preserve);
        if (items.hasSeparator(i)) {
            filled.decisions.back() = pass.getBreakDecision(static_cast<WhitespaceNode&>(*children[child++]));
        }
    }
    return filled;
}

/// What has to come out, worked out for each separator on its own: it breaks exactly if, standing where it
/// stands, it or what follows up to the next separator goes over the limit or can't be measured. Where it
/// stands follows from the decisions about the separators before it.
bool mustBreak(const Items& items, const Filled& filled, std::size_t separator, const TestOptions& options) {
    std::size_t column = 0;
    for (std::size_t i = 0; i < separator; ++i) {
        if (filled.decisions[i] == WhitespaceDecision::LineBreak) {
            column = options.indentWidth;
        } else if (filled.decisions[i] == WhitespaceDecision::NoLineBreak) {
            column += 2;
        }
        column += items.widths[i];
    }
    column += 2;
    bool measurable = true;
    for (std::size_t i = separator; i < items.widths.size(); ++i) {
        if (i != separator && items.hasSeparator(i)) {
            break;
        }
        column += items.widths[i];
        measurable = measurable && items.widths[i] != 0;
    }
    return !measurable || column > options.columnLimit;
}

/// A line over the limit has no separator in it: breaking there would have helped. Only for measurable items.
bool hasLineThatShouldHaveBroken(const std::u16string& text, std::size_t limit) {
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(u'\n', start), text.size());
        const auto line = std::u16string_view(text).substr(start, end - start);
        if (line.size() > limit && line.find(u", ") != line.npos) {
            return true;
        }
        start = end + 1;
    }
    return false;
}

std::string describe(const Items& items, std::uint32_t limit) {
    std::ostringstream stream;
    for (std::size_t i = 0; i < items.widths.size(); ++i) {
        stream << (items.hasSeparator(i) ? "," : "") << items.widths[i] << ' ';
    }
    stream << "within " << limit;
    return stream.str();
}

void checkFill(const Items& items, std::uint32_t limit) {
    TestOptions options = makeOptions(Behavior::AllowMultiplePerLine, limit);
    options.indentWidth = 3;
    const Filled filled = fill(items, options);
    for (std::size_t i = 0; i < items.widths.size(); ++i) {
        if (items.hasSeparator(i)) {
            ASSERT_EQ(filled.decisions[i] == WhitespaceDecision::LineBreak,
                      mustBreak(items, filled, i, options))
                << describe(items, limit) << ", item " << i;
        }
    }
    if (std::count(items.widths.begin(), items.widths.end(), 0U) == 0) {
        ASSERT_FALSE(hasLineThatShouldHaveBroken(filled.text, limit)) << describe(items, limit);
    }
}

} // namespace

TEST(LineBreaking, FillsEverySequenceOfItemsAsItMust) {
    constexpr std::size_t count = 5;
    constexpr std::size_t choices[] = {0, 1, 4};
    for (unsigned code = 0; code < 3 * 3 * 3 * 3 * 3; ++code) {
        Items items{{}, 0};
        for (unsigned rest = code; items.widths.size() < count; rest /= 3) {
            items.widths.push_back(choices[rest % 3]);
        }
        for (const unsigned separators : {0b11110U, 0b01010U, 0b10100U, 0b01000U}) {
            items.separators = separators;
            for (std::uint32_t limit = 0; limit <= 20; ++limit) {
                checkFill(items, limit);
            }
        }
    }
}

TEST(LineBreaking, FollowsTheBehaviorOfTheKind) {
    const std::u16string chain = u"aa+bb  -  cc";
    const auto format = [&](Behavior behavior, std::uint32_t limit) {
        return formatChain(chain, 2, makeOptions(behavior, limit));
    };
    EXPECT_EQ(format(Behavior::SeparateLines, 80), u"aa ...\n    + bb ...\n    - cc");
    EXPECT_EQ(format(Behavior::AllowSingleLine, 12), u"aa + bb - cc");
    EXPECT_EQ(format(Behavior::AllowSingleLine, 11), u"aa ...\n    + bb ...\n    - cc");
    EXPECT_EQ(format(Behavior::AllowMultiplePerLine, 11), u"aa + bb ...\n    - cc");
    EXPECT_EQ(format(Behavior::AllowMultiplePerLine, 1), u"aa ...\n    + bb ...\n    - cc");
    EXPECT_THROW(format(static_cast<Behavior>(3), 80), std::out_of_range);
}

TEST(LineBreaking, CountsAllLevelsBehindABreak) {
    const auto format = [](std::uint32_t limit) {
        TreeBuilder builder(u"aaaaaaaaaaaaa+bb+cc");
        builder.enterLevel();
        builder.enterLevel();
        const auto children = builder.take("TBTATBTAT", Kind::PlusMinus);
        FormatPass pass(builder.finish(builder.container(Kind::PlusMinus, children)),
                        makeConfig(makeOptions(Behavior::AllowMultiplePerLine, limit)));
        const std::u16string text = pass.run();
        EXPECT_EQ(pass.getEndColumn(static_cast<LeafNode&>(*children[1])), 8U);
        return text;
    };
    EXPECT_EQ(format(17), u"aaaaaaaaaaaaa ...\n        + bb + cc");
    EXPECT_EQ(format(16), u"aaaaaaaaaaaaa ...\n        + bb ...\n        + cc"); // one level would fit
}

TEST(LineBreaking, JoinsOnlyWhatIsKnownToFitBehindWhereItStarts) {
    EXPECT_EQ(formatChain(u"aa+bb ...c\n +cc", 2, makeOptions(Behavior::AllowSingleLine, 80)),
              u"aa ...\n    + bb ...c\n + cc");
    const auto formatBehindSixColumns = [](std::uint32_t limit) {
        TreeBuilder builder(u"xxxx =a+b");
        builder.enterLevel();
        auto children = builder.take("TUTU");
        children.push_back(builder.container(Kind::PlusMinus, "TBTAT"));
        return formatTree(builder.finish(builder.container(Kind::None, children)),
                          makeConfig(makeOptions(Behavior::AllowSingleLine, limit)));
    };
    EXPECT_EQ(formatBehindSixColumns(11), u"xxxx =a + b");
    EXPECT_EQ(formatBehindSixColumns(10), u"xxxx =a ...\n    + b");
}

TEST(LineBreaking, KeepsTheOperatorOnTheSideOfItsPlacement) {
    const auto options = makeOptions(Behavior::SeparateLines, 80, Placement::EndOfLine);
    EXPECT_EQ(formatChain(u"a+b", 1, options), u"a + ...\n    b");
    EXPECT_EQ(formatChain(u"a+b", 1, makeOptions(Behavior::SeparateLines, 80, static_cast<Placement>(2))),
              u"a + b");
}

TEST(LineBreaking, LeavesAloneWhatHasNoKindOrACommentOrIsSwitchedOff) {
    EXPECT_EQ(formatChain(u"a+\tb", 1, {}), u"a+\tb");
    EXPECT_EQ(formatChain(u"a+\tb", 1, makeOptions(Behavior::SeparateLines, 80), Kind::None), u"a + b");
    TreeBuilder statements(u"a;b");
    EXPECT_EQ(formatTree(statements.finish(statements.container(Kind::None, "TLT")),
                         makeConfig(makeOptions(Behavior::SeparateLines, 80))),
              u"a;b");
    EXPECT_EQ(formatChain(u"a ...c\n  +b", 1, makeOptions(Behavior::SeparateLines, 80)), u"a ...c\n  + b");
}

TEST(LineBreaking, DecidesInnerContainersByThemselves) {
    TreeBuilder builder(u"a+bbbb*cccc+d");
    builder.enterLevel();
    auto children = builder.take("TBTA", Kind::PlusMinus);
    children.push_back(builder.container(Kind::MultiplyDivide, "TBTAT"));
    for (auto* child : builder.take("BTAT", Kind::PlusMinus)) {
        children.push_back(child);
    }
    const auto tree = builder.finish(builder.container(Kind::PlusMinus, children));
    const auto format = [&](std::uint32_t limit) {
        return formatTree(tree, makeConfig(makeOptions(Behavior::AllowMultiplePerLine, limit)));
    };
    EXPECT_EQ(format(19), u"a + bbbb * cccc + d");
    EXPECT_EQ(format(18), u"a + bbbb * cccc ...\n    + d");
    // The inner one is measured on one line, goes to a line of its own and breaks there all the same.
    EXPECT_EQ(format(14), u"a ...\n    + bbbb ...\n    * cccc ...\n    + d");
}
