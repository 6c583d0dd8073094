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

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t length = std::min(text.find('\n'), text.size() - 1) + 1;
        lines.push_back(text.substr(0, length));
        text.remove_prefix(length);
    }
    return lines;
}

} // namespace ombrel
