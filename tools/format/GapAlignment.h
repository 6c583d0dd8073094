#pragma once

#include "format/Gap.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrel {

/// Where the gaps of a source are in its formatted text. Code tokens come out of the formatter unchanged and
/// in order, so both texts are walked in step, and what is between two code tokens is the gap's new text.
class GapAlignment {
public:
    /// Nothing if the text doesn't hold the same code tokens and comments in the same order. Takes linear
    /// time. All line ends of the text are LF. Keeps the gaps by reference.
    static std::optional<GapAlignment> make(const GapList& gaps, std::u16string formatted);

    /// A gap that the formatter doesn't leave as it is in the source. Its text can still be the same but for
    /// the kinds of line ends.
    struct Change {
        std::size_t gap;
        std::size_t begin; ///< in the formatted text
        std::size_t end;
    };

    /// In ascending order.
    const std::vector<Change>& getChanges() const { return changes; }

    /// What the formatter makes of a gap. Valid as long as the alignment isn't moved.
    std::u16string_view getText(const Change& change) const {
        return std::u16string_view(text).substr(change.begin, change.end - change.begin);
    }
    std::u16string_view getText(std::size_t gap) const;

private:
    explicit GapAlignment(const GapList& gaps, std::u16string text) : gaps(&gaps), text(std::move(text)) {}

    bool align();

    const GapList* gaps;
    std::u16string text;
    std::vector<Change> changes;
};

} // namespace ombrel
