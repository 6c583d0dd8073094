#include "entry/FormattingExplorerBridge.h"
#include "tree/ContainerNode.h"
#include "tree/IndentNodes.h"
#include "tree/TokenNode.h"
#include "tree/WhitespaceNodes.h"

#include <ca/astapi/CA.h>
#include <lf/astapi/Nodes.h>

#include <gtest/gtest.h>

#include <cstring>
#include <type_traits>

// A caller of the classes of the tree and of the bridge that knows nothing but their documented signatures:
// that it compiles is half of the test.

using namespace ca::formatting;
using ca::astapi::CA;
using ca::lexer::Token;
using Kind = FormattingConfig::ContainerKind;
using TokenRun = std::vector<const Token*>;

namespace {

const Token space{ca::lexer::TokenType::Whitespace, u"  ", 1, 1};

/// A gap of a class that the library doesn't know.
class OwnGap : public WhitespaceNode {
public:
    OwnGap(IndentNode* indent, const TokenRun& run, const std::u16string& name)
        : WhitespaceNode(indent, run, name) {}

    void format(FormatPass&) override {}
    DebugTable getDebugTable() const override { return {}; }
    std::optional<std::uint64_t> getInlineWidth(std::shared_ptr<FormattingConfig>) const override {
        return 0;
    }
    std::u16string getText(FormatPass&) const override { return u""; }
    bool isLineBreakCandidate(std::shared_ptr<FormattingConfig>) const override { return false; }
};

/// A bridge that was written before there was a second operation.
class TextBridge : public FormattingExplorerBridge {
public:
    std::u16string format(const std::u16string& text, const std::u16string& json) override {
        return text + json;
    }
};

/// The place of a virtual operation in the table, after the two entries of the destructor.
template <class Operation>
std::size_t getSlot(Operation operation) {
    std::size_t offset = 0; // the ABI of the platform: one more than the offset in bytes
    std::memcpy(&offset, &operation, sizeof offset);
    return (offset - 1) / sizeof(void*);
}

template <template <class> class Block>
constexpr bool isBlock = std::is_constructible_v<StatementBlockIndentNode, IndentNode*, const Block<CA>&>;

} // namespace

TEST(Signatures, GapsKeepAnyRunAndAnyName) {
    ProgramIndentNode level;
    const TokenRun run = {&space};
    const std::u16string name = u"a name";
    const CommentNode comment(&level, run, name);
    const LineSeparatorWhitespaceNode separator(&level, run, name);
    const NecessaryWhitespaceNode necessary(&level, run, name);
    const UnnecessaryWhitespaceNode unnecessary(&level, run, name);
    const BinaryOperationWhitespaceNode operation(Kind::PlusMinus, BinaryOperationWhitespaceNode::Side::After,
                                                  &level, run, name);
    const OwnGap own(&level, run, name);
    for (const WhitespaceNode* gap : std::initializer_list<const WhitespaceNode*>{
             &comment, &separator, &necessary, &unnecessary, &operation, &own}) {
        EXPECT_EQ(gap->getName(), u"a name");
        EXPECT_EQ(gap->getOriginalText(), u"  ");
        EXPECT_EQ(gap->getOriginalWidth(), 2u);
    }
    EXPECT_EQ(level.getMembers().size(), 6u);
}

TEST(Signatures, ContainersCopyTheirChildrenInAndOut) {
    ProgramIndentNode level;
    TokenNode token(&level, &space);
    std::vector<TextNode*> children = {&token};
    ContainerNode container(Kind::None, children);
    children.clear();
    const std::vector<TextNode*> copy = container.getChildren();
    EXPECT_EQ(copy, std::vector<TextNode*>{&token});
    EXPECT_EQ(token.getParent(), &container);
}

TEST(Signatures, StatementBlocksAreOfElevenClasses) {
    using namespace lf::astapi;
    static_assert(isBlock<IfStatement> && isBlock<ElseifBlock> && isBlock<ElseBlock> &&
                  isBlock<ForStatement> && isBlock<ParforStatement> && isBlock<WhileStatement> &&
                  isBlock<SpmdStatement> && isBlock<TryStatement> && isBlock<CatchBlock> &&
                  isBlock<CaseSelection> && isBlock<OtherwiseBlock>);
    static_assert(!isBlock<Function> && !isBlock<MethodDefinition> && !isBlock<SwitchStatement> &&
                  !isBlock<Node>);
}

TEST(Signatures, VirtualOperationsHaveTheirPlaces) {
    EXPECT_EQ(getSlot(&FormatNode::getDependencies), 2u);
    EXPECT_EQ(getSlot(&FormatNode::format), 3u);
    EXPECT_EQ(getSlot(&FormatNode::getName), 4u);
    EXPECT_EQ(getSlot(&FormatNode::getDebugTable), 5u);
    EXPECT_EQ(getSlot(&IndentNode::getIndentChange), 6u);
    EXPECT_EQ(getSlot(&TextNode::getInlineWidth), 6u);
    EXPECT_EQ(getSlot(&LeafNode::getText), 7u);
    EXPECT_EQ(getSlot(&WhitespaceNode::isLineBreakCandidate), 8u);
    EXPECT_EQ(getSlot(&FormattingConfig::getIssues), 2u);
    EXPECT_EQ(getSlot(&FormattingConfig::getSeparatorPlacement), 14u);
    EXPECT_EQ(getSlot(&FormattingExplorerBridge::format), 2u);
    EXPECT_EQ(getSlot(&FormattingExplorerBridge::formatParsed), 3u);
}

TEST(Signatures, ABridgeOfOneOperationIsEnough) {
    TextBridge bridge;
    EXPECT_EQ(bridge.format(u"a", u"b"), u"ab");
    EXPECT_THROW(bridge.formatParsed({parseSource(u""), nullptr}), std::logic_error);
}
