#pragma once

#include "diagnostics/Result.h"

#include <string_view>

namespace ombrel {

/// Compares a text with its reindented form: the lines and their ends must be the same, and only whitespace
/// (spaces, tabs) at the edges of a line may differ. Fails with the first difference, placed in `before`.
Result<void> checkOnlyEdgesChanged(std::u16string_view before, std::u16string_view after);

} // namespace ombrel
