#pragma once

#include "cli/Arguments.h"
#include "cli/Console.h"
#include "cli/ExitStatus.h"
#include "files/FileSystem.h"
#include "reports/Reporter.h"

#include <memory>
#include <sstream>
#include <vector>

namespace ombrel {

/// All reporters that the user chose, and where their reports go. A report with a file of its own is kept
/// in memory until finish(). Keeps references to what it is made from.
class ReporterSet {
public:
    /// `errorColor` is for messages on standard error.
    ReporterSet(const Arguments& arguments, Console& console, FileSystem& files, Color errorColor);

    /// True if some report names the first line of a file that would change.
    bool wantsFirstChangedLine() const;

    void add(const FileOutcome& outcome);
    void addFailure(const Problem& problem);

    /// Ends the reports and writes those that go to files, each whole or not at all. Gives WriteFailed, and
    /// says so on standard error, if one of them can't be written.
    ExitStatus finish();

private:
    struct Report {
        const ReporterChoice& choice;
        std::unique_ptr<std::ostringstream> buffer; ///< null if it goes to the console
        std::unique_ptr<Reporter> reporter;
    };

    void open(const ReporterChoice& choice);
    std::unique_ptr<Reporter> makeReporter(ReporterKind kind, std::ostream& stream) const;
    ExitStatus write(const Report& report);

    const Arguments& arguments;
    Console& console;
    FileSystem& files;
    Color errorColor;
    std::vector<Report> reports;
};

} // namespace ombrel
