#pragma once

#include "cli/Arguments.h"

#include <cstddef>
#include <string>
#include <vector>

namespace ombrel {

/// The text of --help, with no line longer than `width` columns where words allow it. Options come in the
/// order of their groups, which is that of the list.
std::string makeHelp(const std::vector<OptionDescription>& options, std::size_t width);

} // namespace ombrel
