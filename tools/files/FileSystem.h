#pragma once

#include "text/Edit.h"

#include <cstdint>
#include <mutex>
#include <optional>
#include <stdexcept>
#include <string>
#include <unordered_set>

namespace ombrel {

/// Why a file could not be read or replaced. `what()` is a sentence for the user, without the path.
class FileError : public std::runtime_error {
public:
    enum class Kind { Unreadable, TooLarge, Unwritable };

    FileError(Kind kind, const std::string& text) : std::runtime_error(text), kind(kind) {}

    Kind kind;
};

/// Tells files apart, whatever paths lead to them.
struct FileIdentity {
    std::uint64_t device;
    std::uint64_t number;

    bool operator==(const FileIdentity&) const = default;
};

/// How much of a file is read. A file with more bytes is refused.
struct ReadLimit {
    constexpr ReadLimit(std::uint64_t byteCount, bool endsAfterNul = false)
        : byteCount(byteCount), endsAfterNul(endsAfterNul) {}

    std::uint64_t byteCount;
    /// The rest isn't read if there is a NUL character, which no text has, but for a part that is long enough
    /// to show the character's line and to guess the encoding.
    bool endsAfterNul;
};

/// The files that a run sees. Paths are as the user wrote them. All members may be called on several threads
/// at once, for different files.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual bool isFolder(const std::string& /*path*/) { return false; }

    /// True if there is anything at the path, even a link to nothing.
    virtual bool isThere(const std::string& /*path*/) { return false; }

    /// The folder of the repository that a folder, absolute and without symbolic links, belongs to: the
    /// innermost one with a `.git`. Empty if it belongs to none.
    std::string findRepository(const std::string& folder);

    /// True if the file, or the link, at the path belongs to neither the user of this process nor root.
    virtual bool isForeign(const std::string& /*path*/) { return false; }

    /// Of the file at the path, through links; nothing if there is none.
    virtual std::optional<FileIdentity> getIdentity(const std::string& /*path*/) { return std::nullopt; }

    /// All bytes of a file. Throws FileError; for a file beyond the limit too. Waits for what a pipe has to
    /// say, as the user who named it expects.
    virtual std::string read(const std::string& path, ReadLimit limit) = 0;

    /// The same for files that the user hasn't named. Refuses everything but regular files, and links to
    /// them, without waiting for it.
    virtual std::string readRegular(const std::string& path, ReadLimit limit) { return read(path, limit); }

    /// Puts `after` in the place of a file's content, all of it or nothing: after a FileError the old content
    /// is there, whole, and no other file is left. Mode, owner, access list and extended attributes
    /// stay. Where the path is a symbolic link, its target is replaced. Refuses a file whose content is no
    /// longer `before`, since somebody else has changed it.
    virtual void replace(const std::string& path, const std::string& before, const std::string& after) = 0;

    /// Replaces the content of a file, which is `before`, by what the edits make of it.
    virtual void edit(const std::string& path, const std::string& before, const Edits& edits) {
        replace(path, before, applyEdits(before, edits));
    }

    /// Makes a file, all of it or nothing. Throws FileError if there is something at the path, or if it can't
    /// be written.
    virtual void create(const std::string& /*path*/, const std::string& /*bytes*/) {
        throw FileError(FileError::Kind::Unwritable, "no file can be made here");
    }

    /// Makes a file with this content, or puts it in the place of what a file has, as replace() does. Writes
    /// to a path that is a pipe or a device, which can't be replaced.
    virtual void write(const std::string& path, const std::string& bytes) = 0;
};

/// Files that are replaced only if the user asks for it.
struct ReplacementRules {
    bool allowsHardLinks =
        false;                   ///< the path becomes a file of its own, its other names keep the old content
    bool allowsReadOnly = false; ///< the file stays read-only
};

/// The files of the machine. A replacement is written to a new file in the same folder, synced, and renamed.
/// Before the first replacement in a folder, what killed processes have left there is removed.
class DiskFileSystem : public FileSystem {
public:
    explicit DiskFileSystem(ReplacementRules rules = {}) : rules(rules) {}

    bool isFolder(const std::string& path) override;
    bool isThere(const std::string& path) override;
    bool isForeign(const std::string& path) override;
    std::optional<FileIdentity> getIdentity(const std::string& path) override;
    std::string read(const std::string& path, ReadLimit limit) override;
    std::string readRegular(const std::string& path, ReadLimit limit) override;
    void replace(const std::string& path, const std::string& before, const std::string& after) override;
    void create(const std::string& path, const std::string& bytes) override;
    void write(const std::string& path, const std::string& bytes) override;

private:
    void cleanOnce(const std::string& folder);

    ReplacementRules rules;
    std::mutex mutex;                        ///< guards `cleaned`
    std::unordered_set<std::string> cleaned; ///< folders without temporary files of killed processes
};

} // namespace ombrel
