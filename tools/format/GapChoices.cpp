#include "format/GapChoices.h"

#include "format/GapText.h"

#include <algorithm>
#include <utility>

namespace ombrel {

GapChoices::GapChoices(const GapList& gaps, const GapAlignment& formatted)
    : gaps(gaps), formatted(formatted) {
    choices.reserve(gaps.getCount());
    for (std::size_t gap = 0; gap < gaps.getCount(); ++gap) {
        const bool isSame =
            formatted.isUnchanged(gap) || isSameText(gaps.getText(gap), formatted.getText(gap));
        choices.push_back(isSame ? source : formatter);
    }
}

std::u16string_view GapChoices::getText(std::size_t gap) const {
    switch (choices[gap]) {
    case source:
        return gaps.getText(gap);
    case formatter:
        return formatted.getText(gap);
    default:
        return texts[choices[gap] - firstOwn];
    }
}

bool GapChoices::isAnyChanged() const {
    return std::any_of(choices.begin(), choices.end(), [](std::uint32_t choice) { return choice != source; });
}

std::vector<std::size_t> GapChoices::getExceptions() const {
    std::vector<std::size_t> exceptions = chosen;
    std::sort(exceptions.begin(), exceptions.end());
    exceptions.erase(std::unique(exceptions.begin(), exceptions.end()), exceptions.end());
    std::erase_if(exceptions,
                  [this](std::size_t gap) { return isSameText(getText(gap), formatted.getText(gap)); });
    return exceptions;
}

void GapChoices::chooseSource(std::size_t gap) {
    choices[gap] = source;
    chosen.push_back(gap);
}

void GapChoices::choose(std::size_t gap, std::u16string text) {
    chosen.push_back(gap);
    if (isSameText(gaps.getText(gap), text)) {
        choices[gap] = source;
        return;
    }
    choices[gap] = static_cast<std::uint32_t>(texts.size()) + firstOwn;
    texts.push_back(std::move(text));
}

} // namespace ombrel
