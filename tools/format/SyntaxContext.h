#pragma once

#include "format/Gap.h"

#include <ca/astapi/CA.h>
#include <lf/astapi/Nodes.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace ombrel {

/// What the syntax tree knows about the code tokens of a gap list and the gaps before them. Tokens have the
/// numbers of the gaps before them.
///
/// A *unit* is a run of code tokens: a statement without statements inside, the header of a block (`if a`,
/// `function f(x)`), or a word that divides or closes one (`else`, `end`).
class SyntaxContext {
public:
    SyntaxContext(const GapList& gaps, const lf::astapi::Node<ca::astapi::CA>& root);

    /// The unit of a token: the number of its first token.
    std::size_t getUnit(std::size_t token) const;

    /// The number of the first token after a unit.
    std::size_t getUnitEnd(std::size_t unit) const;

    /// Whether a statement, a function or a member of a block starts at a token.
    bool isStatementStart(std::size_t token) const { return has(token, statementStart); }

    /// Whether a token is an operator before its operand.
    bool isPrefix(std::size_t token) const { return has(token, prefix); }

    /// Whether a token is the `@` between a method and its superclass.
    bool isSuperclassAt(std::size_t token) const { return has(token, superclassAt); }

    /// Whether a `,` or `;` in a gap is an element of a literal.
    bool hasElement(std::size_t gap) const { return has(gap, elementInGap); }

    /// The bracket that opens the matrix or cell literal among whose rows and elements a gap is: not inside
    /// other brackets that are in that literal, but next to the literal's own ones too.
    std::optional<std::size_t> getLiteral(std::size_t gap) const {
        return literals[gap] == none ? std::nullopt : std::optional<std::size_t>(literals[gap]);
    }

private:
    static constexpr std::uint32_t none = static_cast<std::uint32_t>(-1);

    enum Flag : std::uint8_t {
        statementStart = 1,
        prefix = 2,
        superclassAt = 4,
        literalOpening = 8,
        elementInGap = 16
    };

    bool has(std::size_t token, Flag flag) const { return (flags[token] & flag) != 0; }

    class Walk;

    std::vector<std::uint8_t> flags;
    std::vector<std::uint32_t> literals; ///< of each gap: the token that opens the literal, or `none`
    std::vector<std::size_t> units;      ///< their first tokens, ascending
};

} // namespace ombrel
