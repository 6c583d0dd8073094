#pragma once

#include "git/ChangeOptions.h"
#include "git/Git.h"
#include "text/LineRange.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// A file with changes, and which of its lines are new or changed.
struct ChangedFile {
    std::string path;       ///< from the current folder
    std::string pathInTree; ///< from the top of the work tree, as git has it
    std::string
        blob; ///< id of the staged content; means nothing if the changes of the work tree were asked for
    std::optional<std::vector<LineRange>>
        lines; ///< ascending, counted by line feeds; nothing: the whole file
};

/// Something that a user should know about one file, though it is no error.
struct Note {
    std::string path; ///< from the current folder
    std::string text; ///< UTF-8, one line
};

struct ChangedFiles {
    std::vector<ChangedFile> files; ///< by path
    std::vector<Note> notes;        ///< files that were left out
};

/// Asks git for the changed files among `paths`, which are files and folders as the user wrote them; none:
/// all of the work tree. Below folders only `*.omb` counts. New files that git doesn't know and doesn't
/// ignore belong to the changes of the work tree. Deleted files, symbolic links and submodules are no
/// changes, and neither are lines that only vanished. Files with unresolved conflicts are left out, and from
/// the index those that git filters, since what is staged isn't their text.
///
/// Throws GitError: no git, no repository, no such revision, a path that is outside of the repository or
/// nowhere.
ChangedFiles findChangedFiles(const Git& git, const ChangeOptions& options,
                              const std::vector<std::string>& paths);

/// The same lines where every line end counts: LF, CRLF and a lone CR, which git doesn't know.
std::vector<LineRange> countAllLineEnds(std::u16string_view text, const std::vector<LineRange>& lines);

} // namespace ombrel
