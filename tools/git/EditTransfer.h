#pragma once

#include "git/GitDiff.h"
#include "text/Edit.h"

#include <string_view>
#include <vector>

namespace ombrel {

/// The edits of one version of a text for another version of it. `hunks` are the differences between both;
/// the lines outside of them correspond to each other. An edit goes to the other version if all lines that it
/// touches are there, next to each other and the same, their line ends aside; others are left out. New line
/// ends are as the one of the line that an edit begins in.
///
/// Whether the result is layout in the other version too, or in a comment there, isn't known.
std::vector<Edit> transferEdits(std::u16string_view from, const Edits& edits, const std::vector<Hunk>& hunks,
                                std::u16string_view to);

} // namespace ombrel
