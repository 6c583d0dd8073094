#include "git/GitIgnore.h"

#include "files/Paths.h"
#include "git/Process.h"
#include "text/ListSplitter.h"

#include <filesystem>
#include <optional>
#include <system_error>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// Folders that are ignored as a whole are one name with a slash at its end. Repositories can set commands
/// that git runs to learn what has changed; none of them is wanted here.
std::vector<std::string> makeCommand(const std::string& repository, const std::vector<std::string>& scope) {
    std::vector<std::string> command = {"git",
                                        "-C",
                                        repository,
                                        "-c",
                                        "core.fsmonitor=false",
                                        "--literal-pathspecs",
                                        "ls-files",
                                        "--others",
                                        "--ignored",
                                        "--exclude-standard",
                                        "--directory",
                                        "-z",
                                        "--"};
    command.insert(command.end(), scope.begin(), scope.end());
    return command;
}

/// Nothing if git can't be started. A hook's variables would lead it to the hook's repository, whichever
/// folder it is called in.
std::optional<ProcessResult> ask(const std::vector<std::string>& command) {
    try {
        return runProcess(
            command, getEnvironmentWithout({"GIT_DIR", "GIT_WORK_TREE", "GIT_INDEX_FILE", "GIT_PREFIX"}), {});
    } catch (const std::system_error&) {
        return std::nullopt;
    }
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
    const auto answer = ask(makeCommand(repository, getScopeIn(repository)));
    if (!answer) {
        return known->second;
    }
    if (answer->status != 0) {
        failures.push_back(repository);
    }
    for (std::string& name : splitList(answer->out, '\0')) {
        known->second.insert(std::move(name));
    }
    return known->second;
}

bool GitIgnore::isIgnored(const std::string& repository, const std::string& path, bool isFolder) {
    std::string name = getShortPath(repository, path);
    name += isFolder ? "/" : "";
    return getIgnored(repository).contains(name);
}

std::vector<std::string> GitIgnore::getWarnings() const {
    std::error_code error;
    const std::string currentFolder = std::filesystem::current_path(error);
    std::vector<std::string> warnings;
    for (const std::string& repository : failures) {
        warnings.push_back(fmt::format("git can't say what is ignored in {}, so nothing is",
                                       getShortPath(currentFolder, repository)));
    }
    return warnings;
}

} // namespace ombrel
