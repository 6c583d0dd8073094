#include "format/EditSelection.h"

#include "format/LineRanges.h"
#include "text/LineSplitter.h"

#include <algorithm>
#include <utility>

namespace ombrel {

EditSelection::EditSelection(std::u16string_view text, std::vector<LineRange> lines,
                             const Suppression& suppression) {
    for (const SuppressedRegion& region : suppression.regions) {
        suppressed.push_back({region.begin, region.end});
    }
    if (lines.empty()) {
        ranges.push_back({0, text.size()});
        return;
    }
    lines = mergeRanges(std::move(lines));
    auto range = lines.begin();
    LineSplitter splitter(text);
    std::size_t offset = 0;
    for (std::uint32_t number = 1; range != lines.end(); ++number) {
        const auto line = splitter.getNext();
        if (!line) {
            return;
        }
        const std::size_t end = offset + line->content.size();
        if (number == range->first) {
            ranges.push_back({offset, end});
        } else if (number > range->first) {
            ranges.back().end = end;
        }
        if (number == range->last) {
            ++range;
        }
        offset = end + line->end.size();
    }
}

bool EditSelection::accepts(std::size_t begin, std::size_t end) const {
    const auto range =
        std::upper_bound(ranges.begin(), ranges.end(), begin,
                         [](std::size_t place, const Part& part) { return place < part.begin; });
    if (range == ranges.begin() || (range - 1)->end < end) {
        return false;
    }
    const auto region = std::partition_point(suppressed.begin(), suppressed.end(),
                                             [&](const Part& part) { return part.end <= begin; });
    return region == suppressed.end() || end < region->begin;
}

} // namespace ombrel
