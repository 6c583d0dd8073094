#pragma once

#include "files/File.h"

#include <filesystem>
#include <string>

struct stat;

namespace ombrel {

/// A new file that is to replace another one of its folder. It has no name until it is whole, where the file
/// system can do that, so that nothing can leave it behind, not even a kill, but in the moment between its
/// getting a name and its getting the other's. The destructor removes it unless it has taken the other's
/// place.
///
/// Its members throw FileError with the kind Unwritable.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::filesystem::path& folder);
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile();

    void write(const std::string& bytes);

    /// Owner, mode, access list and extended attributes, as `target` has them.
    void takeProperties(const std::filesystem::path& target, const struct stat& status);

    void sync();

    /// Atomic: whoever opens the target finds the old file or this one.
    void replace(const std::filesystem::path& target);

private:
    void takeName();

    std::filesystem::path path; ///< its name, or the one that it is going to have
    bool hasName = false;
    File file;
};

} // namespace ombrel
