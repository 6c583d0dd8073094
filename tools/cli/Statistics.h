#pragma once

#include "cli/Arguments.h"
#include "cli/FileFormatter.h"
#include "files/FileSearch.h"
#include "text/Stopwatch.h"

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace ombrel {

/// What --stats prints at the end of a run: what became of the files, and how long each stage took. If it
/// isn't asked for, nothing is measured or counted.
class Statistics {
public:
    explicit Statistics(const Arguments& arguments)
        : isChecking(arguments.checkSyntax), isOn(arguments.printsStatistics) {
        wholeRun.emplace(isOn ? &total : nullptr);
    }

    /// For work on the main thread; null if nothing is to be measured.
    Stopwatch* getWatch(Stage stage) { return isOn ? &measures.times[stage] : nullptr; }

    void addFound(const std::vector<FoundFile>& found);
    void add(const FileResult& result);
    void setThreadCount(std::size_t count) { threadCount = count; }

    /// Several lines for people; empty if nothing is to be printed. To be called once, at the end.
    std::string describe();

private:
    using Counts = std::map<std::string, std::size_t>;

    std::string describeFiles() const;
    std::string describeTimes() const;

    bool isChecking; ///< the syntax; nothing is formatted
    bool isOn;
    FileMeasures measures;
    Counts leftOut; ///< by reason
    Counts failed;  ///< by code
    std::size_t foundCount = 0;
    std::size_t changedCount = 0;
    std::size_t unchangedCount = 0;
    std::size_t threadCount = 1;
    Stopwatch total;
    std::optional<Stopwatch::Lap> wholeRun;
};

} // namespace ombrel
