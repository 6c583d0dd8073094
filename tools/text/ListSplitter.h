#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// The items of a list, each ended by this character. It may be missing after the last one.
std::vector<std::string> splitList(std::string_view list, char end);

} // namespace ombrel
