#pragma once

#include <string>
#include <system_error>
#include <vector>

namespace ombrel {

struct FolderEntry {
    enum class Kind {
        Folder,
        File,
        LinkToFolder,
        DeadLink,
        Other
    }; ///< File: a regular one, or a link to one

    std::string name;
    Kind kind;
    bool isLink;
};

/// What is in a folder, but for `.` and `..`, in the order of the system. Ends early with an error. With the
/// system's calls, since the standard library's iterator crashes when memory runs out.
std::vector<FolderEntry> readEntries(const std::string& folder, std::error_code& error);

} // namespace ombrel
