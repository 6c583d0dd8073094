#include "format/GapAlignment.h"

#include <utility>

namespace ombrel {

std::optional<GapAlignment> GapAlignment::make(const GapList& gaps, std::u16string formatted) {
    GapAlignment alignment;
    alignment.text = std::move(formatted);
    alignment.places.reserve(gaps.getCount());
    const std::u16string_view text = alignment.text;
    const std::u16string_view source = gaps.getSource();
    std::size_t position = 0;
    for (std::size_t gap = 0; gap < gaps.getCount(); ++gap) {
        const std::size_t begin = gaps.getBegin(gap);
        const std::size_t length = gaps.getEnd(gap) - begin;
        const std::size_t tokenLength = gaps.getToken(gap).lexeme.size();
        const bool isUnchanged =
            text.substr(position, length + tokenLength) == source.substr(begin, length + tokenLength);
        const auto end = isUnchanged ? position + length : matchGap(gaps, gap, text, position);
        if (!end) {
            return std::nullopt;
        }
        alignment.places.push_back({position, *end, isUnchanged});
        position = *end + tokenLength;
    }
    if (position != text.size()) {
        return std::nullopt;
    }
    return alignment;
}

} // namespace ombrel
