#include "files/Folder.h"

#include <cerrno>
#include <memory>
#include <string_view>

#include <dirent.h>
#include <sys/stat.h>

namespace ombrel {

namespace {

using Kind = FolderEntry::Kind;

struct Closer {
    void operator()(DIR* folder) const { ::closedir(folder); }
};

Kind getTargetKind(const std::string& path) {
    struct stat status {};
    if (::stat(path.c_str(), &status) != 0) {
        return errno == ENOENT || errno == ELOOP ? Kind::DeadLink : Kind::Other;
    }
    return S_ISDIR(status.st_mode) ? Kind::LinkToFolder : S_ISREG(status.st_mode) ? Kind::File : Kind::Other;
}

/// Not every file system tells the type with the name.
unsigned char findType(const std::string& path, unsigned char type) {
    struct stat status {};
    const bool isKnown = type != DT_UNKNOWN || ::lstat(path.c_str(), &status) != 0;
    return isKnown ? type : static_cast<unsigned char>(IFTODT(status.st_mode));
}

FolderEntry makeEntry(const std::string& folder, const dirent& entry) {
    const std::string path = folder + '/' + entry.d_name;
    switch (findType(path, entry.d_type)) {
    case DT_DIR:
        return {entry.d_name, Kind::Folder, false};
    case DT_REG:
        return {entry.d_name, Kind::File, false};
    case DT_LNK:
        return {entry.d_name, getTargetKind(path), true};
    default:
        return {entry.d_name, Kind::Other, false};
    }
}

} // namespace

std::vector<FolderEntry> readEntries(const std::string& folder, std::error_code& error) {
    std::vector<FolderEntry> entries;
    const std::unique_ptr<DIR, Closer> stream(::opendir(folder.c_str()));
    errno = stream ? 0 : errno;
    while (const dirent* entry = stream ? ::readdir(stream.get()) : nullptr) {
        const std::string_view name = entry->d_name;
        if (name != "." && name != "..") {
            entries.push_back(makeEntry(folder, *entry));
        }
        errno = 0; // the next call sets it at the end only if there is an error
    }
    error.assign(errno, std::generic_category());
    return entries;
}

} // namespace ombrel
