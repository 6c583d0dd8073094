#include "files/PathList.h"

#include <algorithm>

namespace ombrel {

std::vector<std::string> splitPathList(std::string_view list, bool isNulEnded) {
    std::vector<std::string> paths;
    while (!list.empty()) {
        const std::size_t length = std::min(list.find(isNulEnded ? '\0' : '\n'), list.size());
        if (length > 0) {
            const std::string_view path = list.substr(0, length);
            paths.emplace_back(path == "-" ? "./-" : path);
        }
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return paths;
}

} // namespace ombrel
