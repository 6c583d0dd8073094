#pragma once

#include <string>
#include <string_view>

#include <nlohmann/json.hpp>
#include <tl/expected.hpp>

namespace ombrel::lsp {

using Json = nlohmann::json;

/// Arrays and objects inside each other that a message may have.
inline constexpr int maximalMessageDepth = 200;

/// Reads the body of a message. Fails, with a reason for people, if it isn't JSON in UTF-8 or is nested too
/// deeply.
///
/// An escape for half a surrogate pair, which editors send for text that has one, stands for U+FFFD: a
/// character of the same length, so that all places in the text stay right.
tl::expected<Json, std::string> parseMessage(std::string body);

} // namespace ombrel::lsp
