#include "Run.h"

#include "ChangeRun.h"
#include "FileFormatter.h"
#include "FileSearch.h"
#include "InputReader.h"
#include "Message.h"
#include "OrderedWork.h"
#include "PathList.h"
#include "Progress.h"
#include "Summary.h"

#include <algorithm>
#include <cerrno>
#include <ostream>
#include <system_error>
#include <thread>
#include <utility>

namespace ombrel {

namespace {

using Verdict = Candidate::Verdict;

constexpr const char* missingTreeEngine =
    "the tree engine needs the companion library libca_formatting_devtools.so, which isn't there; build the "
    "project and install it (cmake --install build/release), so that the library stands in the folder of "
    "libombrel_host.so or in devtools/ under it";

constexpr const char* nothingToDo =
    "no file to format; --list-files says what was left out and why, --allow-no-files makes this no error";

class Run {
public:
    Run(const Arguments& arguments, Console& console, FileSystem& files)
        : arguments(arguments), console(console), files(files), formatter(arguments, console, files) {}

    ExitStatus processAll() {
        if (arguments.engine == Engine::Tree && !arguments.checkSyntax) {
            return refuse(missingTreeEngine);
        }
        try {
            return processFound(search());
        } catch (const FileError& error) { // only the list of paths is read on this thread
            return fail(arguments.search.pathList, error.what());
        }
    }

private:
    ExitStatus processFound(SearchResult found) {
        warn(found.warnings);
        if (arguments.search.listsOnly) {
            list(found.candidates);
            return finish();
        }
        std::erase_if(found.candidates, [](const Candidate& c) { return c.verdict == Verdict::Left; });
        if (!arguments.lines.empty() && (found.hasFolder || found.candidates.size() > 1)) {
            return refuse("--lines goes with one file");
        }
        if (found.candidates.empty()) {
            return arguments.search.allowsNoFiles ? ExitStatus::Done : refuse(nothingToDo);
        }
        process(found.candidates, found.hasFolder);
        return finish();
    }

    SearchResult search() {
        const SearchOptions& options = arguments.search;
        std::vector<std::string> paths = arguments.paths;
        if (!options.pathList.empty()) {
            const std::string list = readInput(options.pathList, console.in, files);
            for (std::string& path : splitPathList(list, options.isPathListNulEnded)) {
                paths.push_back(std::move(path));
            }
        }
        return findFiles(paths, options, files);
    }

    void list(const std::vector<Candidate>& candidates) {
        for (const Candidate& candidate : candidates) {
            if (candidate.verdict == Verdict::Unreadable) {
                status = fail(candidate.path, candidate.reason);
            } else {
                const char* verdict = candidate.verdict == Verdict::Taken ? "taken" : "left";
                print(candidate.path + ": " + verdict + ": " + candidate.reason + '\n');
            }
        }
    }

    void process(const std::vector<Candidate>& inputs, bool hasFolder) {
        const bool isProgressWanted = console.isErrTerminal && !arguments.quiet;
        Progress progress(isProgressWanted ? &console.err : nullptr, inputs.size());
        const auto showProgress = [&] { progress.show(summary.getTotal()); };
        OrderedWork<FileResult> work(inputs.size(), getThreadCount(inputs.size()),
                                     [&](std::size_t i) { return processOne(inputs[i]); });
        while (const auto result = work.getNext(showProgress)) {
            if (!result->messages.empty() || !result->out.empty()) {
                progress.erase();
            }
            if (!deliver(*result)) {
                return;
            }
            showProgress();
        }
        progress.erase();
        if (!arguments.isPrinting() && !arguments.quiet && (hasFolder || inputs.size() > 1)) {
            flush();
            console.err << summary.describe(arguments) << '\n';
        }
    }

    FileResult processOne(const Candidate& input) const {
        return input.verdict == Verdict::Unreadable
                   ? formatter.fail(input.path, {ExitStatus::Usage, input.reason})
                   : formatter.process(input.path);
    }

    std::size_t getThreadCount(std::size_t inputCount) const {
        const std::size_t wanted = arguments.jobs == 0 ? std::thread::hardware_concurrency() : arguments.jobs;
        return std::clamp<std::size_t>(wanted, 1, inputCount);
    }

    /// False if standard output takes no more.
    bool deliver(const FileResult& result) {
        print(result.out);
        console.err << result.messages;
        status = getWorse(status, result.status);
        summary.count(result.status, result.isChanged);
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

    ExitStatus fail(const std::string& path, const std::string& text) {
        console.err << formatter.fail(path, {ExitStatus::Usage, text}).messages;
        return ExitStatus::Usage;
    }

    ExitStatus refuse(const char* text) {
        printUsageError(console.err, "ombrel-format", text, console.getErrColor(arguments.color));
        return ExitStatus::Usage;
    }

    void warn(const std::vector<std::string>& warnings) {
        for (const std::string& warning : warnings) {
            if (!arguments.quiet) {
                console.err << "ombrel-format: warning: " << getPrintableName(warning) << '\n';
            }
        }
    }

    /// Ends the run with the status that it has come to.
    ExitStatus finish() {
        flush();
        if (console.out) {
            return status;
        }
        const std::string reason = outError == 0 ? "" : ": " + std::generic_category().message(outError);
        printUsageError(console.err, "ombrel-format", "can't write standard output" + reason,
                        console.getErrColor(arguments.color));
        return ExitStatus::WriteFailed;
    }

    const Arguments& arguments;
    Console& console;
    FileSystem& files;
    FileFormatter formatter;
    Summary summary;
    ExitStatus status = ExitStatus::Done;
    int outError = 0; ///< why standard output takes no more
};

} // namespace

ExitStatus run(const Arguments& arguments, Console& console, FileSystem& files) {
    if (arguments.changes.isAsked()) {
        return runOnChanges(arguments, console, files);
    }
    return Run(arguments, console, files).processAll();
}

} // namespace ombrel
