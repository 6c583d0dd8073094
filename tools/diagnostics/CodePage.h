#pragma once

#include "diagnostics/Code.h"

#include <string>

namespace ombrel {

/// What a user should know about a code, as a section of docs/messages.md.
std::string describeCode(const CodeInfo& info);

} // namespace ombrel
