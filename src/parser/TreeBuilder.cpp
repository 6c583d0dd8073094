#include "parser/TreeBuilder.h"

#include "tokens/TokenContract.h"

#include <ca/formatting/TreeFormat.h>

#include <algorithm>
#include <cstdint>

namespace ca::formatting {

using ca::lexer::Token;
using ca::lexer::TokenType;

TreeBuilder::TreeBuilder(NodeHome& home, const std::vector<Token>& tokens, CommentLines commentLines)
    : home(home), tokens(tokens), commentLines(commentLines) {
    home.nodes.reserve(3 * tokens.size()); // more than most trees have
    programIndentNode = make<ProgramIndentNode>();
    programIndentNode->open();
    currentIndentNode = programIndentNode;
}

TokenNode* TreeBuilder::takeToken() {
    const Token& token = tokens[tokenIndex++];
    return make<TokenNode>(currentIndentNode, &token);
}

TokenType TreeBuilder::peekType() const {
    std::size_t index = tokenIndex;
    while (tokens[index].isWhitespace()) {
        ++index;
    }
    return tokens[index].type;
}

void TreeBuilder::leaveIndent() {
    currentIndentNode->close();
    currentIndentNode = currentIndentNode->getParent().value();
}

TreeBuilder::Run TreeBuilder::claimRun(TokenTypes absorb) {
    const std::size_t first = tokenIndex;
    bool hasComment = false;
    run.clear();
    for (; tokenIndex < tokens.size(); ++tokenIndex) {
        const Token& token = tokens[tokenIndex];
        if (!token.isWhitespace() && std::find(absorb.begin(), absorb.end(), token.type) == absorb.end()) {
            break;
        }
        hasComment = hasComment || token.isComment();
        run.push_back(&token);
    }
    classifyRun(run, items);
    const auto begin = static_cast<std::uint32_t>(first);
    const auto end = static_cast<std::uint32_t>(tokenIndex);
    return {{home.arena, items, begin, end}, hasComment};
}

WhitespaceNode* TreeBuilder::takeComments(const ClassifiedRun& classified) {
    if (commentLines == CommentLines::Aligned) {
        return make<AlignedCommentNode>(currentIndentNode, classified);
    }
    return make<CommentNode>(currentIndentNode, classified);
}

} // namespace ca::formatting
