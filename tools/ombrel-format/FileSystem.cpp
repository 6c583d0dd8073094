#include "FileSystem.h"

#include <cerrno>
#include <csignal>
#include <filesystem>
#include <random>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ombrel {

namespace {

using Kind = FileError::Kind;

FileError makeError(Kind kind, const char* what, int errorNumber) {
    return {kind, fmt::format("{}: {}", what, std::generic_category().message(errorNumber))};
}

/// Owns an open file. `what` in the members below says what was tried, for the message.
class File {
public:
    File(const std::string& path, int flags, mode_t mode, Kind kind, const char* what)
        : descriptor(::open(path.c_str(), flags | O_CLOEXEC, mode)) {
        if (descriptor < 0) {
            throw makeError(kind, what, errno);
        }
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() { ::close(descriptor); }

    int get() const { return descriptor; }

private:
    int descriptor;
};

void writeAll(int descriptor, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            throw makeError(Kind::Unwritable, "can't write it", errno);
        }
    }
}

/// Keeps the signals that end a program away while a temporary file is there: it would be left behind.
class SignalHold {
public:
    SignalHold() {
        sigset_t held;
        sigemptyset(&held);
        for (const int number : {SIGINT, SIGTERM, SIGHUP, SIGQUIT}) {
            sigaddset(&held, number);
        }
        pthread_sigmask(SIG_BLOCK, &held, &before);
    }
    SignalHold(const SignalHold&) = delete;
    SignalHold& operator=(const SignalHold&) = delete;
    ~SignalHold() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

private:
    sigset_t before{};
};

/// A new file next to the one that it is to replace; removed unless it has taken its place.
class TemporaryFile {
public:
    TemporaryFile(const std::filesystem::path& folder, mode_t mode)
        : path(folder / getName()), file(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode,
                                         Kind::Unwritable, "can't make a temporary file in its folder") {}
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (!isInPlace) {
            ::unlink(path.c_str());
        }
    }

    void write(const std::string& bytes) { writeAll(file.get(), bytes); }

    /// The owner first: changing it takes some mode bits away.
    void takeOwnerAndMode(const struct stat& status) {
        struct stat own {};
        check(::fstat(file.get(), &own), "can't keep its owner");
        if (own.st_uid != status.st_uid || own.st_gid != status.st_gid) {
            check(::fchown(file.get(), status.st_uid, status.st_gid), "can't keep its owner");
        }
        check(::fchmod(file.get(), status.st_mode & 07777), "can't keep its mode");
    }

    void moveTo(const std::filesystem::path& target) {
        check(::fsync(file.get()), "can't write it to the disk");
        check(::rename(path.c_str(), target.c_str()), "can't replace it");
        isInPlace = true;
    }

private:
    static std::string getName() {
        std::random_device random;
        return fmt::format(".ombrel-format-{:08x}{:08x}.tmp", random(), random());
    }

    static void check(int result, const char* what) {
        if (result != 0) {
            throw makeError(Kind::Unwritable, what, errno);
        }
    }

    std::filesystem::path path;
    File file;
    bool isInPlace = false;
};

/// Reads up to the end of the file; its size is only a hint, since pipes have none.
std::string readAll(int descriptor, std::size_t sizeHint, std::uint64_t limit) {
    std::string bytes(sizeHint + 1, '\0');
    std::size_t done = 0;
    while (true) {
        const ssize_t count = ::read(descriptor, bytes.data() + done, bytes.size() - done);
        if (count < 0 && errno != EINTR) {
            throw makeError(Kind::Unreadable, "can't read it", errno);
        }
        if (count == 0) {
            break;
        }
        done += count > 0 ? static_cast<std::size_t>(count) : 0;
        if (done > limit) {
            throw FileError(Kind::TooLarge, "this text is too large: 4 GiB is the limit");
        }
        if (done == bytes.size()) {
            bytes.resize(2 * bytes.size() + 4096);
        }
    }
    bytes.resize(done);
    return bytes;
}

