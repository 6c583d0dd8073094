#pragma once

#include "process/Process.h"

#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// git couldn't be run, or refused. `what()` is for the user, with git's own words, of several lines at
/// times.
class GitError : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// Which repository git works in.
enum class RepositoryChoice {
    Environment, ///< the one that the environment names (GIT_DIR, GIT_INDEX_FILE: hooks rely on it), or the
                 ///< folder's
    Folder,      ///< the folder's, whatever the environment names
};

/// The environment for git, as lines NAME=VALUE: ours, without any of git's variables that could make it run
/// a program or change what it prints.
std::vector<std::string> makeGitEnvironment(RepositoryChoice choice);

/// Runs git with an environment made by makeGitEnvironment(): the only place where git is started. `words`
/// starts with options of git itself or with its command. No program that a repository configures is run.
/// Throws GitError if git can't be started, if it takes longer than a minute, and if it takes longer than a
/// second where a pipe has the place of a file that git reads; it is killed then.
ProcessResult runGit(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                     std::string_view input = {});

/// What git printed on standard error, fit for a terminal: its messages name files.
std::string getPrintableLines(std::string_view text);

/// Options for commands of git that read files of the work tree: they switch off every filter, diff and hook
/// program that is configured in the repository of `folder`. Throws GitError.
std::vector<std::string> disableDrivers(const std::string& folder,
                                        const std::vector<std::string>& environment);

} // namespace ombrel
