#include "cli/FileFormatter.h"

#include "cli/TextWork.h"
#include "diagnostics/SourceText.h"
#include "files/InputReader.h"
#include "format/Suppression.h"
#include "git/ChangedFiles.h"
#include "text/Diff.h"
#include "text/Edit.h"
#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <exception>
#include <new>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

Code getCode(FileError::Kind kind) {
    switch (kind) {
    case FileError::Kind::Unreadable:
        return Code::UnreadableInput;
    case FileError::Kind::TooLarge:
        return Code::TooLarge;
    case FileError::Kind::Unwritable:
        break;
    }
    return Code::WriteFailed;
}

/// Line ends of any kind, and one more for a last line without.
std::size_t countLines(std::u16string_view text) {
    LineSplitter splitter(text);
    std::size_t count = 0;
    while (const auto line = splitter.getNext()) {
        count += line->content.empty() && line->end.empty() ? 0 : 1;
    }
    return count;
}

/// The work on one input.
class Task {
public:
    Task(const FileJob& job, const std::string& path) : job(job), arguments(job.arguments), path(path) {
        outcome.path = arguments.getShownName(path);
        if (arguments.printsStatistics) {
            result.measures = std::make_unique<FileMeasures>();
        }
    }

    FileResult formatFile() { return withBytes(&Task::process); }

    FileResult pass() {
        result.isPassed = true;
        return withBytes(&Task::deliverUnchanged);
    }

    FileResult refuse(const Problem& problem) {
        report(problem, {});
        return std::move(result);
    }

private:
    /// Reads the input and does something with its bytes.
    FileResult withBytes(void (Task::*work)(std::string)) {
        try {
            (this->*work)(read());
        } catch (const FileError& error) {
            report(Problem(getCode(error.kind), error.what()), {});
        } catch (const std::bad_alloc&) {
            report(Problem(Code::OutOfMemory, "not enough memory for this text"), {});
        } catch (const std::exception& error) { // a fault of ours, and no reason to leave out the other files
            report(Problem(Code::InternalError, fmt::format("formatting failed: {}", error.what())), {});
        }
        if (result.status != ExitStatus::Unsafe) {
            result.failure.reset();
        }
        return std::move(result);
    }

    std::string read() {
        const Stopwatch::Lap lap(getWatch(Stage::Reading));
        const ReadLimit limit = result.isPassed ? inputLimit : sourceLimit;
        return job.arguments.inPlace ? job.files.readRegular(path, limit)
                                     : readInput(path, job.console.in, job.files, limit);
    }

    auto decode(const std::string& bytes) {
        const Stopwatch::Lap lap(getWatch(Stage::Reading));
        return decodeSource(bytes);
    }

    void process(std::string bytes) {
        auto source = decode(bytes);
        if (source && result.measures) {
            result.measures->byteCount = bytes.size();
            result.measures->lineCount = countLines(source->text);
        }
        if (!source) {
            report(source.error(), decodeLossy(bytes));
        } else if (arguments.checkSyntax) {
            checkSyntax(source->text);
        } else {
            formatBytes(std::move(bytes), *std::move(source));
        }
    }

    void checkSyntax(const std::u16string& text) {
        const Stopwatch::Lap lap(getWatch(Stage::Checking));
        const auto checked = workOnText({text, {}, {}, true}, arguments.timeLimit);
        report(checked ? Problems{} : checked.error(), text);
    }

    void formatBytes(std::string bytes, DecodedText source) {
        if (!arguments.bugReport.empty()) {
            result.failure.reset(new FailedText{bytes, getLines(source.text), {}});
        }
        const Edits edits = findEdits(source);
        std::u16string().swap(source.text); // the result needs its memory
        if (edits.empty()) {
            deliverUnchanged(std::move(bytes)); // an editor that replaces its text by this loses nothing
        } else {
            deliverChanged(bytes, edits);
        }
    }

