#pragma once

#include "files/FileSystem.h"

#include <iosfwd>
#include <string>

namespace ombrel {

/// All bytes of an input, `in` for the path `-`. Throws FileError, for an input of more than 4 GiB too.
std::string readInput(const std::string& path, std::istream& in, FileSystem& files);

} // namespace ombrel
