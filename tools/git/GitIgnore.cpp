#include "git/GitIgnore.h"

#include "files/Paths.h"
#include "git/GitProcess.h"
#include "text/ListSplitter.h"

#include <filesystem>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// Folders that are ignored as a whole are one name with a slash at its end.
std::vector<std::string> makeWords(const std::vector<std::string>& scope) {
    std::vector<std::string> words = {"--literal-pathspecs", "ls-files",    "--others", "--ignored",
                                      "--exclude-standard",  "--directory", "-z",       "--"};
    words.insert(words.end(), scope.begin(), scope.end());
    return words;
}

} // namespace

/// What git has to look at: nothing special means all of it, which serves many paths better than a long list.
std::vector<std::string> GitIgnore::getScopeIn(const std::string& repository) const {
    constexpr std::size_t longestList = 100;
    std::vector<std::string> paths;
    for (const std::string& path : scope) {
        if (path == repository || isBelow(path, repository) || paths.size() == longestList) {
            return {};
        }
        if (isBelow(repository, path)) {
            paths.push_back(getShortPath(repository, path));
        }
    }
    return paths;
}

void GitIgnore::setScope(std::vector<std::string> paths) {
    scope = std::move(paths);
    for (const std::string& path : scope) {
        std::error_code error;
        if (!std::filesystem::exists(std::filesystem::symlink_status(path, error))) {
            missing.insert(path);
        }
    }
}

/// Nothing if git fails, which a higher status means too.
std::optional<ProcessResult> GitIgnore::ask(const std::string& repository,
                                            const std::vector<std::string>& words, int highestStatus) {
    std::vector<std::string> all = {"-C", repository};
    all.insert(all.end(), words.begin(), words.end());
    try {
        // A hook's variables would lead git to the hook's repository, whichever folder it is called in.
        ProcessResult answer = runGit(all, makeGitEnvironment(RepositoryChoice::Folder));
        if (answer.status <= highestStatus) {
            return answer;
        }
        failures.emplace(repository, "");
    } catch (const GitError& error) {
        failures.emplace(repository, fmt::format(": {}", error.what()));
    }
    return std::nullopt;
}

const GitIgnore::Paths& GitIgnore::getIgnored(const std::string& repository) {
    const auto [known, isNew] = repositories.try_emplace(repository);
    if (isNew) {
        if (const auto answer = ask(repository, makeWords(getScopeIn(repository)), 0)) {
            for (std::string& name : splitList(answer->out, '\0')) {
                known->second.insert(std::move(name));
            }
        }
    }
    return known->second;
}

/// For a name that git can't list, since there is no such file. Rules for folders above apply as well. The
/// command knows no --literal-pathspecs and matches nothing, but it refuses names that begin with a colon.
bool GitIgnore::isNameIgnored(const std::string& repository, const std::string& name) {
    constexpr int notIgnored = 1;
    const auto answer = ask(repository, {"check-ignore", "-q", "--", "./" + name}, notIgnored);
    return answer && answer->status != notIgnored;
}

bool GitIgnore::isIgnored(const std::string& repository, const std::string& path, bool isFolder) {
    const std::string name = getShortPath(repository, path);
    if (!isFolder && missing.contains(path)) {
        return isNameIgnored(repository, name);
    }
    return getIgnored(repository).contains(isFolder ? name + '/' : name);
}

std::vector<std::string> GitIgnore::getWarnings() const {
    const std::string currentFolder = getCurrentFolder();
    std::vector<std::string> warnings;
    for (const auto& [repository, reason] : failures) {
        warnings.push_back(fmt::format("git can't say what is ignored in {}, so nothing is{}",
                                       getShortPath(currentFolder, repository), reason));
    }
    return warnings;
}

} // namespace ombrel
