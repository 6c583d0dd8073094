#include "files/PathList.h"

#include "text/ListSplitter.h"

#include <algorithm>

namespace ombrel {

std::vector<std::string> splitPathList(std::string_view list, bool isNulEnded) {
    std::vector<std::string> paths = splitList(list, isNulEnded ? '\0' : '\n');
    std::erase(paths, "");
    std::replace(paths.begin(), paths.end(), std::string("-"), std::string("./-"));
    return paths;
}

} // namespace ombrel
