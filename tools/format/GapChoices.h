#pragma once

#include "format/GapAlignment.h"

#include <cstdint>
#include <deque>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// The text that each gap is to have: the formatter's, its own, or one made for it.
class GapChoices {
public:
    /// Starts with the formatter's text for every gap. Keeps both by reference.
    GapChoices(const GapList& gaps, const GapAlignment& formatted);

    std::size_t getCount() const { return choices.size(); }

    /// The chosen text. Of a gap that stays as it is in the source, it has the source's line ends; every
    /// other has LF.
    std::u16string_view getText(std::size_t gap) const {
        return choices[gap] == source ? gaps.getText(gap) : texts[choices[gap] - 1];
    }

    /// Whether the choice isn't the text that the gap has in the source.
    bool isChanged(std::size_t gap) const { return choices[gap] != source; }

    bool isAnyChanged() const;

    /// The gaps whose choice isn't the formatter's text, ascending.
    std::vector<std::size_t> getExceptions() const;

    void choose(std::size_t gap, std::u16string text);
    void chooseSource(std::size_t gap);

private:
    static constexpr std::uint32_t source = 0;

    void set(std::size_t gap, std::u16string_view text);

    const GapList& gaps;
    const GapAlignment& formatted;
    std::vector<std::uint32_t> choices; ///< of each gap: the source's text, or which of `texts`, from 1
    std::vector<std::u16string_view> texts;
    std::deque<std::u16string> ownTexts; ///< those of `texts` that aren't the formatter's
    std::vector<std::size_t> chosen;     ///< the gaps that a choice was made for, one for each time
};

} // namespace ombrel
