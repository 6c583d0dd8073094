#include "text/Edit.h"

#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>

namespace ombrel {

namespace {

/// How many 16-bit characters a character has whose encoding starts with this byte; 0 for its other bytes.
std::size_t getUnitCount(char byte) {
    const auto value = static_cast<unsigned char>(byte);
    if ((value & 0xC0) == 0x80) {
        return 0;
    }
    return value >= 0xF0 ? 2 : 1;
}

/// Walks over UTF-8 by offsets that count 16-bit characters.
class Utf8Walk {
public:
    explicit Utf8Walk(std::string_view bytes)
        : bytes(bytes), position(bytes.starts_with(byteOrderMark) ? byteOrderMark.size() : 0) {}

    /// The place in bytes of an offset, which isn't before the last one.
    std::size_t moveTo(std::size_t offset) {
        while (units + sizeof(std::uint64_t) <= offset && isAsciiAhead()) {
            position += sizeof(std::uint64_t);
            units += sizeof(std::uint64_t);
        }
        while (units < offset) {
            units += getUnitCount(bytes[position]);
            ++position;
        }
        while (position < bytes.size() && getUnitCount(bytes[position]) == 0) {
            ++position;
        }
        return position;
    }

private:
    /// Whether the next eight bytes are a character each.
    bool isAsciiAhead() const {
        std::uint64_t word = 0;
        if (bytes.size() - position < sizeof(word)) {
            return false;
        }
        std::memcpy(&word, bytes.data() + position, sizeof(word));
        return (word & 0x8080'8080'8080'8080) == 0;
    }

    std::string_view bytes;
    std::size_t position;  ///< in bytes
    std::size_t units = 0; ///< the same place in 16-bit characters
};

} // namespace

Edits::Iterator Edits::begin() const {
    return {*this, 0};
}

Edits::Iterator Edits::end() const {
    return {*this, size()};
}

/// Indentation is often as that of the line before it, with a little more or less: all that is needed then is
/// the longest so far.
void Edits::add(const EditView& edit) {
    const std::size_t common = std::min(edit.text.size(), texts.size() - lastText);
    const bool isLikeLast = texts.compare(lastText, common, edit.text.substr(0, common)) == 0;
    lastText = isLikeLast ? lastText : texts.size();
    texts += edit.text.substr(isLikeLast ? common : 0);
    insertedLength += edit.text.size();
    if (std::max(edit.getEnd(), texts.size()) > UINT32_MAX) {
        throw std::bad_alloc();
    }
    edits.push_back({static_cast<std::uint32_t>(edit.offset), static_cast<std::uint32_t>(edit.length),
                     static_cast<std::uint32_t>(lastText), static_cast<std::uint32_t>(edit.text.size())});
}

std::u16string applyEdits(std::u16string_view text, const Edits& edits) {
    std::u16string result;
    result.reserve(text.size() + edits.getInsertedLength());
    std::size_t done = 0;
    for (const EditView edit : edits) {
        result += text.substr(done, edit.offset - done);
        result += edit.text;
        done = edit.getEnd();
    }
    result += text.substr(done);
    return result;
}

std::string applyEdits(std::string_view bytes, const Edits& edits) {
    std::string result;
    result.reserve(bytes.size() + edits.getInsertedLength());
    std::size_t done = 0;
    Utf8Walk walk(bytes);
    for (const EditView edit : edits) {
        const std::size_t begin = walk.moveTo(edit.offset);
        result += bytes.substr(done, begin - done);
        appendEncoded(result, edit.text);
        done = walk.moveTo(edit.getEnd());
    }
    result += bytes.substr(done);
    return result;
}

std::vector<ByteEdit> makeByteEdits(std::string_view bytes, const Edits& edits) {
    std::vector<ByteEdit> result;
    result.reserve(edits.size());
    Utf8Walk walk(bytes);
    for (const EditView edit : edits) {
        const std::size_t begin = walk.moveTo(edit.offset);
        const std::size_t end = walk.moveTo(edit.getEnd());
        result.push_back({begin, end - begin, {}});
        appendEncoded(result.back().text, edit.text);
    }
    return result;
}

std::uint32_t findLine(std::u16string_view text, std::size_t offset) {
    return LineCounter(text).getLine(offset);
}

} // namespace ombrel
