#include "parser/NodeBuilder.h"

#include "tokens/TokenContract.h"

#include <ca/formatting/TreeFormat.h>

#include <algorithm>
#include <cstdint>

namespace ca::formatting {

using ca::lexer::Token;
using ca::lexer::TokenType;

NodeBuilder::NodeBuilder(NodeHome& home, const std::vector<Token>& tokens, CommentLines commentLines)
    : home(home), tokens(tokens), commentLines(commentLines) {
    home.nodes.reserve(3 * tokens.size()); // more than most trees have
    programIndentNode = make<ProgramIndentNode>();
    programIndentNode->open();
    currentIndentNode = programIndentNode;
}

TokenNode* NodeBuilder::takeToken() {
    const Token& token = tokens[tokenIndex++];
    return make<TokenNode>(currentIndentNode, &token);
}

TokenType NodeBuilder::peekType() const {
    std::size_t index = tokenIndex;
    while (tokens[index].isWhitespace()) {
        ++index;
    }
    return tokens[index].type;
}

void NodeBuilder::leaveIndent() {
    currentIndentNode->close();
    currentIndentNode = currentIndentNode->getParent().value();
}

NodeBuilder::Run NodeBuilder::claimRun(TokenTypes absorb) {
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

WhitespaceNode* NodeBuilder::takeComments(const ClassifiedRun& classified) {
    if (commentLines == CommentLines::Aligned) {
        return make<AlignedCommentNode>(currentIndentNode, classified);
    }
    return make<CommentNode>(currentIndentNode, classified);
}

} // namespace ca::formatting
