#pragma once

#include "files/FileSystem.h"

#include <string>
#include <vector>

struct ProgramOutcome {
    int status;
    std::string out;
    std::string err;
};

/// Runs ombrel-format within this process, with the files of the machine. A usage error's text is in `err`.
ProgramOutcome runProgram(const std::vector<std::string>& words, const std::string& input = {});

/// The same with other files.
ProgramOutcome runProgram(const std::vector<std::string>& words, const std::string& input,
                          ombrel::FileSystem& files);
