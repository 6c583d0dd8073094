#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>

namespace ombrel {

/// A report of code quality for GitLab, a JSON list of findings that it shows in merge requests. A problem of
/// the whole run is a finding of the file `.`, since each has to have one.
std::unique_ptr<Reporter> makeGitlabReporter(std::ostream& stream);

} // namespace ombrel
