#pragma once

#include "lsp/Position.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel::lsp {

/// What is wrong at a place of an options file: the string, number or word that starts there, otherwise one
/// character.
TextSpan findFaultyText(std::u16string_view text, std::size_t place);

/// Where a place is in the JSON of an options file, which may be unfinished or wrong.
struct OptionsPlace {
    std::vector<std::string> keys; ///< of the objects around it, from the outermost; lists add none
    bool isKey = true;             ///< the name of a field is there, or could be; otherwise a value
    std::string key;               ///< of a value: the name of its field
    std::optional<TextSpan> text;  ///< the string, number or word at the place, with its quotes
    bool hasColon = false;         ///< a `:` follows the text
};

/// Nothing inside of a comment, and outside of the outermost object.
std::optional<OptionsPlace> findOptionsPlace(std::u16string_view text, std::size_t offset);

} // namespace ombrel::lsp
