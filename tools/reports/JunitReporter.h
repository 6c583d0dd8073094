#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>

namespace ombrel {

/// Test results in the XML form of JUnit, which most services for continuous integration show. Each file is a
/// test: it fails if it would change, and has an error if it couldn't be formatted.
std::unique_ptr<Reporter> makeJunitReporter(std::ostream& stream);

} // namespace ombrel
