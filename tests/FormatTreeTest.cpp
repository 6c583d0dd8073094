#include "tree/FormatTree.h"

#include "ca/formatting/TreeFormat.h"
#include "pass/FormatPass.h"
#include "support/TestConfig.h"
#include "support/TreeBuilder.h"
#include "support/TreeInvariantChecker.h"
#include "tree/TokenNode.h"

#include <gtest/gtest.h>

using namespace ca::formatting;
using Kind = FormattingConfig::ContainerKind;

namespace {

const std::u16string sample = u"if a+b\n  c; % d\nend\n";

/// The sample with a block of one level: the chain of the condition, the statement and the comment in it.
std::shared_ptr<FormatTree> makeSample() {
    TreeBuilder builder(sample);
    auto children = builder.take("LTN");
    children.push_back(builder.container(Kind::PlusMinus, "TBTAT"));
    builder.enterLevel();
    const auto body = builder.take("LT");
    builder.leaveLevel();
    children.insert(children.end(), body.begin(), body.end());
    const auto end = builder.take("LTLT");
    children.insert(children.end(), end.begin(), end.end());
    return builder.finish(builder.container(Kind::None, children));
}

/// Breaks a small valid tree and returns the first rule that the checker finds broken.
template <class Break>
std::string findFault(Break breakTree) {
    const std::u16string text = u"a b";
    TreeBuilder builder(text);
    auto children = builder.take("TUT");
    breakTree(builder, children);
    const auto tree = builder.finish(builder.container(Kind::None, children));
    const auto faults = checkTreeInvariants(text, *tree);
    return faults.empty() ? "" : faults.front().substr(0, 1);
}

} // namespace

TEST(FormatTree, KeepsItsInvariantsAndServesSeveralPasses) {
    const auto tree = makeSample();
    EXPECT_EQ(checkTreeInvariants(sample, *tree), std::vector<std::string>());
    EXPECT_EQ(formatTree(tree, makeConfig({})), sample);
    EXPECT_EQ(formatTree(tree, makeConfig({.trim = true, .indentation = true})), u"if a+b\n    c;% d\nend\n");
    EXPECT_EQ(formatTree(tree, makeConfig({})), sample);
}

TEST(FormatTree, NamesGapsByTheirTokensAndLevelsByTheirPlace) {
    const FormatTree empty(u"");
    const auto& root = static_cast<const ContainerNode&>(*empty.getRootText());
    EXPECT_EQ(root.getName(), u"ContainerNode_[WhitespaceNode_T0_T0]_[Token_EndOfInput_L1_C1]");
    EXPECT_EQ(root.getLeafBefore(), std::nullopt);
    const FormatTree tree(u"x  = y;\n");
    EXPECT_EQ((*tree.getFirstLeaf())->getNext().value()->getNext().value()->getName(),
              u"WhitespaceNode_T1_T2");
    const FormatTree block(u"\n  if a\n b\n end\n");
    LeafNode* leaf = *block.getFirstLeaf();
    for (int i = 0; i < 4; ++i) {
        leaf = leaf->getNext().value();
    }
    EXPECT_EQ(leaf->getIndent()->getName(), u"StatementBlockIndent_L2_C3");
}

/// A tree that was parsed has no room for what is done to its leaves by hand, and takes it all the same.
TEST(FormatTree, LetsParsedLeavesBeLinkedByHand) {
    const ca::lexer::Token token{ca::lexer::TokenType::NameToken27, u"by hand", 1, 1};
    const FormatTree tree(u"if a + b\n  c; % d\nend\n");
    LeafNode* first = *tree.getFirstLeaf();
    LeafNode* second = first->getNext().value();
    LeafNode* third = second->getNext().value();
    IndentNode* level = third->getIndent();
    const std::size_t memberCount = level->getMembers().size();
    TokenNode inserted(level, &token);
    inserted.setPrevious(second);
    inserted.setNext(third);
    second->setNext(&inserted);
    third->setPrevious(&inserted);
    EXPECT_EQ(first->getNext(), second);
    EXPECT_EQ(second->getPrevious(), first);
    EXPECT_EQ(second->getNext(), &inserted);
    EXPECT_EQ(second->getIndent(), level);
    EXPECT_EQ(third->getPrevious(), &inserted);
    EXPECT_EQ(third->getNext().value()->getPrevious(), third);
    EXPECT_EQ(level->getMembers().size(), memberCount + 1);
    EXPECT_EQ(level->getMembers().back(), &inserted);
}

/// Nodes made by hand are in no sequence, also in the memory of a tree, and are destroyed once.
TEST(FormatTree, LeavesTheSequenceOfItsNodesAsItIsWhenOthersAreMade) {
    struct Tree : FormatTree {
        using FormatTree::FormatTree;
        using FormatTree::home;
    };
    struct Witness : TokenNode {
        Witness(IndentNode* level, const ca::lexer::Token* token, int& count)
            : TokenNode(level, token), count(count) {}
        ~Witness() override { ++count; }
        int& count;
    };
    const ca::lexer::Token token{ca::lexer::TokenType::NameToken27, u"by hand", 1, 1};
    int destroyed = 0;
    {
        const auto tree = std::make_shared<Tree>(u"a");
        LeafNode* second = (*tree->getFirstLeaf())->getNext().value();
        IndentNode* level = second->getIndent();
        const std::size_t memberCount = level->getMembers().size();
        auto* added = makeNode<Witness>(tree->home, level, &token, destroyed);
        EXPECT_EQ(added->getPrevious(), std::nullopt);
        EXPECT_EQ(formatTree(tree, makeConfig({})), u"a");
        added->setNext(second->getNext().value());
        second->setNext(added);
        EXPECT_EQ(formatTree(tree, makeConfig({})), u"aby hand");
        EXPECT_EQ(level->getMembers().size(), memberCount + 1);

        level->open();
        auto* inSequence = makeNode<Witness>(tree->home, level, &token, destroyed);
        level->close();
        inSequence->setNext(added);
    }
    EXPECT_EQ(destroyed, 2);
}

