#pragma once

#include "lsp/Blocks.h"

#include <cstdint>
#include <vector>

namespace ombrel::lsp {

/// What a name stands for, as far as its file tells.
enum class NameRole : std::uint8_t {
    None, ///< no name, or nothing is known of it
    Namespace,
    Class,
    Function,
    Method,
    Property,
    Event,
    EnumMember,
    Parameter,
    Variable,
    Attribute,
};

struct NameUse {
    NameRole role = NameRole::None;
    bool isDeclaration = false;
};

/// For each token of a text that parses, what its name stands for. A name that its function assigns is a
/// variable there, everywhere in the function; any other one that isn't declared is a function, of this file
/// or another.
std::vector<NameUse> findNameUses(const Analysis& analysis, const TokenList& tokens);

} // namespace ombrel::lsp
