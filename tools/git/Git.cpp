#include "git/Git.h"

#include "diagnostics/Message.h"
#include "git/Process.h"
#include "text/ListSplitter.h"

#include <algorithm>
#include <cstdlib>
#include <system_error>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// Without the variables that give paths or diffs another meaning.
std::vector<std::string> getEnvironment() {
    return getEnvironmentWithout({"GIT_LITERAL_PATHSPECS", "GIT_GLOB_PATHSPECS", "GIT_NOGLOB_PATHSPECS",
                                  "GIT_ICASE_PATHSPECS", "GIT_EXTERNAL_DIFF", "GIT_DIFF_OPTS"});
}

/// git's messages name files, so each line is made fit for a terminal.
std::string getPrintableLines(std::string_view text) {
    std::string lines;
    for (const std::string& line : splitList(text, '\n')) {
        lines += (lines.empty() ? "" : "\n") + getPrintableName(line);
    }
    return lines;
}

std::string withoutLineEnd(std::string text) {
    if (text.ends_with('\n')) {
        text.pop_back();
    }
    return text;
}

ProcessResult start(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                    std::string_view input) {
    try {
        return runProcess(words, environment, input);
    } catch (const std::system_error& error) {
        throw GitError(error.code() == std::errc::no_such_file_or_directory
                           ? std::string("git isn't installed, and what changed is known to nobody else")
                           : fmt::format("can't start git: {}", error.what()));
    }
}

} // namespace

Git::Git() : environment(getEnvironment()) {
    ProcessResult result = start({"git", "rev-parse", "--show-toplevel"}, environment, {});
    if (result.status != 0) {
        throw GitError(
            fmt::format("here is no work tree of a git repository: {}", getPrintableLines(result.err)));
    }
    top = withoutLineEnd(std::move(result.out));
    if (std::getenv("GIT_DIR") != nullptr) {
        result = start({"git", "rev-parse", "--absolute-git-dir"}, environment, {});
        setVariable("GIT_DIR", withoutLineEnd(std::move(result.out)));
        setVariable("GIT_WORK_TREE", top);
    }
}

std::string Git::run(const std::vector<std::string>& words, std::string_view input) const {
    std::vector<std::string> all{"git", "-C", top};
    all.insert(all.end(), words.begin(), words.end());
    ProcessResult result = start(all, environment, input);
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
    ProcessResult result = start(
        {"git", "-C", top, "rev-parse", "--verify", "--quiet", revision + "^{commit}"}, environment, {});
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
