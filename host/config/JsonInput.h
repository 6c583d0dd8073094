#pragma once

#include "ca/utils/JsonValue.h"
#include "config/rapidjson.h"

#include <cstddef>
#include <string>
#include <utility>

namespace ca::utils {

/// Where RapidJSON meets the escape of a lone second half of a surrogate pair, which it would let pass.
struct HalfSurrogate {};

/// 16-bit characters. Escapes of whole pairs arrive as one code point, so a surrogate can only be half of
/// one.
struct JsonEncoding : rapidjson::UTF16<char16_t> {
    template <class Output>
    static void Encode(Output& out, unsigned codePoint) {
        if (0xD800 <= codePoint && codePoint <= 0xDFFF) {
            throw HalfSurrogate();
        }
        UTF16::Encode(out, codePoint);
    }
};

/// A text as RapidJSON's reader takes it, with the names that the reader expects.
///
/// The reader stops at U+0000 and ends line comments with LF only. So a U+0000 inside the text is shown as
/// U+0001, which is at fault in the same places, and a CR as LF: in strings both are faults, elsewhere both
/// are whitespace.
///
/// The reader runs in its mode for decoding in place, which is the only one that tells where a string starts
/// and leaves numbers alone. The characters of a string don't really go into the text but into a buffer.
class JsonInput {
public:
    using Ch = char16_t;

    /// The text has to outlive the input. A byte-order mark at its start is skipped.
    explicit JsonInput(const std::u16string& text)
        : text(text), offset(text.starts_with(u'\uFEFF') ? 1 : 0) {}

    Ch Peek() const {
        const Ch c = text[offset]; // U+0000 after the end
        if (c == u'\0') {
            return isAtEnd() ? u'\0' : u'\1';
        }
        return c == u'\r' ? u'\n' : c;
    }

    Ch Take() {
        const Ch c = Peek();
        offset += isAtEnd() ? 0 : 1;
        return c;
    }

    std::size_t Tell() const { return offset; }

    /// Called after the quote that opens a string (and after numbers, where it means nothing).
    Ch* PutBegin() {
        decoded.clear();
        stringStart = offset - 1;
        return decoded.data();
    }

    void Put(Ch c) { decoded += c; }
    void Flush() {}
    std::size_t PutEnd(Ch*) { return decoded.size(); }

    bool isAtEnd() const { return offset == text.size(); }
    const std::u16string& getText() const { return text; }

    /// Offset of the quote that opens the string read last.
    std::size_t getStringStart() const { return stringStart; }

    /// The characters of the string read last, without the U+0000 that the reader puts after them.
    std::u16string takeString() {
        decoded.pop_back();
        return std::move(decoded);
    }

private:
    const std::u16string& text;
    std::size_t offset;
    std::size_t stringStart = 0;
    std::u16string decoded;
};

/// Turns offsets into lines and columns. The offsets have to come in order, so that the text is walked once.
class PositionCounter {
public:
    explicit PositionCounter(const std::u16string& text)
        : text(text), current(text.starts_with(u'\uFEFF') ? 1 : 0), lineStart(current) {}

    JsonPosition get(std::size_t offset) {
        for (; current < offset; ++current) {
            if (endsLine()) {
                ++line;
                lineStart = current + 1;
            }
        }
        return {line, static_cast<std::uint32_t>(offset - lineStart + 1)};
    }

private:
    bool endsLine() const {
        return text[current] == u'\n' || (text[current] == u'\r' && text[current + 1] != u'\n');
    }

    const std::u16string& text;
    std::size_t current;
    std::size_t lineStart;
    std::uint32_t line = 1;
};

} // namespace ca::utils
