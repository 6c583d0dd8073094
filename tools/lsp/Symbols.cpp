// The outline of a document, made in one of two ways. Where the text parses, the tree has everything: classes
// with their members, functions in functions. Where it doesn't, as while somebody is typing, the tokens still
// show where functions and classes start, and the blocks show where they end:
//
//     classdef Stack              a class, up to its `end`
//         methods
//             function push(      the tree would have this in the class; the tokens list it after the class
//
// Both give the same symbols, which are then written as a tree or, for older clients, as a list.

#include "lsp/Symbols.h"

#include "lsp/Blocks.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace ombrel::lsp {

namespace {

using namespace lf::astapi;
using ca::astapi::CA;
using ca::lexer::TokenType;

enum class SymbolKind { Class = 5, Method = 6, Property = 7, Function = 12, EnumMember = 22, Event = 24 };

struct Symbol {
    std::string name;
    SymbolKind kind;
    TextSpan whole;
    TextSpan selection; ///< its name
    std::vector<Symbol> children;
};

using Symbols = std::vector<Symbol>;

/// The ends of blocks by their first tokens.
class BlockEnds {
public:
    explicit BlockEnds(const TokenList& tokens) : tokens(tokens) {
        for (const Block& block : findBlocks(tokens)) {
            ends.emplace(block.opener, block.hasEnd ? tokens.getEnd(block.end) : findCodeEnd(block.end));
        }
    }

    /// The end of the block that a token opens, or of its line if it opens none.
    std::size_t find(std::size_t opener) const {
        const auto found = ends.find(opener);
        return found == ends.end() ? findLineEnd(opener) : found->second;
    }

    /// The end of the last code of the line.
    std::size_t findLineEnd(std::size_t i) const {
        std::size_t last = i;
        for (; i < tokens.size() && !tokens[i].isEndOfLine(); ++i) {
            last = tokens[i].isWhitespace() ? last : i;
        }
        return tokens.getEnd(last);
    }

private:
    std::size_t findCodeEnd(std::size_t i) const {
        while (i > 0 && tokens[i - 1].isWhitespace()) {
            --i;
        }
        return i == 0 ? 0 : tokens.getEnd(i - 1);
    }

    const TokenList& tokens;
    std::unordered_map<std::size_t, std::size_t> ends;
};

/// Symbols of a tree. Functions and classes are inside each other at most as deep as blocks can be.
class TreeSymbols {
public:
    explicit TreeSymbols(const TokenList& tokens) : tokens(tokens), ends(tokens) {}

    Symbols find(NodeList<CA> nodes) {
        Symbols symbols;
        for (const Node<CA>* node : nodes) {
            add(*node, symbols);
        }
        return symbols;
    }

private:
    void add(const Node<CA>& node, Symbols& symbols) {
        switch (node.kind) {
        case NodeKind::Function:
            addFunction(node, as<Function>(node), SymbolKind::Function, symbols);
            break;
        case NodeKind::MethodDefinition:
            addFunction(node, as<MethodDefinition>(node), SymbolKind::Method, symbols);
            break;
        case NodeKind::MethodDeclaration:
            addLine(node, *as<MethodDeclaration>(node).name, SymbolKind::Method, symbols);
            break;
        case NodeKind::ClassDefinition:
            addClass(node, symbols);
            break;
        case NodeKind::PropertiesBlock:
        case NodeKind::MethodsBlock:
        case NodeKind::EventsBlock:
        case NodeKind::EnumerationBlock:
            for (Symbol& symbol : find(as<MemberBlock>(node).members)) {
                symbols.push_back(std::move(symbol));
            }
            break;
        case NodeKind::PropertyDefinition:
            addLine(node, *as<PropertyDefinition>(node).name, SymbolKind::Property, symbols);
            break;
        case NodeKind::EventDefinition:
            addLine(node, *as<EventDefinition>(node).name, SymbolKind::Event, symbols);
            break;
        case NodeKind::EnumerationMember:
            addLine(node, *as<EnumerationMember>(node).name, SymbolKind::EnumMember, symbols);
            break;
        default:
            break;
        }
    }

    Symbol make(const Node<CA>& name, SymbolKind kind) const {
        const std::u16string_view text = as<Identifier>(name).text;
        const std::size_t begin = tokens.getOffset(tokens.find(name.position));
        const TextSpan selection{begin, begin + text.size()};
        return {encodeLossy(text), kind, selection, selection, {}};
    }

    void addFunction(const Node<CA>& node, const FunctionBody<CA>& function, SymbolKind kind,
                     Symbols& symbols) {
        Symbol symbol = make(*function.name, kind);
        setBlock(node, symbol);
        symbol.children = find(function.body);
        symbols.push_back(std::move(symbol));
    }

