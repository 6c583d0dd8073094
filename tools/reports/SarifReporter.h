#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>
#include <string>

namespace ombrel {

/// A SARIF 2.1.0 log with one run, written by finish(). Columns are 16-bit characters, and CR alone ends a
/// line as it does in the language; both are said in the log. `version` is the program's.
std::unique_ptr<Reporter> makeSarifReporter(std::ostream& stream, std::string version);

} // namespace ombrel
