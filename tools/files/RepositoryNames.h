#pragma once

#include "files/FileSystem.h"

#include <string>

namespace ombrel {

/// Knows files by names that don't depend on where their repository is checked out.
class RepositoryNames {
public:
    /// Keeps a reference to the files.
    explicit RepositoryNames(FileSystem& files) : files(&files) {}

    /// The path from the top of the file's repository. Outside of repositories the path from `start`, the
    /// folder that the file was found through, or as it is if it isn't below that. All paths are absolute and
    /// without symbolic links.
    std::string getName(const std::string& path, const std::string& start);

private:
    FileSystem* files;
    std::string lastFolder; ///< whose repository is known; empty: none yet
    std::string lastRepository;
};

} // namespace ombrel
