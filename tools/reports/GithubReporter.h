#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>

namespace ombrel {

/// Workflow commands that put each finding next to its line in a review, written file by file:
///
///     ::error file=a.omb,line=2,col=5::text
std::unique_ptr<Reporter> makeGithubReporter(std::ostream& stream);

} // namespace ombrel
