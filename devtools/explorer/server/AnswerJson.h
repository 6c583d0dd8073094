#pragma once

#include "diagnostics/Problem.h"

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>

namespace ombrel {

using Json = nlohmann::ordered_json;

/// `place` says which text lines and columns are about: "source" or "options".
Json makeJson(const Problem& problem, std::string_view place);

/// The text of an answer. Bytes that aren't UTF-8 are replaced, though there should be none.
std::string print(const Json& json);

/// A text of a request: a byte-order mark is no part of what is formatted, but counts in the offsets of
/// answers.
struct RequestText {
    std::u16string text;   ///< without the mark
    std::size_t shift = 0; ///< 1 if there is a mark
    Problems problems;     ///< why it can't be formatted
};

RequestText readText(std::string_view bytes);

} // namespace ombrel
