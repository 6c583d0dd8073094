// Every input that once made the program crash, hang, lose text or misjudge a file, cut down to what matters:
// sources are formatted by both engines, options files are used for a source, and what comes out stays as it
// is when it is formatted again.

#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace {

constexpr int unsafe = 5; // this and more would be faults of ours

ProgramOutcome runOn(const std::filesystem::path& path, const char* engine) {
    if (path.extension() == ".json") {
        return runProgram({"--config", path, "--engine", engine}, "if a\nx\nend\n");
    }
    return runProgram({"--no-config", "--engine", engine, path});
}

TEST(Regression, NothingThatOnceFailedFailsAgain) {
    std::size_t count = 0;
    for (const auto& entry :
         std::filesystem::directory_iterator(std::filesystem::path(OMBREL_SOURCE_DIR) / "tests/regression")) {
        for (const char* engine : {"line", "tree"}) {
            const ProgramOutcome once = runOn(entry.path(), engine);
            EXPECT_LT(once.status, unsafe) << entry.path() << engine << once.err;
            EXPECT_EQ(once.status == 0, once.err.empty()) << entry.path() << engine << once.err;
            if (once.status == 0) {
                EXPECT_EQ(runProgram({"--no-config", "--engine", engine}, once.out).out, once.out)
                    << entry.path();
            }
        }
        ++count;
    }
    EXPECT_GE(count, 20U);
}

} // namespace
