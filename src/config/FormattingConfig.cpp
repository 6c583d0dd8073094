#include "config/FormattingConfig.h"

#include <ca/formatting/TreeOptions.h>

#include <ostream>
#include <span>
#include <string_view>

namespace ca::formatting {

namespace {

using Kind = FormattingConfig::ContainerKind;
using Words = std::span<const std::string_view>;

// The words of the table are in the order of the enumerators.
template <class Enumeration>
constexpr bool isAt(Words words, Enumeration value, std::string_view word) {
    return words[static_cast<std::size_t>(value)] == word;
}

static_assert(std::size(constructWords) == static_cast<std::size_t>(Kind::None));
static_assert(isAt(constructWords, Kind::If, "If") && isAt(constructWords, Kind::Spmd, "Spmd") &&
              isAt(constructWords, Kind::Exponent, "Exponent") &&
              isAt(constructWords, Kind::Colon, "Colon") &&
              isAt(constructWords, Kind::BraceList, "BraceList") &&
              isAt(constructWords, Kind::Inheritance, "Inheritance"));
static_assert(isAt(functionIndentStyleWords, FormattingConfig::FunctionIndentStyle::IndentNested,
                   "IndentNested"));
static_assert(isAt(indentCharacterWords, FormattingConfig::IndentCharacter::Tab, "Tab"));
static_assert(isAt(lineBreakBehaviorWords, FormattingConfig::LineBreakBehavior::AllowSingleLine,
                   "AllowSingleLine"));
static_assert(isAt(separatorPlacementWords, FormattingConfig::SeparatorPlacement::EndOfLine, "EndOfLine"));

/// A negative number becomes a huge one, so that one comparison finds all numbers without a name.
template <class Enumeration>
std::ostream& writeName(std::ostream& stream, Words names, Enumeration value) {
    const auto number = static_cast<std::uint32_t>(value);
    return number < names.size() ? stream << names[number] : stream;
}

} // namespace

std::ostream& operator<<(std::ostream& stream, FormattingConfig::ContainerKind kind) {
    return writeName(stream, constructWords, kind);
}

std::ostream& operator<<(std::ostream& stream, FormattingConfig::LineBreakBehavior behavior) {
    return writeName(stream, lineBreakBehaviorWords, behavior);
}

std::ostream& operator<<(std::ostream& stream, FormattingConfig::SeparatorPlacement placement) {
    return writeName(stream, separatorPlacementWords, placement);
}

} // namespace ca::formatting
