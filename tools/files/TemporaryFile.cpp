#include "files/TemporaryFile.h"

#include "files/ExtendedAttributes.h"
#include "files/Folder.h"

#include <cerrno>
#include <cstdio>
#include <random>
#include <string>
#include <string_view>
#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ombrel {

namespace {

using Kind = FileError::Kind;

constexpr std::string_view nameStart = ".ombrel-format-";
constexpr std::string_view nameEnd = ".tmp";
constexpr std::size_t nameDigits = 16;

std::string makeName() {
    std::random_device random;
    return fmt::format("{}{:08x}{:08x}{}", nameStart, random(), random(), nameEnd);
}

bool isTemporaryName(std::string_view name) {
    return name.size() == nameStart.size() + nameDigits + nameEnd.size() && name.starts_with(nameStart) &&
           name.ends_with(nameEnd) &&
           name.substr(nameStart.size(), nameDigits).find_first_not_of("0123456789abcdef") == name.npos;
}

/// A file that a process holds stays, and so does what we don't own or what has another name too.
void removeIfAbandoned(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_WRONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC);
    if (descriptor < 0) {
        return;
    }
    struct stat status {};
    const bool isOurs = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode) &&
                        status.st_uid == ::geteuid() && status.st_nlink == 1;
    if (isOurs && ::flock(descriptor, LOCK_EX | LOCK_NB) == 0) {
        ::unlink(path.c_str());
    }
    ::close(descriptor);
}

/// Opens a file without a name. Gives -1 where the file system, or a machine without /proc, can't do that.
int openUnnamed(const File& folder, mode_t mode) {
    static const bool canTakeName = ::access("/proc/self/fd", X_OK) == 0;
    errno = EOPNOTSUPP;
    return canTakeName ? ::openat(folder.get(), ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, mode) : -1;
}

bool isUnnamedUnsupported(int errorNumber) {
    return errorNumber == EOPNOTSUPP || errorNumber == EISDIR || errorNumber == ENOENT ||
           errorNumber == EINVAL;
}

int openNew(const File& folder, const std::string& name, mode_t mode, bool& hasName) {
    const int unnamed = openUnnamed(folder, mode);
    hasName = unnamed < 0 && isUnnamedUnsupported(errno);
    constexpr int flags = O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC;
    return hasName ? ::openat(folder.get(), name.c_str(), flags, mode) : unnamed;
}

void check(int result, const char* what) {
    if (result != 0) {
        throw makeFileError(Kind::Unwritable, what, errno);
    }
}

} // namespace

TemporaryFile::TemporaryFile(const File& folder, Access access)
    : folder(folder), name(makeName()), file(openNew(folder, name, static_cast<mode_t>(access), hasName),
                                             Kind::Unwritable, "can't make a temporary file in its folder") {
    ::flock(file.get(), LOCK_EX | LOCK_NB); // without locks nothing of ours is ever removed by others
}

TemporaryFile::~TemporaryFile() {
    if (hasName) {
        ::unlinkat(folder.get(), name.c_str(), 0);
    }
}

void TemporaryFile::write(const std::string& bytes) {
    writeAll(file.get(), bytes);
}

/// The owner first, since changing it takes some mode bits away, and the access list last, since it sets mode
/// bits.
void TemporaryFile::takeProperties(const File& other) {
    struct stat status {};
    struct stat own {};
    check(::fstat(other.get(), &status), "can't keep its owner");
    check(::fstat(file.get(), &own), "can't keep its owner");
    if (own.st_uid != status.st_uid || own.st_gid != status.st_gid) {
        check(::fchown(file.get(), status.st_uid, status.st_gid), "can't keep its owner");
    }
    check(::fchmod(file.get(), status.st_mode & 07777), "can't keep its mode");
    copyExtendedAttributes(other, file);
}

void TemporaryFile::sync() {
    check(::fsync(file.get()), "can't write it to the disk");
}

void TemporaryFile::takeName() {
    if (!hasName) {
        linkTo(name, "can't make a temporary file in its folder");
        hasName = true;
    }
}

void TemporaryFile::linkTo(const std::string& target, const char* failure) {
    const std::string link = fmt::format("/proc/self/fd/{}", file.get());
    check(::linkat(AT_FDCWD, link.c_str(), folder.get(), target.c_str(), AT_SYMLINK_FOLLOW), failure);
}

void TemporaryFile::replace(const std::string& target) {
    check(::renameat(folder.get(), name.c_str(), folder.get(), target.c_str()), "can't replace it");
    hasName = false;
}

void TemporaryFile::place(const std::string& target) {
    constexpr const char* failure = "can't make it";
    if (!hasName) {
        linkTo(target, failure);
    } else if (::renameat2(folder.get(), name.c_str(), folder.get(), target.c_str(), RENAME_NOREPLACE) == 0) {
        hasName = false;
    } else { // some file systems can't do that; the destructor removes the temporary name
        const bool isUnknown = errno == EINVAL;
        check(isUnknown ? ::linkat(folder.get(), name.c_str(), folder.get(), target.c_str(), 0) : -1,
              failure);
    }
}

void TemporaryFile::removeAbandoned(const std::string& folder) {
    std::error_code error;
    for (const FolderEntry& entry : readEntries(folder, error)) {
        if (isTemporaryName(entry.name)) {
            removeIfAbandoned(folder + '/' + entry.name);
        }
    }
}

} // namespace ombrel
