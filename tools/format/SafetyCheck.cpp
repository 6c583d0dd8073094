#include "format/SafetyCheck.h"

#include "text/LineSplitter.h"
#include "text/Whitespace.h"

#include <algorithm>

namespace ombrel {

namespace {

std::size_t getCommonLength(std::u16string_view a, std::u16string_view b) {
    const auto first = std::mismatch(a.begin(), a.end(), b.begin(), b.end()).first;
    return static_cast<std::size_t>(first - a.begin());
}

Failure failAt(std::size_t line, std::size_t column) {
    return fail(
        Code::UnsafeResult,
        "the formatter would have changed more than whitespace at the edges of this line; nothing was "
        "written",
        static_cast<std::uint32_t>(line), static_cast<std::uint32_t>(column));
}

} // namespace

Result<void> checkOnlyEdgesChanged(std::u16string_view before, std::u16string_view after) {
    LineSplitter beforeLines(before);
    LineSplitter afterLines(after);
    for (std::size_t number = 1;; ++number) {
        const auto a = beforeLines.getNext();
        const auto b = afterLines.getNext();
        if (!a && !b) {
            return {};
        }
        if (!a || !b) {
            return failAt(number - (a ? 0 : 1), 1);
        }
        const std::u16string_view trimmedA = trim(a->content);
        const std::u16string_view trimmedB = trim(b->content);
        if (trimmedA != trimmedB) {
            return failAt(number,
                          countLeadingWhitespace(a->content) + getCommonLength(trimmedA, trimmedB) + 1);
        }
        if (a->end != b->end) {
            return failAt(number, a->content.size() + 1);
        }
    }
}

} // namespace ombrel
