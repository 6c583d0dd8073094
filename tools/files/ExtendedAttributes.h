#pragma once

#include <string>

namespace ombrel {

/// Gives an open file the extended attributes of the file at `path`, access lists among them, and no others.
/// Attributes that belong to the system's security modules are kept where the system allows it. Throws
/// FileError with the kind Unwritable.
void copyExtendedAttributes(const std::string& path, int descriptor);

} // namespace ombrel
