#include "files/Paths.h"

#include <filesystem>
#include <new>
#include <system_error>

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

std::string getCurrentFolder() {
    std::error_code error;
    std::string folder = std::filesystem::current_path(error);
    if (error == std::errc::not_enough_memory) {
        throw std::bad_alloc();
    }
    if (error && error != std::errc::no_such_file_or_directory) {
        throw std::system_error(error, "can't tell the current folder");
    }
    return folder;
}

} // namespace ombrel
