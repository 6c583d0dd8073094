#include "files/TemporaryFile.h"

#include "files/ExtendedAttributes.h"

#include <cerrno>
#include <random>

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

namespace ombrel {

namespace {

using Kind = FileError::Kind;

std::string makeName() {
    std::random_device random;
    return fmt::format(".ombrel-format-{:08x}{:08x}.tmp", random(), random());
}

/// Opens a file without a name. Gives -1 where the file system, or a machine without /proc, can't do that.
int openUnnamed(const std::filesystem::path& folder) {
    static const bool canTakeName = ::access("/proc/self/fd", X_OK) == 0;
    errno = EOPNOTSUPP;
    return canTakeName ? ::open(folder.c_str(), O_TMPFILE | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR) : -1;
}

bool isUnnamedUnsupported(int errorNumber) {
    return errorNumber == EOPNOTSUPP || errorNumber == EISDIR || errorNumber == ENOENT ||
           errorNumber == EINVAL;
}

int openNew(const std::filesystem::path& folder, const std::filesystem::path& path, bool& hasName) {
    const int unnamed = openUnnamed(folder);
    hasName = unnamed < 0 && isUnnamedUnsupported(errno);
    return hasName
               ? ::open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, S_IRUSR | S_IWUSR)
               : unnamed;
}

void check(int result, const char* what) {
    if (result != 0) {
        throw makeFileError(Kind::Unwritable, what, errno);
    }
}

} // namespace

TemporaryFile::TemporaryFile(const std::filesystem::path& folder)
    : path(folder / makeName()),
      file(openNew(folder, path, hasName), Kind::Unwritable, "can't make a temporary file in its folder") {}

TemporaryFile::~TemporaryFile() {
    if (hasName) {
        ::unlink(path.c_str());
    }
}

void TemporaryFile::write(const std::string& bytes) {
    writeAll(file.get(), bytes);
}

/// The owner first, since changing it takes some mode bits away, and the access list last, since it sets mode
/// bits.
void TemporaryFile::takeProperties(const std::filesystem::path& target, const struct stat& status) {
    struct stat own {};
    check(::fstat(file.get(), &own), "can't keep its owner");
    if (own.st_uid != status.st_uid || own.st_gid != status.st_gid) {
        check(::fchown(file.get(), status.st_uid, status.st_gid), "can't keep its owner");
    }
    check(::fchmod(file.get(), status.st_mode & 07777), "can't keep its mode");
    copyExtendedAttributes(target, file.get());
}

void TemporaryFile::sync() {
    check(::fsync(file.get()), "can't write it to the disk");
}

void TemporaryFile::takeName() {
    const std::string link = fmt::format("/proc/self/fd/{}", file.get());
    check(::linkat(AT_FDCWD, link.c_str(), AT_FDCWD, path.c_str(), AT_SYMLINK_FOLLOW),
          "can't make a temporary file in its folder");
    hasName = true;
}

void TemporaryFile::replace(const std::filesystem::path& target) {
    if (!hasName) {
        takeName();
    }
    check(::rename(path.c_str(), target.c_str()), "can't replace it");
    hasName = false;
}

} // namespace ombrel
