#pragma once

#include "lsp/Position.h"

#include <string_view>

namespace ombrel::lsp {

/// What is wrong at a place of an options file: the string, number or word that starts there, otherwise one
/// character.
TextSpan findFaultyText(std::u16string_view text, std::size_t place);

} // namespace ombrel::lsp
