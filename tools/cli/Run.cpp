// One run over the files that were named or found: search, read the options that apply to each, format in
// parallel, report in the order of the search. The status of the run is the worst of its files.
#include "cli/Run.h"

#include "cli/BugReport.h"
#include "cli/ChangeRun.h"
#include "cli/FileFormatter.h"
#include "cli/MergeRun.h"
#include "cli/OrderedWork.h"
#include "cli/Progress.h"
#include "cli/ReporterSet.h"
#include "cli/Statistics.h"
#include "cli/Summary.h"
#include "diagnostics/Message.h"
#include "files/FileSearch.h"
#include "files/InputReader.h"
#include "files/PathList.h"
#include "git/GitIgnore.h"
#include "options/OptionsReport.h"
#include "options/StarterFile.h"

#include <algorithm>
#include <cerrno>
#include <ostream>
#include <thread>
#include <utility>

namespace ombrel {

namespace {

using Verdict = FoundFile::Verdict;

constexpr const char* nothingToDo =
    "no file to format; --list-files says what was left out and why, --allow-no-files makes this a success";

constexpr const char* foldersAreNotPrinted =
    "the files of a folder aren't printed: use --in-place to write them back, --check or --diff to see what "
    "would change, or name one file";

class Run {
public:
    Run(const Arguments& arguments, const ChangedLines& changedLines, Console& console, FileSystem& files,
        Statistics& statistics)
        : arguments(arguments), console(console), files(files), statistics(statistics),
          resolver(arguments.options, files), bugReport(resolver),
          reporters(arguments, console, files, console.getErrColor(arguments.color)),
          job{arguments, changedLines, resolver, console, files, reporters.wantsFirstChangedLine()} {}

    ExitStatus processAll() {
        if (arguments.init) {
            return writeStarterFile();
        }
        if (arguments.printConfig) {
            return printOptions();
        }
        try {
            return processFound(search());
        } catch (const FileError& error) { // only the list of paths is read on this thread
            status = ExitStatus::Usage;
            reporters.add({arguments.search.pathList, FileStatus::Failed, 0,
                           makeMessages({{Code::UnreadableInput, error.what()}}, {})});
            return finishReports();
        }
    }

private:
    ExitStatus processFound(SearchResult found) {
        warn(found.warnings);
        statistics.addFound(found.files);
        if (const std::string report = findReportOnSource(found.files); !report.empty()) {
            const Problem problem(Code::UsageError, "a report can't go to " + getPrintableName(report) +
                                                        ", which is a source file");
            printRunProblem(console.err, "ombrel-format", problem, console.getErrColor(arguments.color));
            return ExitStatus::Usage;
        }
        if (arguments.search.listsOnly) {
            list(found.files);
            return finish();
        }
        noteLeftOut(found.files);
        std::erase_if(found.files, [](const FoundFile& file) {
            return file.verdict == Verdict::Left && file.path != "-";
        });
        if (!arguments.lines.empty() && (found.hasFolder || found.files.size() > 1)) {
            return refuse({Code::UsageError, "--lines needs exactly one file"});
        }
        if (found.hasFolder && arguments.isPrinting()) {
            return refuse({Code::UsageError, foldersAreNotPrinted});
        }
        if (found.files.empty() && !found.hasOtherShards && !arguments.search.allowsNoFiles) {
            return refuse({Code::NoFiles, nothingToDo});
        }
        if (arguments.isInputImplied && console.isInTerminal && !arguments.quiet) {
            console.err << "reading standard input; --help shows how to format files\n" << std::flush;
        }
        const bool isPrepared = arguments.checkSyntax || prepareOptions(getNames(found.files));
        if (isPrepared && !found.files.empty()) {
            process(found.files, found.hasFolder);
        }
        return finishReports();
    }

    /// Whoever names a file or folder expects that it is formatted.
    void noteLeftOut(const std::vector<FoundFile>& found) {
        for (const FoundFile& file : found) {
            if (file.isNamed && arguments.search.arePathsNamed && !arguments.quiet) {
                fail(arguments.getShownName(file.path),
                     {Code::LeftOut, "left out: " + getPrintableName(file.reason)});
            }
        }
    }

    /// The file of a report that is one of the sources too, by whatever path; empty if there is none.
    std::string findReportOnSource(const std::vector<FoundFile>& found) const {
        std::vector<std::string> reports = {arguments.bugReport};
        for (const ReporterChoice& choice : arguments.reporters) {
            reports.push_back(choice.file);
        }
        for (const std::string& report : reports) {
            const auto identity = report.empty() ? std::nullopt : files.getIdentity(report);
            const auto isSame = [&](const FoundFile& file) {
                return file.path != "-" && files.getIdentity(file.path) == identity;
            };
            if (identity && std::any_of(found.begin(), found.end(), isSame)) {
                return report;
            }
        }
        return {};
    }

