#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "files/FileSystem.h"

namespace ombrel {

class Statistics;

/// Runs on the changes that the arguments ask for and nothing else: on changed files of `files`, or on staged
/// ones. Ignore files and patterns apply to all of them. Without changes the status is Done.
ExitStatus runOnChanges(const Arguments& arguments, Console& console, FileSystem& files,
                        Statistics& statistics);

} // namespace ombrel
