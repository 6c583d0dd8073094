#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// The paths of a list, one a line or, if the list says so, each ended by a NUL. Empty ones don't count, and
/// `-` is a file of that name, not standard input.
std::vector<std::string> splitPathList(std::string_view list, bool isNulEnded);

} // namespace ombrel
