// Functions, methods and their signatures. A signature may look like a call or an assignment, so what its
// parts are is decided by the tokens after them:
//
//     function name           function y = name(x)           function [a, b] = pkg.name
//
// The parenthesis of the parameters may be on a later line, where the users of the tree look for it too.

#include "syntax/NodeFactory.h"
#include "syntax/Recovery.h"

namespace ca::syntax {

namespace {

using namespace lf::astapi;

} // namespace

/// Whether an `end` closes a function. Only a file that starts with a function leaves the choice.
bool Parser::haveFunctionsEnd(const std::vector<CodeToken>& codes) {
    const std::size_t first = codes.front().type == lineEnd ? 1 : 0;
    if (codes[first].type != TokenType::Function) {
        return true;
    }
    std::vector<TokenType> open;
    for (const CodeToken& code : codes) {
        if (opensBlock(code.type)) {
            open.push_back(code.type);
        } else if (code.type == TokenType::End && !open.empty()) {
            if (open.back() == TokenType::Function) {
                return true;
            }
            open.pop_back();
        }
    }
    return false;
}

/// A function among statements. One inside another kind of block is reported and read all the same.
const Node* Parser::parseFunctionStatement() {
    if (!blocks.empty() && blocks.back().keyword.type != TokenType::Function) {
        OpenBlock& block = blocks.back();
        const Token keyword = getToken(block.keyword);
        report(u"MisplacedFunction",
               u"a function can't be inside the " + quoteToken(keyword) + u" on line " +
                   toText(keyword.line) + u"; is an 'end' missing?",
               cursor.get());
        block.isReported = true;
    }
    return parseFunction<Function<CA>>();
}

const Node* Parser::parseMethodDefinition() {
    return parseFunction<MethodDefinition<CA>>();
}

template <class FunctionClass>
const Node* Parser::parseFunction() {
    Levels levels(*this);
    levels.enterBlock();
    auto* node = make<FunctionClass>(cursor.get());
    openBlock();
    parseOrSkip([&] {
        parseSignature(node);
        expectStatementEnd();
    });
    node->argumentsBlocks = parseArgumentsBlocks(node);
    node->body = parseBody(node);
    closeFunction();
    return node;
}

/// Without `end` a function reaches to the next one or to the end of the text.
void Parser::closeFunction() {
    if (functionsHaveEnd) {
        closeBlock();
    } else {
        blocks.pop_back();
    }
}

NodeList Parser::parseArgumentsBlocks(const Node* parent) {
    const std::size_t mark = pending.size();
    for (skipSeparators(); isAt(keyword::Arguments); skipSeparators()) {
        pending.push_back(parseArgumentsBlock());
    }
    return takePending(mark, parent);
}

const Node* Parser::parseMethodDeclaration() {
    auto* node = make<MethodDeclaration<CA>>(cursor.get());
    parseSignature(node);
    return node;
}

template <class SignatureClass>
void Parser::parseSignature(SignatureClass* node) {
    const std::size_t mark = pending.size();
    const bool isInBrackets = isAt(TokenType::OpenSquareBracket);
    if (isInBrackets) {
        parseOutputs(Outputs::OfFunction);
    } else if (cursor.getNext().type == TokenType::Assign) {
        pending.push_back(parseName(u"an output name"));
    }
    if (isInBrackets || pending.size() > mark) {
        expectAssign(u"the outputs");
    }
    node->outputs = takePending(mark, node);
    node->name = own(node, parseDottedName(u"a function name"));
    if (cursor.getTypePastLineEnds() == TokenType::OpenParenthesis) {
        cursor.skipLineEnds();
        parseParameters();
        node->parameters = takePending(mark, node);
    }
}

} // namespace ca::syntax
