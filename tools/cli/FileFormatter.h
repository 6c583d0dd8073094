#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "cli/Measures.h"
#include "files/FileSystem.h"
#include "reports/Reporter.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace ombrel {

/// Changed lines of files by their paths. Lines are counted by line feeds, as git counts them.
using ChangedLines = std::map<std::string, std::vector<LineRange>>;

/// What the work on every input of a run needs to know. All of it belongs to the caller.
struct FileJob {
    const Arguments& arguments;
    const ChangedLines& changedLines; ///< of a file that has some, these lines are formatted
    const OptionsResolver& options;
    Console& console;
    FileSystem& files;
    bool wantsFirstChangedLine; ///< some report names the first line of a file that would change
};

/// What the formatter failed on.
struct FailedText {
    std::string source;                ///< bytes, valid UTF-8
    std::vector<LineRange> lines;      ///< to format; none: all
    std::optional<std::string> result; ///< UTF-8; nothing: none was made
};

/// What became of one input.
struct FileResult {
    ExitStatus status = ExitStatus::Done;
    std::string out; ///< for standard output, bytes
    FileOutcome outcome;
    bool isPassed = false;                  ///< it wasn't to be formatted
    std::unique_ptr<FileMeasures> measures; ///< if the arguments ask for statistics
    std::unique_ptr<FailedText> failure;    ///< after status 5, if the arguments ask for a bug report

    bool isChanged() const {
        return outcome.status == FileStatus::Formatted || outcome.status == FileStatus::WouldChange;
    }
};

/// Does with one input what the arguments ask for: reads it, formats it, and writes it back if that was asked
/// for. `-` is standard input, which only one of the inputs may be. Shows nothing itself and keeps nothing,
/// so several threads may call it at once. Every failure is part of the result.
FileResult processFile(const FileJob& job, const std::string& path);

/// The result of an input that isn't to be formatted: what is printed of it is its text as it is.
FileResult passFile(const FileJob& job, const std::string& path);

/// The result of an input that can't even be read.
FileResult refuseFile(const FileJob& job, const std::string& path, const Problem& problem);

} // namespace ombrel
