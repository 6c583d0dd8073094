#include "format/GapAlignment.h"

#include <algorithm>
#include <utility>

namespace ombrel {

namespace {

/// How many characters both texts start with.
std::size_t countCommon(std::u16string_view a, std::u16string_view b) {
    const auto [end, other] = std::mismatch(a.begin(), a.end(), b.begin(), b.end());
    return static_cast<std::size_t>(end - a.begin());
}

} // namespace

std::optional<GapAlignment> GapAlignment::make(const GapList& gaps, std::u16string formatted) {
    GapAlignment alignment;
    alignment.text = std::move(formatted);
    alignment.places.reserve(gaps.getCount());
    const std::u16string_view text = alignment.text;
    const std::u16string_view source = gaps.getSource();
    std::size_t position = 0;
    std::size_t sameEnd = countCommon(source, text); // where in the source the formatter's next change is
    for (std::size_t gap = 0; gap < gaps.getCount(); ++gap) {
        const std::size_t tokenLength = gaps.getToken(gap).lexeme.size();
        const std::size_t tokenEnd = gaps.getEnd(gap) + tokenLength;
        const bool isUnchanged = tokenEnd <= sameEnd;
        const std::optional<std::size_t> end = isUnchanged ? position + gaps.getEnd(gap) - gaps.getBegin(gap)
                                                           : matchGap(gaps, gap, text, position);
        if (!end) {
            return std::nullopt;
        }
        alignment.places.push_back({position, *end, isUnchanged});
        position = *end + tokenLength;
        if (!isUnchanged) {
            sameEnd = tokenEnd + countCommon(source.substr(tokenEnd), text.substr(position));
        }
    }
    if (position != text.size()) {
        return std::nullopt;
    }
    return alignment;
}

} // namespace ombrel
