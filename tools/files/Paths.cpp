#include "files/Paths.h"

#include <filesystem>

namespace ombrel {

bool isBelow(std::string_view folder, std::string_view path) {
    if (folder == "/") {
        return path.starts_with('/');
    }
    return !folder.empty() && path.starts_with(folder) && path.substr(folder.size()).starts_with('/');
}

std::string getPathFrom(const std::string& folder, const std::string& path) {
    return isBelow(folder, path) ? getShortPath(folder, path)
                                 : std::filesystem::path(path).lexically_relative(folder).string();
}

std::string getShortPath(const std::string& folder, const std::string& path) {
    return isBelow(folder, path) ? path.substr(folder == "/" ? 1 : folder.size() + 1) : path;
}

std::string getFolder(std::string_view path) {
    const std::size_t slash = path.rfind('/');
    return std::string(path.substr(0, slash == 0 ? 1 : slash));
}

} // namespace ombrel
