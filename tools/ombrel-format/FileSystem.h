#pragma once

#include <cstdint>
#include <map>
#include <stdexcept>
#include <string>

struct stat;

namespace ombrel {

/// Why a file could not be read or replaced. `what()` is a sentence for the user, without the path.
class FileError : public std::runtime_error {
public:
    enum class Kind { Unreadable, TooLarge, Unwritable };

    FileError(Kind kind, const std::string& text) : std::runtime_error(text), kind(kind) {}

    Kind kind;
};

/// The files that a run sees. Paths are as the user wrote them.
class FileSystem {
public:
    virtual ~FileSystem() = default;

    /// All bytes of a file. Throws FileError; for a file of more than `limit` bytes too.
    virtual std::string read(const std::string& path, std::uint64_t limit) = 0;

    /// Puts `bytes` in the place of a file's content, all of them or none: after a FileError the old content
    /// is there, whole, and nothing else is left behind. Mode and owner stay. Where the path is a symbolic
    /// link, its target is replaced. Refuses a file that has changed since it was read, hard-linked files,
    /// whose other names would keep the old content, and files that nobody may write.
    virtual void replace(const std::string& path, const std::string& bytes) = 0;

    /// Makes a file with this content, or puts it in the place of what a file has, as replace() does. Writes
    /// to a path that is a pipe or a device, which can't be replaced.
    virtual void write(const std::string& path, const std::string& bytes) = 0;
};

/// The files of the machine. A replacement is written to a new file in the same folder, synced, and renamed.
class DiskFileSystem : public FileSystem {
public:
    std::string read(const std::string& path, std::uint64_t limit) override;
    void replace(const std::string& path, const std::string& bytes) override;
    void write(const std::string& path, const std::string& bytes) override;

private:
    /// What tells that a file is still the one that was read.
    struct Version {
        std::uint64_t device;
        std::uint64_t inode;
        std::int64_t size;
        std::int64_t seconds; ///< of the last change
        std::int64_t nanoseconds;

        bool operator==(const Version&) const = default;
    };

    static Version getVersion(const struct stat& status);
    void checkUnchanged(const std::string& path, const struct stat& status) const;

    std::map<std::string, Version> versionsRead;
};

} // namespace ombrel
