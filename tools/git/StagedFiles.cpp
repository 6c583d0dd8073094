#include "git/StagedFiles.h"

#include "files/InputReader.h"
#include "git/EditTransfer.h"
#include "git/GitDiff.h"
#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

namespace fs = std::filesystem;

std::string getFirstLine(std::string_view text) {
    return std::string(takeLine(text));
}

/// `git commit FILE` has a hook work on an index made for this commit, and holds the one of the repository,
/// which replaces the old one after the commit. Unless both get the formatted text, the next
/// commit would undo the formatting. Returns that other index, empty if there is none.
std::string findOtherIndex() {
    const char* variable = std::getenv("GIT_INDEX_FILE");
    const fs::path index = variable == nullptr ? "" : variable;
    const bool isForOneCommit =
        index.filename().string().starts_with("next-index-") && index.extension() == ".lock";
    return isForOneCommit ? (index.parent_path() / "index.lock").string() : std::string();
}

/// What makes git look away from the file in the work tree. A new object in the index takes that from a file,
/// and one of those that a sparse work tree leaves out would look deleted.
std::vector<std::string> getIndexFlags(const Git& git, const std::string& path) {
    // The first letter says it: S, or s, is left out, and lower case means that it counts as unchanged.
    const std::string entry = git.run({"ls-files", "-v", "-z", "--", getLiteralPathspec(path)});
    std::vector<std::string> flags;
    if (entry.starts_with('S') || entry.starts_with('s')) {
        flags.emplace_back("--skip-worktree");
    }
    if (entry.starts_with('h') || entry.starts_with('s')) {
        flags.emplace_back("--assume-unchanged");
    }
    return flags;
}

} // namespace

/// A file as it is in the work tree before its staged content is replaced.
class StagedFiles::WorkTreeFile {
public:
    WorkTreeFile(StagedFiles& files, const ChangedFile& file) : files(files), file(file) {
        std::error_code error;
        const auto status = fs::symlink_status(file.path, error);
        if (!fs::exists(status)) {
            return;
        }
        // A folder above it may have become a link to another one, and git wouldn't look there.
        const fs::path place = fs::path(files.git.getTop()) / file.pathInTree;
        if (fs::is_regular_file(status) && fs::canonical(file.path, error) == place) {
            readText();
        } else {
            leaveAlone("it is no regular file there");
        }
    }

    /// Does to it what the edits did to the staged content, which was `before` and is `after`.
    void update(const std::string& before, const Edits& edits, const std::string& after) {
        if (!text) {
            return;
        }
        if (*text == before) {
            replace(after);
            return;
        }
        const auto decoded = decode(*text);
        if (!decoded) {
            leaveAlone("it isn't UTF-8");
            return;
        }
        const auto adopted = files.adoptEdits(
            decoded->text, transferEdits(decode(before).value().text, edits, hunks, decoded->text));
        if (!adopted) {
            leaveAlone(adopted.error().front().text);
        } else if (!adopted->empty()) {
            replace(applyEdits(*text, *adopted));
        }
    }

private:
    void readText() {
        try {
            text = files.workTree.readRegular(file.path, sourceLimit);
            std::vector<std::string> words{"diff-files"};
            words.insert(words.end(), getDiffOptions().begin(), getDiffOptions().end());
            words.insert(words.end(), {"--", getLiteralPathspec(file.pathInTree)});
            for (FileDiff& diff : parseDiff(files.git.run(words))) {
                hunks = std::move(diff.hunks);
            }
        } catch (const std::runtime_error& error) {
            text.reset();
            leaveAlone(getFirstLine(error.what()));
        }
    }

    void replace(const std::string& after) {
        try {
            files.workTree.replace(file.path, *text, after);
        } catch (const FileError& error) {
            leaveAlone(error.what());
        }
    }

    void leaveAlone(const std::string& reason) {
        files.addNote(file.path,
                      "formatted in the index; the file in the work tree is left alone: " + reason);
    }

    StagedFiles& files;
    const ChangedFile& file;
    std::optional<std::string> text; ///< nothing: there is none, or none to be touched
    std::vector<Hunk> hunks;         ///< from the staged content to this one
};

StagedFiles::StagedFiles(const Git& git, const std::vector<ChangedFile>& files, FileSystem& workTree,
                         EditAdoption adoptEdits)
    : git(git), workTree(workTree), adoptEdits(std::move(adoptEdits)), otherIndex(findOtherIndex()) {
    for (const ChangedFile& file : files) {
        staged.emplace(file.path, file);
    }
}

std::string StagedFiles::read(const std::string& path, ReadLimit limit) {
    const auto found = staged.find(path);
    if (found == staged.end()) {
        return workTree.read(path, limit);
    }
    try {
        std::string bytes = git.run({"cat-file", "blob", found->second.blob});
        if (bytes.size() > limit.byteCount) {
            throw FileError(FileError::Kind::TooLarge, tooLargeMessage);
        }
        return bytes;
    } catch (const GitError& error) {
        throw FileError(FileError::Kind::Unreadable, getFirstLine(error.what()));
    }
}

void StagedFiles::edit(const std::string& path, const std::string& before, const Edits& edits) {
    const ChangedFile& file = staged.at(path);
    WorkTreeFile workTreeFile(*this, file);
    const std::string after = applyEdits(before, edits);
    exchange(file, after);
    workTreeFile.update(before, edits, after);
}

void StagedFiles::replace(const std::string& path, const std::string& /*before*/, const std::string& after) {
    exchange(staged.at(path), after);
}

void StagedFiles::exchange(const ChangedFile& file, const std::string& after) {
    const std::lock_guard lock(mutex);
    try {
        // What is staged is what git's filters and line-end settings have made of the file: they have had
        // their turn.
        const std::string id = git.runForWord({"hash-object", "-w", "--stdin", "--no-filters"}, after);
        const std::string diff = makeExchange(file.pathInTree, file.blob, id);
        const std::vector<std::string> flags = getIndexFlags(git, file.pathInTree);
        git.run({"apply", "--cached"}, diff);
        for (const std::string& flag : flags) {
            git.run({"update-index", flag, "-z", "--stdin"}, file.pathInTree + '\0');
        }
        if (!otherIndex.empty()) {
            git.withIndex(otherIndex).run({"apply", "--cached"}, diff);
        }
    } catch (const GitError& error) {
        throw FileError(FileError::Kind::Unwritable,
                        "not written to the index: " + getFirstLine(error.what()));
    }
}

void StagedFiles::addNote(const std::string& path, const std::string& text) {
    const std::lock_guard lock(mutex);
    notes.push_back({path, text});
}

std::vector<Note> StagedFiles::getNotes() const {
    const std::lock_guard lock(mutex);
    std::vector<Note> sorted = notes;
    std::sort(sorted.begin(), sorted.end(), [](const Note& a, const Note& b) { return a.path < b.path; });
    return sorted;
}

} // namespace ombrel
