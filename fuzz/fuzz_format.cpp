// The whole of ca_format: only whitespace at line edges changes, lines outside the range stay as they are,
// formatting the result again changes nothing, and the line engine has the same result.

#include "FuzzText.h"

#include "support/LineFormatting.h"

namespace {

LineOptions makeOptions(const std::uint8_t* bytes) {
    static constexpr std::u16string_view functionStyles[] = {u"ClassicFunctionIndent", u"MixedFunctionIndent",
                                                             u"AllFunctionIndent"};
    static constexpr std::u16string_view blankStyles[] = {u"Ignore", u"Indent", u"Trim"};
    LineOptions options;
    options.functionIndentStyle = functionStyles[bytes[0] % 3];
    options.blankLineStyle = blankStyles[bytes[0] / 3 % 3];
    options.useSpaces = bytes[0] / 9 % 2 == 0;
    options.indentSize = bytes[1] % 9;
    options.tabSize = 1 + bytes[1] / 9 % 8;
    options.firstLine = bytes[2] % 16;
    options.lastLine = bytes[3] < 128 ? bytes[3] : UINT32_MAX;
    return options;
}

/// A CR, whitespace and an LF are two line ends, and one without the whitespace.
bool canJoinLineEnds(const std::u16string& text) {
    for (std::size_t cr = text.find(u'\r'); cr != text.npos; cr = text.find(u'\r', cr + 1)) {
        const std::size_t next = text.find_first_not_of(u" \t", cr + 1);
        if (next != text.npos && next > cr + 1 && text[next] == u'\n') {
            return true;
        }
    }
    return false;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    const LineOptions options = makeOptions(data);
    const std::u16string text = makeText(data + 4, size - 4);
    const std::optional<std::u16string> edited = formatWithEngine(text, options);
    if (!edited || canJoinLineEnds(text)) {
        return 0;
    }
    const std::u16string once = formatLines(text, options);
    if (once != *edited) {
        fail("the engine has another result than the library");
    }
    if (const std::string change = findForeignChange(text, once, options); !change.empty()) {
        fail(change);
    }
    if (formatLines(once, options) != once) {
        fail("formatting again changes the text");
    }
    return 0;
}
