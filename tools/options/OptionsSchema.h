#pragma once

#include <string>

namespace ombrel {

/// The JSON Schema (draft 2020-12) of options files, for editors and validators. Comments and trailing
/// commas, which the files may have, are no matter of a schema.
std::string makeOptionsSchema();

} // namespace ombrel
