#include "pass/FormatPass.h"

#include "support/TestConfig.h"
#include "support/TreeBuilder.h"
#include "tree/IndentNodes.h"
#include "tree/TokenNode.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <stdexcept>

using namespace ca::formatting;
using Kind = FormattingConfig::ContainerKind;

namespace {

/// Records when it ran, and then does what the test set.
class ScriptedNode : public FormatNode {
public:
    ScriptedNode(std::u16string name, std::u16string& log) : name(std::move(name)), log(log) {}

    std::unordered_set<FormatNode*> getDependencies() const override { return dependencies; }
    void format(FormatPass& pass) override {
        log += name;
        if (action) {
            action(pass);
        }
    }
    std::u16string getName() const override { return name; }
    DebugTable getDebugTable() const override { return {}; }

    std::unordered_set<FormatNode*> dependencies;
    std::function<void(FormatPass&)> action;

private:
    std::u16string name;
    std::u16string& log;
};

/// Each dependency is looked at three times at most.
void expectLinearEffort(const FormatPass& pass, const FormatTree& tree) {
    std::size_t edges = 0;
    for (const FormatNode* node : tree.getNodes()) {
        edges += node->getDependencies().size();
    }
    EXPECT_LE(pass.getEffort().edgesVisited, 3 * edges);
}

/// A graph of nodes with names of one letter: `{"ab", "bc"}` says that a waits for b and b for c.
class Graph {
public:
    Graph(std::u16string_view names, std::initializer_list<std::u16string_view> edges) {
        for (const char16_t name : names) {
            nodes[name] = builder.make<ScriptedNode>(std::u16string(1, name), log);
        }
        for (const auto edge : edges) {
            nodes.at(edge[0])->dependencies.insert(nodes.at(edge[1]));
        }
    }

    /// The order in which the nodes ran. The text of the tree is empty.
    std::u16string run() {
        const auto tree = builder.finish(builder.container(Kind::None, "T"));
        FormatPass pass(tree, makeConfig({}));
        EXPECT_EQ(pass.run(), u"");
        expectLinearEffort(pass, *tree);
        return log;
    }

    ScriptedNode& operator[](char16_t name) { return *nodes.at(name); }

private:
    TreeBuilder builder{u""};
    std::u16string log;
    std::unordered_map<char16_t, ScriptedNode*> nodes;
};

/// Counts the questions about trimming, one for each time that a gap is measured or printed.
class CountingConfig : public TestConfig {
public:
    using TestConfig::TestConfig;

    bool getTrimUnnecessaryWhitespace() const override {
        ++count;
        return TestConfig::getTrimUnnecessaryWhitespace();
    }

    mutable std::size_t count = 0;
};

/// What it takes to format so many repetitions of a text: nodes and questions.
std::array<std::size_t, 2> measureWork(std::u16string_view unit, std::size_t repetitions,
                                       FormattingConfig::LineBreakBehavior behavior) {
    std::u16string text;
    for (std::size_t i = 0; i < repetitions; ++i) {
        text += unit;
    }
    const auto tree = std::make_shared<FormatTree>(text);
    const auto config = std::make_shared<CountingConfig>(
        TestOptions{.trim = true, .indentation = true, .lineBreaking = true, .lineBreakBehavior = behavior});
    FormatPass pass(tree, config);
    pass.run();
    EXPECT_EQ(pass.getEffort().nodesRun, tree->getNodes().size());
    expectLinearEffort(pass, *tree);
    return {pass.getEffort().nodesRun, config->count};
}

} // namespace

TEST(FormatPass, RunsEachNodeOnceAfterItsDependencies) {
    EXPECT_EQ(Graph(u"abcd", {u"ab", u"bc", u"cd"}).run(), u"dcba");
    const std::u16string diamond = Graph(u"abcd", {u"ab", u"ac", u"bd", u"cd"}).run();
    EXPECT_TRUE(diamond == u"dbca" || diamond == u"dcba");
    EXPECT_EQ(Graph(u"abc", {u"ba", u"cb", u"ca"}).run(), u"abc");
}

TEST(FormatPass, NeverRunsACycleOrItsDependents) {
    EXPECT_EQ(Graph(u"abcde", {u"ab", u"bc", u"ca", u"da"}).run(), u"e");
    EXPECT_EQ(Graph(u"ab", {u"aa"}).run(), u"b");
    EXPECT_EQ(Graph(u"abc", {u"ab", u"bb", u"ac"}).run(), u"c");
}

TEST(FormatPass, NeverRunsDependentsOfAForeignNode) {
    std::u16string log;
    ScriptedNode stray(u"s", log);
    for (FormatNode* foreign : {static_cast<FormatNode*>(&stray), static_cast<FormatNode*>(nullptr)}) {
        Graph graph(u"abc", {u"ab", u"ac"});
        graph[u'b'].dependencies.insert(foreign);
        EXPECT_EQ(graph.run(), u"c");
    }
    EXPECT_EQ(log, u"");
}

