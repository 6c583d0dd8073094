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

TestOptions makeOptions(Behavior behavior, std::uint32_t limit) {
    return {.lineBreaking = true, .columnLimit = limit, .lineBreakBehavior = behavior};
}

/// Items in a container of one kind, of some widths and with line separators between some of them. Width 0
/// means an item whose width is unknown.
struct Items {
    std::vector<std::size_t> widths;
    unsigned separators; ///< bit i: a separator is before item i

    bool hasSeparator(std::size_t i) const { return (separators >> i & 1) != 0; }
};

/// By item, which separators were broken; Preserve where there is none.
using Decisions = std::vector<WhitespaceDecision>;

Decisions fill(const Items& items, const TestOptions& options) {
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
    pass.run();
    Decisions decisions;
    for (std::size_t i = 0, child = 0; i < items.widths.size(); ++i, ++child) {
        decisions.push_back(WhitespaceDecision::Preserve);
        if (items.hasSeparator(i)) {
            decisions.back() = pass.getBreakDecision(static_cast<WhitespaceNode&>(*children[child++]));
        }
    }
    return decisions;
}

/// The expected result, computed for each separator on its own: it breaks exactly if, at its column, it or
/// what follows up to the next separator exceeds the limit or can't be measured. Its column follows from the
/// decisions about the separators before it.
bool mustBreak(const Items& items, const Decisions& decisions, std::size_t separator,
               const TestOptions& options) {
    std::size_t column = 0;
    for (std::size_t i = 0; i < separator; ++i) {
        if (decisions[i] == WhitespaceDecision::LineBreak) {
            column = options.indentWidth;
        } else if (decisions[i] == WhitespaceDecision::NoLineBreak) {
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
    const Decisions decisions = fill(items, options);
    for (std::size_t i = 0; i < items.widths.size(); ++i) {
        if (items.hasSeparator(i)) {
            ASSERT_EQ(decisions[i] == WhitespaceDecision::LineBreak, mustBreak(items, decisions, i, options))
                << describe(items, limit) << ", item " << i;
        }
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

/// Numbers that no configuration file gives.
TEST(LineBreaking, DecidesNothingForUnknownNumbers) {
    const auto format = [](Behavior behavior, Placement placement) {
        TreeBuilder builder(u"a+b");
        TestOptions options = makeOptions(behavior, 80);
        options.separatorPlacement = placement;
        return formatTree(builder.finish(builder.container(Kind::PlusMinus, "TBTAT")), makeConfig(options));
    };
    EXPECT_EQ(format(Behavior::SeparateLines, static_cast<Placement>(2)), u"a + b")
        << "neither side can break";
    EXPECT_THROW(format(static_cast<Behavior>(3), Placement::StartOfLine), std::out_of_range);
}

TEST(LineBreaking, WritesNothingForAnUnknownDecision) {
    TreeBuilder builder(u"a+b;c");
    auto children = builder.take("TBTATLT", Kind::PlusMinus);
    FormatPass pass(builder.finish(builder.container(Kind::PlusMinus, children)),
                    makeConfig(makeOptions(Behavior::SeparateLines, 80)));
    for (const std::size_t gap : {1U, 5U}) {
        pass.setBreakDecision(static_cast<WhitespaceNode&>(*children[gap]),
                              static_cast<WhitespaceDecision>(3));
    }
    EXPECT_EQ(pass.run(), u"a+ bc");
    EXPECT_EQ(pass.getEndColumn(static_cast<LeafNode&>(*children[1])), 0U);
    EXPECT_EQ(pass.getEndColumn(static_cast<LeafNode&>(*children[5])), 0U);
}
