#include "Run.h"

#include "Diff.h"
#include "LineEngine.h"
#include "Message.h"
#include "SyntaxCheck.h"
#include "TextEncoding.h"
#include "options/OptionsReport.h"
#include "options/StarterFile.h"

#include <array>
#include <cerrno>
#include <istream>
#include <new>
#include <optional>
#include <ostream>
#include <system_error>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr const char* missingTreeEngine =
    "the tree engine needs the companion library libca_formatting_devtools.so, which isn't there; build the "
    "project and install it (cmake --install build/release), so that the library stands in the folder of "
    "libombrel_host.so or in devtools/ under it";

constexpr const char* linesWithTree = "--lines goes with the line engine";

Color chooseColor(ColorChoice choice, bool isTerminal, bool isUnwanted) {
    const bool automatic = isTerminal && !isUnwanted;
    return choice == ColorChoice::Always || (choice == ColorChoice::Auto && automatic) ? Color::On
                                                                                       : Color::Off;
}

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

std::string readStream(std::istream& stream) {
    std::string bytes;
    std::array<char, 1 << 16> buffer;
    while (stream.read(buffer.data(), buffer.size()) || stream.gcount() > 0) {
        bytes.append(buffer.data(), static_cast<std::size_t>(stream.gcount()));
        if (bytes.size() > maximalByteCount) {
            throw FileError(FileError::Kind::TooLarge, "this text is too large: 4 GiB is the limit");
        }
    }
    if (stream.bad()) {
        throw FileError(FileError::Kind::Unreadable, "can't read standard input");
    }
    return bytes;
}

class Run {
public:
    Run(const Arguments& arguments, Console& console, FileSystem& files)
        : arguments(arguments), console(console), files(files), resolver(arguments.options, files),
          outColor(chooseColor(arguments.color, console.isOutTerminal, console.isColorUnwanted)),
          errColor(chooseColor(arguments.color, console.isErrTerminal, console.isColorUnwanted)) {}

    ExitStatus processAll() {
        if (arguments.init) {
            return writeStarterFile();
        }
        if (!arguments.checkSyntax && !prepareOptions()) {
            return ExitStatus::Usage;
        }
        if (arguments.printConfig) {
            printOptions();
            return flush();
        }
        for (const std::string& path : arguments.paths) {
            status = getWorse(status, process(path));
            if (!console.out) {
                break;
            }
        }
        return getWorse(status, flush());
    }

private:
    /// False if there is a fault in one of the options files. Then all faults have been reported.
    bool prepareOptions() {
        std::vector<std::string> names;
        for (const std::string& path : arguments.paths) {
            names.push_back(getShownName(path));
        }
        const std::vector<OptionsFault> faults = resolver.prepare(names);
        for (const OptionsFault& fault : faults) {
            for (const Problem& problem : fault.problems) {
                printProblem(console.err, resolver.getShownPath(fault.path), problem, fault.text, errColor);
            }
        }
        return faults.empty();
    }

    void printOptions() {
        for (const std::string& path : arguments.paths) {
            const bool isFolder = path == "-" && arguments.stdinName == Arguments().stdinName;
            console.out << (isFolder ? "this folder" : getPrintableName(getShownName(path))) << ":\n"
                        << describeOptions(resolver.explain(getShownName(path)));
        }
    }

    ExitStatus writeStarterFile() {
        const std::string path(optionsFileName);
        try {
            files.create(path, makeStarterFile());
        } catch (const FileError& error) {
            return report(path, {getStatus(error.kind), error.what()}, {});
        }
        return ExitStatus::Done;
    }

    ExitStatus process(const std::string& path) {
        std::string bytes;
        try {
            bytes = path == "-" ? readStream(console.in) : files.read(path, maximalByteCount);
            return processBytes(path, bytes);
        } catch (const FileError& error) {
            return report(path, {getStatus(error.kind), error.what()}, {});
        } catch (const std::bad_alloc&) {
            return report(path, {ExitStatus::Refused, "not enough memory for this text"}, {});
        }
    }

    ExitStatus processBytes(const std::string& path, const std::string& bytes) {
        auto decoded = decode(bytes);
        if (const auto* problem = std::get_if<Problem>(&decoded)) {
            return report(path, *problem, decodeLossy(bytes));
        }
        const auto& source = std::get<DecodedText>(decoded);
        return arguments.checkSyntax ? checkSyntax(path, source.text) : format(path, bytes, source);
    }

    ExitStatus checkSyntax(const std::string& path, const std::u16string& text) {
        ExitStatus worst = ExitStatus::Done;
        for (const Problem& problem : findSyntaxErrors(text)) {
            worst = report(path, problem, text);
        }
        return worst;
    }

    ExitStatus format(const std::string& path, const std::string& bytes, const DecodedText& source) {
        const FileOptions options = resolver.resolve(getShownName(path));
        if (options.engine == Engine::Tree) {
            return report(
                path, {ExitStatus::Usage, arguments.lines.empty() ? missingTreeEngine : linesWithTree}, {});
        }
        auto formatted = formatLines(source.text, options.line, arguments.lines);
        if (const auto* problem = std::get_if<Problem>(&formatted)) {
            return report(path, *problem, source.text);
        }
        auto& result = std::get<std::u16string>(formatted);
        if (result == source.text) {
            return deliverUnchanged(path, bytes);
        }
        return deliverChanged(path, bytes, encode({std::move(result), source.hasByteOrderMark}));
    }

    ExitStatus deliverUnchanged(const std::string& path, const std::string& bytes) {
        note(path, "unchanged");
        if (isPrinting()) {
            console.out << bytes;
        }
        return ExitStatus::Done;
    }

    ExitStatus deliverChanged(const std::string& path, const std::string& before, const std::string& after) {
        if (isPrinting()) {
            console.out << after;
            note(path, "formatted");
            return ExitStatus::Done;
        }
        if (arguments.inPlace) {
            files.replace(path, after);
            note(path, "formatted");
            return ExitStatus::Done;
        }
        note(path, "would change");
        if (arguments.diff) {
            printDiff(console.out, getShownName(path), before, after, outColor);
        } else if (!arguments.quiet) {
            console.out << getShownName(path) << '\n';
        }
        return ExitStatus::WouldChange;
    }

    bool isPrinting() const { return !arguments.inPlace && !arguments.check && !arguments.diff; }

    const std::string& getShownName(const std::string& path) const {
        return path == "-" ? arguments.stdinName : path;
    }

    void note(const std::string& path, const char* what) {
        if (arguments.verbose) {
            console.err << getPrintableName(getShownName(path)) << ": " << what << '\n';
        }
    }

    ExitStatus report(const std::string& path, const Problem& problem, std::u16string_view text) {
        printProblem(console.err, getShownName(path), problem, text, errColor);
        return problem.status;
    }

    ExitStatus flush() {
        errno = 0;
        if (console.out.flush()) {
            return ExitStatus::Done;
        }
        const std::string reason = errno == 0 ? std::string() : ": " + std::generic_category().message(errno);
        printUsageError(console.err, "ombrel-format", "can't write standard output" + reason, errColor);
        return ExitStatus::WriteFailed;
    }

    const Arguments& arguments;
    Console& console;
    FileSystem& files;
    OptionsResolver resolver;
    Color outColor;
    Color errColor;
    ExitStatus status = ExitStatus::Done;
};

} // namespace

ExitStatus run(const Arguments& arguments, Console& console, FileSystem& files) {
    return Run(arguments, console, files).processAll();
}

} // namespace ombrel
