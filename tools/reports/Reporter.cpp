#include "reports/Reporter.h"

#include <algorithm>

#include <fmt/format.h>

namespace ombrel {

const char* getWord(FileStatus status) {
    switch (status) {
    case FileStatus::Unchanged:
        return "unchanged";
    case FileStatus::Formatted:
        return "formatted";
    case FileStatus::WouldChange:
        return "would-change";
    case FileStatus::Failed:
        break;
    }
    return "failed";
}

namespace {

constexpr std::size_t mostChanges = 20; // of one file, as findings of their own

void addChanges(Problems& findings, const std::vector<Change>& changes) {
    for (std::size_t i = 0; i < std::min(mostChanges, changes.size()); ++i) {
        findings.push_back(makeFinding(changes[i]));
    }
    if (changes.size() > mostChanges) {
        findings.push_back(
            {Code::NotFormatted,
             fmt::format("{} more places would change, from here on", changes.size() - mostChanges),
             changes[mostChanges].begin.line, changes[mostChanges].begin.column});
    }
}

} // namespace

Problem makeFinding(const Change& change) {
    return {Code::NotFormatted, change.what, change.begin.line, change.begin.column};
}

Problems getFindings(const FileOutcome& outcome) {
    Problems findings;
    findings.reserve(outcome.messages.size() + 1);
    std::transform(outcome.messages.begin(), outcome.messages.end(), std::back_inserter(findings),
                   [](const Message& message) { return message.problem; });
    addChanges(findings, outcome.changes);
    if (outcome.status == FileStatus::WouldChange && outcome.changes.empty()) {
        findings.push_back({Code::NotFormatted,
                            "the file is not formatted; this is the first line that would change",
                            outcome.firstChangedLine});
    }
    return findings;
}

void FindingReporter::add(const FileOutcome& outcome) {
    for (const Problem& problem : getFindings(outcome)) {
        addFinding(outcome.path, problem);
    }
}

} // namespace ombrel
