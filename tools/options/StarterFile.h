#pragma once

#include <string>

namespace ombrel {

/// An options file to begin with: every option with its default and what it does, as comments, so that it
/// changes nothing yet.
std::string makeStarterFile();

} // namespace ombrel
