#include "syntax/NodeFactory.h"
#include "syntax/Recovery.h"

namespace ca::syntax {

using namespace lf::astapi;

Parser::Parser(std::u16string_view text, std::span<const TokenSpan> tokens, Arena& arena,
               SyntaxErrors& errors)
    : text(text), cursor(text, tokens), arena(arena), errors(errors) {}

const ProgramFile<CA>* Parser::parseFile() {
    auto* root = arena.make<ProgramFile<CA>>();
    root->kind = NodeKind::ProgramFile;
    root->line = 1;
    root->column = 1;
    checkUnclosedComment();
    functionsHaveEnd = haveFunctionsEnd(cursor.getCodes());
    try {
        skipSeparators();
        if (isAt(keyword::Classdef)) {
            parseClassFile();
        } else {
            parseStatements();
        }
    } catch (const Stopped&) {
        return root;
    }
    root->statements = takePending(0, root);
    return root;
}

/// A class, then perhaps functions.
void Parser::parseClassFile() {
    pending.push_back(parseClass());
    for (skipSeparators(); isAt(TokenType::Function); skipSeparators()) {
        pending.push_back(parseFunctionStatement());
    }
    if (!isAt(TokenType::EndOfInput)) {
        report(u"MisplacedStatement", u"only functions can come after a class", cursor.get());
        parseStatements();
    }
}

} // namespace ca::syntax
