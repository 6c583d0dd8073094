#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrel {

/// A replacement in a text. Offset and length count 16-bit characters of the text as it is without any edit.
struct Edit {
    std::size_t offset;
    std::size_t length;  ///< 0 inserts
    std::u16string text; ///< what comes instead; empty deletes

    std::size_t getEnd() const { return offset + length; }
};

/// Edits of one text in ascending order, none of which overlaps another, and none of which changes anything
/// but layout: code tokens and the text of comments stay as they are. Only the two classes that know where
/// there is layout make some, and they check each:
///
/// - LineEdgeEditor: whitespace at the edges of lines
/// - GapEditor: whitespace, line ends, separators and continuations between two code tokens or comments
class Edits {
public:
    /// No edits.
    Edits() = default;

    bool empty() const { return edits.empty(); }
    std::size_t size() const { return edits.size(); }
    const Edit& operator[](std::size_t i) const { return edits[i]; }
    const Edit& front() const { return edits.front(); }
    const Edit& back() const { return edits.back(); }
    std::vector<Edit>::const_iterator begin() const { return edits.begin(); }
    std::vector<Edit>::const_iterator end() const { return edits.end(); }

private:
    friend class GapEditor;
    friend class LineEdgeEditor;

    explicit Edits(std::vector<Edit> edits) : edits(std::move(edits)) {}

    std::vector<Edit> edits;
};

/// The text after the edits.
std::u16string applyEdits(std::u16string_view text, const Edits& edits);

/// The same for a text that is still in UTF-8, while the edits count 16-bit characters. The bytes have to be
/// valid UTF-8. A byte-order mark at their start is kept and not counted.
std::string applyEdits(std::string_view bytes, const Edits& edits);

/// An edit of a text in UTF-8. Offset and length count bytes, a byte-order mark included.
struct ByteEdit {
    std::size_t offset;
    std::size_t length;
    std::string text; ///< UTF-8
};

/// The same edits for the text in UTF-8, as applyEdits takes it.
std::vector<ByteEdit> makeByteEdits(std::string_view bytes, const Edits& edits);

/// The number, from 1, of the line that a place in the text is in. A line end belongs to the line that it
/// ends.
std::uint32_t findLine(std::u16string_view text, std::size_t offset);

} // namespace ombrel
