#pragma once

#include <string>

namespace ca::astapi {

/// True if the path is a regular file, or a link to one, with a shared library of this machine that isn't cut
/// off. The loader checks none of that: it waits for pipes, and ends the process with a signal where a part
/// of a library that it has mapped isn't there.
bool isWholeLibrary(const std::string& path);

} // namespace ca::astapi