    /// None if the text stays as it is, be it because of an error.
    Edits findEdits(const DecodedText& source) {
        const Suppression suppression = findSuppression(source.text);
        report(suppression.warnings, source.text);
        if (suppression.isWholeFile) {
            return {};
        }
        auto edits = layOut(source.text, suppression);
        if (!edits) {
            report(edits.error(), source.text);
            return {};
        }
        if (!edits->empty() && job.wantsFirstChangedLine && (arguments.check || arguments.diff)) {
            const Stopwatch::Lap lap(getWatch(Stage::Reporting));
            outcome.changes = describeChanges(source, *edits);
            outcome.firstChangedLine = outcome.changes.front().begin.line;
        }
        return *std::move(edits);
    }

    Result<Edits> layOut(const std::u16string& text, const Suppression& suppression) {
        const FileOptions options = getOptions();
        const std::vector<LineRange> lines = getLines(text);
        auto formatted = callEngine(text, options, lines, suppression);
        if (!formatted) {
            return fail(std::move(formatted.error()));
        }
        report(formatted->notes, text);
        return std::move(formatted->edits);
    }

    FileOptions getOptions() {
        const Stopwatch::Lap lap(getWatch(Stage::Options));
        return job.options.resolve(outcome.path);
    }

    Result<TreeResult> callEngine(const std::u16string& text, const FileOptions& options,
                                  const std::vector<LineRange>& lines, const Suppression& suppression) {
        if (!result.measures && !result.failure) {
            return workOnText({text, options, lines, false, &suppression}, arguments.timeLimit);
        }
        FormatRecord record;
        auto formatted = [&] {
            const Stopwatch::Lap lap(getWatch(Stage::Formatting));
            return workOnText({text, options, lines, false, &suppression, &record}, arguments.timeLimit);
        }();
        if (result.measures) {
            result.measures->times[Stage::Formatting].subtract(record.checking);
            result.measures->times[Stage::Checking].add(record.checking);
        }
        if (result.failure && !record.rejected.empty()) {
            result.failure->result = encodeLossy(record.rejected);
        }
        return formatted;
    }

    /// Null if nothing is to be measured.
    Stopwatch* getWatch(Stage stage) { return result.measures ? &result.measures->times[stage] : nullptr; }

    std::vector<LineRange> getLines(std::u16string_view text) const {
        const auto changed = job.changedLines.find(path);
        return changed == job.changedLines.end() ? arguments.lines : countAllLineEnds(text, changed->second);
    }

    void deliverUnchanged(std::string bytes) {
        if (arguments.isPrinting()) {
            result.out = std::move(bytes);
        }
    }

    void deliverChanged(const std::string& bytes, const Edits& edits) {
        const Stopwatch::Lap lap(getWatch(arguments.diff ? Stage::Reporting : Stage::Writing));
        if (arguments.inPlace) {
            job.files.edit(path, bytes, edits);
            outcome.status = FileStatus::Formatted;
        } else if (arguments.isPrinting()) {
            result.out = applyEdits(bytes, edits);
            outcome.status = FileStatus::Formatted;
        } else {
            result.status = ExitStatus::WouldChange;
            outcome.status = FileStatus::WouldChange;
            if (arguments.diff) {
                result.out = makeDiff(outcome.path, bytes, edits, job.console.getOutColor(arguments.color));
            }
        }
    }

    void report(Problem problem, std::u16string_view text) { report(Problems{std::move(problem)}, text); }

    void report(const Problems& problems, std::u16string_view text) {
        for (Message& message : makeMessages(problems, text)) {
            result.status = getWorse(result.status, getExitStatus(message.problem));
            outcome.messages.push_back(std::move(message));
        }
        if (result.status != ExitStatus::Done) {
            outcome.status = FileStatus::Failed;
        }
    }

    const FileJob& job;
    const Arguments& arguments;
    const std::string& path;
    FileResult result;
    FileOutcome& outcome = result.outcome;
};

} // namespace

FileResult processFile(const FileJob& job, const std::string& path) {
    return Task(job, path).formatFile();
}

FileResult passFile(const FileJob& job, const std::string& path) {
    return Task(job, path).pass();
}

FileResult refuseFile(const FileJob& job, const std::string& path, const Problem& problem) {
    return Task(job, path).refuse(problem);
}

} // namespace ombrel
