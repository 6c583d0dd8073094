#pragma once

#include "diagnostics/Result.h"
#include "files/FileSystem.h"
#include "git/ChangedFiles.h"
#include "text/Edit.h"

#include <functional>
#include <map>
#include <mutex>
#include <string>
#include <vector>

namespace ombrel {

/// Staged files. Reading one gives what is staged; replacing it puts the formatted text into the index, with
/// the file's mode, and does to the file in the work tree what was done to the index:
///
///     staged       work tree           staged       work tree
///     if a         if a                if a         if a
///     x=1;         x=1;          →         x=1;         x=1;      the same line: reindented too
///     end          y=2;                end          y=2;          not staged: stays as it is
///                  end                              end
///
/// Lines that are only in the work tree stay byte for byte. Where the edits aren't safe in the work tree's
/// text, the file there is left alone, and a note says so: it never keeps the index from being written.
///
/// Members may be called on several threads at once. `git` and `workTree` are the caller's and have to
/// outlive it.
class StagedFiles : public FileSystem {
public:
    /// Makes edits of a text out of some that were made for another version of it, or says why that can't be
    /// done.
    using EditAdoption = std::function<Result<Edits>(const std::u16string& text, std::vector<Edit> edits)>;

    StagedFiles(const Git& git, const std::vector<ChangedFile>& staged, FileSystem& workTree,
                EditAdoption adoptEdits);

    /// What is staged is a file, whatever the work tree has in its place.
    bool isFolder(const std::string& path) override {
        return !staged.contains(path) && workTree.isFolder(path);
    }
    bool isThere(const std::string& path) override { return workTree.isThere(path); }
    std::optional<FileIdentity> getIdentity(const std::string& path) override {
        return workTree.getIdentity(path);
    }
    bool isForeign(const std::string& path) override { return workTree.isForeign(path); }
    std::string read(const std::string& path, ReadLimit limit) override;
    std::string readRegular(const std::string& path, ReadLimit limit) override {
        return staged.contains(path) ? read(path, limit) : workTree.readRegular(path, limit);
    }

    /// Refuses a file that has been staged again since the changes were asked for, and does nothing while
    /// another process holds the index.
    void edit(const std::string& path, const std::string& before, const Edits& edits) override;

    /// The same for the index alone: nothing says what to change in the work tree.
    void replace(const std::string& path, const std::string& before, const std::string& after) override;

    /// To the work tree: no source is written that way.
    void write(const std::string& path, const std::string& bytes) override { workTree.write(path, bytes); }

    /// What became of files in the work tree, sorted by path.
    std::vector<Note> getNotes() const;

private:
    class WorkTreeFile;

    void exchange(const ChangedFile& file, const std::string& after);
    void addNote(const std::string& path, const std::string& text);

    const Git& git;
    std::map<std::string, ChangedFile> staged; ///< by ChangedFile::path
    FileSystem& workTree;
    EditAdoption adoptEdits;
    std::string
        otherIndex; ///< that of the repository, if a commit of named files works on an index of its own
    mutable std::mutex mutex; ///< held while the index is written, guards `notes`
    std::vector<Note> notes;
};

} // namespace ombrel
