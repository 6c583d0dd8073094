// Every input that once made the program crash, hang, lose text or misjudge a file, cut down to what matters:
// sources are formatted by both engines, options files are used for a source, and what comes out stays as it
// is when it is formatted again.

#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <numeric>
#include <set>

namespace {

constexpr int unsafe = 5; // this and more would be faults of ours

ProgramOutcome runOn(const std::filesystem::path& path, const char* engine) {
    if (path.extension() == ".json") {
        return runProgram({"--config", path, "--engine", engine}, "if a\nx\nend\n");
    }
    return runProgram({"--no-config", "--engine", engine, path});
}

/// Which of them are refused, and how, is in statuses.txt.
TEST(Regression, NothingThatOnceFailedFailsAgain) {
    const auto folder = std::filesystem::path(OMBREL_SOURCE_DIR) / "tests/regression";
    std::set<std::string> statuses;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        std::string row = entry.path().filename();
        if (row == "statuses.txt") {
            continue;
        }
        for (const char* engine : {"line", "tree"}) {
            const ProgramOutcome once = runOn(entry.path(), engine);
            row += ' ' + std::to_string(once.status);
            EXPECT_LT(once.status, unsafe) << entry.path() << engine << once.err;
            EXPECT_EQ(once.status == 0, once.err.empty()) << entry.path() << engine << once.err;
            if (once.status == 0) {
                EXPECT_EQ(runProgram({"--no-config", "--engine", engine}, once.out).out, once.out)
                    << entry.path();
            }
        }
        statuses.insert(row + '\n');
    }
    EXPECT_EQ(std::accumulate(statuses.begin(), statuses.end(), std::string()),
              readFile(folder / "statuses.txt"));
}

} // namespace