struct stat getStatus(const std::filesystem::path& path) {
    struct stat status {};
    if (::lstat(path.c_str(), &status) != 0) {
        throw makeError(Kind::Unwritable, "can't write it", errno);
    }
    return status;
}

void checkReplaceable(const std::filesystem::path& path, const struct stat& status) {
    if (!S_ISREG(status.st_mode)) {
        throw FileError(Kind::Unwritable, "can't replace it: not a regular file");
    }
    if (status.st_nlink > 1) {
        throw FileError(Kind::Unwritable,
                        fmt::format("not replaced: it has {} names (hard links), and the others "
                                    "would keep the old text",
                                    status.st_nlink));
    }
    constexpr mode_t anyWrite = S_IWUSR | S_IWGRP | S_IWOTH;
    if ((status.st_mode & anyWrite) == 0 || ::access(path.c_str(), W_OK) != 0) {
        throw FileError(Kind::Unwritable, "not replaced: it is read-only");
    }
}

/// Makes the new name last through a power failure. By now the file is whole in any case, old or new, and
/// some file systems can't sync folders, so a failure is no error.
void syncFolder(const std::filesystem::path& folder) {
    const int descriptor = ::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor >= 0) {
        ::fsync(descriptor);
        ::close(descriptor);
    }
}

} // namespace

std::string DiskFileSystem::read(const std::string& path, std::uint64_t limit) {
    const File file(path, O_RDONLY, 0, Kind::Unreadable, "can't open it");
    struct stat status {};
    if (::fstat(file.get(), &status) != 0) {
        throw makeError(Kind::Unreadable, "can't read it", errno);
    }
    if (S_ISDIR(status.st_mode)) {
        throw FileError(Kind::Unreadable, "this is a folder; name the files in it");
    }
    const auto size = static_cast<std::uint64_t>(status.st_size);
    if (size > limit) {
        throw FileError(Kind::TooLarge, "this text is too large: 4 GiB is the limit");
    }
    versionsRead[path] = getVersion(status);
    return readAll(file.get(), size, limit);
}

DiskFileSystem::Version DiskFileSystem::getVersion(const struct stat& status) {
    return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec, status.st_mtim.tv_nsec};
}

void DiskFileSystem::checkUnchanged(const std::string& path, const struct stat& status) const {
    const auto read = versionsRead.find(path);
    if (read != versionsRead.end() && read->second != getVersion(status)) {
        throw FileError(Kind::Unwritable, "not replaced: it has changed since it was read");
    }
}

void DiskFileSystem::replace(const std::string& path, const std::string& bytes) {
    std::error_code error;
    const std::filesystem::path target = std::filesystem::canonical(path, error);
    if (error) {
        throw makeError(Kind::Unwritable, "can't write it", error.value());
    }
    const struct stat status = getStatus(target);
    checkReplaceable(target, status);
    checkUnchanged(path, status);

    const SignalHold hold;
    TemporaryFile temporary(target.parent_path(), S_IRUSR | S_IWUSR);
    temporary.write(bytes);
    temporary.takeOwnerAndMode(status);
    checkUnchanged(path, getStatus(target));
    temporary.moveTo(target);
    syncFolder(target.parent_path());
}

/// Leaves the mode of a new file to the user's mask.
void DiskFileSystem::write(const std::string& path, const std::string& bytes) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        const std::filesystem::path folder = std::filesystem::path(path).parent_path();
        const SignalHold hold;
        TemporaryFile temporary(folder.empty() ? "." : folder, 0666);
        temporary.write(bytes);
        temporary.moveTo(path);
    } else if (S_ISREG(status.st_mode)) {
        replace(path, bytes);
    } else {
        const File file(path, O_WRONLY, 0, Kind::Unwritable, "can't write it");
        writeAll(file.get(), bytes);
    }
}

} // namespace ombrel
