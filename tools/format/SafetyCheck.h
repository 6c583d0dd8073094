#pragma once

#include "diagnostics/Message.h"

#include <optional>
#include <string_view>

namespace ombrel {

/// Compares a text with its reindented form: the lines and their ends must be the same, and only whitespace
/// (spaces, tabs) at the edges of a line may differ. Gives the first difference, placed in `before`.
std::optional<Problem> checkOnlyEdgesChanged(std::u16string_view before, std::u16string_view after);

} // namespace ombrel
