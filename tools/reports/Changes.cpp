#include "reports/Changes.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr std::u16string_view lineEnds = u"\r\n";
constexpr std::u16string_view whitespace = u" \t";

std::size_t countLineEnds(std::u16string_view text) {
    std::size_t count = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isEnd = text[i] == u'\n' || text[i] == u'\r';
        count += isEnd && !(text[i] == u'\r' && text.substr(i + 1, 1) == u"\n") ? 1 : 0;
    }
    return count;
}

std::string describeCount(std::u16string_view text, char16_t c, const char* name) {
    const auto count = std::count(text.begin(), text.end(), c);
    return count == 0 ? "" : fmt::format("{} {}{}", count, name, count == 1 ? "" : "s");
}

/// "1 tab and 2 spaces".
std::string describeWhitespace(std::u16string_view text) {
    const std::string tabs = describeCount(text, u'\t', "tab");
    const std::string spaces = describeCount(text, u' ', "space");
    if (tabs.empty() && spaces.empty()) {
        return "none";
    }
    return tabs + (tabs.empty() || spaces.empty() ? "" : " and ") + spaces;
}

std::string compare(const char* what, std::u16string_view before, std::u16string_view after) {
    return fmt::format("{}: {}, expected {}", what, describeWhitespace(before), describeWhitespace(after));
}

/// What is after the last line end.
std::u16string_view getLastLine(std::u16string_view text) {
    const std::size_t last = text.find_last_of(lineEnds);
    return last == text.npos ? text : text.substr(last + 1);
}

std::string describeBreaks(std::u16string_view before, std::u16string_view after) {
    const std::size_t had = countLineEnds(before);
    const std::size_t has = countLineEnds(after);
    if (had != has) {
        return has > had ? "a line break is missing" : "there are too many line breaks";
    }
    return getLastLine(before) == getLastLine(after)
               ? "whitespace at the end of a line"
               : compare("indentation", getLastLine(before), getLastLine(after));
}

std::string describeEdit(std::u16string_view text, const EditView& edit) {
    const std::u16string_view before = text.substr(edit.offset, edit.length);
    const std::u16string_view after = edit.text;
    const auto isBlank = [](std::u16string_view part) {
        return part.find_first_not_of(whitespace) == part.npos;
    };
    if (!isBlank(before) || !isBlank(after)) {
        const std::u16string_view all = whitespace;
        const auto isLayout = [&](std::u16string_view part) {
            return std::all_of(part.begin(), part.end(), [&](char16_t c) {
                return all.find(c) != all.npos || lineEnds.find(c) != lineEnds.npos;
            });
        };
        return isLayout(before) && isLayout(after) ? describeBreaks(before, after)
                                                   : "separators or line breaks";
    }
    const bool isStart = edit.offset == 0 || lineEnds.find(text[edit.offset - 1]) != lineEnds.npos;
    const bool isEnd = edit.getEnd() == text.size() || lineEnds.find(text[edit.getEnd()]) != lineEnds.npos;
    if (isEnd && after.empty()) {
        return "whitespace at the end of a line: " + describeWhitespace(before);
    }
    return compare(isStart ? "indentation" : "spacing", before, after);
}

/// In UTF-8. Each half of a surrogate pair is half of four.
std::uint32_t countBytes(char16_t c) {
    const bool isHalf = c >= 0xD800 && c < 0xE000;
    return c < 0x80 ? 1 : c < 0x800 || isHalf ? 2 : 3;
}

/// Goes through a text and knows the place of each offset, in ascending order.
class PlaceFinder {
public:
    explicit PlaceFinder(const DecodedText& source)
        : text(source.text), bytesBefore(source.hasByteOrderMark ? std::uint32_t{byteOrderMark.size()} : 0) {}

    TextPlace find(std::size_t wanted) {
        for (; offset < wanted; ++offset) {
            const bool isEnd =
                text[offset] == u'\n' || (text[offset] == u'\r' && text.substr(offset + 1, 1) != u"\n");
            line += isEnd ? 1 : 0;
            lineStart = isEnd ? offset + 1 : lineStart;
            bytesBefore = isEnd ? 0 : bytesBefore + countBytes(text[offset]);
        }
        return {line, static_cast<std::uint32_t>(wanted - lineStart + 1), bytesBefore + 1};
    }

private:
    std::u16string_view text;
    std::size_t offset = 0;
    std::size_t lineStart = 0;
    std::uint32_t line = 1;
    std::uint32_t bytesBefore; ///< in the line
};

} // namespace

std::vector<Change> describeChanges(const DecodedText& source, const Edits& edits) {
    const std::u16string_view text = source.text;
    std::vector<Change> changes;
    PlaceFinder places(source);
    std::size_t done = 0; // end of the edit before
    std::size_t inChange = 0;
    const auto finish = [&] {
        if (inChange > 1) {
            changes.back().what += fmt::format(", and {} more in these lines", inChange - 1);
        }
    };
    for (const EditView edit : edits) {
        const TextPlace begin = places.find(edit.offset);
        const TextPlace end = places.find(edit.getEnd());
        if (changes.empty() || begin.line > changes.back().end.line + 1) {
            finish();
            inChange = 0;
            changes.push_back({begin, end, {}, describeEdit(text, edit)});
        } else {
            changes.back().text += encodeLossy(text.substr(done, edit.offset - done));
        }
        changes.back().text += encodeLossy(edit.text);
        changes.back().end = end;
        done = edit.getEnd();
        ++inChange;
    }
    finish();
    return changes;
}

} // namespace ombrel
