#pragma once

#include <cstdint>

namespace ombrel {

/// Lines from 1, both inclusive, `first` not above `last`.
struct LineRange {
    std::uint32_t first;
    std::uint32_t last;
};

} // namespace ombrel
