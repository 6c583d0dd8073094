#include "options/OptionsReport.h"

#include <algorithm>

#include <fmt/format.h>

namespace ombrel {

std::string describeOptions(const std::vector<OptionInForce>& options) {
    constexpr std::size_t widestValue = 24; // an object for constructs may be far longer
    std::size_t nameWidth = 0;
    std::size_t valueWidth = 0;
    for (const OptionInForce& entry : options) {
        nameWidth = std::max(nameWidth, entry.option->getName().size());
        valueWidth = std::clamp(getJson(entry.value).size(), valueWidth, widestValue);
    }
    std::string text;
    for (const OptionInForce& entry : options) {
        text += fmt::format("{:{}}  {:{}}  {}\n", entry.option->getName(), nameWidth, getJson(entry.value),
                            valueWidth, entry.origin);
    }
    return text;
}

} // namespace ombrel