    /// False if there is a fault in one of the options files. Then all faults have been reported.
    bool prepareOptions(const std::vector<std::string>& names) {
        const Stopwatch::Lap lap(statistics.getWatch(Stage::Options));
        const std::vector<OptionsFault> faults = resolver.prepare(names);
        for (const OptionsFault& fault : faults) {
            status = ExitStatus::Usage;
            reporters.add({resolver.getShownPath(fault.path), FileStatus::Failed, 0,
                           makeMessages(fault.problems, fault.text)});
        }
        warn(resolver.getWarnings());
        if (faults.empty()) {
            printRemarks();
        }
        return faults.empty();
    }

    void printRemarks() {
        const Color color = console.getErrColor(arguments.color);
        for (const OptionsFault& remark :
             arguments.quiet ? std::vector<OptionsFault>() : resolver.getRemarks()) {
            for (const Message& message : makeMessages(remark.problems, remark.text)) {
                if (remark.path.empty()) {
                    printRunProblem(console.err, "ombrel-format", message.problem, color);
                } else {
                    printMessage(console.err, resolver.getShownPath(remark.path), message, color);
                }
            }
        }
    }

    std::vector<std::string> getNames(const std::vector<FoundFile>& found) const {
        std::vector<std::string> names;
        names.reserve(found.size());
        for (const FoundFile& file : found) {
            names.push_back(arguments.getShownName(file.path));
        }
        return names;
    }

    /// The options for the paths that the user wrote; those below folders aren't searched for.
    ExitStatus printOptions() {
        std::vector<std::string> names;
        for (const std::string& path : arguments.paths) {
            names.push_back(files.isFolder(path) ? path + '/' : arguments.getShownName(path));
        }
        if (!prepareOptions(names)) {
            return finishReports();
        }
        for (const std::string& name : names) {
            print(getPrintableName(name) + ":\n" + describeOptions(resolver.explain(name)));
        }
        return finish();
    }

    ExitStatus writeStarterFile() {
        const std::string path(optionsFileName);
        try {
            files.create(path, makeStarterFile());
        } catch (const FileError& error) {
            return fail(path, {Code::WriteFailed, error.what()});
        }
        if (!arguments.quiet) {
            console.err << "wrote " << path << '\n';
        }
        return ExitStatus::Done;
    }

    SearchResult search() {
        const Stopwatch::Lap lap(statistics.getWatch(Stage::Search));
        const SearchOptions& options = arguments.search;
        std::vector<std::string> paths = arguments.paths;
        if (!options.pathList.empty()) {
            const std::string list = readInput(options.pathList, console.in, files, inputLimit);
            for (std::string& path : splitPathList(list, options.isPathListNulEnded)) {
                paths.push_back(std::move(path));
            }
        }
        GitIgnore ignored;
        return findFiles(paths, options, files, ignored);
    }

    void list(const std::vector<FoundFile>& found) {
        for (const FoundFile& file : found) {
            if (file.verdict == Verdict::Unreadable) {
                status = fail(file.path, {Code::UnreadableInput, file.reason});
            } else {
                const char* verdict = file.verdict == Verdict::Taken ? "taken" : "left";
                print(getQuotedName(file.path) + ": " + verdict + ": " + getPrintableName(file.reason) +
                      '\n');
            }
        }
    }

    void process(const std::vector<FoundFile>& inputs, bool hasFolder) {
        const bool isProgressWanted = console.isErrTerminal && isTalking();
        Progress progress(isProgressWanted ? &console.err : nullptr, inputs.size());
        const auto showProgress = [&] { progress.show(summary.getTotal()); };
        statistics.setThreadCount(getThreadCount(inputs.size()));
        OrderedWork<FileResult> work(inputs.size(), getThreadCount(inputs.size()),
                                     [&](std::size_t i) { return processOne(inputs[i]); });
        while (const auto result = work.getNext(showProgress)) {
            if (isWrittenToTerminal(*result)) {
                progress.erase();
            }
            if (!deliver(*result)) {
                return;
            }
            showProgress();
        }
        progress.erase();
        if (!arguments.isPrinting() && isTalking() && (hasFolder || inputs.size() > 1)) {
            flush();
            console.err << summary.getSentence(arguments) << '\n';
        }
    }

    /// Whether to print more than errors for people.
    bool isTalking() const { return !arguments.quiet && hasHumanReporter(arguments); }

