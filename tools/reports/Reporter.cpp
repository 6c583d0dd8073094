#include "reports/Reporter.h"

#include <algorithm>
#include <cstddef>
#include <iterator>

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

Problem makeFinding(const Change& change) {
    return {Code::NotFormatted, change.what, change.begin.line, change.begin.column};
}

namespace {

constexpr std::size_t mostChanges = 20; // of one file, as findings of their own

Problems makeFindings(const std::vector<Change>& changes) {
    const auto shown = std::min(mostChanges, changes.size());
    Problems findings;
    findings.reserve(shown + 1);
    std::transform(changes.begin(), changes.begin() + static_cast<std::ptrdiff_t>(shown),
                   std::back_inserter(findings), makeFinding);
    if (changes.size() > mostChanges) {
        findings.push_back(
            {Code::NotFormatted,
             fmt::format("{} more places would change, from here on", changes.size() - mostChanges),
             changes[mostChanges].begin.line, changes[mostChanges].begin.column});
    }
    return findings;
}

} // namespace

Problems getOtherFindings(const FileOutcome& outcome) {
    Problems findings;
    findings.reserve(outcome.messages.size() + 1);
    std::transform(outcome.messages.begin(), outcome.messages.end(), std::back_inserter(findings),
                   [](const Message& message) { return message.problem; });
    if (outcome.status == FileStatus::WouldChange && outcome.changes.empty()) {
        findings.push_back({Code::NotFormatted,
                            "the file is not formatted; this is the first line that would change",
                            outcome.firstChangedLine});
    }
    return findings;
}

Problems getFindings(const FileOutcome& outcome) {
    Problems findings = getOtherFindings(outcome);
    Problems changes = makeFindings(outcome.changes);
    std::move(changes.begin(), changes.end(), std::back_inserter(findings));
    return findings;
}

void FindingReporter::add(const FileOutcome& outcome) {
    for (const Problem& problem : getOtherFindings(outcome)) {
        addFinding(outcome.path, problem);
    }
    addChanges(outcome.path, outcome.changes);
}

void FindingReporter::addChanges(const std::string& path, const std::vector<Change>& changes) {
    for (const Problem& problem : makeFindings(changes)) {
        addFinding(path, problem);
    }
}

} // namespace ombrel
