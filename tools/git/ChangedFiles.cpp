// Four questions to git: which paths are unmerged, what differs from the base and on which lines, what is
// untracked, and which files have filters. Every answer is about the whole work tree, since a file that was
// moved into a named folder is only known as moved if git sees both places; the selection is applied to the
// answers.
#include "git/ChangedFiles.h"

#include "diagnostics/Message.h"
#include "git/GitDiff.h"
#include "text/LineSplitter.h"
#include "text/ListSplitter.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <set>
#include <system_error>

#include <fmt/format.h>

namespace ombrel {

namespace {

namespace fs = std::filesystem;

constexpr std::string_view extension = ".omb";

/// The paths that the user named, as git names them.
class Selection {
public:
    Selection(const Git& git, const std::vector<std::string>& paths)
        : top(git.getTop()), folder(fs::current_path()) {
        for (const std::string& path : paths) {
            named.emplace(getPathInTree(path), path);
        }
    }

    /// What git has to look at. It matches names in all folders, so that a file that was moved here from
    /// another folder is known to have been moved.
    std::vector<std::string> getPathspecs() const {
        std::vector<std::string> patterns{"--", fmt::format("*{}", extension)};
        for (const auto& [pathInTree, path] : named) {
            std::error_code error;
            if (!pathInTree.ends_with(extension) && !fs::is_directory(path, error)) {
                patterns.push_back(getLiteralPathspec(pathInTree));
            }
        }
        return patterns;
    }

    /// Asks for a file.
    bool contains(const std::string& pathInTree) const {
        const bool isOmbrel = pathInTree.ends_with(extension);
        return named.empty() ? isOmbrel
                             : named.contains(pathInTree) || (isOmbrel && isInNamedFolder(pathInTree));
    }

    /// A path that is misspelt would otherwise look like one without changes.
    void checkExistence(const std::vector<ChangedFile>& files) const {
        for (const auto& [pathInTree, path] : named) {
            std::error_code error;
            const auto isMeant = [&name = pathInTree](const ChangedFile& file) {
                return file.pathInTree == name || file.pathInTree.starts_with(name + '/');
            };
            if (!fs::exists(fs::symlink_status(path, error)) &&
                std::none_of(files.begin(), files.end(), isMeant)) {
                throw GitError(fmt::format("{}: there is no such file or folder", getPrintableName(path)));
            }
        }
    }

    std::string getShownPath(const std::string& pathInTree) const {
        return (fs::path(top) / pathInTree).lexically_relative(folder);
    }

    bool isRegular(const std::string& pathInTree) const {
        std::error_code error;
        return fs::is_regular_file(fs::symlink_status(fs::path(top) / pathInTree, error));
    }

private:
    std::string getPathInTree(const std::string& path) const {
        std::error_code error;
        const fs::path absolute = fs::weakly_canonical(folder / path, error);
        fs::path inTree = absolute.lexically_relative(top);
        if (inTree.filename().empty()) {
            inTree = inTree.parent_path();
        }
        if (error || inTree.empty() || *inTree.begin() == "..") {
            throw GitError(fmt::format("{}: this is outside of the repository {}", getPrintableName(path),
                                       getPrintableName(top)));
        }
        return inTree;
    }

    bool isInNamedFolder(std::string_view pathInTree) const {
        for (std::size_t end = pathInTree.rfind('/'); end != std::string_view::npos;
             end = pathInTree.rfind('/', end - 1)) {
            if (named.contains(std::string(pathInTree.substr(0, end)))) {
                return true;
            }
        }
        return named.contains(".");
    }

    std::string top;
    fs::path folder;
    std::map<std::string, std::string> named; ///< by path in the tree, "." for the top: as the user wrote it
};

/// What the changes are compared with. A branch without a commit is compared with the empty tree.
std::string findBase(const Git& git, const ChangeOptions& options) {
    constexpr std::string_view dots = "...";
    std::string revision = options.isStaged ? "HEAD" : options.since;
    const bool wantsFork = revision.ends_with(dots);
    if (wantsFork) {
        revision.resize(revision.size() - dots.size());
    }
    if (const auto commit = git.findCommit(revision)) {
        return wantsFork ? git.runForWord({"merge-base", *commit, "HEAD"}) : *commit;
    }
    if (revision != "HEAD") {
        throw GitError(
            fmt::format("--since {}: git knows no such revision", getPrintableName(options.since)));
    }
    return git.runForWord({"hash-object", "-t", "tree", "--stdin"});
}

/// The lines that are in both lists, which are ascending.
std::vector<LineRange> intersect(const std::vector<LineRange>& a, const std::vector<LineRange>& b) {
    std::vector<LineRange> common;
    for (auto i = a.begin(), j = b.begin(); i != a.end() && j != b.end(); ++(i->last < j->last ? i : j)) {
        const LineRange range{std::max(i->first, j->first), std::min(i->last, j->last)};
        if (range.first <= range.last) {
            common.push_back(range);
        }
    }
    return common;
}

class Search {
public:
    Search(const Git& git, const ChangeOptions& options, const std::vector<std::string>& paths)
        : git(git), options(options), selection(git, paths) {}

