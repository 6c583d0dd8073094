#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

struct ProgramOutcome {
    int status;
    std::string out;
    std::string err;
};

/// Runs ombrel-format within this process, with the files of the machine. A usage error's text is in `err`.
ProgramOutcome runProgram(const std::vector<std::string>& words, const std::string& input = {});

/// A folder of the test's own, gone behind the test.
class TemporaryFolder : public testing::Test {
protected:
    TemporaryFolder();
    ~TemporaryFolder() override;

    std::filesystem::path folder;
};
