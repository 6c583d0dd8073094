#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>

namespace ombrel {

/// Why a file could not be read or replaced. `what()` is a sentence for the user, without the path.
class FileError : public std::runtime_error {
public:
    enum class Kind { Unreadable, TooLarge, Unwritable };

    FileError(Kind kind, const std::string& text) : std::runtime_error(text), kind(kind) {}

    Kind kind;
};

/// The files that a run sees. Paths are as the user wrote them. All members may be called on several threads
/// at once, for different files.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    virtual bool isFolder(const std::string& /*path*/) { return false; }

    /// True if there is a regular file at the path, or a link to one.
    virtual bool isFile(const std::string& /*path*/) { return false; }

    /// All bytes of a file. Throws FileError; for a file of more than `limit` bytes too.
    virtual std::string read(const std::string& path, std::uint64_t limit) = 0;

    /// Puts `after` in the place of a file's content, all of it or nothing: after a FileError the old content
    /// is there, whole, and nothing else is left behind. Mode, owner, access list and extended attributes
    /// stay. Where the path is a symbolic link, its target is replaced. Refuses a file whose content is no
    /// longer `before`, since somebody else has changed it.
    virtual void replace(const std::string& path, const std::string& before, const std::string& after) = 0;

    /// Makes a file. Throws FileError if the path is taken, or if it can't be written; then it isn't there.
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
class DiskFileSystem : public FileSystem {
public:
    explicit DiskFileSystem(ReplacementRules rules = {}) : rules(rules) {}

    bool isFolder(const std::string& path) override;
    bool isFile(const std::string& path) override;
    std::string read(const std::string& path, std::uint64_t limit) override;
    void replace(const std::string& path, const std::string& before, const std::string& after) override;
    void create(const std::string& path, const std::string& bytes) override;
    void write(const std::string& path, const std::string& bytes) override;

private:
    ReplacementRules rules;
};

} // namespace ombrel
