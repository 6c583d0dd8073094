#pragma once

#include "diagnostics/Result.h"

#include <cstdint>
#include <optional>
#include <string>
#include <variant>

namespace ombrel::lsp {

/// The command line of the program.
struct Arguments {
    std::string logFile;                   ///< empty: no log
    std::optional<std::int64_t> processId; ///< of the editor
};

/// A text that was asked for instead of a server: help, version.
struct PrintedText {
    std::string text;
};

/// Reads the command line, `argv[0]` included. Fails with one UsageError.
Result<std::variant<Arguments, PrintedText>> parseArguments(int argc, const char* const* argv);

} // namespace ombrel::lsp
