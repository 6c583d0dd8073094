#pragma once

#include "Arguments.h"
#include "Console.h"
#include "ExitStatus.h"
#include "FileSystem.h"

#include <string>

namespace ombrel {

/// What became of one input.
struct FileResult {
    ExitStatus status = ExitStatus::Done;
    bool isChanged = false; ///< it was formatted, or would be
    std::string out;        ///< for standard output, bytes
    std::string messages;   ///< for standard error, whole lines
};

/// Does with one input after the other what the arguments ask for. It keeps nothing from one to the next and
/// shows nothing itself, so `process` may run on several threads at once. Arguments, console and files are
/// the caller's and have to outlive it.
class FileFormatter {
public:
    FileFormatter(const Arguments& arguments, Console& console, FileSystem& files)
        : arguments(arguments), console(console), files(files) {}

    /// Reads the input, formats it, and writes it back if that was asked for; `-` is standard input, which
    /// only one of the inputs may be.
    FileResult process(const std::string& path) const;

    /// What becomes of an input that can't even be read.
    FileResult fail(const std::string& path, const Problem& problem) const;

private:
    const Arguments& arguments;
    Console& console;
    FileSystem& files;
};

} // namespace ombrel
