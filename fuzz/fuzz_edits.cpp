// The tree engine on ranges of lines: whatever parses stays the same program, lines outside of the range stay
// as they are, and formatting the range again, as it is then, changes nothing.

#include "FuzzText.h"

#include "entry/FormattingExplorerBridgeImpl.h"
#include "format/TreeEngine.h"
#include "format/TreeSafetyCheck.h"
#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <string_view>

namespace {

using namespace ombrel;

TreeFormatter makeFormatter() {
    return [](const ca::formatting::TreeFormatRequest& request) {
        return FormattingExplorerBridgeImpl().formatParsed(request);
    };
}

/// Few values, so that equal options are read once.
TreeOptions makeOptions(const std::uint8_t* bytes) {
    static constexpr const char* functionStyles[] = {"IndentAll", "Classic", "IndentNested"};
    static constexpr const char* behaviors[] = {"AllowMultiplePerLine", "SeparateLines", "AllowSingleLine"};
    static constexpr unsigned limits[] = {20, 40, 80};
    const auto isSet = [bytes](int bit) { return (bytes[0] >> bit & 1) != 0; };
    return getTreeOptions(decodeLossy(fmt::format(
        R"({{"formatting": {{"trimUnnecessaryWhitespace": {}, "indentationEnabled": {}, "indentBlankLines": {},
           "lineBreakingEnabled": {}, "indentCaseBlocks": {}, "separatorPlacement": "{}",
           "indentCharacter": "{}", "functionIndentStyle": "{}", "lineBreakBehavior": "{}",
           "columnLimit": {}}}}})",
        isSet(0), isSet(1), isSet(2), isSet(3), isSet(4), isSet(5) ? "StartOfLine" : "EndOfLine",
        isSet(6) ? "Tab" : "Space", functionStyles[bytes[1] % 3], behaviors[bytes[1] / 3 % 3],
        limits[bytes[1] / 9 % 3])));
}

std::uint32_t countLines(std::u16string_view text) {
    std::uint32_t count = 0;
    for (LineSplitter lines(text); lines.getNext();) {
        ++count;
    }
    return count;
}

/// The part of a text before a line.
std::u16string_view getLinesBefore(std::u16string_view text, std::uint32_t line) {
    std::size_t length = 0;
    LineSplitter lines(text);
    for (std::uint32_t i = 1; i < line; ++i) {
        const auto next = lines.getNext();
        length += next->content.size() + next->end.size();
    }
    return text.substr(0, length);
}

/// The edits for a range; a text that is refused is a finding, unless its source doesn't parse.
Edits format(const std::u16string& text, const TreeOptions& options, LineRange range) {
    static const TreeFormatter formatter = makeFormatter();
    const auto result = formatTree(text, options, formatter, {range});
    if (!result) {
        fail(result.error().front().text);
    }
    return result->edits;
}

void check(const std::u16string& text, const TreeOptions& options, LineRange range) {
    const std::uint32_t count = countLines(text);
    const Edits edits = format(text, options, range);
    const std::u16string once = applyEdits(text, edits);
    const std::u16string_view ahead = getLinesBefore(text, range.first);
    const std::size_t rest = text.size() - getLinesBefore(text, range.last + 1).size();
    if (!once.starts_with(ahead) || !once.ends_with(text.substr(text.size() - rest))) {
        fail("lines outside of the range have changed");
    }
    if (checkSameProgram(ParsedText(text), once)) {
        fail("the program has changed");
    }
    const LineRange again{range.first, range.last + countLines(once) - count};
    if (again.first <= again.last && applyEdits(once, format(once, options, again)) != once) {
        fail("formatting the range again changes it");
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size < 4) {
        return 0;
    }
    const std::u16string text = makeText(data + 4, size - 4);
    if (!ParsedText(text).parsed.errors.empty()) {
        return 0;
    }
    const std::uint32_t count = countLines(text);
    const std::uint32_t first = 1 + data[2] % count;
    check(text, makeOptions(data), {first, first + data[3] % (count - first + 1)});
    return 0;
}
