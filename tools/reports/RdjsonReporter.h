#pragma once

#include "reports/Reporter.h"

#include <iosfwd>
#include <memory>

namespace ombrel {

/// The JSON form of Reviewdog. Its columns count bytes and ours don't, so findings have lines only.
std::unique_ptr<Reporter> makeRdjsonReporter(std::ostream& stream);

} // namespace ombrel
