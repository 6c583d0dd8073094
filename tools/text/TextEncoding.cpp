#include "text/TextEncoding.h"

#include <algorithm>
#include <stdexcept>

#include <fmt/format.h>
#include <unicode/ustring.h>
#include <utf8.h>

namespace ombrel {

namespace {

constexpr char32_t replacement = 0xFFFD;

// The converter counts in signed 32-bit numbers, so long texts go through it in pieces.
constexpr std::size_t pieceLength = std::size_t{1} << 24;

bool isContinuationByte(char c) {
    return (static_cast<unsigned char>(c) & 0xC0) == 0x80;
}

bool isLeadSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xD800;
}

/// A piece from the front that ends between two characters. In broken text, where that may be hopeless, the
/// end is anywhere: the converter reports the fault in one piece or the other.
std::string_view getPiece(std::string_view bytes) {
    if (bytes.size() <= pieceLength) {
        return bytes;
    }
    std::size_t length = pieceLength;
    while (length > pieceLength - 4 && isContinuationByte(bytes[length])) {
        --length;
    }
    return bytes.substr(0, length);
}

std::u16string_view getPiece(std::u16string_view text) {
    if (text.size() <= pieceLength) {
        return text;
    }
    return text.substr(0, isLeadSurrogate(text[pieceLength - 1]) ? pieceLength - 1 : pieceLength);
}

/// Appends `bytes` to `text`; false for bad bytes if there is no `substitute` (-1).
bool appendDecoded(std::u16string& text, std::string_view bytes, UChar32 substitute) {
    while (!bytes.empty()) {
        const std::string_view piece = getPiece(bytes);
        const std::size_t start = text.size();
        text.resize(start + piece.size());
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strFromUTF8WithSub(text.data() + start, static_cast<std::int32_t>(piece.size()), &length,
                             piece.data(), static_cast<std::int32_t>(piece.size()), substitute, nullptr,
                             &error);
        if (U_FAILURE(error)) {
            return false;
        }
        text.resize(start + static_cast<std::size_t>(length));
        bytes.remove_prefix(piece.size());
    }
    return true;
}

bool isAscii(char16_t c) {
    return c < 0x80;
}

/// Removes the text before `end` from `text` and returns it.
std::u16string_view takeFront(std::u16string_view& text, std::u16string_view::const_iterator end) {
    const std::u16string_view front = text.substr(0, static_cast<std::size_t>(end - text.begin()));
    text.remove_prefix(front.size());
    return front;
}

/// Appends a text that needs the converter; false for half a surrogate pair if there is no `substitute` (-1).
bool appendConverted(std::string& bytes, std::u16string_view text, UChar32 substitute) {
    while (!text.empty()) {
        const std::u16string_view piece = getPiece(text);
        const std::size_t start = bytes.size();
        bytes.resize(start + 3 * piece.size());
        std::int32_t length = 0;
        UErrorCode error = U_ZERO_ERROR;
        u_strToUTF8WithSub(bytes.data() + start, static_cast<std::int32_t>(3 * piece.size()), &length,
                           piece.data(), static_cast<std::int32_t>(piece.size()), substitute, nullptr,
                           &error);
        if (U_FAILURE(error)) {
            return false;
        }
        bytes.resize(start + static_cast<std::size_t>(length));
        text.remove_prefix(piece.size());
    }
    return true;
}

/// Appends `text` to `bytes`; false for half a surrogate pair if there is no `substitute` (-1). The converter
/// needs room for the worst case, so ASCII, which is most of all text, doesn't go through it.
bool appendEncoded(std::string& bytes, std::u16string_view text, UChar32 substitute) {
    while (!text.empty()) {
        const auto ascii = takeFront(text, std::find_if_not(text.begin(), text.end(), isAscii));
        const std::size_t start = bytes.size();
        bytes.resize(start + ascii.size());
        std::transform(ascii.begin(), ascii.end(), bytes.data() + start,
                       [](char16_t c) { return static_cast<char>(c); });
        const auto other = takeFront(text, std::find_if(text.begin(), text.end(), isAscii));
        if (!appendConverted(bytes, other, substitute)) {
            return false;
        }
    }
    return true;
}

/// Whether the bytes of most characters are a NUL and another one, as in text with ASCII letters.
bool looksLikeUtf16(std::string_view bytes) {
    constexpr std::string_view littleEndianMark = "\xFF\xFE";
    constexpr std::string_view bigEndianMark = "\xFE\xFF";
    if (bytes.starts_with(littleEndianMark) || bytes.starts_with(bigEndianMark)) {
        return true;
    }
    const std::string_view sample = bytes.substr(0, 4096);
    std::size_t nulCounts[2] = {};
    for (std::size_t i = 0; i < sample.size(); ++i) {
        nulCounts[i % 2] += sample[i] == '\0' ? 1 : 0;
    }
    const auto [fewer, more] = std::minmax(nulCounts[0], nulCounts[1]);
    return more > sample.size() / 4 && 8 * fewer < more;
}

/// Of the first line with its end; 0 if it has no end.
std::size_t getLineLength(std::string_view bytes) {
    const auto end = std::find_if(bytes.begin(), bytes.end(), [](char c) { return c == '\n' || c == '\r'; });
    const auto length = static_cast<std::size_t>(end - bytes.begin());
    return end == bytes.end() ? 0 : length + (bytes.substr(length, 2) == "\r\n" ? 2 : 1);
}

/// As 16-bit characters.
std::uint32_t getLength(std::string_view utf8) {
    std::uint32_t length = 0;
    for (const char c : utf8) {
        const bool isPair = static_cast<unsigned char>(c) >= 0xF0;
        length += isContinuationByte(c) ? 0 : isPair ? 2 : 1;
    }
    return length;
}

/// `offset` is that of the first byte that no text may have there: a NUL, or what isn't UTF-8.
DecodingError describeBadByte(std::string_view bytes, std::size_t offset) {
    std::uint32_t line = 1;
    std::string_view before = bytes.substr(0, offset);
    while (const std::size_t length = getLineLength(before)) {
        before.remove_prefix(length);
        ++line;
    }
    const char* guess = looksLikeUtf16(bytes) ? "; the file looks like UTF-16: convert it to UTF-8" : "";
    const auto byte = static_cast<unsigned char>(bytes[offset]);
    const bool isNul = byte == 0;
    const std::string reason =
        isNul ? "not a text: NUL characters aren't allowed"
              : fmt::format("this is not UTF-8: the byte 0x{:02X} is not allowed here", byte);
    return {isNul ? DecodingError::Kind::NulCharacter : DecodingError::Kind::NotUtf8, reason + guess, line,
            getLength(before) + 1};
}

} // namespace

