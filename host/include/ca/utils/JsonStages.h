#pragma once

#include "ca/utils/JsonReaderValue.h"
#include "ombrel/api.h"

#include <cstdint>
#include <string>

namespace ca::utils {

// The stages below pass an empty input through as an empty output and record nothing. They keep its reader,
// and all but the first its anchor.

/// Takes one field of an object, which becomes the anchor. An absent field gives an empty result and is no
/// issue; a value that isn't an object gives an empty result and is one.
struct GetOptionalField {
    std::u16string name;
};

/// Takes true and false, refuses anything else with an issue.
struct IsBool {};

/// Takes whole numbers from 0 to 4294967295, refuses anything else with an issue. What counts is the number
/// (as a double, as everywhere with JSON), not how it is written: 4.0, 1e3 and -0 are whole.
struct IsUnsignedInteger {};

/// Takes strings of at least one character, refuses anything else with an issue.
struct IsNonEmptyString {};

OMBREL_HOST_API JsonReaderValue<JsonValue> operator|(JsonReaderValue<JsonValue> in,
                                                     const GetOptionalField& stage);
OMBREL_HOST_API JsonReaderValue<bool> operator|(JsonReaderValue<JsonValue> in, const IsBool& stage);
OMBREL_HOST_API JsonReaderValue<std::uint32_t> operator|(JsonReaderValue<JsonValue> in,
                                                         const IsUnsignedInteger& stage);
OMBREL_HOST_API JsonReaderValue<std::u16string> operator|(JsonReaderValue<JsonValue> in,
                                                          const IsNonEmptyString& stage);

} // namespace ca::utils
