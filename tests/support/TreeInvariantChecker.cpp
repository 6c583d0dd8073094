#include "support/TreeInvariantChecker.h"

#include "tree/ContainerNode.h"
#include "tree/IndentNode.h"
#include "tree/TokenNode.h"
#include "tree/WhitespaceNodes.h"

#include <algorithm>
#include <unordered_map>

using namespace ca::formatting;
using ca::lexer::Token;

namespace {

class Checker {
public:
    Checker(const std::u16string& text, const FormatTree& tree) : text(text), tree(tree) {}

    std::vector<std::string> run() {
        numberNodes();
        if (require(tree.getRootText() != nullptr, "3: no text tree")) {
            require(!tree.getRootText()->getParent(), "3: the root has a parent");
            walkText(tree.getRootText());
        }
        if (require(!tree.getNodes().empty(), "1: no nodes")) {
            checkOutermostLevel();
        }
        require(reached.size() == numbers.size(), "2: a listed node hangs in no tree");
        checkChain();
        checkTokens();
        return std::move(faults);
    }

private:
    bool require(bool holds, const char* rule) {
        if (!holds && faults.size() < 20) {
            faults.emplace_back(rule);
        }
        return holds;
    }

    void numberNodes() {
        for (const FormatNode* node : tree.getNodes()) {
            require(numbers.emplace(node, numbers.size()).second, "1: a node is listed twice");
        }
    }

    void reach(const FormatNode* node) {
        require(numbers.count(node) != 0, "2: a node isn't listed");
        reached.emplace(node, 0);
    }

    void walkText(const TextNode* node) {
        reach(node);
        if (const auto* leaf = dynamic_cast<const LeafNode*>(node)) {
            leaves.push_back(leaf);
            return;
        }
        const auto* container = static_cast<const ContainerNode*>(node);
        require(!container->getChildren().empty(), "3: a container without children");
        for (const TextNode* child : container->getChildren()) {
            require(child->getParent() == container, "3: a child has another parent");
            walkText(child);
        }
    }

    void checkOutermostLevel() {
        const auto* outermost = dynamic_cast<const IndentNode*>(tree.getNodes().front());
        if (require(outermost != nullptr && !outermost->getParent(), "1: the outermost level isn't first")) {
            walkLevel(outermost);
        }
        for (const LeafNode* leaf : leaves) {
            require(memberships[leaf] == 1, "5: a leaf isn't once in a level");
        }
    }

    void walkLevel(const IndentNode* level) {
        reach(level);
        const auto& members = level->getMembers();
        const auto isOlder = [this](const FormatNode* a, const FormatNode* b) {
            return numbers[a] < numbers[b];
        };
        require(std::is_sorted(members.begin(), members.end(), isOlder), "5: members out of order");
        for (const FormatNode* member : members) {
            require(++memberships[member] == 1, "5: a member of two levels");
            if (const auto* leaf = dynamic_cast<const LeafNode*>(member)) {
                require(leaf->getIndent() == level, "5: a leaf is a member of a level that isn't its own");
                require(reached.count(leaf) != 0, "2: a leaf hangs in no container");
            } else if (const auto* inner = dynamic_cast<const IndentNode*>(member)) {
                require(inner->getParent() == level, "5: a level is a member of another than its parent");
                walkLevel(inner);
            }
        }
    }

    void checkChain() {
        std::optional<LeafNode*> leaf = tree.getFirstLeaf();
        std::optional<LeafNode*> previous;
        for (const LeafNode* expected : leaves) {
            if (!require(leaf == expected, "4: the chain leaves the order of the text")) {
                return;
            }
            require((*leaf)->getPrevious() == previous, "4: the chain backwards isn't the reverse");
            previous = leaf;
            leaf = (*leaf)->getNext();
        }
        require(!leaf, "4: the chain goes on after the last leaf");
    }

    void checkTokens() {
        for (const LeafNode* leaf : leaves) {
            if (const auto* token = dynamic_cast<const TokenNode*>(leaf)) {
                addToken(&token->getToken());
            } else {
                addRun(static_cast<const WhitespaceNode&>(*leaf));
            }
        }
        require(joined == text, "6: the lexemes of the leaves aren't the text");
    }

    void addRun(const WhitespaceNode& run) {
        const bool isComment = dynamic_cast<const CommentNode*>(&run) != nullptr;
        require(run.hasComment() == isComment, "7: comment and class of a run don't agree");
        for (const WhitespaceItem& item : run.getItems()) {
            if (item.token != nullptr) {
                addToken(item.token);
            }
        }
    }

    void addToken(const Token* token) {
        require(lastToken == nullptr || token == lastToken + 1, "6: a token is left out or out of order");
        lastToken = token;
        joined += token->lexeme;
    }

    const std::u16string& text;
    const FormatTree& tree;
    std::vector<std::string> faults;
    std::unordered_map<const FormatNode*, std::size_t> numbers;
    std::unordered_map<const FormatNode*, std::size_t> reached;
    std::unordered_map<const FormatNode*, std::size_t> memberships;
    std::vector<const LeafNode*> leaves;
    const Token* lastToken = nullptr;
    std::u16string joined;
};

} // namespace

std::vector<std::string> checkTreeInvariants(const std::u16string& text, const FormatTree& tree) {
    return Checker(text, tree).run();
}
