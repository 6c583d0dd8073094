#pragma once

#include "files/FileSystem.h"

#include <cerrno>
#include <string>

#include <sys/types.h>

namespace ombrel {

/// `what`, which was tried, and the system's words for why it failed.
FileError makeFileError(FileError::Kind kind, const char* what, int errorNumber);

/// Writes all bytes to an open file. Throws FileError with the kind Unwritable.
void writeAll(int descriptor, const std::string& bytes);

/// Owns an open file of the system.
class File {
public:
    /// A negative descriptor, which a failed `open` gives, throws the error that `errno` tells.
    File(int descriptor, FileError::Kind kind, const char* what);
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File();

    int get() const { return descriptor; }

private:
    int descriptor;
};

/// Opens a folder in which files are to be replaced or made. What is done in it is done there even if it, or
/// one above it, gets another name meanwhile.
File openFolder(const std::string& path);

} // namespace ombrel
