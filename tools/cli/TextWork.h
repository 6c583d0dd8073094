#pragma once

#include "diagnostics/Result.h"
#include "format/FormatRecord.h"
#include "format/Options.h"
#include "format/Suppression.h"
#include "format/TreeEngine.h"
#include "text/LineRange.h"

#include <chrono>
#include <string>
#include <vector>

namespace ombrel {

/// What the engines are to do with one text.
struct TextJob {
    const std::u16string& text;
    FileOptions options;
    std::vector<LineRange> lines;             ///< none: all
    bool checksSyntax = false;                ///< the text is only parsed; fails with its syntax errors
    const Suppression* suppression = nullptr; ///< of the text, never null unless it is only parsed
    FormatRecord* record = nullptr;           ///< as for formatText(); without times if there is a time limit
};

/// Does the work, with a time limit in another process: the engines are pure functions without a place where
/// they could be asked to stop, and a thread can't be ended from outside. A process can, at any time, since
/// all that it does is to read a text and to write edits, and the files are here. It is this program, started
/// again: a mere copy of a process with several threads could wait forever for a lock that another thread
/// had.
///
/// The notes of a result include warnings of comments that aren't needed, if all lines are formatted.
///
/// 0 is no limit. Fails with TimeLimit when the time is up, or if no process can be started. The exceptions
/// of a result with a limit are left out. May be called on several threads at once.
Result<TreeResult> workOnText(const TextJob& job, std::chrono::milliseconds timeLimit);

/// The word of the command line, before a number of milliseconds, that makes this program such a process.
inline constexpr const char* workerFlag = "--text-worker";

/// The work in that process: from standard input to standard output. Returns the exit status, but not if the
/// time is up first.
int serveTextWork(const char* milliseconds);

} // namespace ombrel
