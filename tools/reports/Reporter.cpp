#include "reports/Reporter.h"

#include "text/LineSplitter.h"

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

std::uint32_t findFirstChangedLine(std::u16string_view before, std::u16string_view after) {
    LineSplitter beforeLines(before);
    LineSplitter afterLines(after);
    for (std::uint32_t number = 1;; ++number) {
        const auto a = beforeLines.getNext();
        const auto b = afterLines.getNext();
        if (!a || !b || a->content != b->content || a->end != b->end) {
            return number;
        }
    }
}

std::vector<Problem> getFindings(const FileOutcome& outcome) {
    std::vector<Problem> findings;
    findings.reserve(outcome.messages.size() + 1);
    std::transform(outcome.messages.begin(), outcome.messages.end(), std::back_inserter(findings),
                   [](const Message& message) { return message.problem; });
    if (outcome.status == FileStatus::WouldChange) {
        findings.push_back({ExitStatus::WouldChange,
                            "the file is not formatted; this is the first line that would change",
                            outcome.firstChangedLine});
    }
    return findings;
}

} // namespace ombrel
