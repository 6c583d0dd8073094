#include "format/GapChoices.h"

#include "format/GapText.h"

#include <algorithm>
#include <utility>

namespace ombrel {

GapChoices::GapChoices(const GapList& gaps, const GapAlignment& formatted)
    : gaps(gaps), formatted(formatted), choices(gaps.getCount(), source) {
    for (const GapAlignment::Change& change : formatted.getChanges()) {
        set(change.gap, formatted.getText(change));
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
    set(gap, ownTexts.emplace_back(std::move(text)));
}

void GapChoices::set(std::size_t gap, std::u16string_view text) {
    if (isSameText(gaps.getText(gap), text)) {
        choices[gap] = source;
        return;
    }
    texts.push_back(text);
    choices[gap] = static_cast<std::uint32_t>(texts.size());
}

} // namespace ombrel
