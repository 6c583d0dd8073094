#pragma once

#include <optional>
#include <string>
#include <vector>

namespace ombrel {

struct CommandResult {
    int status; ///< what it exited with, 128 + number if a signal ended it
    std::string out;
};

/// Runs a program that is found on the user's path, with no input and nobody to see its messages, and without
/// the environment variables of these names. Nothing if it can't be started.
std::optional<CommandResult> runCommand(const std::vector<std::string>& words,
                                        const std::vector<std::string>& removedVariables);

} // namespace ombrel
