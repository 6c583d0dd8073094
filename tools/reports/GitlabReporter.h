#pragma once

#include "reports/Reporter.h"

#include <functional>
#include <iosfwd>
#include <memory>
#include <string>

namespace ombrel {

/// A report of code quality for GitLab, a JSON list of findings that it shows in merge requests, in the
/// format of Code Climate. A problem of the whole run is a finding of the file `.`, since each has to have
/// one.
///
/// GitLab knows files by their paths from the top of the repository: `getPath` makes those of the paths that
/// the user knows.
std::unique_ptr<Reporter> makeGitlabReporter(std::ostream& stream,
                                             std::function<std::string(const std::string&)> getPath);

} // namespace ombrel
