#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// The items of a list, each ended by this character. Behind the last one it may be missing.
std::vector<std::string> splitList(std::string_view list, char end);

} // namespace ombrel
