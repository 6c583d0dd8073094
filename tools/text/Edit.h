#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// A replacement in a text. Offset and length count 16-bit characters of the text as it is without any edit.
struct Edit {
    std::size_t offset;
    std::size_t length;  ///< 0 inserts
    std::u16string text; ///< what comes instead; empty deletes

    std::size_t getEnd() const { return offset + length; }
};

/// An edit whose text belongs to something else.
struct EditView {
    EditView(std::size_t offset, std::size_t length, std::u16string_view text)
        : offset(offset), length(length), text(text) {}
    EditView(const Edit& edit) : EditView(edit.offset, edit.length, edit.text) {}

    std::size_t getEnd() const { return offset + length; }

    explicit operator Edit() const { return {offset, length, std::u16string(text)}; }

    std::size_t offset;
    std::size_t length;
    std::u16string_view text;
};

/// Edits of one text in ascending order, none of which overlaps another, and none of which changes anything
/// but layout: code tokens and the text of comments stay as they are. Only the two classes that know where
/// there is layout make some, and they check each:
///
/// - LineEdgeEditor: whitespace at the edges of lines
/// - GapEditor: whitespace, line ends, separators and continuations between two code tokens or comments
///
/// A large text can have an edit for each of its lines, so an edit costs 16 bytes, and nothing more if its
/// text starts like that of the edit before. What is handed out is valid until the object is changed or
/// moved.
class Edits {
public:
    class Iterator;

    /// No edits.
    Edits() = default;

    bool empty() const { return edits.empty(); }
    std::size_t size() const { return edits.size(); }
    EditView operator[](std::size_t i) const {
        const Record& record = edits[i];
        return {record.offset, record.length,
                std::u16string_view(texts).substr(record.textBegin, record.textLength)};
    }
    EditView front() const { return (*this)[0]; }
    EditView back() const { return (*this)[size() - 1]; }

    /// The length of all their texts together.
    std::size_t getInsertedLength() const { return insertedLength; }

    Iterator begin() const;
    Iterator end() const;

private:
    friend class GapEditor;
    friend class LineEdgeEditor;

    struct Record {
        std::uint32_t offset;
        std::uint32_t length;
        std::uint32_t textBegin; ///< in `texts`
        std::uint32_t textLength;
    };

    /// Throws std::bad_alloc if a number doesn't fit.
    void add(const EditView& edit);

    std::deque<Record> edits;
    std::u16string texts;
    std::size_t lastText = 0; ///< where the last of them begins
    std::size_t insertedLength = 0;
};

/// Goes from edit to edit in either direction. `->` is missing, since there is no object to point at.
class Edits::Iterator {
public:
    using iterator_category = std::random_access_iterator_tag;
    using value_type = EditView;
    using difference_type = std::ptrdiff_t;
    using pointer = const EditView*;
    using reference = EditView;

    Iterator(const Edits& edits, std::size_t index) : edits(&edits), index(index) {}

    EditView operator*() const { return (*edits)[index]; }

    Iterator& operator++() { return *this += 1; }
    Iterator& operator--() { return *this += -1; }

    Iterator& operator+=(difference_type count) {
        index += static_cast<std::size_t>(count);
        return *this;
    }

    difference_type operator-(const Iterator& other) const {
        return static_cast<difference_type>(index - other.index);
    }

    bool operator==(const Iterator& other) const { return index == other.index; }

private:
    const Edits* edits;
    std::size_t index;
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
