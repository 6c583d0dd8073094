#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ombrel {

/// Text in a form that fits on one line and hides nothing: `\n`, `\r` and `\t`, and `\uXXXX` or `\UXXXXXXXX`
/// for every other character that would move the cursor, turn the direction of writing or not be seen at all.
/// The result is UTF-8. Joiners stay, since emoji are built with them.
std::string getPrintable(std::u16string_view text);

/// A name as it can be shown on one line; bytes that aren't UTF-8 are replaced.
std::string getPrintableName(std::string_view bytes);

/// A name on a line that programs read too, as git prints names: one with control characters, other
/// characters that getPrintable() escapes, quotes or backslashes is put in quotes, with the escapes of C in
/// it
/// (`"new\nline.omb"`); every other one is left as it is, whatever its bytes are.
std::string getQuotedName(std::string_view bytes);

/// UTF-8 text with `\uXXXX` for every character that getPrintable() escapes but line ends and tabs, as JSON
/// has it: two of them for a character beyond 16 bits. Bytes that aren't UTF-8 stay.
std::string escapeHidden(std::string_view text);

/// The same with `&#xXXXX;`, as XML has it. XML can't hold most control characters even so.
std::string escapeHiddenInXml(std::string_view text);

/// The part of a source line that a message points at, ready to be printed:
///
///     text         s = '漢字' + ;
///     padding                ^     is before the caret
///
/// Tabs stay in the text and are in the padding too, so that the caret is right whatever their width.
/// Other characters count as wide as a terminal shows them, East Asian ones and emoji two columns,
/// combining marks none. Both are UTF-8; both are empty if there is no such place.
struct Excerpt {
    std::string text;
    std::string padding;
};

/// Cuts the surroundings of a place out of a source line. Columns count from 1 in 16-bit characters, and one
/// may be directly after the line.
Excerpt makeExcerpt(std::u16string_view line, std::uint32_t column);

} // namespace ombrel
