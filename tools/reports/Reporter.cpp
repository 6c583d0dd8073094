#include "reports/Reporter.h"

#include <algorithm>

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

Problems getFindings(const FileOutcome& outcome) {
    Problems findings;
    findings.reserve(outcome.messages.size() + 1);
    std::transform(outcome.messages.begin(), outcome.messages.end(), std::back_inserter(findings),
                   [](const Message& message) { return message.problem; });
    if (outcome.status == FileStatus::WouldChange) {
        findings.push_back({Code::NotFormatted,
                            "the file is not formatted; this is the first line that would change",
                            outcome.firstChangedLine});
    }
    return findings;
}

} // namespace ombrel
