// Reading refuses what could keep a run waiting or fill its memory. Replacing goes through a temporary file
// in the same folder and a rename, and compares the old content just before, so that an editor's save is not
// lost.
#include "files/FileSystem.h"

#include "files/File.h"
#include "files/Interruption.h"
#include "files/TemporaryFile.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ombrel {

namespace {

using Kind = FileError::Kind;

/// Reads at most so many bytes, fewer only at the end of the file.
std::size_t readSome(int descriptor, char* buffer, std::size_t size, Kind kind) {
    std::size_t done = 0;
    while (done < size) {
        const ssize_t count = ::read(descriptor, buffer + done, size - done);
        if (count == 0) {
            break;
        }
        if (count < 0 && errno != EINTR) {
            throw makeFileError(kind, "can't read it", errno);
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
    }
    return done;
}

FileError makeSizeError(std::uint64_t limit) {
    return {Kind::TooLarge, limit > (1U << 30) ? std::string(tooLargeMessage)
                                               : fmt::format("too large: {} KiB is the limit", limit >> 10)};
}

struct stat getStatus(const File& file) {
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) {
        throw makeFileError(Kind::Unreadable, "can't read it", errno);
    }
    return status;
}

/// Appends at most so many bytes. False at the end of the file.
bool appendPiece(std::string& bytes, int descriptor, std::size_t size) {
    const std::size_t start = bytes.size();
    bytes.resize(start + size);
    const std::size_t done = readSome(descriptor, bytes.data() + start, size, Kind::Unreadable);
    bytes.resize(start + done);
    return done == size;
}

/// Reads up to the end of the file; its size is only a hint, since pipes have none. A hole of any size is
/// found to be no text in its first piece, before there is memory for the others.
std::string readAll(int descriptor, off_t sizeHint, ReadLimit limit) {
    constexpr std::size_t pieceLength = 1 << 20;
    const auto expected = static_cast<std::size_t>(sizeHint) + 1;
    if (expected > limit.byteCount + 1) {
        throw makeSizeError(limit.byteCount);
    }
    std::string bytes;
    for (bool hasNul = false;;) {
        const std::size_t start = bytes.size();
        const std::size_t rest = start < expected ? expected - start : pieceLength;
        const bool hasMore = appendPiece(bytes, descriptor, std::min(rest, pieceLength));
        if (bytes.size() > limit.byteCount) {
            throw makeSizeError(limit.byteCount);
        }
        if (!hasMore || hasNul) {
            return bytes;
        }
        hasNul = limit.endsAfterNul && bytes.find('\0', start) != std::string::npos;
        if (!hasNul) {
            bytes.reserve(expected);
        }
    }
}

bool isWritable(const File& folder, const std::string& name, const struct stat& status) {
    constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    return (status.st_mode & anyWrite) != 0 && ::faccessat(folder.get(), name.c_str(), W_OK, 0) == 0;
}

void checkReplaceable(const File& folder, const std::string& name, ReplacementRules rules) {
    struct stat status {};
    if (::fstatat(folder.get(), name.c_str(), &status, AT_SYMLINK_NOFOLLOW) != 0) {
        throw makeFileError(Kind::Unwritable, "can't write it", errno);
    }
    if (!S_ISREG(status.st_mode)) {
        throw FileError(Kind::Unwritable, "can't replace it: not a regular file");
    }
    if (status.st_nlink > 1 && !rules.allowsHardLinks) {
        throw FileError(Kind::Unwritable,
                        fmt::format("not replaced: it has {} names (hard links), and the others would keep "
                                    "the old text; --allow-hard-links replaces it",
                                    status.st_nlink));
    }
    if (!rules.allowsReadOnly && !isWritable(folder, name, status)) {
        throw FileError(Kind::Unwritable, "not replaced: it is read-only; --force-read-only replaces it");
    }
}

/// Somebody may have put something else in its place, which nobody waits for.
File openAgain(const File& folder, const std::string& name) {
    constexpr int flags = O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC;
    return {::openat(folder.get(), name.c_str(), flags), Kind::Unwritable, "can't read it again"};
}

bool hasContent(const File& file, std::string_view content) {
    std::array<char, 1 << 16> buffer;
    while (true) {
        const std::size_t size = readSome(file.get(), buffer.data(), buffer.size(), Kind::Unwritable);
        if (content.substr(0, size) != std::string_view(buffer.data(), size)) {
            return false;
        }
        content.remove_prefix(size);
        if (size < buffer.size()) {
            return content.empty();
        }
    }
}

/// Makes the new name last through a power failure. By now the file is whole in any case, old or new, and
/// some file systems can't sync folders, so a failure is no error.
void syncFolder(const File& folder) {
    const int descriptor = ::openat(folder.get(), ".", O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

} // namespace

std::string FileSystem::findRepository(const std::string& folder) {
    for (std::filesystem::path path = folder;; path = path.parent_path()) {
        if (isThere(path / ".git")) {
            return path;
        }
        if (!path.has_relative_path()) {
            return {};
        }
    }
}

bool DiskFileSystem::isFolder(const std::string& path) {
    std::error_code error;
    return std::filesystem::is_directory(path, error);
}

bool DiskFileSystem::isThere(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0;
}

bool DiskFileSystem::isForeign(const std::string& path) {
    struct stat status {};
    return ::lstat(path.c_str(), &status) == 0 && status.st_uid != 0 && status.st_uid != ::geteuid();
}

std::string DiskFileSystem::read(const std::string& path, ReadLimit limit) {
    const File file(::open(path.c_str(), O_RDONLY | O_CLOEXEC), Kind::Unreadable, "can't open it");
    const struct stat status = getStatus(file);
    return readAll(file.get(), S_ISREG(status.st_mode) ? status.st_size : 0, limit);
}

/// Opening a pipe or a terminal could wait or have effects, so that the kind of file is known too late.
std::string DiskFileSystem::readRegular(const std::string& path, ReadLimit limit) {
    const File file(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY), Kind::Unreadable,
                    "can't open it");
    const struct stat status = getStatus(file);
    if (!S_ISREG(status.st_mode)) {
        throw FileError(Kind::Unreadable, "can't read it: not a regular file");
    }
    return readAll(file.get(), status.st_size, limit);
}

void DiskFileSystem::replace(const std::string& path, const std::string& before, const std::string& after) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    if (error) {
        throw makeFileError(Kind::Unwritable, "can't write it", error.value());
    }
    const std::string name = target.filename();
    const ReplacementGuard guard;
    const File folder = openFolder(target.parent_path());
    checkReplaceable(folder, name, rules);

