#pragma once

#include "options/OptionsResolver.h"
#include "reports/Message.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace ombrel {

/// Writes every problem with its place in its file.
void printFaults(std::ostream& stream, const std::vector<OptionsFault>& faults,
                 const OptionsResolver& resolver, Color color);

/// All options for one file, as a table for people:
///
///     line.indentSize    2    src/.ombrel-format.json:3
std::string describeOptions(const std::vector<OptionInForce>& options);

} // namespace ombrel
