#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

/// The fuzzer's bytes as text. The first byte says how: every byte a character, so that the fuzzer reads
/// Ombrel in its corpus, or two bytes a character, for everything beyond.
inline std::u16string makeText(const std::uint8_t* data, std::size_t size) {
    std::u16string text;
    if (size == 0) {
        return text;
    }
    const bool isWide = data[0] == 0xFF;
    for (std::size_t i = isWide ? 1 : 0; i < size; i += isWide ? 2 : 1) {
        const unsigned high = isWide && i + 1 < size ? data[i + 1] : 0u;
        text += static_cast<char16_t>(data[i] | high << 8);
    }
    return text;
}

/// Ends the run as a finding.
[[noreturn]] inline void fail(const std::string& what) {
    std::fprintf(stderr, "%s\n", what.c_str());
    std::abort();
}
