#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>

namespace ombrel {

/// One JSON document for programs, written by finish():
///
///     {"files": [{"path": "a.omb", "status": "would-change", "firstChangedLine": 2, "messages": []},
///                {"path": "b.omb", "status": "failed", "messages":
///                    [{"severity": "error", "line": 2, "column": 5, "text": "…"}]}],
///      "totals": {"files": 2, "unchanged": 0, "formatted": 0, "would-change": 1, "failed": 1,
///                 "errors": 1, "warnings": 0}}
///
/// `firstChangedLine` is there only with "would-change", and after the totals there are "messages" only if
/// a problem of the run kept it from formatting files. Line and column are null where a message has no place.
/// One about several lines has the first and the last of them as "lines".
std::unique_ptr<Reporter> makeJsonReporter(std::ostream& stream);

} // namespace ombrel
