#include "format/SyntaxContext.h"

#include <ca/lexer/KeywordTypes.h>
#include <lf/astapi/visitFields.h>

#include <algorithm>
#include <string_view>

namespace ombrel {

using ca::astapi::CA;
using ca::lexer::TokenType;
using lf::astapi::NodeKind;
using SyntaxNode = lf::astapi::Node<CA>;
using SyntaxList = lf::astapi::NodeList<CA>;

namespace {

constexpr std::int32_t superclassOperator = 20;

bool isListOfStatements(std::string_view field) {
    return field == "statements" || field == "body" || field == "members" || field == "argumentsBlocks" ||
           field == "cases";
}

} // namespace

/// Visits every node once and sets the flags of its tokens, without recursion.
class SyntaxContext::Walk {
public:
    Walk(const GapList& gaps, std::vector<std::uint8_t>& flags) : gaps(gaps), flags(flags) {}

    void visitTree(const SyntaxNode& root) {
        work.push_back(&root);
        while (!work.empty()) {
            const SyntaxNode& node = *work.back();
            work.pop_back();
            look(node);
            lf::astapi::visitFields(node, *this);
        }
    }

    void child(const char*, const SyntaxNode* node) {
        const bool hasNothing = node == nullptr || node->kind == NodeKind::Identifier;
        if (!hasNothing) {
            work.push_back(node);
        }
    }

    void list(const char* name, const SyntaxList& nodes) {
        const bool areStatements = isListOfStatements(name);
        for (const SyntaxNode* node : nodes) {
            if (areStatements) {
                set(*node, statementStart);
            }
            child(name, node);
        }
    }

    void words(const char*, const SyntaxList&) {}
    void number(const char*, std::int32_t) {}
    void flag(const char*, bool) {}
    void text(const char*, std::u16string_view) {}

    void validation(const char* name, const lf::astapi::ValidationSpec<CA>* spec) {
        if (spec != nullptr) {
            list(name, spec->dimensions);
            child(name, spec->classType);
            list(name, spec->validators);
        }
    }

private:
    std::size_t find(const SyntaxNode& node) { return last = gaps.find(node.position, last); }

    void set(const SyntaxNode& node, Flag flag) { flags[find(node)] |= flag; }

    void look(const SyntaxNode& node) {
        if (node.kind == NodeKind::MatrixLiteral || node.kind == NodeKind::CellLiteral) {
            set(node, literalOpening);
        } else if (node.kind == NodeKind::TokenLeaf2) {
            set(node, elementInGap);
        } else if (node.kind == NodeKind::UnaryOperation) {
            // of a postfix operator this is the operand, of which nobody asks
            set(node, prefix);
        } else if (node.kind == NodeKind::BinaryOperation) {
            lookAtOperation(lf::astapi::as<lf::astapi::BinaryOperation>(node));
        }
    }

    void lookAtOperation(const lf::astapi::BinaryOperation<CA>& node) {
        if (node.operatorNumber == superclassOperator) {
            flags[find(*node.right) - 1] |= superclassAt;
        }
    }

    const GapList& gaps;
    std::vector<std::uint8_t>& flags;
    std::vector<const SyntaxNode*> work;
    std::size_t last = 0; ///< the token that was found last
};

SyntaxContext::SyntaxContext(const GapList& gaps, const SyntaxNode& root) : flags(gaps.getCount()) {
    Walk(gaps, flags).visitTree(root);
    std::vector<std::uint32_t> open; // brackets; `none` for those that don't open a literal
    literals.reserve(gaps.getCount());
    for (std::size_t token = 0; token < gaps.getCount(); ++token) {
        literals.push_back(open.empty() ? none : open.back());
        bool startsUnit = token == 0 || has(token, statementStart);
        const TokenType type = gaps.getType(token);
        switch (type) {
        case TokenType::OpenParenthesis:
        case TokenType::OpenSquareBracket:
        case TokenType::OpenBrace:
            open.push_back(has(token, literalOpening) ? static_cast<std::uint32_t>(token) : none);
            break;
        case TokenType::CloseParenthesis:
        case TokenType::CloseSquareBracket:
        case TokenType::CloseBrace:
            open.empty() ? void() : open.pop_back();
            break;
        case TokenType::End:
        case TokenType::EndOfInput:
            startsUnit = true;
            break;
        default:
            startsUnit = startsUnit || ca::lexer::dividesBlock(type);
            break;
        }
        if (startsUnit) {
            units.push_back(token);
        }
    }
}

std::size_t SyntaxContext::getUnit(std::size_t token) const {
    return *(std::upper_bound(units.begin(), units.end(), token) - 1);
}

std::size_t SyntaxContext::getUnitEnd(std::size_t unit) const {
    const auto next = std::upper_bound(units.begin(), units.end(), unit);
    return next == units.end() ? flags.size() : *next;
}

} // namespace ombrel
