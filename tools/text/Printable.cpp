#include "text/Printable.h"

#include "text/TextEncoding.h"

#include <algorithm>

#include <fmt/format.h>
#include <unicode/uchar.h>
#include <unicode/utf16.h>
#include <utf8.h>

namespace ombrel {

namespace {

constexpr std::size_t shownBefore = 100; // 16-bit characters before the caret
constexpr std::size_t shownAfter = 60;

constexpr UChar32 zeroWidthNonJoiner = 0x200C;
constexpr UChar32 zeroWidthJoiner = 0x200D;

bool isJoiner(UChar32 c) {
    return c == zeroWidthJoiner || c == zeroWidthNonJoiner;
}

bool isHidden(UChar32 c) {
    constexpr std::uint32_t hidden = U_GC_CC_MASK | U_GC_CF_MASK | U_GC_CS_MASK | U_GC_ZL_MASK | U_GC_ZP_MASK;
    return (U_GET_GC_MASK(c) & hidden) != 0 && !isJoiner(c);
}

bool isPartOfSyllable(UChar32 c) {
    const int type = u_getIntPropertyValue(c, UCHAR_HANGUL_SYLLABLE_TYPE);
    return type == U_HST_VOWEL_JAMO || type == U_HST_TRAILING_JAMO;
}

/// Columns of a character that is shown as it is.
std::size_t getWidth(UChar32 c) {
    if (isJoiner(c) || (U_GET_GC_MASK(c) & (U_GC_MN_MASK | U_GC_ME_MASK)) != 0 || isPartOfSyllable(c)) {
        return 0;
    }
    const int width = u_getIntPropertyValue(c, UCHAR_EAST_ASIAN_WIDTH);
    return width == U_EA_WIDE || width == U_EA_FULLWIDTH ? 2 : 1;
}

std::string escape(UChar32 c) {
    switch (c) {
    case '\n':
        return "\\n";
    case '\r':
        return "\\r";
    case '\t':
        return "\\t";
    default:
        const auto number = static_cast<std::uint32_t>(c);
        return number > 0xFFFF ? fmt::format("\\U{:08X}", number) : fmt::format("\\u{:04X}", number);
    }
}

std::string escapeInOctal(std::string_view bytes) {
    std::string escaped;
    for (const char c : bytes) {
        escaped += fmt::format("\\{:03o}", static_cast<unsigned char>(c));
    }
    return escaped;
}

/// What is written between quotes for a byte of ASCII.
std::string escapeQuoted(char c) {
    constexpr std::string_view named = "\a\b\t\n\v\f\r\"\\";
    constexpr std::string_view letters = "abtnvfr\"\\";
    if (const std::size_t index = named.find(c); index != named.npos) {
        return {'\\', letters[index]};
    }
    return c < ' ' || c == '\x7F' ? escapeInOctal({&c, 1}) : std::string(1, c);
}

/// The character at `index`, which moves past it.
UChar32 takeCharacter(std::u16string_view text, std::size_t& index) {
    UChar32 c = 0;
    U16_NEXT(text.data(), index, text.size(), c);
    return c;
}

/// The same in UTF-8; negative for a byte that isn't part of a character.
UChar32 takeCharacter(std::string_view bytes, std::size_t& index) {
    const char* end = bytes.data() + index;
    try {
        const auto c = static_cast<UChar32>(utf8::next(end, bytes.data() + bytes.size()));
        index = static_cast<std::size_t>(end - bytes.data());
        return c;
    } catch (const utf8::exception&) {
        ++index;
        return -1;
    }
}

std::string escapeInJson(UChar32 c) {
    if (U_IS_BMP(c)) {
        return fmt::format("\\u{:04X}", static_cast<std::uint32_t>(c));
    }
    return fmt::format("\\u{:04X}\\u{:04X}", static_cast<std::uint32_t>(U16_LEAD(c)),
                       static_cast<std::uint32_t>(U16_TRAIL(c)));
}

/// Line ends and tabs stay.
template <class Escape>
std::string replaceHidden(std::string_view text, Escape escapeCharacter) {
    std::string escaped;
    for (std::size_t i = 0; i < text.size();) {
        const std::size_t start = i;
        const UChar32 c = takeCharacter(text, i);
        const bool isReplaced = c >= 0 && isHidden(c) && c != '\n' && c != '\r' && c != '\t';
        if (isReplaced) {
            escaped += escapeCharacter(c);
        } else {
            escaped += text.substr(start, i - start);
        }
    }
    return escaped;
}

struct Glyph {
    std::string text; // UTF-8
    std::size_t width;
};

/// What is shown for the character at `index`, which moves past it.
Glyph showCharacter(std::u16string_view text, std::size_t& index) {
    const std::size_t start = index;
    const UChar32 c = takeCharacter(text, index);
    if (isHidden(c)) {
        std::string escaped = escape(c);
        const std::size_t width = escaped.size();
        return {std::move(escaped), width};
    }
    return {encodeLossy(text.substr(start, index - start)), getWidth(c)};
}

/// The start of what is seen as one character at `index`: after its first half and its combining marks.
std::size_t findVisibleStart(std::u16string_view line, std::size_t index) {
    while (index > 0 && index < line.size()) {
        U16_SET_CP_START(line.data(), 0, index);
        std::size_t end = index;
        const UChar32 c = takeCharacter(line, end);
        if (isHidden(c) || getWidth(c) > 0 || index == 0) {
            break;
        }
        --index;
    }
    return index;
}

} // namespace

std::string getPrintable(std::u16string_view text) {
    std::string shown;
    for (std::size_t i = 0; i < text.size();) {
        shown += showCharacter(text, i).text;
    }
    return shown;
}

std::string getPrintableName(std::string_view bytes) {
    return getPrintable(decodeLossy(bytes));
}

std::string escapeHidden(std::string_view text) {
    return replaceHidden(text, escapeInJson);
}

std::string escapeHiddenInXml(std::string_view text) {
    return replaceHidden(text,
                         [](UChar32 c) { return fmt::format("&#x{:X};", static_cast<std::uint32_t>(c)); });
}

std::string getQuotedName(std::string_view bytes) {
    std::string escaped;
    for (std::size_t i = 0; i < bytes.size();) {
        const std::size_t start = i;
        const UChar32 c = takeCharacter(bytes, i);
        const std::string_view character = bytes.substr(start, i - start);
        if (0 <= c && c < 0x80) {
            escaped += escapeQuoted(static_cast<char>(c));
        } else {
            escaped += c >= 0x80 && isHidden(c) ? escapeInOctal(character) : std::string(character);
        }
    }
    return escaped == bytes ? escaped : '"' + escaped + '"';
}

Excerpt makeExcerpt(std::u16string_view line, std::uint32_t column) {
    if (line.empty() || column == 0 || column - 1 > line.size()) {
        return {};
    }
    const std::size_t caret = findVisibleStart(line, column - 1);
    const std::size_t end = findVisibleStart(line, std::min(caret + shownAfter, line.size()));
    Excerpt excerpt;
    for (std::size_t i = findVisibleStart(line, caret - std::min(caret, shownBefore)); i < end;) {
        const bool isInFront = i < caret;
        const bool isTab = line[i] == u'\t';
        const Glyph glyph = isTab ? Glyph{"\t", 1} : showCharacter(line, i);
        i += isTab ? 1 : 0;
        excerpt.text += glyph.text;
        if (isInFront) {
            excerpt.padding += isTab ? "\t" : std::string(glyph.width, ' ');
        }
    }
    return excerpt;
}

} // namespace ombrel
