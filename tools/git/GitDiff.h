#pragma once

#include "text/LineRange.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// Lines that took the place of others. Lines are counted from 1 and end at line feeds, also where a text has
/// other line ends. Without lines on one side its `first` is the line before the place.
struct Hunk {
    std::uint32_t oldFirst;
    std::uint32_t oldCount;
    std::uint32_t newFirst;
    std::uint32_t newCount;
};

/// A file whose content differs from what it was.
struct FileDiff {
    std::string path; ///< from the top of the work tree, bytes
    std::string
        blob; ///< id of the new content in the index; zeros, or an id without an object, if it isn't there
    bool isRegular = true;   ///< neither symbolic link nor repository
    std::vector<Hunk> hunks; ///< at least one, ascending
};

/// Options for git's diff commands that make them print what parseDiff reads, whatever is configured.
const std::vector<std::string>& getDiffOptions();

/// Reads what a diff command printed. Files that are gone, unmerged, empty, or the same but for name and mode
/// have no place in the result. Throws GitError for anything but a diff.
std::vector<FileDiff> parseDiff(std::string_view text);

/// The lines that are new or changed, ascending; none where lines only vanished.
std::vector<LineRange> getNewLines(const FileDiff& file);

/// A diff that replaces one object of the index by another one that is in the repository already. `git apply
/// --cached` takes it for a lock, compare and exchange: it does nothing unless `before` is what is staged.
std::string makeExchange(const std::string& path, const std::string& before, const std::string& after);

} // namespace ombrel
