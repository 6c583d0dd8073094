#include "format/GapAlignment.h"

#include <algorithm>
#include <utility>

namespace ombrel {

namespace {

/// How many characters both texts start with.
std::size_t countCommon(std::u16string_view a, std::u16string_view b) {
    constexpr std::size_t block = 32; // compared at once
    std::size_t count = 0;
    while (count + block <= std::min(a.size(), b.size()) &&
           std::equal(a.begin() + count, a.begin() + count + block, b.begin() + count)) {
        count += block;
    }
    const auto [end, other] = std::mismatch(a.begin() + count, a.end(), b.begin() + count, b.end());
    return static_cast<std::size_t>(end - a.begin());
}

} // namespace

std::optional<GapAlignment> GapAlignment::make(const GapList& gaps, std::u16string formatted) {
    GapAlignment alignment(gaps, std::move(formatted));
    return alignment.align() ? std::optional(std::move(alignment)) : std::nullopt;
}

bool GapAlignment::align() {
    const std::u16string_view source = gaps->getSource();
    const std::u16string_view formatted = text;
    std::size_t position = 0;
    for (std::size_t gap = 0; gap < gaps->getCount(); ++gap) {
        const std::size_t begin = gaps->getBegin(gap);
        const std::size_t sameEnd = begin + countCommon(source.substr(begin), formatted.substr(position));
        while (gap < gaps->getCount() && gaps->getTokenEnd(gap) <= sameEnd) {
            ++gap;
        }
        if (gap == gaps->getCount()) {
            position += source.size() - begin;
            break;
        }
        position += gaps->getBegin(gap) - begin;
        const std::optional<std::size_t> end = matchGap(*gaps, gap, formatted, position);
        if (!end) {
            return false;
        }
        changes.push_back({gap, position, *end});
        position = *end + gaps->getTokenEnd(gap) - gaps->getEnd(gap);
    }
    return position == formatted.size();
}

std::u16string_view GapAlignment::getText(std::size_t gap) const {
    const auto change = std::partition_point(changes.begin(), changes.end(),
                                             [&](const Change& change) { return change.gap < gap; });
    return change == changes.end() || change->gap != gap ? gaps->getText(gap) : getText(*change);
}

} // namespace ombrel
