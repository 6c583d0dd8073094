#pragma once

#include "diagnostics/Result.h"
#include "reports/Reporter.h"

#include <string_view>
#include <vector>

namespace ombrel {

/// What a run reported.
struct Report {
    std::vector<FileOutcome> files; ///< messages without excerpts of their sources
    Problems failures;              ///< what kept the run from formatting files
};

/// Reads a document that the JSON reporter has written. Keys that it doesn't know are ignored, totals too.
/// Fails with an InvalidReport if a key is missing, or its value isn't what the reporter writes.
Result<Report> readJsonReport(std::string_view document);

} // namespace ombrel
