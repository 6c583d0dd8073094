#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "cli/FileFormatter.h"
#include "files/FileSystem.h"

namespace ombrel {

class Statistics;

/// Formats everything that the arguments name, checks its syntax, or merges reports. A problem with one file
/// doesn't stop the others; a failure to write results ends the run. Results and messages come in the order
/// of the inputs, however many threads there are.
ExitStatus run(const Arguments& arguments, Console& console, FileSystem& files);

/// The same for exactly the paths of the arguments, whatever they say about changes. Of files in
/// `changedLines` only these lines are formatted.
ExitStatus runOnPaths(const Arguments& arguments, const ChangedLines& changedLines, Console& console,
                      FileSystem& files, Statistics& statistics);

} // namespace ombrel
