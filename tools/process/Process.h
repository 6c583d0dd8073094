#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// How another program ended.
struct ProcessResult {
    int status; ///< its exit status; 128 + number if a signal ended it
    std::string out;
    std::string err;
};

/// Our own environment: lines NAME=VALUE.
std::vector<std::string> getEnvironment();

/// What a program may take. It is killed when it takes more.
struct ProcessLimits {
    std::chrono::milliseconds timeLimit;
    std::chrono::milliseconds patience = timeLimit; ///< `onSlow` is called then, once
    std::function<void()> onSlow = [] {};           ///< what it throws is passed on; the program is killed
    std::size_t outputLimit = std::string::npos;    ///< bytes of standard output
    int client = -1; ///< the socket of someone who waits for the answer; -1: nobody could stop waiting
};

/// Runs a program found on the PATH, without a shell: feeds it `input` (nothing: the null device, never our
/// own standard input), and reads what it writes until it ends, however much of both there is. `words` are
/// its arguments, its name the first of them; `environment` has lines NAME=VALUE.
///
/// Throws std::system_error if it can't be started, with no_such_file_or_directory if it isn't there, and
/// with timed_out, value_too_large (its output) or operation_canceled (the client has closed its socket) if
/// it was killed. May be called on several threads at once.
ProcessResult runProcess(const std::vector<std::string>& words, const std::vector<std::string>& environment,
                         std::string_view input, const ProcessLimits& limits);

} // namespace ombrel
