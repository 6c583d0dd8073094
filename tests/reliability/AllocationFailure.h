#pragma once

#include <cstdint>

// All memory of the test program and its libraries comes from one malloc, which can be told to fail. Not
// under sanitizers, which have one of their own.

/// Lets the allocation of this number, from 1, that this thread makes from now on fail, and with `failsRest`
/// all that follow.
void failAllocation(std::uint64_t number, bool failsRest);

/// Tells whether an allocation has failed since, and stops that.
bool stopFailing();

/// Blocks of memory that this thread has allocated and not freed.
std::int64_t countLiveAllocations();