/// What each family of nodes waits for.
TEST(FormatTree, LinksNodesByTheirDependencies) {
    using Nodes = std::unordered_set<FormatNode*>;
    TreeBuilder builder(u"a+b;");
    IndentNode* program = builder.getLevel();
    builder.enterLevel();
    const auto inner = builder.take("TB");
    builder.leaveLevel();
    ContainerNode* chain = builder.container(Kind::PlusMinus, inner);
    auto outer = builder.take("TA");
    ContainerNode* last = builder.container(Kind::None, {outer[1], builder.take("T").front()});
    ContainerNode* root = builder.container(Kind::None, {chain, outer[0], last});
    IndentNode* level = static_cast<LeafNode*>(inner[1])->getIndent();
    const auto tree = builder.finish(root);
    EXPECT_EQ(program->getDependencies(), Nodes());
    EXPECT_EQ(level->getDependencies(), Nodes{program});
    EXPECT_EQ(root->getDependencies(), Nodes());
    EXPECT_EQ(chain->getDependencies(), (Nodes{root, level}));
    EXPECT_EQ(last->getDependencies(), (Nodes{root, outer[0], program}));
    EXPECT_EQ(inner[0]->getDependencies(), Nodes{chain});
    EXPECT_EQ(inner[1]->getDependencies(), (Nodes{chain, inner[0]}));
    EXPECT_EQ(outer[0]->getDependencies(), (Nodes{root, inner[1]}));
}

/// The pass calls the library's own nodes without their virtual operations, which have to give the same.
TEST(FormatTree, AnswersDirectCallsAsItAnswersVirtualOnes) {
    const std::u16string text = u"if a+b % c\n   % d\n  f(x , y , ...\n z);\n  s = [1,2\n3]; hold  on\nend\n";
    const auto source = parseSource(text);
    for (const auto lines : {CommentLines::AsWritten, CommentLines::Aligned}) {
        const auto tree = std::make_shared<FormatTree>(source, lines);
        for (const TestOptions& options :
             {TestOptions{}, {.trim = true, .indentation = true}, {.lineBreaking = true, .columnLimit = 5}}) {
            const auto config = makeConfig(options);
            FormatPass pass(tree, config);
            const std::u16string result = pass.run();
            std::u16string joined;
            for (auto next = tree->getFirstLeaf(); next; next = (*next)->getNext()) {
                const LeafNode& leaf = **next;
                joined += leaf.getText(pass);
                EXPECT_EQ(leaf.getInlineWidth(config), pass.measure(leaf));
                if (const auto* gap = dynamic_cast<const WhitespaceNode*>(&leaf)) {
                    EXPECT_EQ(gap->isLineBreakCandidate(config), pass.isCandidate(*gap));
                }
            }
            EXPECT_EQ(joined, result);
            for (FormatNode* node : tree->getNodes()) {
                if (const auto* container = dynamic_cast<const ContainerNode*>(node)) {
                    EXPECT_EQ(container->getInlineWidth(config), pass.measure(*container));
                }
            }
        }
    }
}

TEST(DebugTable, PadsAndCopiesRows) {
    DebugTable table;
    table.addBracket(u"nothing to join");
    table.appendRow({u"a"});
    table.appendRow({u"bb", u"c"});
    DebugTable twice = table;
    twice.appendRows(table);
    twice.padRows();
    EXPECT_EQ(twice.getRowCount(), 4U);
    EXPECT_EQ(table.toString(), u"   a   \n  bb  c\n");
    EXPECT_EQ(twice.toString(), table.toString() + table.toString());
}

TEST(FormatTree, DestroysEachNodeOnceInCreationOrder) {
    struct Witness : IndentNode {
        Witness(std::string& log, char name) : IndentNode(u""), log(log), name(name) {}
        ~Witness() override { log += name; }
        IndentChange getIndentChange(std::shared_ptr<FormattingConfig>) const override { return {}; }
        DebugTable getDebugTable() const override { return {}; }

        std::string& log;
        char name;
    };
    std::string log;
    TreeBuilder builder(u"");
    for (const char name : {'a', 'b', 'c'}) {
        builder.make<Witness>(log, name);
    }
    builder.finish(builder.container(Kind::None, "T")).reset();
    EXPECT_EQ(log, "abc");
}

TEST(TreeInvariantChecker, FindsEachKindOfFault) {
    using Children = TreeBuilder::TextNodes;
    EXPECT_EQ(findFault([](TreeBuilder&, Children&) {}), "");
    EXPECT_EQ(findFault([](TreeBuilder& builder, Children&) { builder.enterLevel(); }), "");
    EXPECT_EQ(findFault([](TreeBuilder& builder, Children& children) {
                  builder.container(Kind::None, {children[0]}); // in no tree
              }),
              "2");
    EXPECT_EQ(findFault([](TreeBuilder& builder, Children& children) {
                  children.push_back(builder.container(Kind::None, Children{builder.take("T")}));
                  children.push_back(children[0]); // twice
              }),
              "4");
    EXPECT_EQ(findFault([](TreeBuilder&, Children& children) { children.pop_back(); }), "2");
    EXPECT_EQ(findFault([](TreeBuilder&, Children& children) { std::swap(children[0], children[2]); }), "6");
    EXPECT_EQ(findFault([](TreeBuilder& builder, Children& children) {
                  builder.getLevel()->appendMember(*children[1]);
              }),
              "5");
}