    FileResult processOne(const FoundFile& input) const {
        if (input.verdict == Verdict::Unreadable) {
            return refuseFile(job, input.path, {Code::UnreadableInput, input.reason});
        }
        return input.verdict == Verdict::Left ? passFile(job, input.path) : processFile(job, input.path);
    }

    std::size_t getThreadCount(std::size_t inputCount) const {
        const std::size_t wanted = arguments.jobs == 0 ? std::thread::hardware_concurrency() : arguments.jobs;
        return std::clamp<std::size_t>(wanted, 1, inputCount);
    }

    /// Whether a result is going to be written where progress is shown.
    bool isWrittenToTerminal(const FileResult& result) const {
        const bool hasOutput = !result.out.empty() || result.outcome.status == FileStatus::WouldChange;
        return arguments.verbose || !result.outcome.messages.empty() ||
               (hasOutput && console.isOutOnErrTerminal);
    }

    /// False if standard output can't be written any more.
    bool deliver(const FileResult& result) {
        const Stopwatch::Lap lap(statistics.getWatch(Stage::Reporting));
        print(result.out);
        reporters.add(result.outcome);
        statistics.add(result);
        bugReport.add(result);
        noteFailure();
        status = getWorse(status, result.status);
        summary.count(result.status, result.isChanged());
        return static_cast<bool>(console.out);
    }

    /// On a terminal results must not come in the middle of later messages.
    void print(const std::string& bytes) {
        errno = 0;
        console.out << bytes;
        if (console.isErrTerminal && !bytes.empty()) {
            console.out.flush();
        }
        noteFailure();
    }

    void flush() {
        errno = 0;
        console.out.flush();
        noteFailure();
    }

    void noteFailure() { outError = outError == 0 && !console.out ? errno : outError; }

    ExitStatus fail(const std::string& path, const Problem& problem) {
        printProblem(console.err, path, problem, {}, console.getErrColor(arguments.color));
        return getExitStatus(problem);
    }

    ExitStatus refuse(const Problem& problem) {
        status = getExitStatus(problem);
        reporters.addFailure(problem);
        return finishReports();
    }

    void warn(const std::vector<std::string>& warnings) {
        for (const std::string& warning : warnings) {
            if (!arguments.quiet) {
                console.err << "ombrel-format: warning: " << getPrintableName(warning) << '\n';
            }
        }
    }

    ExitStatus finishReports() {
        const Stopwatch::Lap lap(statistics.getWatch(Stage::Reporting));
        finishBugReport();
        status = getWorse(status, reporters.finish());
        return finish();
    }

    void finishBugReport() {
        const std::string& file = arguments.bugReport;
        if (file.empty()) {
            if (status == ExitStatus::Unsafe) {
                note("this is a fault of ombrel-format; --bug-report FILE writes what a report about it "
                     "needs");
            }
        } else if (bugReport.getFileCount() == 0) {
            note("no file failed with status 5, so no bug report was written");
        } else {
            writeBugReport(file);
        }
    }

    void writeBugReport(const std::string& file) {
        try {
            files.write(file, bugReport.make());
            note("wrote " + getPrintableName(file) + ", which has the whole text of each file that failed");
        } catch (const FileError& error) {
            status = getWorse(status, fail(file, {Code::WriteFailed, error.what()}));
        }
    }

    void note(const std::string& text) {
        if (!arguments.quiet) {
            console.err << "ombrel-format: note: " << text << '\n';
        }
    }

    /// Ends the run with its status so far.
    ExitStatus finish() {
        flush();
        if (console.out) {
            return status;
        }
        printOutputFailure(console.err, "ombrel-format", outError, console.getErrColor(arguments.color));
        return ExitStatus::WriteFailed;
    }

    const Arguments& arguments;
    Console& console;
    FileSystem& files;
    Statistics& statistics;
    OptionsResolver resolver;
    BugReport bugReport;
    ReporterSet reporters;
    FileJob job;
    Summary summary;
    ExitStatus status = ExitStatus::Done;
    int outError = 0; ///< why standard output can't be written
};

} // namespace

ExitStatus runOnPaths(const Arguments& arguments, const ChangedLines& changedLines, Console& console,
                      FileSystem& files, Statistics& statistics) {
    return Run(arguments, changedLines, console, files, statistics).processAll();
}

ExitStatus run(const Arguments& arguments, Console& console, FileSystem& files) {
    if (arguments.mergesReports) {
        return mergeReports(arguments, console, files);
    }
    Statistics statistics(arguments);
    const ExitStatus status = arguments.changes.isAsked()
                                  ? runOnChanges(arguments, console, files, statistics)
                                  : runOnPaths(arguments, {}, console, files, statistics);
    console.err << statistics.describe();
    return status;
}

} // namespace ombrel
