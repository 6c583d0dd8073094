#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// A replacement in a text. Offset and length count 16-bit characters of the text as it is without any edit.
struct Edit {
    std::size_t offset;
    std::size_t length;  ///< 0 inserts
    std::u16string text; ///< what comes instead; empty deletes
};

/// Edits of one text in ascending order, none of which overlaps another.
using Edits = std::vector<Edit>;

/// The text after the edits.
std::u16string applyEdits(std::u16string_view text, const Edits& edits);

/// The same for a text that is still in UTF-8, while the edits count 16-bit characters. The bytes have to be
/// valid UTF-8. A byte-order mark at their start is kept and not counted.
std::string applyEdits(std::string_view bytes, const Edits& edits);

/// The number, from 1, of the line that a place in the text is in. A line end belongs to the line that it
/// ends.
std::uint32_t findLine(std::u16string_view text, std::size_t offset);

} // namespace ombrel
