#pragma once

#include "diagnostics/Result.h"

#include <optional>
#include <string>

namespace CLI {
class App;
}

namespace ombrel {

/// A text that a program was asked for instead of its work: help, version.
struct PrintedText {
    std::string text;
};

/// Has the parser read the command line, `argv[0]` included. Fails with one UsageError.
Result<std::optional<PrintedText>> readCommandLine(CLI::App& app, int argc, const char* const* argv);

} // namespace ombrel
