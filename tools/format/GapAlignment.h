#pragma once

#include "format/Gap.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// Where the gaps of a source are in its formatted text. Code tokens come out of the formatter unchanged and
/// in order, so both texts are walked in step, and what is between two code tokens is the gap's new text.
class GapAlignment {
public:
    /// Nothing if the text doesn't hold the same code tokens and comments in the same order. Takes linear
    /// time. All line ends of the text are LF.
    static std::optional<GapAlignment> make(const GapList& gaps, std::u16string formatted);

    /// What the formatter makes of a gap. Valid as long as the alignment isn't moved.
    std::u16string_view getText(std::size_t gap) const {
        return std::u16string_view(text).substr(places[gap].begin, places[gap].end - places[gap].begin);
    }

    /// Whether the formatter left a gap as it is in the source. If not, its text can still be the same but
    /// for the kinds of line ends.
    bool isUnchanged(std::size_t gap) const { return places[gap].isUnchanged; }

private:
    struct Place {
        std::size_t begin;
        std::size_t end;
        bool isUnchanged;
    };

    std::u16string text;
    std::vector<Place> places;
};

} // namespace ombrel
