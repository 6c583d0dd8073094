#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "files/FileSystem.h"
#include "reports/Reporter.h"

#include <string>

namespace ombrel {

/// What became of one input.
struct FileResult {
    ExitStatus status = ExitStatus::Done;
    std::string out; ///< for standard output, bytes
    FileOutcome outcome;

    bool isChanged() const {
        return outcome.status == FileStatus::Formatted || outcome.status == FileStatus::WouldChange;
    }
};

/// Does with one input after the other what the arguments ask for. It keeps nothing from one to the next and
/// shows nothing itself, so `process` may run on several threads at once. Arguments, console and files are
/// the caller's and have to outlive it.
class FileFormatter {
public:
    /// `wantsFirstChangedLine` is for those that report where files would change.
    FileFormatter(const Arguments& arguments, const OptionsResolver& options, Console& console,
                  FileSystem& files, bool wantsFirstChangedLine)
        : arguments(arguments), options(options), console(console), files(files),
          wantsFirstChangedLine(wantsFirstChangedLine) {}

    /// Reads the input, formats it, and writes it back if that was asked for; `-` is standard input, which
    /// only one of the inputs may be.
    FileResult process(const std::string& path) const;

    /// What becomes of an input that can't even be read.
    FileResult fail(const std::string& path, const Problem& problem) const;

private:
    const Arguments& arguments;
    const OptionsResolver& options;
    Console& console;
    FileSystem& files;
    bool wantsFirstChangedLine;
};

} // namespace ombrel
