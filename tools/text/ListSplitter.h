#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// The items of a list, each ended by this character. It may be missing after the last one.
std::vector<std::string> splitList(std::string_view list, char end);

/// The lines of a text, as views into it with their line feeds.
std::vector<std::string_view> splitLines(std::string_view text);

} // namespace ombrel
