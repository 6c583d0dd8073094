#pragma once

#include "ombrel/api.h"

#include <cstddef>

namespace lf::astapi::internal {

/// Size of an arena's page in bytes, the same for the life of the process.
OMBREL_HOST_API std::size_t getPageSize();

} // namespace lf::astapi::internal
