#pragma once

#include "ExitStatus.h"
#include "Options.h"
#include "ReporterOption.h"

#include <string>
#include <variant>
#include <vector>

namespace ombrel {

enum class ColorChoice { Auto, Always, Never };

/// What the user asked for, checked and with all defaults filled in.
struct Arguments {
    std::vector<std::string> paths; ///< at least one; "-" is standard input
    bool inPlace = false;
    bool check = false;
    bool diff = false;
    bool checkSyntax = false; ///< parse instead of formatting; goes with no other mode and no lines
    bool quiet = false;
    bool verbose = false;
    std::vector<LineRange> lines; ///< none: all lines
    Engine engine = Engine::Line;
    LineOptions lineOptions;
    std::string stdinName = "<stdin>";
    std::vector<ReporterChoice> reporters; ///< at least one
    ColorChoice color = ColorChoice::Auto;
};

/// The end of a run before it has begun: help, version, or a usage error.
struct EarlyExit {
    ExitStatus status;
    std::string text; ///< for standard output if the status is Done, otherwise an error
};

/// Reads the command line of the program, `argv[0]` included.
std::variant<Arguments, EarlyExit> parseArguments(int argc, const char* const* argv);

} // namespace ombrel
