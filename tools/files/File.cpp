#include "files/File.h"

#include <system_error>

#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

namespace ombrel {

FileError makeFileError(FileError::Kind kind, const char* what, int errorNumber) {
    return {kind, fmt::format("{}: {}", what, std::generic_category().message(errorNumber))};
}

void writeAll(int descriptor, const std::string& bytes) {
    std::size_t done = 0;
    while (done < bytes.size()) {
        const ssize_t count = ::write(descriptor, bytes.data() + done, bytes.size() - done);
        if (count >= 0) {
            done += static_cast<std::size_t>(count);
        } else if (errno != EINTR) {
            throw makeFileError(FileError::Kind::Unwritable, "can't write it", errno);
        }
    }
}

File::File(int descriptor, FileError::Kind kind, const char* what) : descriptor(descriptor) {
    if (descriptor < 0) {
        throw makeFileError(kind, what, errno);
    }
}

File::~File() {
    ::close(descriptor);
}

/// Not for reading, which the user may not be allowed to.
File openFolder(const std::string& path) {
    return {::open(path.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC), FileError::Kind::Unwritable,
            "can't make a temporary file in its folder"};
}

} // namespace ombrel
