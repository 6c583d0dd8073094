#pragma once

#include "git/GitProcess.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// The repository that the current folder belongs to. Its commands run in the top folder of the work tree,
/// with the repository and the index that the environment names (GIT_DIR, GIT_INDEX_FILE: hooks rely on it),
/// and without the settings that change what git prints or name programs. May be used on several threads at
/// once.
class Git {
public:
    /// Throws GitError where there is no git or no work tree, and where the repository's own configuration
    /// (core.worktree) says that its work tree is elsewhere.
    Git();

    /// The folder that git's paths start from: absolute, without symbolic links.
    const std::string& getTop() const { return top; }

    /// What the command `words` prints. Throws GitError if it fails.
    std::string run(const std::vector<std::string>& words, std::string_view input = {}) const;

    /// The same for a command that prints one word.
    std::string runForWord(const std::vector<std::string>& words, std::string_view input = {}) const;

    /// The id of a commit, nothing if there is none of this name.
    std::optional<std::string> findCommit(const std::string& revision) const;

    /// The same repository with the index of another file. A path that isn't absolute starts at the top.
    Git withIndex(const std::string& path) const;

private:
    ProcessResult start(const std::vector<std::string>& words, std::string_view input = {}) const;
    void checkTop(const std::string& folder) const;
    void setVariable(const std::string& name, const std::string& value);

    std::vector<std::string> environment;   ///< lines NAME=VALUE
    std::vector<std::string> driverOptions; ///< of disableDrivers()
    std::string top;
};

/// The pattern that means this one path, whatever characters it has.
std::string getLiteralPathspec(const std::string& path);

} // namespace ombrel
