#include "format/LineRanges.h"

#include "text/LineSplitter.h"

#include <algorithm>
#include <cstdint>

#include <fmt/format.h>

namespace ombrel {

namespace {

bool startsBefore(const LineRange& a, const LineRange& b) {
    return a.first < b.first;
}

} // namespace

std::vector<LineRange> mergeRanges(std::vector<LineRange> ranges) {
    std::sort(ranges.begin(), ranges.end(), startsBefore);
    std::vector<LineRange> merged;
    for (const LineRange& range : ranges) {
        if (!merged.empty() && range.first - 1 <= merged.back().last) {
            merged.back().last = std::max(merged.back().last, range.last);
        } else {
            merged.push_back(range);
        }
    }
    return merged;
}

Result<void> checkRanges(std::u16string_view text, const std::vector<LineRange>& ranges) {
    const auto last = std::max_element(ranges.begin(), ranges.end(), startsBefore);
    if (last == ranges.end()) {
        return {};
    }
    std::uint32_t count = 0;
    bool isLastEmpty = false;
    for (LineSplitter lines(text); const auto line = lines.getNext();) {
        if (++count == last->first) {
            return {};
        }
        isLastEmpty = line->content.empty() && line->end.empty();
    }
    return fail(Code::RangeAfterEnd, fmt::format("--lines {}:{} starts after the last line ({})", last->first,
                                                 last->last, count - (isLastEmpty ? 1 : 0)));
}

} // namespace ombrel
