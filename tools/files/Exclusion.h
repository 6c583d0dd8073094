#pragma once

#include "files/FileSystem.h"
#include "files/IgnoreRules.h"
#include "files/IgnoredFiles.h"
#include "files/SearchOptions.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// What ignore files are called.
inline constexpr std::string_view ignoreFileName = ".ombrel-format-ignore";

/// Decides what a search leaves out. The first of these that says anything about a path decides: the patterns
/// of the command line, the ignore files of the folders above it from the innermost to the outermost, the
/// repository it is in.
///
/// All paths are absolute and without symbolic links. Ignore files apply up to the folder of the repository
/// that the search started in, or up to the root if there is none.
class Exclusion {
public:
    struct Decision {
        bool isExcluded;
        bool isWanted; ///< a pattern of the command line includes this very path, whatever its name ends in
        std::string reason; ///< empty if no rule is about the path
    };

    /// Files and `ignored`, which knows its scope already, have to outlive it.
    Exclusion(const SearchOptions& options, FileSystem& files, IgnoredFiles& ignored);

    /// Starts a search in a folder: the ignore files of the folder and of those above it apply from now on.
    void begin(const std::string& folder);

    /// Goes on to a folder in the innermost one, and back.
    void enter(const std::string& folder);
    void leave() { levels.pop_back(); }

    /// Asks for something in the innermost folder.
    Decision decide(const std::string& path, bool isFolder);

    /// Asks for a path and everything above it, as far as ignore files apply. Starts a search.
    Decision decideFromTop(const std::string& path, bool isFolder);

    /// Ignore files that can't be read, and repositories that can't be asked, as sentences.
    std::vector<std::string> getWarnings() const;

private:
    struct Level {
        std::string folder;
        std::string repository; ///< its folder; empty if there is none
        IgnoreRules rules;
    };

    IgnoreRules readRules(const std::string& folder);
    std::optional<Decision> askCommandLine(const std::string& path, bool isFolder) const;
    std::optional<Decision> askIgnoreFiles(const std::string& path, bool isFolder) const;

    FileSystem& files;
    IgnoredFiles& ignored;
    bool honorsGitignore;
    std::string currentFolder;
    IgnoreRules commandLine;
    std::vector<Level> levels; ///< from the outermost to the innermost folder
    std::vector<std::string> unreadable;
};

} // namespace ombrel