    cleanOnce(target.parent_path());

    TemporaryFile temporary(folder);
    temporary.write(after);
    temporary.takeProperties(openAgain(folder, name));
    temporary.sync();
    temporary.takeName();
    if (!hasContent(openAgain(folder, name), before)) {
        throw FileError(Kind::Unwritable, "not replaced: it has changed since it was read");
    }
    temporary.replace(name);
    syncFolder(folder);
}

void DiskFileSystem::create(const std::string& path, const std::string& bytes) {
    const std::filesystem::path target = std::filesystem::absolute(path);
    const ReplacementGuard guard;
    const File folder = openFolder(target.parent_path());
    TemporaryFile temporary(folder, TemporaryFile::Access::Everybody);
    temporary.write(bytes);
    temporary.sync();
    temporary.place(target.filename());
    syncFolder(folder);
}

/// Reading a folder for each of its files would take time in proportion to the square of their number.
void DiskFileSystem::cleanOnce(const std::string& folder) {
    {
        const std::lock_guard lock(mutex);
        if (!cleaned.insert(folder).second) {
            return;
        }
    }
    TemporaryFile::removeAbandoned(folder);
}

std::optional<FileIdentity> DiskFileSystem::getIdentity(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return std::nullopt;
    }
    return FileIdentity{status.st_dev, status.st_ino};
}

void DiskFileSystem::write(const std::string& path, const std::string& bytes) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        create(path, bytes);
    } else if (S_ISREG(status.st_mode)) {
        replace(path, read(path, maximalByteCount), bytes);
    } else {
        const File file(::open(path.c_str(), O_WRONLY | O_CLOEXEC), Kind::Unwritable, "can't write it");
        writeAll(file.get(), bytes);
    }
}

} // namespace ombrel
