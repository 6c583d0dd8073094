#pragma once

#include "files/FileSystem.h"
#include "files/IgnoredFiles.h"
#include "files/SearchOptions.h"

#include <string>
#include <vector>

namespace ombrel {

/// A file that a search came across, or a folder that it didn't enter.
struct FoundFile {
    enum class Verdict { Taken, Left, Unreadable };

    std::string path; ///< as the user wrote it, or what it was found through; "-" is standard input
    Verdict verdict;
    std::string reason;   ///< for people; what is wrong if it is unreadable
    bool isNamed = false; ///< left out although it was named, and not because it was taken before
};

struct SearchResult {
    std::vector<FoundFile> files;      ///< as named, within a folder by name, and no file taken twice
    bool hasFolder = false;            ///< a folder was among the paths
    bool hasOtherShards = false;       ///< files were left to other shards
    std::vector<std::string> warnings; ///< sentences
};

/// Finds the files that a run formats: those of `paths` that are no folders, and below the folders everything
/// named `*.omb` that nothing leaves out; `ignored` is asked once its scope is set. Symbolic links to folders
/// are not followed, links to files only if these are in one of the folders in `paths`, and a `.git` is not
/// entered, even if it is named. A path that doesn't exist is treated as a file. If there are several shards,
/// only files, and folders that can't be read, of the shard in the options are taken.
SearchResult findFiles(const std::vector<std::string>& paths, const SearchOptions& options, FileSystem& files,
                       IgnoredFiles& ignored);

} // namespace ombrel
