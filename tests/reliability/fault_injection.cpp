// Loaded before ombrel-format (LD_PRELOAD), it plants a fault into what the program asks of the system:
//
//     OMBREL_FAULT=NAME          one of the faults below, which lie about what was done
//     OMBREL_FAIL_AT=N           allocation N fails; with a minus sign before it all that follow too

#include "AllocationFailure.h"

#include <cerrno>
#include <cstdlib>
#include <string_view>

#include <fcntl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

std::string_view fault;

bool has(std::string_view name) {
    return fault == name;
}

/// Not as a whole: whoever looks in between sees a part.
int copyInto(const char* from, const char* to) {
    const int in = ::open(from, O_RDONLY | O_CLOEXEC);
    const int out = ::open(to, O_WRONLY | O_TRUNC | O_CLOEXEC);
    char buffer[4096];
    for (ssize_t size; (size = ::read(in, buffer, sizeof buffer)) > 0;) {
        syscall(SYS_write, out, buffer, size);
    }
    ::close(in);
    ::close(out);
    return static_cast<int>(syscall(SYS_unlink, from));
}

__attribute__((constructor)) void begin() {
    const std::string_view program = program_invocation_short_name;
    const char* name = std::getenv("OMBREL_FAULT");
    if (name != nullptr && (program == "ombrel-format" || program == "ombrel_tests")) {
        fault = name;
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

SYSTEM_CALL int unlink(const char* path) noexcept {
    return has("keep-temporary") ? 0 : static_cast<int>(syscall(SYS_unlink, path));
}

SYSTEM_CALL int rename(const char* from, const char* to) noexcept {
    return has("copy-over") ? copyInto(from, to) : static_cast<int>(syscall(SYS_rename, from, to));
}

SYSTEM_CALL int flock(int file, int operation) noexcept {
    return has("no-lock") ? 0 : static_cast<int>(syscall(SYS_flock, file, operation));
}

SYSTEM_CALL ssize_t write(int file, const void* bytes, size_t size) {
    const bool losesLast = has("lose-last-byte") && file > 2 && size > 1;
    const ssize_t written = syscall(SYS_write, file, bytes, losesLast ? size - 1 : size);
    return losesLast && written >= 0 ? static_cast<ssize_t>(size) : written;
}
