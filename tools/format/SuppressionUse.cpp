#include "format/SuppressionUse.h"

#include "format/Formatter.h"

#include <algorithm>
#include <iterator>
#include <string_view>

namespace ombrel {

namespace {

/// The part of a text that an edit really changes. An insertion has no length.
struct Change {
    std::size_t begin;
    std::size_t end;
};

/// Without what an edit replaces by itself.
Change getChange(std::u16string_view text, const EditView& edit) {
    const std::u16string_view before = text.substr(edit.offset, edit.length);
    const std::u16string_view after = edit.text;
    const auto [start, same] = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const auto rest = std::mismatch(before.rbegin(), std::make_reverse_iterator(start), after.rbegin(),
                                    std::make_reverse_iterator(same));
    const auto begin = static_cast<std::size_t>(start - before.begin());
    const auto tail = static_cast<std::size_t>(rest.first - before.rbegin());
    return {edit.offset + begin, edit.getEnd() - tail};
}

bool isIn(const SuppressedRegion& region, const Change& change) {
    const bool isInsertion = change.begin == change.end;
    return change.begin < region.innerEnd &&
           (isInsertion ? change.begin >= region.innerBegin : change.end > region.innerBegin);
}

/// One warning is enough, for an `off` without `on`.
bool hasWarning(const SuppressedRegion& region, const Problems& warnings) {
    return std::any_of(warnings.begin(), warnings.end(),
                       [&](const Problem& warning) { return warning.line == region.line; });
}

bool hasChange(const SuppressedRegion& region, std::u16string_view text, const Edits& edits) {
    const auto first = std::partition_point(
        edits.begin(), edits.end(), [&](const EditView& edit) { return edit.getEnd() < region.innerBegin; });
    const auto last = std::partition_point(
        first, edits.end(), [&](const EditView& edit) { return edit.offset < region.innerEnd; });
    return std::any_of(first, last,
                       [&](const EditView& edit) { return isIn(region, getChange(text, edit)); });
}

} // namespace

Problems findUnneededSuppression(const std::u16string& text, const FileOptions& options,
                                 const Suppression& suppression) {
    if (suppression.isWholeFile || suppression.regions.empty()) {
        return {};
    }
    const auto formatted = formatText(text, options, {}, {});
    if (!formatted) {
        return {};
    }
    Problems warnings;
    for (const SuppressedRegion& region : suppression.regions) {
        if (!hasWarning(region, suppression.warnings) && !hasChange(region, text, formatted->edits)) {
            warnings.emplace_back(Code::UnneededSuppression,
                                  "formatting would change nothing here; this comment isn't needed",
                                  region.line, region.column);
        }
    }
    return warnings;
}

} // namespace ombrel
