#pragma once

#include "diagnostics/Result.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ombrel {

/// Whole lines that formatting leaves alone: from the line of an `off` comment to that of its `on` comment,
/// with their line ends, or to the end of the text.
struct SuppressedRegion {
    std::size_t begin;  ///< offset of the first line's first character, in 16-bit characters
    std::size_t end;    ///< offset behind the last line
    std::uint32_t line; ///< of the `off` comment, from 1
};

/// What a text's own comments say about its formatting. Each stands on a line of its own, with any blanks
/// round its words; words in other comments, strings and commands mean nothing:
///
///     % ombrel-format off
///     table = [1   0
///              0  12];
///     % ombrel-format on
///
/// An `off` in front of all code that no `on` follows turns formatting off for the whole file.
struct Suppression {
    bool isWholeFile = false;
    std::vector<SuppressedRegion> regions; ///< in ascending order, never touching each other
    Problems warnings;                     ///< comments without effect, an `off` without `on`; in order
};

/// Reads the comments of a text. Costs next to nothing for a text that has none.
Suppression findSuppression(const std::u16string& text);

/// Puts the suppressed lines of a text back into its formatted form, which was made as if they weren't
/// suppressed, by any engine: it may have other lines. The two comments of a region must still be there,
/// each on a line of its own; what stands between them is replaced by the lines of `before`.
///
/// Fails if the comments of both texts can't be matched one to one. Whether the result still means
/// the same is for the caller's safety check to say, since an engine may have moved code past a comment.
Result<std::u16string> restoreSuppressed(std::u16string_view before, const Suppression& suppression,
                                         std::u16string after);

} // namespace ombrel
