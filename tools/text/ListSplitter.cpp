#include "text/ListSplitter.h"

#include <algorithm>

namespace ombrel {

std::vector<std::string> splitList(std::string_view list, char end) {
    std::vector<std::string> items;
    while (!list.empty()) {
        const std::size_t length = std::min(list.find(end), list.size());
        items.emplace_back(list.substr(0, length));
        list.remove_prefix(std::min(length + 1, list.size()));
    }
    return items;
}

} // namespace ombrel