TEST(FormatPass, RunsLongChainsAndNodesWithManyDependencies) {
    std::u16string names;
    for (char16_t name = 1; name < 0xD800; ++name) {
        names += name;
    }
    Graph chain(names, {});
    Graph star(names, {});
    for (std::size_t i = 1; i < names.size(); ++i) {
        chain[names[i - 1]].dependencies.insert(&chain[names[i]]);
        star[names[0]].dependencies.insert(&star[names[i]]);
    }
    EXPECT_EQ(chain.run(), std::u16string(names.rbegin(), names.rend()));
    const std::u16string log = star.run();
    EXPECT_EQ(log.size(), names.size());
    EXPECT_EQ(log.back(), names[0]);
}

TEST(FormatPass, ThrowsOutOfRangeForAMissingResult) {
    const ProgramIndentNode stray;
    Graph graph(u"a", {});
    graph[u'a'].action = [&stray](FormatPass& pass) { pass.getIndentation(stray); };
    EXPECT_THROW(graph.run(), std::out_of_range);

    TreeBuilder builder(u"\n");
    const auto tree = builder.finish(builder.take("L").front()); // no container decides about the separator
    try {
        formatTree(tree, makeConfig({.lineBreaking = true}));
        ADD_FAILURE() << "a decision from nowhere";
    } catch (const std::out_of_range& error) {
        EXPECT_STREQ(error.what(), "unordered_map::at");
    }
}

TEST(FormatPass, RunsTheNodesOfATreeWithNoLeaf) {
    struct Tree : FormatTree {
        Tree() : FormatTree(4096), program(makeNode<ProgramIndentNode>(home)) {}
        ProgramIndentNode* program;
    };
    const auto tree = std::make_shared<Tree>();
    FormatPass pass(tree, makeConfig({}));
    EXPECT_EQ(pass.run(), u"");
    EXPECT_EQ(pass.getIndentation(*tree->program), u"");
}

TEST(FormatPass, KeepsTheFirstResult) {
    TreeBuilder builder(u"abc");
    auto* leaf = static_cast<TokenNode*>(builder.take("T").front());
    const auto tree = builder.finish(builder.container(Kind::None, {leaf}));
    FormatPass pass(tree, makeConfig({}));
    pass.setEndColumn(*leaf, 77);
    EXPECT_EQ(pass.run(), u"abc");
    EXPECT_EQ(pass.getEndColumn(*leaf), 77U);

    for (const std::uint64_t column : {std::uint64_t{UINT32_MAX} - 2, std::uint64_t{UINT32_MAX} - 1,
                                       std::uint64_t{UINT32_MAX}, UINT64_MAX - 1, UINT64_MAX}) {
        FormatPass other(tree, makeConfig({}));
        other.setEndColumn(*leaf, column);
        EXPECT_EQ(other.getEndColumn(*leaf), column);
    }

    const ProgramIndentNode level;
    pass.setIndentation(level, u"first");
    pass.setIndentation(level, u"second");
    EXPECT_EQ(pass.getIndentation(level), u"first");
}

TEST(FormatPass, KeepsTheFirstDecisionAndPreservesWhatCannotBreak) {
    TreeBuilder builder(u" a;b");
    const auto children = builder.take("UTLT");
    const auto& fixed = static_cast<WhitespaceNode&>(*children[0]);
    const auto& candidate = static_cast<WhitespaceNode&>(*children[2]);
    FormatPass pass(builder.finish(builder.container(Kind::None, children)), makeConfig({}));
    for (const auto* gap : {&fixed, &candidate}) {
        pass.setBreakDecision(*gap, WhitespaceDecision::LineBreak);
        pass.setBreakDecision(*gap, WhitespaceDecision::NoLineBreak);
    }
    EXPECT_EQ(pass.getBreakDecision(fixed), WhitespaceDecision::Preserve);
    EXPECT_EQ(pass.getBreakDecision(candidate), WhitespaceDecision::LineBreak);
}

TEST(FormatPass, DoesWorkInProportionToTheText) {
    using Behavior = FormattingConfig::LineBreakBehavior;
    const std::u16string_view units[] = {
        u"if a\n  x = f(a, (b + c) * 2); % note\nelse\n\n  y = [1 2; 3 4];\nend\n",
        u"x = ((((((((((((((((((((a + b) * c))))))))))))))))))) + {1, {2, {3, {4}}}};\n",
        u"while a, while b, while c, switch d, case {1, 2}, disp(e(f(g))), end, end, end, end\n",
    };
    for (const auto unit : units) {
        for (const auto behavior : {Behavior::AllowSingleLine, Behavior::AllowMultiplePerLine}) {
            const auto one = measureWork(unit, 10, behavior);
            const auto two = measureWork(unit, 20, behavior);
            const auto three = measureWork(unit, 30, behavior);
            for (std::size_t i = 0; i < one.size(); ++i) {
                EXPECT_EQ(three[i] - two[i], two[i] - one[i]) << "count " << i;
            }
        }
    }
}
