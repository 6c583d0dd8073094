#include "diagnostics/Suggestion.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace ombrel {

namespace {

/// Insertions, removals and replacements of one character that lead from `a` to `b`.
std::size_t getEditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 0; i < a.size(); ++i) {
        std::size_t diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 0; j < b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i] == b[j] ? 0 : 1);
            diagonal = row[j + 1];
            row[j + 1] = std::min({replaced, row[j] + 1, diagonal + 1});
        }
    }
    return row.back();
}

} // namespace

std::string suggest(std::string_view word, const std::vector<std::string>& choices) {
    constexpr std::size_t longestWord = 100;
    if (word.size() > longestWord) {
        return {};
    }
    std::string best;
    std::size_t bestDistance = std::max<std::size_t>(word.size() / 3, 1) + 1;
    for (const std::string& choice : choices) {
        const std::size_t distance = getEditDistance(word, choice);
        if (distance < bestDistance) {
            bestDistance = distance;
            best = choice;
        }
    }
    return best.empty() ? best : "; did you mean " + best + "?";
}

} // namespace ombrel
