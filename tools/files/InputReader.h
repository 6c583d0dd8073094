#pragma once

#include "files/FileSystem.h"
#include "text/TextEncoding.h"

#include <iosfwd>
#include <string>

namespace ombrel {

/// For bytes that can be anything.
inline constexpr ReadLimit inputLimit{maximalByteCount};

/// For a text that is refused if it has a NUL character.
inline constexpr ReadLimit sourceLimit{maximalByteCount, true};

/// The bytes of an input, `in` for the path `-`. Throws FileError, for an input beyond the limit too.
std::string readInput(const std::string& path, std::istream& in, FileSystem& files, ReadLimit limit);

} // namespace ombrel
