#include "git/GitIgnore.h"

#include "files/Paths.h"
#include "git/GitProcess.h"
#include "text/ListSplitter.h"

#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// Folders that are ignored as a whole are one name with a slash at its end.
std::vector<std::string> makeWords(const std::string& repository, const std::vector<std::string>& scope) {
    std::vector<std::string> words = {"-C",       repository,  "--literal-pathspecs", "ls-files",
                                      "--others", "--ignored", "--exclude-standard",  "--directory",
                                      "-z",       "--"};
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

const GitIgnore::Paths& GitIgnore::getIgnored(const std::string& repository) {
    const auto [known, isNew] = repositories.try_emplace(repository);
    if (!isNew) {
        return known->second;
    }
    try {
        // A hook's variables would lead git to the hook's repository, whichever folder it is called in.
        const ProcessResult answer = runGit(makeWords(repository, getScopeIn(repository)),
                                            makeGitEnvironment(RepositoryChoice::Folder));
        if (answer.status != 0) {
            failures.emplace_back(repository, "");
        }
        for (std::string& name : splitList(answer.out, '\0')) {
            known->second.insert(std::move(name));
        }
    } catch (const GitError& error) {
        failures.emplace_back(repository, fmt::format(": {}", error.what()));
    }
    return known->second;
}

bool GitIgnore::isIgnored(const std::string& repository, const std::string& path, bool isFolder) {
    std::string name = getShortPath(repository, path);
    name += isFolder ? "/" : "";
    return getIgnored(repository).contains(name);
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
