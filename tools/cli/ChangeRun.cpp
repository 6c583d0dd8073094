#include "cli/ChangeRun.h"

#include "cli/ReporterSet.h"
#include "cli/Run.h"
#include "format/SafetyCheck.h"
#include "git/ChangedFiles.h"
#include "git/StagedFiles.h"
#include "text/Printable.h"
#include "text/TextEncoding.h"

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

/// The arguments of a run that formats these changes as if the user had named them.
Arguments nameChanges(Arguments arguments, const std::vector<ChangedFile>& files) {
    const bool isWriting = !arguments.check && !arguments.diff && !arguments.checkSyntax;
    arguments.inPlace = arguments.inPlace || (arguments.changes.isStaged && isWriting);
    arguments.search.forcesExclusion = true;
    arguments.search.allowsNoFiles = true;
    arguments.changes = {};
    arguments.paths.clear();
    for (const ChangedFile& file : files) {
        arguments.paths.push_back(file.path);
        if (file.lines) {
            arguments.changedLines.emplace(file.path, *file.lines);
        }
    }
    return arguments;
}

std::u16string getText(const std::string& bytes) {
    return std::get<DecodedText>(decode(bytes)).text;
}

bool areLinesKept(const std::string& before, const std::string& after) {
    return !checkOnlyEdgesChanged(getText(before), getText(after));
}

ExitStatus runWithGit(const Arguments& arguments, Console& console, FileSystem& files) {
    const Git git;
    ChangeOptions options = arguments.changes;
    options.takesWhole = options.takesWhole || arguments.checkSyntax;
    const ChangedFiles changed = findChangedFiles(git, options, arguments.paths);
    print(changed.notes, arguments, console);
    const Arguments named = nameChanges(arguments, changed.files);
    if (!arguments.changes.isStaged) {
        return run(named, console, files);
    }
    StagedFiles staged(git, changed.files, files, areLinesKept);
    const ExitStatus status = run(named, console, staged);
    print(staged.getNotes(), arguments, console);
    return status;
}

} // namespace

ExitStatus runOnChanges(const Arguments& arguments, Console& console, FileSystem& files) {
    try {
        return runWithGit(arguments, console, files);
    } catch (const GitError& error) {
        ReporterSet reporters(arguments, console, files, console.getErrColor(arguments.color));
        reporters.addFailure({ExitStatus::Usage, error.what()});
        return getWorse(ExitStatus::Usage, reporters.finish());
    }
}

} // namespace ombrel
