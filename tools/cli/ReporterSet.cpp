#include "cli/ReporterSet.h"

#include "files/Paths.h"
#include "files/RepositoryNames.h"
#include "reports/CheckstyleReporter.h"
#include "reports/GithubReporter.h"
#include "reports/GitlabReporter.h"
#include "reports/HumanReporter.h"
#include "reports/JsonReporter.h"
#include "reports/JunitReporter.h"
#include "reports/RdjsonReporter.h"
#include "reports/SarifReporter.h"

#include <algorithm>
#include <filesystem>
#include <system_error>

namespace ombrel {

namespace {

/// Turns the paths that the user knows into those from the top of a file's repository. A file that is a link
/// keeps its name.
class RepositoryPaths {
public:
    explicit RepositoryPaths(FileSystem& files) : names(files), currentFolder(getCurrentFolder()) {}

    std::string operator()(const std::string& path) {
        const std::filesystem::path absolute = std::filesystem::path(currentFolder) / path;
        std::error_code error;
        const auto folder = std::filesystem::weakly_canonical(absolute.parent_path(), error);
        const auto real = error ? absolute.lexically_normal() : folder / absolute.filename();
        return names.getName(real, currentFolder);
    }

private:
    RepositoryNames names;
    std::string currentFolder;
};

} // namespace

ReporterSet::ReporterSet(const Arguments& arguments, Console& console, FileSystem& files, Color errorColor)
    : arguments(arguments), console(console), files(files), errorColor(errorColor) {
    for (const ReporterChoice& choice : arguments.reporters) {
        open(choice);
    }
}

void ReporterSet::open(const ReporterChoice& choice) {
    auto buffer = choice.file.empty() ? nullptr : std::make_unique<std::ostringstream>();
    if (buffer) {
        buffer->exceptions(std::ios::badbit); // where memory runs out
    }
    auto reporter = makeReporter(choice.kind, buffer ? *buffer : console.out);
    reports.push_back({choice, std::move(buffer), std::move(reporter)});
}

std::unique_ptr<Reporter> ReporterSet::makeReporter(ReporterKind kind, std::ostream& stream) const {
    switch (kind) {
    case ReporterKind::Json:
        return makeJsonReporter(stream);
    case ReporterKind::Github:
        return makeGithubReporter(stream);
    case ReporterKind::Sarif:
        return makeSarifReporter(stream, OMBREL_VERSION);
    case ReporterKind::Gitlab:
        return makeGitlabReporter(stream, RepositoryPaths(files));
    case ReporterKind::Junit:
        return makeJunitReporter(stream);
    case ReporterKind::Checkstyle:
        return makeCheckstyleReporter(stream);
    case ReporterKind::Rdjson:
        return makeRdjsonReporter(stream);
    case ReporterKind::Human:
        break;
    }
    const HumanStyle style{errorColor, printsNames(arguments), arguments.endsNamesInNul(),
                           arguments.verbose && !arguments.checkSyntax, !arguments.quiet};
    return std::make_unique<HumanReporter>(console.out, console.err, style);
}

bool ReporterSet::wantsFirstChangedLine() const {
    return std::any_of(reports.begin(), reports.end(),
                       [](const Report& report) { return report.choice.kind != ReporterKind::Human; });
}

void ReporterSet::add(const FileOutcome& outcome) {
    for (const Report& report : reports) {
        report.reporter->add(outcome);
    }
}

void ReporterSet::addFailure(const Problem& problem) {
    for (const Report& report : reports) {
        report.reporter->addFailure(problem);
    }
}

ExitStatus ReporterSet::finish() {
    ExitStatus status = ExitStatus::Done;
    for (const Report& report : reports) {
        report.reporter->finish();
        if (report.buffer) {
            status = getWorse(status, write(report));
        }
    }
    return status;
}

ExitStatus ReporterSet::write(const Report& report) {
    try {
        files.write(report.choice.file, report.buffer->str());
        return ExitStatus::Done;
    } catch (const FileError& error) {
        printProblem(console.err, report.choice.file, {Code::WriteFailed, error.what()}, {}, errorColor);
        return ExitStatus::WriteFailed;
    }
}

} // namespace ombrel
