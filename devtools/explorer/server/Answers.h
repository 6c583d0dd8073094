#pragma once

#include "explorer/server/ApiRequest.h"

#include <string>

#include <tl/expected.hpp>

namespace ombrel {

/// The answers of the server as JSON, made of nothing but the request. Offsets count 16-bit characters of the
/// request's text, from 0; lines and columns count from 1. Errors of syntax and of options are part of an
/// answer:
///
///     {"code": "unclosed-block", "severity": "error", "message": "...", "in": "source", "line": 1, "column":
///     1}

/// Formats the text:
///
///     {"text": "...", "edits": [{"offset", "length", "text"}], "errors": [], "problems": [],
///      "kept": [{"begin", "end", "kind": "kept"}], "isStable": true, "milliseconds": 1.5}
///
/// `text` is the source's if there are errors. `problems` are warnings and notes. `kept` are the gaps that
/// didn't get the formatter's text since that would change the program: they are as in the source ("kept") or
/// "repaired". `isStable` says whether formatting the result again changes nothing; null if nothing was
/// formatted.
std::string makeFormatAnswer(const ApiRequest& request);

/// The rows of one stage:
///
///     {"stage": "tokens", "first": 0, "total": 7, "rows": [{"begin", "end", "depth", "label", "detail"}],
///     "errors": []}
///
/// Those are at most as many as the request limits them to, about half of them before the place that it asks
/// for; `first` is the number of the first one and `total` that of all rows. A row of the stage "decisions"
/// has a "gap" too. Fails with a sentence if there is no such stage.
tl::expected<std::string, std::string> makeDumpAnswer(const ApiRequest& request);

} // namespace ombrel
