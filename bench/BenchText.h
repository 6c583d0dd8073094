#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

/// Texts to measure on. Sizes are 16-bit characters.

std::u16string repeat(std::u16string_view piece, std::size_t count);

/// The example programs that close all their blocks, joined and repeated up to `size`. Throws
/// std::runtime_error if there are none.
std::u16string makeOrdinaryText(std::size_t size);

/// The example programs that are scripts, joined and repeated to at least `size`: one program that parses.
std::u16string makeScriptText(std::size_t size);

/// Inputs that a careless implementation falls over.
struct NastyFamily {
    const char* name;
    std::function<std::u16string(std::size_t scale)> make; ///< scale 1 is the smallest size, 2 twice as much
};

const std::vector<NastyFamily>& getNastyFamilies();
