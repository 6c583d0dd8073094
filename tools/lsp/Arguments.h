#pragma once

#include "diagnostics/CommandLine.h"

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

/// Reads the command line, `argv[0]` included. Fails with one UsageError.
Result<std::variant<Arguments, PrintedText>> parseArguments(int argc, const char* const* argv);

} // namespace ombrel::lsp
