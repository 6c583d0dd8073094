#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// "; did you mean X?" for the choice that is nearest to a misspelt word, empty if none is near.
std::string suggest(std::string_view word, const std::vector<std::string>& choices);

} // namespace ombrel
