#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "lsp/Json.h"

namespace ombrel::lsp {

/// What the columns of the protocol count.
enum class PositionEncoding { Utf8, Utf16, Utf32 };

/// A place between two characters, as the protocol has it: line and column count from 0.
struct Position {
    std::uint32_t line;
    std::uint32_t character;
};

struct Range {
    Position start;
    Position end;
};

/// A part of a text, in 16-bit characters.
struct TextSpan {
    std::size_t begin;
    std::size_t end;
};

/// Throw Json::exception for what isn't a position or a range.
Position readPosition(const Json& json);
Range readRange(const Json& json);

Json writePosition(Position position);

/// Where the lines of a text start. Offsets count 16-bit characters. LF, CRLF and CR end a line.
class LineIndex {
public:
    LineIndex() : starts{0} {}
    explicit LineIndex(std::u16string_view text);

    std::size_t getLineCount() const { return starts.size(); }
    std::size_t getStart(std::size_t line) const { return starts[line]; }

    /// The offset after the last character before the line's end.
    std::size_t getEnd(std::u16string_view text, std::size_t line) const;

    /// The line, from 0, that an offset is in. A line end belongs to the line that it ends.
    std::size_t findLine(std::size_t offset) const;

    /// Goes along with a change: at `offset`, `removed` characters have been replaced by `inserted` others.
    /// `text` is the one after the change.
    void update(std::u16string_view text, std::size_t offset, std::size_t removed, std::size_t inserted);

private:
    std::vector<std::size_t> starts; ///< ascending, never empty
};

/// The offset of a place. One after the end of its line means that end, and a line after the last means the
/// end of the text.
std::size_t findOffset(std::u16string_view text, const LineIndex& lines, Position position,
                       PositionEncoding encoding);

/// Turns offsets of one text into positions. Ascending offsets take time in proportion to the text, however
/// long its lines are.
class PositionFinder {
public:
    PositionFinder(std::u16string_view text, const LineIndex& lines, PositionEncoding encoding)
        : text(text), lines(lines), encoding(encoding) {}

    Position find(std::size_t offset);

    /// `{"start": …, "end": …}` of the protocol.
    Json writeRange(std::size_t begin, std::size_t end);

private:
    std::u16string_view text;
    const LineIndex& lines;
    PositionEncoding encoding;
    std::size_t lastLine = 0;
    std::size_t lastOffset = 0;
    std::uint32_t lastCharacter = 0;
};

/// The length of a text in units of the encoding.
std::uint32_t measure(std::u16string_view text, PositionEncoding encoding);

} // namespace ombrel::lsp
