#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "files/FileSystem.h"

namespace ombrel {

/// Reports as one run what several runs have reported in JSON: the paths of the arguments are their reports.
/// Files come in the order in which one run over a folder meets them. What two reports say in the same words,
/// about an options file for example, is said once.
///
/// The status is the largest of what the runs ended with, as far as their reports tell, and Usage if a report
/// can't be read. Then nothing is reported but that.
ExitStatus mergeReports(const Arguments& arguments, Console& console, FileSystem& files);

} // namespace ombrel
