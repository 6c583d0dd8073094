#pragma once

#include "text/Edit.h"
#include "text/TextEncoding.h"

#include <cstdint>
#include <string>
#include <vector>

namespace ombrel {

/// A place in a file: line from 1, column from 1 in 16-bit characters.
struct TextPlace {
    std::uint32_t line = 0;
    std::uint32_t column = 0;
    std::uint32_t byteColumn = 0; ///< from 1, with the byte-order mark; 0 if it isn't known

    bool operator==(const TextPlace&) const = default;
};

/// What formatting would do to lines that follow each other directly.
struct Change {
    TextPlace begin;
    TextPlace end;    ///< after the last character; the same if text is only inserted
    std::string text; ///< what comes instead, UTF-8
    std::string what; ///< for people: "indentation: 2 spaces, expected 4 spaces"

    bool operator==(const Change&) const = default;
};

/// Edits of a file as changes, in order. Takes time in proportion to the text.
std::vector<Change> describeChanges(const DecodedText& source, const Edits& edits);

} // namespace ombrel
