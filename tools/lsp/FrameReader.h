#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

namespace ombrel::lsp {

/// Bytes of a header, its empty line included.
inline constexpr std::size_t maximalHeaderSize = 8 << 10;

/// Bytes of a message without its header.
inline constexpr std::uint64_t maximalBodySize = std::uint64_t{64} << 20;

/// Something in the stream that is no message.
struct FrameFault {
    std::string text;
    bool isFatal; ///< the start of the next message can't be found
};

/// Cuts a stream of bytes into messages:
///
///     Content-Length: 2\r\n
///     \r\n
///     {}
///
/// A message that is too long is reported and skipped without being stored, since its end is known. After any
/// other fault there is nothing more to read: to search for something that looks like a header would mean to
/// execute what may be part of a document.
class FrameReader {
public:
    using Frame = std::variant<std::string, FrameFault>;

    void append(std::string_view bytes);

    /// The body of the next message, or a fault; nothing if more bytes are needed first.
    std::optional<Frame> getNext();

    /// Whether the stream may end here: between two messages.
    bool isBetweenFrames() const { return buffer.size() == start && !bodySize && skipped == 0; }

private:
    std::optional<Frame> readHeader();
    std::optional<Frame> readBody();
    Frame failForever(std::string text);

    std::string buffer;
    std::size_t start = 0;                 ///< of what hasn't been used yet
    std::optional<std::uint64_t> bodySize; ///< its header has been read
    std::uint64_t skipped = 0;             ///< bytes of a body that are to be skipped
    bool isOver = false;
};

} // namespace ombrel::lsp
