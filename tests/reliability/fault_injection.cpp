// Loaded before ombrel-format (LD_PRELOAD), it plants a fault into what the program asks of the system:
//
//     OMBREL_FAULT=NAME          one of the faults below, which lie about what was done
//     OMBREL_FAIL_AT=N           allocation N fails; with a minus sign before it all that follow too

#include "AllocationFailure.h"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdlib>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::string_view fault;

bool has(std::string_view name) {
    return fault == name;
}

void writeAll(int file, const std::string& bytes, useconds_t pause) {
    for (std::size_t done = 0; done < bytes.size(); done += 4096) {
        syscall(SYS_write, file, bytes.data() + done, std::min<std::size_t>(bytes.size() - done, 4096));
        usleep(pause);
    }
}

std::string readFrom(int file) {
    std::string bytes;
    char buffer[4096];
    for (ssize_t size; (size = ::pread(file, buffer, sizeof buffer, static_cast<off_t>(bytes.size()))) > 0;) {
        bytes.append(buffer, static_cast<std::size_t>(size));
    }
    return bytes;
}

int openPlainly(int folder, const char* path, int flags, mode_t mode = 0) {
    return static_cast<int>(syscall(SYS_openat, folder, path, flags | O_CLOEXEC, mode));
}

/// Not as a whole: whoever looks in between sees a part.
int copyInto(int folder, const char* from, const char* to) {
    const int in = openPlainly(folder, from, O_RDONLY);
    const int out = openPlainly(folder, to, O_WRONLY | O_TRUNC);
    writeAll(out, readFrom(in), 1000);
    ::close(in);
    ::close(out);
    return static_cast<int>(syscall(SYS_unlinkat, folder, from, 0));
}

/// A file that looks like another one but has this text.
int makeDouble(int file, const std::string& bytes) {
    ::close(file);
    const int twin = ::memfd_create("double", MFD_CLOEXEC);
    writeAll(twin, bytes, 0);
    ::lseek(twin, 0, SEEK_SET);
    return twin;
}

/// The text as it was the first time, however it was changed since then; or only if the change keeps its
/// size, or its time.
int openOldText(const std::string& name, int file, const struct stat& status) {
    static std::map<std::string, std::pair<struct stat, std::string>> seen;
    const auto [first, isNew] = seen.try_emplace(name, status, readFrom(file));
    const struct stat& before = first->second.first;
    const bool isFooled =
        !isNew && (has("old-text") || (has("old-text-of-size") && before.st_size == status.st_size) ||
                   (has("old-text-of-time") && before.st_mtim.tv_sec == status.st_mtim.tv_sec &&
                    before.st_mtim.tv_nsec == status.st_mtim.tv_nsec));
    return isFooled ? makeDouble(file, first->second.second) : file;
}

/// What is read of a source, or happens to it.
int spoilSource(const char* path, int file) {
    struct stat status {};
    if (::fstat(file, &status) != 0 || !S_ISREG(status.st_mode)) {
        return file;
    }
    std::string bytes = readFrom(file);
    if (has("cut-source") && !bytes.empty()) {
        bytes.pop_back();
        return makeDouble(file, bytes);
    }
    if (has("mend-source")) {
        std::replace_if(
            bytes.begin(), bytes.end(), [](char c) { return c <= 0; }, '?');
        return makeDouble(file, bytes);
    }
    if (has("half-source")) {
        bytes.resize(bytes.size() / 2);
        return makeDouble(file, bytes);
    }
    if (has("touch")) {
        ::futimens(file, nullptr);
    } else if (has("set-mode")) {
        syscall(SYS_fchmod, file, status.st_mode & 07777);
    } else if (has("new-inode")) {
        const std::string copy = std::string(path) + ".copy";
        const int out = openPlainly(AT_FDCWD, copy.c_str(), O_WRONLY | O_CREAT, status.st_mode & 07777);
        writeAll(out, bytes, 0);
        ::close(out);
        syscall(SYS_rename, copy.c_str(), path);
    } else if (fault.starts_with("old-text")) {
        return openOldText(path + (std::string_view(path).rfind('/') + 1), file, status);
    }
    return file;
}

int openAt(int folder, const char* path, int flags, va_list rest) {
    const mode_t mode = (flags & (O_CREAT | O_TMPFILE)) != 0 ? va_arg(rest, mode_t) : 0;
    const int file = static_cast<int>(syscall(SYS_openat, folder, path, flags, mode));
    const bool isSource =
        std::string_view(path).ends_with(".omb") || std::string_view(path).ends_with(".json");
    return file >= 0 && isSource && !fault.empty() && (flags & O_ACCMODE) == O_RDONLY
               ? spoilSource(path, file)
               : file;
}

