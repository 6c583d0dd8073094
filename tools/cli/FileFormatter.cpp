#include "cli/FileFormatter.h"

#include "diagnostics/SourceText.h"
#include "files/InputReader.h"
#include "format/Formatter.h"
#include "format/SuppressionUse.h"
#include "format/SyntaxCheck.h"
#include "git/ChangedFiles.h"
#include "text/Diff.h"
#include "text/Edit.h"
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

/// The work on one input.
class Task {
public:
    Task(const FileJob& job, const std::string& path) : job(job), arguments(job.arguments), path(path) {
        outcome.path = arguments.getShownName(path);
    }

    FileResult formatFile() { return withBytes(&Task::process); }

    FileResult pass() { return withBytes(&Task::deliverUnchanged); }

    FileResult refuse(const Problem& problem) {
        report(problem, {});
        return std::move(result);
    }

private:
    /// Reads the input and does something with its bytes.
    FileResult withBytes(void (Task::*work)(std::string)) {
        try {
            (this->*work)(job.arguments.inPlace ? job.files.readRegular(path, maximalByteCount)
                                                : readInput(path, job.console.in, job.files));
        } catch (const FileError& error) {
            report(Problem(getCode(error.kind), error.what()), {});
        } catch (const std::bad_alloc&) {
            report(Problem(Code::OutOfMemory, "not enough memory for this text"), {});
        } catch (const std::exception& error) { // a fault of ours, and no reason to leave out the other files
            report(Problem(Code::InternalError, fmt::format("formatting failed: {}", error.what())), {});
        }
        return std::move(result);
    }

    void process(std::string bytes) {
        const auto source = decodeSource(bytes);
        if (!source) {
            report(source.error(), decodeLossy(bytes));
        } else if (arguments.checkSyntax) {
            report(findSyntaxErrors(source->text), source->text);
        } else {
            formatBytes(std::move(bytes), *source);
        }
    }

    void formatBytes(std::string bytes, const DecodedText& source) {
        const Suppression suppression = findSuppression(source.text);
        report(suppression.warnings, source.text);
        if (suppression.isWholeFile) {
            deliverUnchanged(std::move(bytes));
            return;
        }
        const auto edits = layOut(source.text, suppression);
        if (!edits) {
            report(edits.error(), source.text);
            deliverUnchanged(std::move(bytes)); // an editor that replaces its text by this loses nothing
            return;
        }
        if (edits->empty()) {
            deliverUnchanged(std::move(bytes));
            return;
        }
        if (job.wantsFirstChangedLine && (arguments.check || arguments.diff)) {
            outcome.changes = describeChanges(source.text, *edits);
            outcome.firstChangedLine = outcome.changes.front().begin.line;
        }
        deliverChanged(bytes, *edits);
    }

    Result<Edits> layOut(const std::u16string& text, const Suppression& suppression) {
        const FileOptions options = job.options.resolve(outcome.path);
        const std::vector<LineRange> lines = getLines(text);
        auto formatted = formatText(text, options, lines, suppression);
        if (!formatted) {
            return fail(std::move(formatted.error()));
        }
        if (lines.empty()) { // else most of the text isn't meant to be formatted
            report(findUnneededSuppression(text, options, suppression), text);
        }
        report(formatted->notes, text);
        return std::move(formatted->edits);
    }

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
