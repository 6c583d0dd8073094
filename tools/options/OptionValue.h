#pragma once

#include "diagnostics/Result.h"
#include "options/OptionTable.h"

#include <ca/utils/JsonValue.h>

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrel {

/// An option and the value that somebody wants it to have.
struct Setting {
    const Option* option;       ///< of the table, never null
    ca::utils::JsonValue value; ///< one that the option can have
    std::uint32_t line = 0;     ///< in the file that says so, from 1; 0 if that isn't known
};

/// The value that a text without quotes stands for, as it is written on the command line. Fails if the
/// option can't have it, with what it can have: "expected a number from 1 to 64".
Result<ca::utils::JsonValue> parseValue(const Option& option, std::string_view text);

/// What is wrong with a value for the option, placed in the text that the value was read from. None if
/// the option can have it.
Problems checkValue(const Option& option, const ca::utils::JsonValue& value);

/// A problem at the start of a span, or without a place.
Problem makeProblem(Code code, const std::optional<ca::utils::JsonSpan>& span, std::string text);

using NamedField = std::pair<std::string, const ca::utils::JsonField*>;

/// Names in UTF-8 and fields in the order of the text. They live as long as the object.
std::vector<NamedField> getOrderedFields(const ca::utils::JsonObject& object);

/// A value that an option can have as JSON, on one line. PerConstruct objects have the order of their text.
std::string getJson(const ca::utils::JsonValue& value);

} // namespace ombrel
