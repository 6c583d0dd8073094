// The parser tells where a node starts, and not where it ends. So the nodes are listed first, each before its
// children, and their ends are found backwards through the list: a node ends where its last child ends, or
// where the last bracket or block that it opens between its children is closed:
//
//     f(a, [b c])          the children of the call end after f, a and ]; the ( between f and a is closed by
//     )

#include "stages/SyntaxRows.h"

#include "stages/TokenPlaces.h"
#include "text/TextEncoding.h"

#include <lf/astapi/visitFields.h>

#include <algorithm>
#include <limits>
#include <string_view>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using ca::astapi::CA;
using ca::lexer::TokenType;
using lf::astapi::NodeKind;
using SyntaxNode = lf::astapi::Node<CA>;
using SyntaxList = lf::astapi::NodeList<CA>;

constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

std::string quote(std::u16string_view text) {
    return nlohmann::json(encodeLossy(text)).dump();
}

/// A node in the list, by places in that list.
struct Entry {
    const SyntaxNode* node;
    const char* field; ///< of its parent
    std::uint32_t depth;
    std::size_t firstChild = none;
    std::size_t nextSibling = none;
    std::size_t lastToken = 0;
    std::string facts; ///< fields that are no nodes
};

/// What one node refers to, in the order of its fields.
struct NodeFields {
    struct Child {
        const char* field;
        const SyntaxNode* node;
    };

    std::vector<Child> children;
    std::string facts;

    void child(const char* name, const SyntaxNode* node) {
        if (node != nullptr) {
            children.push_back({name, node});
        }
    }

    void list(const char* name, const SyntaxList& nodes) {
        for (const SyntaxNode* node : nodes) {
            children.push_back({name, node});
        }
    }

    void words(const char* name, const SyntaxList& nodes) { list(name, nodes); }
    void number(const char* name, std::int32_t value) { addFact(name, std::to_string(value)); }
    void flag(const char* name, bool value) { addFact(name, value ? "true" : "false"); }
    void text(const char* name, std::u16string_view value) { addFact(name, quote(value)); }

    void validation(const char*, const lf::astapi::ValidationSpec<CA>* spec) {
        if (spec != nullptr) {
            list("dimensions", spec->dimensions);
            child("classType", spec->classType);
            list("validators", spec->validators);
        }
    }

private:
    void addFact(const char* name, const std::string& value) {
        facts += facts.empty() ? "" : ", ";
        facts += std::string(name) + " " + value;
    }
};

class NodeExtents {
public:
    NodeExtents(const std::u16string& text, const SyntaxNode& root, const TokenPlaces& places)
        : text(text), places(places) {
        list(root);
        for (std::size_t i = entries.size(); i-- > 0;) {
            entries[i].lastToken = findLastToken(entries[i]);
        }
    }

    void visit(const RowVisitor& visit) const {
        for (const Entry& entry : entries) {
            Row row;
            row.begin = entry.node->position;
            row.end = std::max(row.begin, getEnd(entry));
            row.depth = entry.depth;
            row.label = lf::astapi::getNodeKindName(entry.node->kind);
            row.detail = makeDetail(entry, row);
            visit(row);
        }
    }

private:
    void list(const SyntaxNode& root) {
        struct Open {
            NodeFields::Child child;
            std::size_t parent;
            std::uint32_t depth;
        };
        std::vector<Open> open{{{"", &root}, none, 0}};
        std::vector<std::size_t> lastChildren; // of each entry
        while (!open.empty()) {
            const Open next = open.back();
            open.pop_back();
            const std::size_t place = entries.size();
            NodeFields fields;
            lf::astapi::visitFields(*next.child.node, fields);
            entries.push_back(
                {next.child.node, next.child.field, next.depth, none, none, 0, std::move(fields.facts)});
            lastChildren.push_back(none);
            if (next.parent != none) {
                std::size_t& last = lastChildren[next.parent];
                (last == none ? entries[next.parent].firstChild : entries[last].nextSibling) = place;
                last = place;
            }
            for (std::size_t i = fields.children.size(); i-- > 0;) {
                open.push_back({fields.children[i], place, next.depth + 1});
            }
        }
    }

    std::size_t findLastToken(const Entry& entry) const {
        std::size_t token = places.find(entry.node->position);
        if (entry.node->kind == NodeKind::Identifier) {
            const auto length = lf::astapi::as<lf::astapi::Identifier>(*entry.node).text.size();
            return places.find(entry.node->position + std::max<std::size_t>(length, 1) - 1);
        }
        std::size_t last = token;
        for (std::size_t child = entry.firstChild; child != none; child = entries[child].nextSibling) {
            const std::size_t first = places.find(entries[child].node->position);
            for (; token < first; ++token) {
                last = std::max(last, places.getCloser(token));
            }
            last = std::max(last, entries[child].lastToken);
            token = std::max(token, entries[child].lastToken + 1);
        }
        if (entry.firstChild == none) {
            last = places.getCloser(token);
        }
        return entry.firstChild == none ? last : addSuffix(entry, last);
    }

    /// What comes after the last child: an empty list of arguments, a postfix operator.
    std::size_t addSuffix(const Entry& entry, std::size_t last) const {
        const std::size_t next = places.getNextCode(last);
        const auto kind = entry.node->kind;
        const bool isIndexing = kind == NodeKind::ParenthesisIndexing || kind == NodeKind::BraceIndexing;
        if (isIndexing && entries[entry.firstChild].nextSibling == none) {
            return places.getCloser(next);
        }
        const bool isPostfix = places[next].type == TokenType::PostfixOperator43 ||
                               places[next].type == TokenType::PostfixOperator44;
        const bool startsWithOperand = entry.node->position == entries[entry.firstChild].node->position;
        return kind == NodeKind::UnaryOperation && isPostfix && startsWithOperand ? next : last;
    }

    std::size_t getEnd(const Entry& entry) const {
        return entry.depth == 0 ? text.size() : std::min(text.size(), places.getEnd(entry.lastToken));
    }

    /// The field, what the node says of itself, and the text of a node that has no children.
    std::string makeDetail(const Entry& entry, const Row& row) const {
        std::string detail = entry.field;
        if (!entry.facts.empty()) {
            detail += (detail.empty() ? "" : ": ") + entry.facts;
        } else if (entry.firstChild == none && entry.depth != 0) {
            detail += ": " + quote(std::u16string_view(text).substr(row.begin, row.end - row.begin));
        }
        return detail;
    }

    const std::u16string& text;
    const TokenPlaces& places;
    std::vector<Entry> entries;
};

} // namespace

void visitTokenRows(const ca::formatting::ParsedSource& source, const RowVisitor& visit) {
    Row row;
    for (const ca::lexer::Token& token : *source.tokens) {
        row.begin = row.end;
        row.end = row.begin + token.lexeme.size();
        row.label = ca::lexer::getTokenTypeName(token.type);
        row.detail = quote(token.lexeme);
        visit(row);
    }
}

void visitSyntaxRows(const std::u16string& text, const ca::formatting::ParsedSource& source,
                     const RowVisitor& visit) {
    const TokenPlaces places(*source.tokens);
    NodeExtents(text, *source.analysis->getProgramFile(), places).visit(visit);
}

} // namespace ombrel
