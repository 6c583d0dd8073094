#include "cli/MergeRun.h"

#include "cli/ReporterSet.h"
#include "cli/Summary.h"
#include "files/InputReader.h"
#include "reports/JsonReport.h"

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <ostream>
#include <string_view>

namespace ombrel {

namespace {

/// A search goes through a folder by name, so what is in `a/` comes before `a.omb`.
bool comesBefore(const FileOutcome& a, const FileOutcome& b) {
    const auto rank = [](char c) { return c == '/' ? 0 : static_cast<unsigned char>(c); };
    return std::lexicographical_compare(a.path.begin(), a.path.end(), b.path.begin(), b.path.end(),
                                        [&](char x, char y) { return rank(x) < rank(y); });
}

bool isSame(const Problem& a, const Problem& b) {
    return a.code == b.code && a.severity == b.severity && a.text == b.text && a.line == b.line &&
           a.column == b.column && a.lastLine == b.lastLine;
}

bool isSame(const FileOutcome& a, const FileOutcome& b) {
    return a.path == b.path && a.status == b.status && a.firstChangedLine == b.firstChangedLine &&
           a.changes == b.changes &&
           std::equal(a.messages.begin(), a.messages.end(), b.messages.begin(), b.messages.end(),
                      [](const Message& x, const Message& y) { return isSame(x.problem, y.problem); });
}

void add(Report& merged, Report report) {
    std::move(report.files.begin(), report.files.end(), std::back_inserter(merged.files));
    for (Problem& failure : report.failures) {
        const auto isKnown = [&](const Problem& known) { return isSame(known, failure); };
        if (std::none_of(merged.failures.begin(), merged.failures.end(), isKnown)) {
            merged.failures.push_back(std::move(failure));
        }
    }
}

/// Outcomes of one path keep the order of their reports; of those that are the same, the first stays.
void sort(std::vector<FileOutcome>& outcomes) {
    std::stable_sort(outcomes.begin(), outcomes.end(), comesBefore);
    const auto end = std::unique(outcomes.begin(), outcomes.end(),
                                 [](const FileOutcome& a, const FileOutcome& b) { return isSame(a, b); });
    outcomes.erase(end, outcomes.end());
}

ExitStatus getExitStatus(const FileOutcome& outcome) {
    ExitStatus status =
        outcome.status == FileStatus::WouldChange ? ExitStatus::WouldChange : ExitStatus::Done;
    for (const Message& message : outcome.messages) {
        status = getWorse(status, getExitStatus(message.problem));
    }
    return status;
}

Result<Report> readReport(const std::string& path, Console& console, FileSystem& files) {
    try {
        return readJsonReport(readInput(path, console.in, files, inputLimit));
    } catch (const FileError& error) {
        return fail(Code::UnreadableInput, error.what());
    }
}

/// Prints what is wrong with a report. Usage if anything is.
ExitStatus readAll(const Arguments& arguments, Console& console, FileSystem& files, Report& merged) {
    ExitStatus status = ExitStatus::Done;
    for (const std::string& path : arguments.paths) {
        Result<Report> report = readReport(path, console, files);
        if (report) {
            add(merged, *std::move(report));
            continue;
        }
        status = ExitStatus::Usage;
        printProblem(console.err, arguments.getShownName(path), report.error().front(), {},
                     console.getErrColor(arguments.color));
    }
    return status;
}

ExitStatus reportAll(const Report& merged, const Arguments& arguments, Console& console, FileSystem& files) {
    ReporterSet reporters(arguments, console, files, console.getErrColor(arguments.color));
    Summary summary;
    ExitStatus status = ExitStatus::Done;
    for (const FileOutcome& outcome : merged.files) {
        const ExitStatus end = getExitStatus(outcome);
        reporters.add(outcome);
        summary.count(end, outcome.status == FileStatus::WouldChange);
        status = getWorse(status, end);
    }
    for (const Problem& failure : merged.failures) {
        reporters.addFailure(failure);
        status = getWorse(status, getExitStatus(failure));
    }
    status = getWorse(status, reporters.finish());
    if (!arguments.quiet && hasHumanReporter(arguments)) {
        console.out.flush();
        console.err << summary.getSentence(arguments) << '\n';
    }
    return status;
}

} // namespace

ExitStatus mergeReports(const Arguments& arguments, Console& console, FileSystem& files) {
    Report merged;
    if (const ExitStatus status = readAll(arguments, console, files, merged); status != ExitStatus::Done) {
        return status;
    }
    sort(merged.files);
    errno = 0;
    const ExitStatus status = reportAll(merged, arguments, console, files);
    console.out.flush();
    if (console.out) {
        return status;
    }
    printOutputFailure(console.err, "ombrel-format", errno, console.getErrColor(arguments.color));
    return ExitStatus::WriteFailed;
}

} // namespace ombrel
