#include "text/LineSplitter.h"

#include <algorithm>

namespace ombrel {

std::string_view takeLine(std::string_view& text) {
    const std::size_t end = std::min(text.find('\n'), text.size());
    const std::string_view line = text.substr(0, end);
    text.remove_prefix(std::min(end + 1, text.size()));
    return line;
}

std::vector<std::string_view> splitLines(std::string_view text) {
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const char* begin = text.data();
        takeLine(text);
        lines.emplace_back(begin, static_cast<std::size_t>(text.data() - begin));
    }
    return lines;
}

} // namespace ombrel
