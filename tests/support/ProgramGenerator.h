#pragma once

#include <cstdint>
#include <string>

/// A random program that parses, the same for the same seed: a script, a file of functions, or a class file,
/// with whitespace, comments, continuations, separators and line ends of all kinds wherever the language
/// allows them. Few programs exceed a hundred lines.
std::u16string generateProgram(std::uint32_t seed);
