#include "git/Git.h"

#include "text/Printable.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

std::string withoutLineEnd(std::string text) {
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

} // namespace

Git::Git() : environment(makeGitEnvironment(RepositoryChoice::Environment)) {
    ProcessResult result = runGit({"rev-parse", "--show-toplevel"}, environment);
    if (result.status != 0) {
        throw GitError(fmt::format("not inside a git work tree: {}", getPrintableLines(result.err)));
    }
    top = withoutLineEnd(std::move(result.out));
    const std::string folder = withoutLineEnd(runGit({"rev-parse", "--absolute-git-dir"}, environment).out);
    if (std::getenv("GIT_DIR") != nullptr) {
        setVariable("GIT_DIR", folder);
        setVariable("GIT_WORK_TREE", top);
    } else {
        checkTop(folder);
    }
    driverOptions = disableDrivers(top, environment);
}

/// A repository can name any folder as its work tree, and its files would be formatted in place of those that
/// the user sees.
void Git::checkTop(const std::string& folder) const {
    const ProcessResult found = runGit({"-C", top, "rev-parse", "--absolute-git-dir"}, environment);
    if (withoutLineEnd(found.out) != folder && std::getenv("GIT_WORK_TREE") == nullptr) {
        throw GitError(fmt::format("the configuration of this repository (core.worktree) names another work "
                                   "tree: {}; set GIT_DIR and GIT_WORK_TREE if this is meant",
                                   getPrintableName(top)));
    }
}

ProcessResult Git::start(const std::vector<std::string>& words, std::string_view input) const {
    std::vector<std::string> all{"-C", top};
    all.insert(all.end(), driverOptions.begin(), driverOptions.end());
    all.insert(all.end(), words.begin(), words.end());
    return runGit(all, environment, input);
}

std::string Git::run(const std::vector<std::string>& words, std::string_view input) const {
    ProcessResult result = start(words, input);
    if (result.status != 0) {
        throw GitError(fmt::format("git {} failed ({}): {}", words.front(), result.status,
                                   getPrintableLines(result.err)));
    }
    return std::move(result.out);
}

std::string Git::runForWord(const std::vector<std::string>& words, std::string_view input) const {
    return withoutLineEnd(run(words, input));
}

std::optional<std::string> Git::findCommit(const std::string& revision) const {
    if (revision.starts_with('-')) {
        return std::nullopt;
    }
    ProcessResult result = start({"rev-parse", "--verify", "--quiet", revision + "^{commit}"});
    return result.status == 0 ? std::optional(withoutLineEnd(std::move(result.out))) : std::nullopt;
}

Git Git::withIndex(const std::string& path) const {
    Git other(*this);
    other.setVariable("GIT_INDEX_FILE", path);
    return other;
}

void Git::setVariable(const std::string& name, const std::string& value) {
    std::erase_if(environment, [&](const std::string& line) { return line.starts_with(name + '='); });
    environment.push_back(name + '=' + value);
}

std::string getLiteralPathspec(const std::string& path) {
    return ":(literal)" + path;
}

} // namespace ombrel
