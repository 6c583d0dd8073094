#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>

namespace ombrel {

/// The JSON form of Reviewdog, with a suggestion for each change. Its columns count bytes, which are known
/// for changes only: messages have lines.
std::unique_ptr<Reporter> makeRdjsonReporter(std::ostream& stream);

} // namespace ombrel
