#include "reports/HumanReporter.h"

#include <algorithm>
#include <ostream>

namespace ombrel {

namespace {

/// "would-change" is for programs.
std::string getReadableWord(FileStatus status) {
    std::string word = getWord(status);
    std::replace(word.begin(), word.end(), '-', ' ');
    return word;
}

} // namespace

void HumanReporter::add(const FileOutcome& outcome) {
    for (const Message& message : outcome.messages) {
        if (isPrinted(message.problem)) {
            printMessage(err, outcome.path, message, style.color);
        }
    }
    if (style.printsStatus && outcome.status != FileStatus::Failed) {
        err << getPrintableName(outcome.path) << ": " << getReadableWord(outcome.status) << '\n';
    }
    if (style.printsNames && outcome.status == FileStatus::WouldChange) {
        out << (style.endsNamesInNul ? outcome.path + '\0' : getQuotedName(outcome.path) + '\n');
    }
}

bool HumanReporter::isPrinted(const Problem& problem) const {
    switch (problem.severity) {
    case Severity::Note:
        return style.printsStatus;
    case Severity::Warning:
        return style.printsWarnings;
    case Severity::Error:
        break;
    }
    return true;
}

void HumanReporter::addFailure(const Problem& problem) {
    printRunProblem(err, "ombrel-format", problem, style.color);
}

} // namespace ombrel
