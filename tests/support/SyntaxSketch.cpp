#include "support/SyntaxSketch.h"

#include <lf/astapi/visitFields.h>

#include <utility>

namespace {

using ca::astapi::CA;
using SyntaxNode = lf::astapi::Node<CA>;
using SyntaxList = lf::astapi::NodeList<CA>;

std::string toBytes(std::u16string_view text) {
    std::string bytes;
    for (const char16_t c : text) {
        bytes += static_cast<char>(c);
    }
    return bytes;
}

class Sketch {
public:
    explicit Sketch(std::string& out) : out(out) {}

    void child(const char*, const SyntaxNode* node) {
        startField();
        add(node);
    }

    void list(const char*, const SyntaxList& nodes) {
        startField();
        const char* separator = "[";
        for (const SyntaxNode* node : nodes) {
            out += std::exchange(separator, " ");
            add(node);
        }
        out += nodes.empty() ? "[]" : "]";
    }

    void words(const char* name, const SyntaxList& nodes) { list(name, nodes); }

    void number(const char*, std::int32_t value) {
        startField();
        out += std::to_string(value);
    }

    void flag(const char*, bool value) {
        startField();
        out += value ? "true" : "false";
    }

    void text(const char*, std::u16string_view value) { out += '(' + toBytes(value); }

    void validation(const char* name, const lf::astapi::ValidationSpec<CA>* spec) {
        if (spec == nullptr) {
            return child(name, nullptr);
        }
        list(name, spec->dimensions);
        child(name, spec->classType);
        list(name, spec->validators);
    }

    void add(const SyntaxNode* node) {
        if (node == nullptr) {
            out += '-';
        } else if (node->kind == lf::astapi::NodeKind::Identifier) {
            out += toBytes(lf::astapi::as<lf::astapi::Identifier>(*node).text);
        } else {
            addNode(*node);
        }
    }

private:
    void addNode(const SyntaxNode& node) {
        out += lf::astapi::getNodeKindName(node.kind);
        Sketch inner(out);
        lf::astapi::visitFields(node, inner);
        out += inner.hasFields ? ")" : "";
    }

    void startField() { out += std::exchange(hasFields, true) ? ' ' : '('; }

    std::string& out;
    bool hasFields = false;
};

} // namespace

std::string sketchSyntax(const lf::astapi::ProgramFile<CA>& root) {
    std::string out;
    for (const SyntaxNode* statement : root.statements) {
        Sketch(out).add(statement);
        out += '\n';
    }
    return out;
}
