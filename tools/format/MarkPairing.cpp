#include "format/MarkPairing.h"

#include <algorithm>

namespace ombrel {

namespace {

void compare(const Marks& before, std::size_t a, const Marks& after, std::size_t b,
             std::vector<Difference>& differences) {
    if (!isSame(before[a], after[b])) {
        differences.push_back({Difference::Kind::Token, a, nullptr, nullptr, b});
    }
}

} // namespace

Pairing::Pairing(const Marks& before, const Marks& after, std::vector<Difference>& differences) {
    const std::size_t count = std::min(before.getCount(), after.getCount());
    for (std::size_t i = 0; i < count; ++i) {
        compare(before, i, after, i, differences);
    }
}

Pairing::Pairing(const Marks& before, const Marks& after, const Edits& edits,
                 std::vector<Difference>& differences) {
    auto edit = edits.begin();
    std::size_t shift = 0; // may wrap around: only sums are looked at
    std::size_t next = 0;
    for (std::size_t i = 0; i < before.getCount(); ++i) {
        for (; edit != edits.end() && (*edit).getEnd() <= before.getPosition(i); ++edit) {
            shift += (*edit).text.size() - (*edit).length;
        }
        const std::size_t place = before.getPosition(i) + shift;
        for (; next < after.getCount() && after.getPosition(next) < place; ++next) {
            add(i, next);
            differences.push_back({Difference::Kind::Token, i, nullptr, nullptr, next});
        }
        if (next < after.getCount() && after.getPosition(next) == place) {
            compare(before, i, after, next, differences);
            add(i, next++);
        } else {
            differences.push_back({Difference::Kind::Token, i, nullptr, nullptr, next});
        }
    }
}

void Pairing::add(std::size_t mark, std::size_t markAfter) {
    if (numbers.empty() && mark == markAfter) {
        return;
    }
    while (numbers.size() < markAfter) {
        numbers.push_back(numbers.size());
    }
    numbers.push_back(mark);
}

} // namespace ombrel
