#pragma once

#include "format/Options.h"
#include "text/LineRange.h"

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tl/expected.hpp>

namespace ombrel {

/// What the page asks for, read from the JSON of a request's body:
///
///     {"text": "x = 1;", "engine": "tree", "options": {"formatting": {...}}, "lines": [[1, 3]]}
///     {"text": "x = 1;", "options": "{ /* an options file */ }", "stage": "tokens", "around": 120, "limit":
///     5000}
struct ApiRequest {
    std::string text;                  ///< UTF-8
    std::optional<Engine> engine;      ///< empty: what the options say
    std::string options;               ///< the text of an options file, UTF-8
    std::vector<LineRange> lines;      ///< empty: all
    std::string stage;                 ///< empty if there is none
    std::optional<std::size_t> around; ///< an offset in the text that the rows are wanted for
    std::size_t limit = 1'000'000;     ///< rows at most
};

/// Fails with a sentence if this is no such JSON.
tl::expected<ApiRequest, std::string> readApiRequest(std::string_view body);

} // namespace ombrel
