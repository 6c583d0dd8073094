#pragma once

#include "git/GitDiff.h"

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// Does to `text` what turned `before` into `after`, which has the same lines with other whitespace. `hunks`
/// are the differences between `before` and `text`. The lines outside of them correspond to each other, and
/// one that is the same in `text` as in `before`, its CR aside, becomes that of `after`; all other lines stay
/// byte for byte.
///
/// Lines end at line feeds. Returns `text` if `before` and `after` haven't the same number of them.
std::string transferLines(std::string_view before, std::string_view after, const std::vector<Hunk>& hunks,
                          std::string_view text);

} // namespace ombrel
