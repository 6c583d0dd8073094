#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>

namespace ombrel {

/// The XML form of Checkstyle, which editors and review tools read.
std::unique_ptr<Reporter> makeCheckstyleReporter(std::ostream& stream);

} // namespace ombrel