    ChangedFiles findFiles() {
        findUnmerged();
        findDifferent();
        if (!options.isStaged) {
            findUntracked();
        }
        leaveFilteredOut();
        selection.checkExistence(result.files);
        std::sort(result.files.begin(), result.files.end(),
                  [](const ChangedFile& a, const ChangedFile& b) { return a.pathInTree < b.pathInTree; });
        return std::move(result);
    }

private:
    std::string list(std::vector<std::string> words) const {
        const auto pathspecs = selection.getPathspecs();
        words.insert(words.end(), pathspecs.begin(), pathspecs.end());
        return git.run(words);
    }

    void findUnmerged() {
        // Each item is "mode id stage TAB path", one for each side of the conflict.
        for (const std::string& item : splitList(list({"ls-files", "-z", "--unmerged"}), '\0')) {
            const std::string path = item.substr(item.find('\t') + 1);
            if (selection.contains(path) && unmerged.insert(path).second) {
                leaveOut(path, "left out: it has unresolved conflicts");
            }
        }
    }

    std::vector<FileDiff> compareWith(const std::string& base) const {
        std::vector<std::string> words{"diff-index"};
        words.insert(words.end(), getDiffOptions().begin(), getDiffOptions().end());
        if (options.isStaged) {
            words.emplace_back("--cached");
        }
        words.push_back(base);
        return parseDiff(list(std::move(words)));
    }

    void findDifferent() {
        for (const FileDiff& file : compareWith(findBase(git, options))) {
            const bool isWanted = file.isRegular && !unmerged.contains(file.path);
            if (isWanted && selection.contains(file.path)) {
                addDifferent(file);
            }
        }
        const auto merged = options.isStaged ? git.findCommit("MERGE_HEAD") : std::nullopt;
        if (merged) {
            leaveMergedOut(compareWith(*merged));
        }
    }

    /// What comes from the merged branch as it is there is nobody's change in this commit.
    void leaveMergedOut(std::vector<FileDiff> differences) {
        std::map<std::string, FileDiff> byPath;
        for (FileDiff& file : differences) {
            byPath.emplace(file.path, std::move(file));
        }
        std::erase_if(result.files, [&](ChangedFile& file) {
            const auto different = byPath.find(file.pathInTree);
            if (different != byPath.end() && file.lines) {
                file.lines = intersect(*file.lines, getNewLines(different->second));
            }
            return different == byPath.end() || (file.lines && file.lines->empty());
        });
    }

    void addDifferent(const FileDiff& file) {
        std::vector<LineRange> lines = getNewLines(file);
        if (options.takesWhole) {
            addFile(file.path, file.blob, std::nullopt);
        } else if (!lines.empty()) {
            addFile(file.path, file.blob, std::move(lines));
        }
    }

    void findUntracked() {
        for (const std::string& path :
             splitList(list({"ls-files", "-z", "--others", "--exclude-standard"}), '\0')) {
            if (selection.contains(path) && selection.isRegular(path)) {
                addFile(path, {}, std::nullopt);
            }
        }
    }

    /// What git has of such a file isn't its text, and its filter isn't run.
    void leaveFilteredOut() {
        std::string paths;
        for (const ChangedFile& file : result.files) {
            paths += file.pathInTree + '\0';
        }
        if (paths.empty()) {
            return;
        }
        // Three items for each path: itself, the attribute's name, its value.
        const auto items = splitList(git.run({"check-attr", "-z", "--stdin", "filter"}, paths), '\0');
        std::set<std::string> filtered;
        for (std::size_t i = 0; i + 2 < items.size(); i += 3) {
            if (items[i + 2] != "unspecified" && items[i + 2] != "unset") {
                filtered.insert(items[i]);
                leaveOut(items[i], "left out: it goes through the filter " + items[i + 2]);
            }
        }
        std::erase_if(result.files,
                      [&](const ChangedFile& file) { return filtered.contains(file.pathInTree); });
    }

    void addFile(const std::string& path, const std::string& blob,
                 std::optional<std::vector<LineRange>> lines) {
        result.files.push_back({selection.getShownPath(path), path, blob, std::move(lines)});
    }

    void leaveOut(const std::string& path, std::string reason) {
        result.notes.push_back({selection.getShownPath(path), std::move(reason)});
    }

    const Git& git;
    const ChangeOptions& options;
    Selection selection;
    std::set<std::string> unmerged;
    ChangedFiles result;
};

} // namespace

ChangedFiles findChangedFiles(const Git& git, const ChangeOptions& options,
                              const std::vector<std::string>& paths) {
    return Search(git, options, paths).findFiles();
}

std::vector<LineRange> countAllLineEnds(std::u16string_view text, const std::vector<LineRange>& lines) {
    std::vector<LineRange> counted;
    counted.reserve(lines.size());
    LineSplitter splitter(text);
    std::uint32_t feedLine = 1; // the line that `all` is a part of, as git counts
    std::uint32_t all = 1;
    std::optional<Line> line = splitter.getNext();
    const auto advance = [&] {
        feedLine += line->end.ends_with(u'\n') ? 1 : 0;
        ++all;
        line = splitter.getNext();
    };
    for (const LineRange& range : lines) {
        while (line && feedLine < range.first) {
            advance();
        }
        const std::uint32_t first = all;
        while (line && feedLine <= range.last) {
            advance();
        }
        counted.push_back({first, std::max(first, all - 1)});
    }
    return counted;
}

} // namespace ombrel