tl::expected<DecodedText, DecodingError> decode(std::string_view bytes) {
    if (bytes.size() > maximalByteCount) {
        return tl::unexpected(DecodingError{DecodingError::Kind::TooLarge, tooLargeMessage});
    }
    DecodedText result;
    result.hasByteOrderMark = bytes.starts_with(byteOrderMark);
    if (result.hasByteOrderMark) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    result.text.reserve(bytes.size()); // at most; a text that grew would be in memory twice
    const std::size_t nul = bytes.find('\0');
    if (nul != std::string_view::npos || !appendDecoded(result.text, bytes, -1)) {
        const std::string_view before = bytes.substr(0, nul);
        const auto invalid = utf8::find_invalid(before.begin(), before.end());
        return tl::unexpected(describeBadByte(bytes, static_cast<std::size_t>(invalid - before.begin())));
    }
    return result;
}

std::u16string decodeLossy(std::string_view bytes) {
    if (bytes.starts_with(byteOrderMark)) {
        bytes.remove_prefix(byteOrderMark.size());
    }
    std::u16string text;
    appendDecoded(text, bytes, replacement);
    return text;
}

void appendEncoded(std::string& bytes, std::u16string_view text) {
    if (!appendEncoded(bytes, text, -1)) {
        throw std::invalid_argument("half a surrogate pair can't be written as UTF-8");
    }
}

std::string encode(const DecodedText& source) {
    std::string bytes(source.hasByteOrderMark ? byteOrderMark : std::string_view());
    bytes.reserve(bytes.size() + source.text.size());
    appendEncoded(bytes, source.text);
    return bytes;
}

std::string encodeLossy(std::u16string_view text) {
    std::string bytes;
    appendEncoded(bytes, text, replacement);
    return bytes;
}

} // namespace ombrel
