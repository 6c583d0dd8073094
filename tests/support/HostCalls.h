#pragma once

#include <cstddef>

/// How often the host was asked since the last reset, on all threads. The test program has the host's
/// operations replaced by ones that count and then call the host's.
struct HostCalls {
    std::size_t parsed = 0;    ///< texts that were parsed, each of which is tokenized for that as well
    std::size_t tokenized = 0; ///< texts that were tokenized by themselves, at once or by lines
};

HostCalls getHostCalls();
void resetHostCalls();
