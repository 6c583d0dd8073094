#include "Stages.h"

#include "OptionsDump.h"
#include "SyntaxDump.h"

#include "text/LineSplitter.h"
#include "text/TextEncoding.h"
#include <ca/lexer/lex.h>
#include <entry/FormattingExplorerBridgeImpl.h>
#include <tree/FormatTree.h>

#include <ostream>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

nlohmann::ordered_json makeObject(const ca::lexer::Token& token) {
    return {{"type", static_cast<int>(token.type)},
            {"name", ca::lexer::getTokenTypeName(token.type)},
            {"lexeme", encodeLossy(token.lexeme)},
            {"line", token.line},
            {"column", token.column}};
}

void printTokens(std::ostream& stream, const StageInput& input) {
    const char* separator = "[\n";
    for (const ca::lexer::Token& token : ca::lexer::lex(input.text)) {
        stream << separator << makeObject(token).dump();
        separator = ",\n";
    }
    stream << "\n]\n";
}

template <std::u16string (ca::formatting::FormatTree::*dump)() const>
void printTree(std::ostream& stream, const StageInput& input) {
    const std::u16string text = (ca::formatting::FormatTree(input.text).*dump)();
    LineSplitter lines(text); // a dump can be large: it is encoded line by line
    while (const auto line = lines.getNext()) {
        stream << encodeLossy(line->content) << encodeLossy(line->end);
    }
}

void printSyntax(std::ostream& stream, const StageInput& input) {
    dumpSyntax(stream, input.text);
}

void printBridgeResult(std::ostream& stream, const StageInput& input) {
    stream << encodeLossy(FormattingExplorerBridgeImpl().format(input.text, input.optionsText));
}

} // namespace

const std::vector<Stage>& getStages() {
    static const std::vector<Stage> stages = {
        {"tokens", "the token list, as JSON", printTokens},
        {"syntax", "the syntax tree, as JSON", printSyntax},
        {"leaves", "the tree formatter's leaves: tokens and what is between them",
         printTree<&ca::formatting::FormatTree::dumpLeaves>},
        {"text-tree", "the leaves with their containers",
         printTree<&ca::formatting::FormatTree::dumpTextTree>},
        {"indent-tree", "the leaves with their levels of indentation",
         printTree<&ca::formatting::FormatTree::dumpIndentTree>},
        {"options", "what a configuration file comes to, as JSON: options and issues (status 0 all the same)",
         dumpOptions},
        {"bridge",
         "what the tree formatter makes of the text and of --config, or why it refuses (status 0 then too)",
         printBridgeResult, true},
    };
    return stages;
}

} // namespace ombrel