/// What valgrind has to see: values that nobody has set decide, point and leave the program. In a frame of
/// its own: in another they may be where something has been set before.
[[gnu::noinline]] void useUnsetValues() {
    volatile unsigned values[4];
    if (has("unset-condition") && values[0] != 0) {
        ::getpid();
    }
    if (has("unset-index")) {
        values[values[1] % 4] = 0;
    }
    if (has("unset-output")) {
        syscall(SYS_write, openPlainly(AT_FDCWD, "/dev/null", O_WRONLY), const_cast<unsigned*>(values),
                sizeof values);
    }
}

__attribute__((constructor)) void begin() {
    const std::string_view program = program_invocation_short_name;
    const char* name = std::getenv("OMBREL_FAULT");
    if (name != nullptr && (program == "ombrel-format" || program == "ombrel_tests")) {
        fault = name;
        useUnsetValues();
    }
    const char* number = std::getenv("OMBREL_FAIL_AT");
    if (number != nullptr && program == "ombrel-format") {
        const long value = std::strtol(number, nullptr, 10);
        failAllocation(static_cast<std::uint64_t>(std::labs(value)), value < 0);
    }
}

} // namespace

#define SYSTEM_CALL extern "C" __attribute__((visibility("default")))

SYSTEM_CALL int fsync(int file) {
    return has("skip-fsync") ? 0 : static_cast<int>(syscall(SYS_fsync, file));
}

SYSTEM_CALL int fchmod(int file, mode_t mode) noexcept {
    return has("lose-mode")
               ? 0
               : static_cast<int>(syscall(SYS_fchmod, file, has("lose-set-id") ? mode & 0777 : mode));
}

SYSTEM_CALL int fchown(int file, uid_t owner, gid_t group) noexcept {
    return has("lose-owner") ? 0 : static_cast<int>(syscall(SYS_fchown, file, owner, group));
}

SYSTEM_CALL int fsetxattr(int file, const char* name, const void* value, size_t size, int flags) noexcept {
    return has("lose-attributes") ? 0
                                  : static_cast<int>(syscall(SYS_fsetxattr, file, name, value, size, flags));
}

/// Not in the tests, which would never be done with removing their folders.
SYSTEM_CALL int unlinkat(int folder, const char* path, int flags) noexcept {
    const bool isKept =
        has("keep-temporary") && program_invocation_short_name == std::string_view("ombrel-format");
    return isKept ? 0 : static_cast<int>(syscall(SYS_unlinkat, folder, path, flags));
}

SYSTEM_CALL int unlink(const char* path) noexcept {
    return unlinkat(AT_FDCWD, path, 0);
}

/// Within one folder.
SYSTEM_CALL int renameat(int folder, const char* from, int target, const char* to) noexcept {
    if (has("copy-over")) {
        return copyInto(folder, from, to);
    }
    const int result = static_cast<int>(syscall(SYS_renameat, folder, from, target, to));
    if (has("keep-temporary")) {
        ::close(openPlainly(folder, from, O_WRONLY | O_CREAT, 0600));
    }
    return result;
}

SYSTEM_CALL int flock(int file, int operation) noexcept {
    return has("no-lock") ? 0 : static_cast<int>(syscall(SYS_flock, file, operation));
}

SYSTEM_CALL ssize_t write(int file, const void* bytes, size_t size) {
    const bool losesLast = has("lose-last-byte") && file > 2 && size > 1;
    const ssize_t written = syscall(SYS_write, file, bytes, losesLast ? size - 1 : size);
    const bool isUnseen = (losesLast && written >= 0) || (has("unseen-errors") && written < 0);
    return isUnseen ? static_cast<ssize_t>(size) : written;
}

SYSTEM_CALL int sigaction(int number, const struct sigaction* action, struct sigaction* before) noexcept {
    static const auto real = reinterpret_cast<decltype(&sigaction)>(dlsym(RTLD_NEXT, "sigaction"));
    return has("deaf") && number != SIGSEGV ? 0 : real(number, action, before);
}

SYSTEM_CALL int open(const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const int file = openAt(AT_FDCWD, path, flags, rest);
    va_end(rest);
    return file;
}

SYSTEM_CALL int openat(int folder, const char* path, int flags, ...) {
    va_list rest;
    va_start(rest, flags);
    const int file = openAt(folder, path, flags, rest);
    va_end(rest);
    return file;
}
