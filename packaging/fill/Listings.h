#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrel {

/// What a template can ask for by its name, and how it is made. A listing ends without a line end.
using Listing = std::pair<std::string_view, std::string (*)()>;

const std::vector<Listing>& getListings();

} // namespace ombrel
