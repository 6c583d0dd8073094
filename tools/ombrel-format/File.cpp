#include "File.h"

#include <system_error>

#include <fmt/format.h>
#include <unistd.h>

namespace ombrel {

FileError makeFileError(FileError::Kind kind, const char* what, int errorNumber) {
    return {kind, fmt::format("{}: {}", what, std::generic_category().message(errorNumber))};
}

File::File(int descriptor, FileError::Kind kind, const char* what) : descriptor(descriptor) {
    if (descriptor < 0) {
        throw makeFileError(kind, what, errno);
    }
}

File::~File() {
    ::close(descriptor);
}

} // namespace ombrel
