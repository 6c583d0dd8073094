#pragma once

#include "ca/utils/JsonValue.h"

#include <string>
#include <string_view>

namespace ca::utils {

/// A text in double quotes, for a message: cut after 40 characters, on one line.
std::u16string quote(std::u16string_view text);

/// A value for a message: `true`, `"four"`, `4.5`, `an array`.
std::u16string quoteValue(const JsonValue& value);

} // namespace ca::utils
