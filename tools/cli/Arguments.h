#pragma once

#include "cli/ReporterOption.h"
#include "diagnostics/CommandLine.h"
#include "files/FileSystem.h"
#include "files/SearchOptions.h"
#include "format/Options.h"
#include "git/ChangeOptions.h"
#include "options/OptionsResolver.h"
#include "text/LineRange.h"

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <variant>
#include <vector>

namespace ombrel {

enum class ColorChoice { Auto, Always, Never };

/// What the user asked for, checked and with all defaults filled in.
struct Arguments {
    std::vector<std::string>
        paths;                   ///< "-" is standard input; at least one, unless a list or git supplies them
    bool isInputImplied = false; ///< standard input is read because nothing else was named
    SearchOptions search;
    ChangeOptions changes;
    bool inPlace = false;
    bool check = false;
    bool diff = false;
    bool checkSyntax = false; ///< parse instead of formatting; can't be combined with other modes or lines
    bool quiet = false;
    bool verbose = false;
    bool printConfig = false;     ///< print the options that apply to the paths, and stop
    bool init = false;            ///< write a first options file, and stop
    bool mergesReports = false;   ///< the paths are reports of other runs; reported as with `check`
    std::vector<LineRange> lines; ///< none: all lines
    OptionsRequest options;
    std::string stdinName = "<stdin>";
    std::vector<ReporterChoice> reporters; ///< at least one
    std::string bugReport;                 ///< where to write what failed with status 5; empty: nowhere
    bool printsStatistics = false;
    ColorChoice color = ColorChoice::Auto;
    std::chrono::milliseconds timeLimit{0}; ///< for the work on one file's text; 0: as long as it takes
    std::uint32_t jobs = 0;                 ///< threads, 0: as many as the machine has cores
    ReplacementRules replacement;

    /// The name of an input in messages.
    const std::string& getShownName(const std::string& path) const { return path == "-" ? stdinName : path; }

    /// -0 is about the list of paths if there is one, otherwise about the names of --check.
    bool endsNamesInNul() const { return search.isPathListNulEnded && search.pathList.empty(); }

    bool isPrinting() const { return !inPlace && !check && !diff && !checkSyntax; }
};

/// Reads the command line of the program, `argv[0]` included. Fails with one UsageError.
/// `helpWidth` is the widest line of the help, in columns.
Result<std::variant<Arguments, PrintedText>> parseArguments(int argc, const char* const* argv,
                                                            std::size_t helpWidth = 100);

/// An option of the command line as users see it.
struct OptionDescription {
    std::vector<std::string> names; ///< with their dashes, the short one first
    std::string value;              ///< what follows it: "N", "FILE", "line|tree"; empty for a flag
    std::string help;               ///< what it does, with the default in brackets at the end
    std::string group;              ///< its heading in the help
};

/// All options, from which manual and completions are made, in the order of the help.
std::vector<OptionDescription> describeCommandLine();

} // namespace ombrel
