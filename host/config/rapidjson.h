#pragma once

// The JSON library, for all that use it. Its stack starts without memory and compares null plus a size with
// null, which is harmless but what clang's sanitizer for pointers stops at.
#if defined(__clang__)
#pragma clang attribute push(__attribute__((no_sanitize("pointer-overflow"))), apply_to = function)
#endif

#include <rapidjson/encodings.h>
#include <rapidjson/error/error.h>
#include <rapidjson/reader.h>

#if defined(__clang__)
#pragma clang attribute pop
#endif
