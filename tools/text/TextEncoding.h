#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <tl/expected.hpp>

namespace ombrel {

/// Bytes that a text may have at most. A token's line and column are 32-bit numbers, and with this limit no
/// text has more lines or longer lines than they can count.
constexpr std::uint64_t maximalByteCount = 0xFFFF'FFFE;

/// What to tell a user whose text has more.
constexpr const char* tooLargeMessage = "this text is too large: 4 GiB is the limit";

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

/// A file's text. The byte-order mark belongs to the file, not to the text, and is kept aside.
struct DecodedText {
    std::u16string text;
    bool hasByteOrderMark = false;
};

/// Why bytes are no text that can be formatted.
struct DecodingError {
    enum class Kind { NotUtf8, NulCharacter, TooLarge };

    Kind kind;
    std::string text;         ///< UTF-8, one line, no full stop
    std::uint32_t line = 0;   ///< from 1; 0 if the error has no place
    std::uint32_t column = 0; ///< 16-bit characters, from 1
};

/// Turns the bytes of a file into text. Refuses invalid UTF-8 at its first bad byte, and NUL characters, which
/// text in another encoding has.
tl::expected<DecodedText, DecodingError> decode(std::string_view bytes);

/// As much of a text as can be shown: a replacement character stands for what isn't UTF-8.
std::u16string decodeLossy(std::string_view bytes);

/// The bytes of a file. Throws std::invalid_argument for half a surrogate pair, which no decoded text has.
std::string encode(const DecodedText& source);

/// Appends `text` in UTF-8. Throws std::invalid_argument for half a surrogate pair.
void appendEncoded(std::string& bytes, std::u16string_view text);

/// UTF-8 for showing: a replacement character stands for half a surrogate pair.
std::string encodeLossy(std::u16string_view text);

} // namespace ombrel
