#pragma once

#include "ombrel/api.h"

namespace ca::astapi {

/// A handle of the library that only developers have, `libca_formatting_devtools.so` in the folder of the
/// host library or in `devtools` below that. It is loaded by the first call and stays loaded. Null if it
/// isn't in either place or can't be loaded. The current folder and the search paths of the system are never
/// looked into, so that nobody can slip in a library of that name.
OMBREL_HOST_API void* getNonshippingLibraryHandle();

} // namespace ca::astapi

/// The address of what the library exports under this name (the name that the linker sees); null if there is
/// nothing, or if the handle is null.
OMBREL_HOST_API void* utFindSymbolInLibrary(void* handle, const char* name);
