#include "FileFormatter.h"

#include "ChangedFiles.h"
#include "Diff.h"
#include "InputReader.h"
#include "LineEngine.h"
#include "SyntaxCheck.h"
#include "TextEncoding.h"

#include <new>
#include <sstream>
#include <variant>

namespace ombrel {

namespace {

ExitStatus getStatus(FileError::Kind kind) {
    switch (kind) {
    case FileError::Kind::Unreadable:
        return ExitStatus::Usage;
    case FileError::Kind::TooLarge:
        return ExitStatus::Refused;
    case FileError::Kind::Unwritable:
        break;
    }
    return ExitStatus::WriteFailed;
}

/// The work on one input.
class Task {
public:
    Task(const Arguments& arguments, Console& console, FileSystem& files, const std::string& path)
        : arguments(arguments), console(console), files(files), path(path),
          name(path == "-" ? arguments.stdinName : path) {}

    FileResult run() {
        try {
            process(readInput(path, console.in, files));
        } catch (const FileError& error) {
            report({getStatus(error.kind), error.what()}, {});
        } catch (const std::bad_alloc&) {
            report({ExitStatus::Refused, "not enough memory for this text"}, {});
        }
        return std::move(result);
    }

    /// The result of an input that can't be taken.
    FileResult fail(const Problem& problem) {
        report(problem, {});
        return std::move(result);
    }

private:
    void process(std::string bytes) {
        auto decoded = decode(bytes);
        if (const auto* problem = std::get_if<Problem>(&decoded)) {
            report(*problem, decodeLossy(bytes));
            return;
        }
        auto& source = std::get<DecodedText>(decoded);
        if (arguments.checkSyntax) {
            checkSyntax(source.text);
        } else {
            format(std::move(bytes), source);
        }
    }

    void checkSyntax(const std::u16string& text) {
        for (const Problem& problem : findSyntaxErrors(text)) {
            report(problem, text);
        }
    }

    void format(std::string bytes, const DecodedText& source) {
        auto formatted = formatLines(source.text, arguments.lineOptions, getLines(source.text));
        if (const auto* problem = std::get_if<Problem>(&formatted)) {
            report(*problem, source.text);
            return;
        }
        auto& text = std::get<std::u16string>(formatted);
        if (text == source.text) {
            deliverUnchanged(std::move(bytes));
        } else {
            deliverChanged(bytes, encode({std::move(text), source.hasByteOrderMark}));
        }
    }

    std::vector<LineRange> getLines(std::u16string_view text) const {
        const auto changed = arguments.changedLines.find(path);
        return changed == arguments.changedLines.end() ? arguments.lines
                                                       : countAllLineEnds(text, changed->second);
    }

    void deliverUnchanged(std::string bytes) {
        note("unchanged");
        if (arguments.isPrinting()) {
            result.out = std::move(bytes);
        }
    }

    void deliverChanged(const std::string& before, std::string after) {
        if (arguments.inPlace) {
            files.replace(path, before, after);
        }
        result.isChanged = true;
        note(arguments.isPrinting() || arguments.inPlace ? "formatted" : "would change");
        if (arguments.isPrinting()) {
            result.out = std::move(after);
        } else if (!arguments.inPlace) {
            result.status = ExitStatus::WouldChange;
            showChange(before, after);
        }
    }

    void showChange(const std::string& before, const std::string& after) {
        if (arguments.diff) {
            std::ostringstream stream;
            printDiff(stream, name, before, after, console.getOutColor(arguments.color));
            result.out = std::move(stream).str();
        } else if (!arguments.quiet) {
            result.out = name + '\n';
        }
    }

    void note(const char* what) {
        if (arguments.verbose) {
            result.messages += getPrintableName(name) + ": " + what + '\n';
        }
    }

    void report(const Problem& problem, std::u16string_view text) {
        std::ostringstream stream;
        printProblem(stream, name, problem, text, console.getErrColor(arguments.color));
        result.messages += std::move(stream).str();
        result.status = getWorse(result.status, problem.status);
    }

    const Arguments& arguments;
    Console& console;
    FileSystem& files;
    const std::string& path;
    const std::string& name; ///< for people
    FileResult result;
};

} // namespace

FileResult FileFormatter::process(const std::string& path) const {
    return Task(arguments, console, files, path).run();
}

FileResult FileFormatter::fail(const std::string& path, const Problem& problem) const {
    return Task(arguments, console, files, path).fail(problem);
}

} // namespace ombrel
