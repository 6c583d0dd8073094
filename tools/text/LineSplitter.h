#pragma once

#include "text/Whitespace.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace ombrel {

/// One line of a text, as views into it.
struct Line {
    std::u16string_view content;
    std::u16string_view end; ///< LF, CRLF or CR as written; empty for a last line without one
};

/// Returns the lines of a text one by one. A text that ends in a line end has an empty last line, and an
/// empty text has one line.
class LineSplitter {
public:
    explicit LineSplitter(std::u16string_view text) : rest(text) {}

    std::optional<Line> getNext() {
        if (isDone) {
            return std::nullopt;
        }
        const auto end = std::find_if(rest.begin(), rest.end(), isLineEnd);
        const auto length = static_cast<std::size_t>(end - rest.begin());
        if (end == rest.end()) {
            isDone = true;
            return Line{rest, {}};
        }
        const std::size_t endLength = rest.substr(length, 2) == u"\r\n" ? 2 : 1;
        const Line line{rest.substr(0, length), rest.substr(length, endLength)};
        rest.remove_prefix(length + endLength);
        return line;
    }

private:
    std::u16string_view rest;
    bool isDone = false;
};

/// Tells the lines of places in a text that come in ascending order, and reads the text once.
class LineCounter {
public:
    explicit LineCounter(std::u16string_view text) : text(text) {}

    /// The number, from 1, of the line that a place is in. A line end belongs to the line that it ends.
    std::uint32_t getLine(std::size_t offset) {
        for (; done < offset; ++done) {
            const bool isInLineEnd = text[done] == u'\r' && text.substr(done + 1, 1) == u"\n";
            line += isLineEnd(text[done]) && !isInLineEnd ? 1 : 0;
        }
        return line;
    }

private:
    std::u16string_view text;
    std::size_t done = 0;
    std::uint32_t line = 1; ///< of the place that was reached
};

/// Bytes as git has them: a line ends in LF, and a CR before it is part of the line. Removes the first line
/// from a text and returns it without its LF.
std::string_view takeLine(std::string_view& text);

} // namespace ombrel
