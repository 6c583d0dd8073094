#pragma once

#include "diagnostics/Message.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <variant>

namespace ombrel {

/// Bytes that a text may have at most. A token's line and column are 32-bit numbers, and with this limit no
/// text has more lines or longer lines than they can count.
constexpr std::uint64_t maximalByteCount = 0xFFFF'FFFE;

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// A file's text. The byte-order mark belongs to the file, not to the text, and is kept aside.
struct DecodedText {
    std::u16string text;
    bool hasByteOrderMark = false;
};

/// Turns the bytes of a file into text. Invalid UTF-8 is refused at its first bad byte, never repaired.
std::variant<DecodedText, Problem> decode(std::string_view bytes);

/// As much of a text as can be shown: a replacement character stands for what isn't UTF-8.
std::u16string decodeLossy(std::string_view bytes);

/// The bytes of a file. Throws std::invalid_argument for half a surrogate pair, which no decoded text has.
std::string encode(const DecodedText& source);

/// Appends `text` in UTF-8. Throws std::invalid_argument for half a surrogate pair.
void appendEncoded(std::string& bytes, std::u16string_view text);

/// UTF-8 for showing: a replacement character stands for half a surrogate pair.
std::string encodeLossy(std::u16string_view text);

} // namespace ombrel
