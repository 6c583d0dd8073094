#pragma once

#include "ca/utils/JsonValue.h"
#include "ombrel/api.h"
#include "resource_core/BaseMsgID.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ca::utils {

/// Longest text that is read, in 16-bit characters, and largest file, in bytes.
inline constexpr std::size_t maximalJsonSize = std::size_t{16} * 1024 * 1024;

/// Arrays and objects inside each other, the outermost included.
inline constexpr std::size_t maximalJsonDepth = 256;

/// A fault in a JSON text.
struct JsonFault {
    std::shared_ptr<resource_core::BaseMsgID> message; ///< never empty
    JsonPosition start;
    std::optional<JsonPosition> end; ///< just after the last character, if the fault is about a whole piece
};

/// What a JSON text says. Faults don't come as exceptions.
struct JsonDocument {
    std::optional<JsonObject> root; ///< empty if the text can't be read to its end or is no object
    std::vector<JsonFault> faults;  ///< in the order of the text; 100 at most
};

/// Reads a text that holds one JSON object. On top of the standard, line and block comments and commas after
/// the last element or field are accepted, and a byte-order mark at the start, which takes no column.
///
/// A syntax error ends the reading. So do half a surrogate pair, plain or as an escape, a number beyond the
/// range of a double (or with more digits or a larger exponent than one inside it needs), and the two limits
/// above. A name that comes twice in an object is a fault that doesn't:
/// the last of its values counts. Time and memory are in proportion to the text; the call stack isn't used
/// for depth.
OMBREL_HOST_API JsonDocument readJson(const std::u16string& text);

} // namespace ca::utils
