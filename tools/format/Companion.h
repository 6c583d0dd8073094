#pragma once

#include "format/TreeEngine.h"

namespace ombrel {

/// The tree formatter, as the companion library hands it on; empty if that library isn't there or has no
/// bridge to the formatter. May be called on several threads at once.
TreeFormatter findTreeFormatter();

/// What to tell a user who asks for the tree engine then.
extern const char* const missingTreeEngine;

} // namespace ombrel
