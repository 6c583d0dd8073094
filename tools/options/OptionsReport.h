#pragma once

#include "options/OptionsResolver.h"

#include <string>
#include <vector>

namespace ombrel {

/// All options for one file, as a table for people:
///
///     line.indentSize    2    src/.ombrel-format.json:3
std::string describeOptions(const std::vector<OptionInForce>& options);

} // namespace ombrel
