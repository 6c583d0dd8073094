#include "support/TreeBuilder.h"

#include "pass/FormatPass.h"
#include "tree/DebugText.h"
#include "tree/IndentNodes.h"
#include "tree/TokenNode.h"

#include <ca/lexer/lex.h>

#include <algorithm>
#include <stdexcept>

using namespace ca::formatting;
using ca::lexer::Token;
using ca::lexer::TokenType;

namespace {

bool isSeparator(const Token& token) {
    return token.type == TokenType::Semicolon || token.type == TokenType::Comma;
}

} // namespace

TreeBuilder::TreeBuilder(const std::u16string& text) : TreeBuilder(ca::lexer::lex(text)) {}

TreeBuilder::TreeBuilder(std::vector<Token> tokens) : tree(std::make_shared<Tree>()) {
    tree->tokens = std::make_shared<const std::vector<Token>>(std::move(tokens));
    level = tree->rootIndent = make<ProgramIndentNode>();
}

TreeBuilder::TextNodes TreeBuilder::take(std::string_view steps, ContainerKind kind) {
    TextNodes children;
    for (const char step : steps) {
        children.push_back(takeStep(step, kind));
    }
    return children;
}

ContainerNode* TreeBuilder::container(ContainerKind kind, const TextNodes& children) {
    return make<ContainerNode>(kind, children);
}

ContainerNode* TreeBuilder::container(ContainerKind kind, std::string_view steps) {
    return container(kind, take(steps, kind));
}

void TreeBuilder::enterLevel() {
    level = make<SwitchContentsIndentNode>(level);
}

void TreeBuilder::leaveLevel() {
    level = level->getParent().value();
}

const std::vector<Token>& TreeBuilder::getTokens() const {
    return *tree->tokens;
}

std::shared_ptr<FormatTree> TreeBuilder::finish(TextNode* rootText) {
    tree->rootText = rootText;
    linkLeaves();
    return std::move(tree);
}

/// In the order of the text, whatever order they were made in.
void TreeBuilder::linkLeaves() {
    LeafNode* last = nullptr;
    TextNodes open = {tree->rootText};
    while (!open.empty()) {
        TextNode* node = open.back();
        open.pop_back();
        if (const ContainerNode* container = node->asContainer()) {
            const auto children = container->viewChildren();
            open.insert(open.end(), children.rbegin(), children.rend());
            continue;
        }
        auto* leaf = static_cast<LeafNode*>(node);
        if (last != nullptr) {
            last->setNext(leaf);
            leaf->setPrevious(last);
        } else {
            tree->firstLeaf = leaf;
        }
        last = leaf;
    }
}

TextNode* TreeBuilder::takeStep(char step, ContainerKind kind) {
    using Side = BinaryOperationWhitespaceNode::Side;
    if (step == 'T') {
        return make<TokenNode>(level, &tree->tokens->at(tokenIndex++));
    }
    Run run = takeRun(step == 'L');
    if (std::any_of(run.tokens.begin(), run.tokens.end(), [](const Token* t) { return t->isComment(); })) {
        return make<CommentNode>(level, run.tokens, run.name);
    }
    switch (step) {
    case 'U':
        return make<UnnecessaryWhitespaceNode>(level, run.tokens, run.name);
    case 'N':
        return make<NecessaryWhitespaceNode>(level, run.tokens, run.name);
    case 'L':
        return make<LineSeparatorWhitespaceNode>(level, run.tokens, run.name);
    case 'B':
        return make<BinaryOperationWhitespaceNode>(kind, Side::Before, level, run.tokens, run.name);
    case 'A':
        return make<BinaryOperationWhitespaceNode>(kind, Side::After, level, run.tokens, run.name);
    default:
        throw std::invalid_argument("no such step");
    }
}

TreeBuilder::Run TreeBuilder::takeRun(bool absorbSeparators) {
    const std::size_t first = tokenIndex;
    Run run;
    const auto belongs = [&](const Token& token) {
        return token.isWhitespace() || (absorbSeparators && isSeparator(token));
    };
    while (tokenIndex < getTokens().size() && belongs(getTokens()[tokenIndex])) {
        run.tokens.push_back(&getTokens()[tokenIndex++]);
    }
    auto stream = makeDebugStream();
    stream << u"WhitespaceNode_T" << first << u"_T" << tokenIndex;
    run.name = stream.str();
    return run;
}

std::u16string formatTree(const std::shared_ptr<FormatTree>& tree,
                          const std::shared_ptr<FormattingConfig>& config) {
    return FormatPass(tree, config).run();
}
