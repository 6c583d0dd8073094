#include "cli/Statistics.h"

#include "cli/Summary.h"
#include "text/Printable.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <ctime>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr std::array<std::pair<Stage, const char*>, StageTimes::count> stages = {{
    {Stage::Options, "options"},
    {Stage::Search, "finding files"},
    {Stage::Reading, "reading"},
    {Stage::Formatting, "formatting"},
    {Stage::Checking, "checking"},
    {Stage::Writing, "writing"},
    {Stage::Reporting, "reporting"},
}};

std::string makeRow(const char* name, Stopwatch::Duration elapsed, Stopwatch::Duration processorTime) {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    return fmt::format("  {:<13}  {:>9.2f} ms  {:>9.2f} ms\n", name, Milliseconds(elapsed).count(),
                       Milliseconds(processorTime).count());
}

/// Of all threads, from the start of the process.
Stopwatch::Duration getProcessTime() {
    timespec time{};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

std::size_t sum(const std::map<std::string, std::size_t>& counts) {
    std::size_t total = 0;
    for (const auto& [reason, count] : counts) {
        total += count;
    }
    return total;
}

std::string makeList(const std::map<std::string, std::size_t>& counts) {
    std::string list;
    for (const auto& [reason, count] : counts) {
        list += fmt::format("  {:>9}  {}\n", groupDigits(count), getPrintableName(reason));
    }
    return list;
}

std::string getReason(const FoundFile& file) {
    return file.reason.starts_with("in shard ") ? "in another shard" : file.reason;
}

} // namespace

void Statistics::addFound(const std::vector<FoundFile>& found) {
    if (!isOn) {
        return;
    }
    foundCount += found.size();
    for (const FoundFile& file : found) {
        if (file.verdict == FoundFile::Verdict::Left) {
            ++leftOut[getReason(file)];
        }
    }
}

void Statistics::add(const FileResult& result) {
    if (!isOn) {
        return;
    }
    if (result.measures) {
        measures.add(*result.measures);
    }
    const auto& messages = result.outcome.messages;
    const auto error = std::find_if(messages.begin(), messages.end(),
                                    [](const Message& message) { return message.problem.isError(); });
    if (error != messages.end()) {
        ++failed[std::string(getInfo(error->problem.code).name)];
    } else if (!result.isPassed) {
        ++(result.isChanged() ? changedCount : unchangedCount);
    }
}

std::string Statistics::describe() {
    if (!isOn) {
        return {};
    }
    wholeRun.reset();
    return describeFiles() + describeTimes();
}

std::string Statistics::describeFiles() const {
    const std::string done = isChecking ? fmt::format("{} parsed", groupDigits(unchangedCount))
                                        : fmt::format("{} formatted ({} changed, {} unchanged)",
                                                      groupDigits(changedCount + unchangedCount),
                                                      groupDigits(changedCount), groupDigits(unchangedCount));
    std::string text = fmt::format("{} found: {}, {} failed, {} left out\n", groupDigits(foundCount), done,
                                   groupDigits(sum(failed)), groupDigits(sum(leftOut)));
    text += failed.empty() ? "" : "failed:\n" + makeList(failed);
    text += leftOut.empty() ? "" : "left out:\n" + makeList(leftOut);
    return text + fmt::format("{} bytes in {} lines\n", groupDigits(measures.byteCount),
                              groupDigits(measures.lineCount));
}

std::string Statistics::describeTimes() const {
    std::string text = fmt::format("  {:<13}  {:>12}  {:>12}\n", "stage", "elapsed", "processor");
    for (const auto& [stage, name] : stages) {
        const Stopwatch& watch = measures.times[stage];
        text += makeRow(name, watch.getElapsed(), watch.getProcessorTime());
    }
    text += makeRow("whole run", total.getElapsed(), getProcessTime());
    if (threadCount > 1) {
        text +=
            fmt::format("Stages are sums over {} threads that work at the same time, so they can take more "
                        "than the whole run.\n",
                        threadCount);
    }
    return text;
}

} // namespace ombrel
