#include "config/FormattingConfig.h"

#include <array>
#include <ostream>
#include <string_view>

namespace ca::formatting {

namespace {

constexpr std::array<std::string_view, 18> containerKindNames = {
    "If",          "While",      "For",        "Parfor",   "Switch",
    "Case",        "Try",        "Spmd",       "Exponent", "MultiplyDivide",
    "PlusMinus",   "Comparison", "Logical",    "Colon",    "ParenthesisList",
    "BracketList", "BraceList",  "Inheritance"};

constexpr std::array<std::string_view, 3> lineBreakBehaviorNames = {"SeparateLines", "AllowSingleLine",
                                                                    "AllowMultiplePerLine"};

constexpr std::array<std::string_view, 2> separatorPlacementNames = {"StartOfLine", "EndOfLine"};

/// A negative number becomes a huge one, so that one comparison finds all numbers without a name.
template <std::size_t count, class Enumeration>
std::ostream& writeName(std::ostream& stream, const std::array<std::string_view, count>& names,
                        Enumeration value) {
    const auto number = static_cast<std::uint32_t>(value);
    return number < count ? stream << names[number] : stream;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, FormattingConfig::ContainerKind kind) {
    return writeName(stream, containerKindNames, kind);
}

std::ostream& operator<<(std::ostream& stream, FormattingConfig::LineBreakBehavior behavior) {
    return writeName(stream, lineBreakBehaviorNames, behavior);
}

std::ostream& operator<<(std::ostream& stream, FormattingConfig::SeparatorPlacement placement) {
    return writeName(stream, separatorPlacementNames, placement);
}

} // namespace ca::formatting
