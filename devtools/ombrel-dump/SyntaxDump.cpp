#include "SyntaxDump.h"

#include "text/TextEncoding.h"
#include <ca/Analyzer.h>
#include <lf/astapi/visitFields.h>

#include <algorithm>
#include <ostream>
#include <string_view>
#include <variant>
#include <vector>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using ca::astapi::CA;
using SyntaxNode = lf::astapi::Node<CA>;
using SyntaxList = lf::astapi::NodeList<CA>;
using Validation = lf::astapi::ValidationSpec<CA>;

std::string quote(std::u16string_view text) {
    return nlohmann::json(encodeLossy(std::u16string(text))).dump();
}

/// What is still to be written: a node with all its children, or a piece of text.
using Piece = std::variant<const SyntaxNode*, std::string>;

/// Collects the pieces that a node consists of, in order.
class FieldPieces {
public:
    explicit FieldPieces(std::vector<Piece>& pieces) : pieces(pieces) {}

    void child(const char* name, const SyntaxNode* node) {
        startField(name);
        appendValue(node);
    }

    void list(const char* name, const SyntaxList& nodes) {
        startField(name);
        appendValue(nodes);
    }

    void words(const char* name, const SyntaxList& nodes) {
        std::string json = "[";
        for (const SyntaxNode* node : nodes) {
            json += node == nodes.front() ? "" : ", ";
            json += quote(lf::astapi::as<lf::astapi::Identifier>(*node).text);
        }
        startField(name);
        pieces.emplace_back(json + "]");
    }

    void number(const char* name, std::int32_t value) { addText(name, std::to_string(value)); }
    void flag(const char* name, bool value) { addText(name, value ? "true" : "false"); }
    void text(const char* name, std::u16string_view value) { addText(name, quote(value)); }

    void validation(const char* name, const Validation* spec) {
        if (spec == nullptr) {
            return addText(name, "null");
        }
        startField(name);
        pieces.emplace_back("{\"dimensions\": ");
        appendValue(spec->dimensions);
        child("classType", spec->classType);
        list("validators", spec->validators);
        pieces.emplace_back("}");
    }

private:
    void startField(const char* name) { pieces.emplace_back(std::string(", \"") + name + "\": "); }

    void addText(const char* name, const std::string& json) {
        startField(name);
        pieces.emplace_back(json);
    }

    void appendValue(const SyntaxNode* node) {
        if (node == nullptr) {
            pieces.emplace_back("null");
        } else {
            pieces.emplace_back(node);
        }
    }

    void appendValue(const SyntaxList& nodes) {
        pieces.emplace_back("[");
        for (const SyntaxNode* node : nodes) {
            pieces.emplace_back(node == nodes.front() ? "\n" : ",\n");
            pieces.emplace_back(node);
        }
        pieces.emplace_back("]");
    }

    std::vector<Piece>& pieces;
};

void writeHead(std::ostream& stream, const SyntaxNode& node) {
    stream << "{\"kind\": " << static_cast<int>(node.kind) << ", \"kindName\": \"" << node.kind
           << "\", \"position\": " << node.position << ", \"line\": " << node.line
           << ", \"column\": " << node.column;
}

} // namespace

void dumpSyntax(std::ostream& stream, const std::u16string& text) {
    const auto result = ca::createSingleFileAnalyzer()->parseSourceCode(text);
    std::vector<Piece> work{result->getProgramFile()};
    std::vector<Piece> fields;
    while (!work.empty()) {
        const Piece piece = std::move(work.back());
        work.pop_back();
        if (const auto* json = std::get_if<std::string>(&piece)) {
            stream << *json;
            continue;
        }
        const SyntaxNode& node = *std::get<const SyntaxNode*>(piece);
        writeHead(stream, node);
        work.emplace_back("}");
        fields.clear();
        lf::astapi::visitFields(node, FieldPieces(fields));
        std::move(fields.rbegin(), fields.rend(), std::back_inserter(work));
    }
    stream << '\n';
}

} // namespace ombrel
