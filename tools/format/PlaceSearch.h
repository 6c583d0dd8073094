#pragma once

#include <algorithm>
#include <cstddef>
#include <vector>

namespace ombrel {

/// The number of the first place at an offset or after it, in ascending order; their count if there is none.
/// Quick if it is `hint` or comes soon after it, as in a syntax tree, where most nodes start shortly after
/// the start of the node around them. Otherwise takes logarithmic time.
template <class Place>
std::size_t findPlace(const std::vector<Place>& places, std::size_t offset, std::size_t hint) {
    constexpr std::size_t soon = 16;
    const auto isBefore = [&](const Place& place) { return place.offset < offset; };
    const bool isAfterHint = hint <= places.size() && (hint == 0 || isBefore(places[hint - 1]));
    std::size_t first = isAfterHint ? hint : 0;
    for (const std::size_t end = std::min(first + soon, places.size()); first < end; ++first) {
        if (!isBefore(places[first])) {
            return first;
        }
    }
    const auto rest = places.begin() + static_cast<std::ptrdiff_t>(first);
    return static_cast<std::size_t>(std::partition_point(rest, places.end(), isBefore) - places.begin());
}

} // namespace ombrel
