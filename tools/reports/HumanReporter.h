#pragma once

#include "reports/Reporter.h"

#include <iosfwd>

namespace ombrel {

struct HumanStyle {
    Color color = Color::Off;
    bool printsNames = false;    ///< names of files that would change, on standard output
    bool endsNamesInNul = false; ///< as they are, for programs
    bool printsStatus = false;   ///< what was done with each file, and notes
    bool printsWarnings = false; ///< errors are always printed
};

/// Messages with their source lines, as text for people.
class HumanReporter : public Reporter {
public:
    HumanReporter(std::ostream& out, std::ostream& err, HumanStyle style)
        : out(out), err(err), style(style) {}

    void add(const FileOutcome& outcome) override;
    void addFailure(const Problem& problem) override;

private:
    bool isPrinted(const Problem& problem) const;

    std::ostream& out;
    std::ostream& err;
    HumanStyle style;
};

} // namespace ombrel
