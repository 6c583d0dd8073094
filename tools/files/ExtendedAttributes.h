#pragma once

#include "files/File.h"

namespace ombrel {

/// Gives an open file the extended attributes of another one, access lists among them, and no others.
/// Attributes that belong to the system's security modules are kept where the system allows it. Throws
/// FileError with the kind Unwritable.
void copyExtendedAttributes(const File& from, const File& to);

} // namespace ombrel
