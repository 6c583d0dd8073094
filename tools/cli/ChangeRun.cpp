#include "cli/ChangeRun.h"

#include "cli/ReporterSet.h"
#include "cli/Run.h"
#include "cli/Statistics.h"
#include "format/EditAdoption.h"
#include "git/ChangedFiles.h"
#include "git/StagedFiles.h"
#include "text/Printable.h"

#include <ostream>
#include <utility>
#include <variant>

namespace ombrel {

namespace {

void print(const std::vector<Note>& notes, const Arguments& arguments, Console& console) {
    for (const Note& note : notes) {
        if (!arguments.quiet) {
            console.err << getPrintableName(note.path) << ": note: " << getPrintableName(note.text) << '\n';
        }
    }
}

/// The arguments of a run that formats these files as if the user had named them.
Arguments nameFiles(Arguments arguments, const std::vector<ChangedFile>& files) {
    const bool isWriting = !arguments.check && !arguments.diff && !arguments.checkSyntax;
    arguments.inPlace = arguments.inPlace || (arguments.changes.isStaged && isWriting);
    arguments.search.forcesExclusion = true;
    arguments.search.arePathsNamed = false;
    arguments.search.allowsNoFiles = true;
    arguments.changes = {};
    arguments.paths.clear();
    for (const ChangedFile& file : files) {
        arguments.paths.push_back(file.path);
    }
    return arguments;
}

ChangedLines getLines(const std::vector<ChangedFile>& files) {
    ChangedLines lines;
    for (const ChangedFile& file : files) {
        if (file.lines) {
            lines.emplace(file.path, *file.lines);
        }
    }
    return lines;
}

ChangedFiles find(const Git& git, const ChangeOptions& options, const std::vector<std::string>& paths,
                  Statistics& statistics) {
    const Stopwatch::Lap lap(statistics.getWatch(Stage::Search));
    return findChangedFiles(git, options, paths);
}

ExitStatus runWithGit(const Arguments& arguments, Console& console, FileSystem& files,
                      Statistics& statistics) {
    const Git git;
    ChangeOptions options = arguments.changes;
    options.takesWhole = options.takesWhole || arguments.checkSyntax;
    const ChangedFiles changed = find(git, options, arguments.paths, statistics);
    print(changed.notes, arguments, console);
    const Arguments named = nameFiles(arguments, changed.files);
    const ChangedLines lines = getLines(changed.files);
    if (!arguments.changes.isStaged) {
        return runOnPaths(named, lines, console, files, statistics);
    }
    StagedFiles staged(git, changed.files, files, adoptEdits);
    const ExitStatus status = runOnPaths(named, lines, console, staged, statistics);
    print(staged.getNotes(), arguments, console);
    return status;
}

} // namespace

ExitStatus runOnChanges(const Arguments& arguments, Console& console, FileSystem& files,
                        Statistics& statistics) {
    try {
        return runWithGit(arguments, console, files, statistics);
    } catch (const GitError& error) {
        ReporterSet reporters(arguments, console, files, console.getErrColor(arguments.color));
        const Problem problem(Code::GitFailed, error.what());
        reporters.addFailure(problem);
        return getWorse(getExitStatus(problem), reporters.finish());
    }
}

} // namespace ombrel