    void addClass(const Node<CA>& node, Symbols& symbols) {
        const auto& definition = as<ClassDefinition>(node);
        Symbol symbol = make(*definition.name, SymbolKind::Class);
        setBlock(node, symbol);
        symbol.children = find(definition.members);
        symbols.push_back(std::move(symbol));
    }

    void addLine(const Node<CA>& node, const Node<CA>& name, SymbolKind kind, Symbols& symbols) {
        Symbol symbol = make(name, kind);
        const std::size_t first = tokens.find(node.position);
        symbol.whole = {tokens.getOffset(first), std::max(symbol.selection.end, ends.findLineEnd(first))};
        symbols.push_back(std::move(symbol));
    }

    void setBlock(const Node<CA>& node, Symbol& symbol) const {
        const std::size_t first = tokens.find(node.position);
        symbol.whole = {tokens.getOffset(first), std::max(symbol.selection.end, ends.find(first))};
    }

    const TokenList& tokens;
    BlockEnds ends;
};

/// Functions and classes as far as the tokens show them.
class TokenSymbols {
public:
    explicit TokenSymbols(const TokenList& tokens) : tokens(tokens), ends(tokens) {}

    Symbols find() const {
        Symbols symbols;
        for (std::size_t i = 0; i < tokens.size(); ++i) {
            const TokenType type = tokens[i].type;
            if (type == TokenType::Function || type == TokenType::ClassLevelKeyword20) {
                add(i, type == TokenType::Function ? SymbolKind::Function : SymbolKind::Class, symbols);
            }
        }
        return symbols;
    }

private:
    static bool isName(TokenType type) {
        return type == TokenType::NameToken27 || type == TokenType::NameToken28;
    }

    /// The name is the last one before parentheses, a `<` or the line's end, after the `=` of outputs.
    void add(std::size_t opener, SymbolKind kind, Symbols& symbols) const {
        std::size_t name = 0;
        for (std::size_t i = tokens.skipWhitespace(opener + 1); i + 1 < tokens.size();
             i = tokens.skipWhitespace(i + 1)) {
            const TokenType type = tokens[i].type;
            if (tokens[i].isEndOfLine() || type == TokenType::ComparisonOperator69 ||
                (type == TokenType::OpenParenthesis && name != 0)) {
                break;
            }
            name = isName(type) ? i : name;
        }
        if (name != 0) {
            const TextSpan selection{tokens.getOffset(name), tokens.getEnd(name)};
            symbols.push_back({encodeLossy(tokens[name].lexeme),
                               kind,
                               {tokens.getOffset(opener), std::max(selection.end, ends.find(opener))},
                               selection,
                               {}});
        }
    }

    const TokenList& tokens;
    BlockEnds ends;
};

class SymbolWriter {
public:
    explicit SymbolWriter(const Document& document) : document(document), finder(document.makeFinder()) {}

    Json writeTree(const Symbols& symbols) {
        Json list = Json::array();
        for (const Symbol& symbol : symbols) {
            Json json = {{"name", symbol.name},
                         {"kind", static_cast<int>(symbol.kind)},
                         {"range", finder.writeRange(symbol.whole.begin, symbol.whole.end)},
                         {"selectionRange", finder.writeRange(symbol.selection.begin, symbol.selection.end)}};
            if (!symbol.children.empty()) {
                json["children"] = writeTree(symbol.children);
            }
            list.push_back(std::move(json));
        }
        return list;
    }

    void writeList(const Symbols& symbols, const std::string& container, Json& list) {
        for (const Symbol& symbol : symbols) {
            Json json = {{"name", symbol.name},
                         {"kind", static_cast<int>(symbol.kind)},
                         {"location",
                          {{"uri", document.uri},
                           {"range", finder.writeRange(symbol.whole.begin, symbol.whole.end)}}}};
            if (!container.empty()) {
                json["containerName"] = container;
            }
            list.push_back(std::move(json));
            writeList(symbol.children, symbol.name, list);
        }
    }

private:
    const Document& document;
    PositionFinder finder;
};

} // namespace

Json findSymbols(const Question& question) {
    if (!question.isAboutSource()) {
        return {};
    }
    const AnalysisPointer analysis = question.analyze();
    const TokenList tokens(*analysis);
    const Symbols symbols =
        analysis->parsed.analysis == nullptr
            ? TokenSymbols(tokens).find()
            : TreeSymbols(tokens).find(analysis->parsed.analysis->getProgramFile()->statements);
    SymbolWriter writer(question.getDocument());
    if (question.client.showsSymbolTrees) {
        return writer.writeTree(symbols);
    }
    Json list = Json::array();
    writer.writeList(symbols, {}, list);
    return list;
}

} // namespace ombrel::lsp
