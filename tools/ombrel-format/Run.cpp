#include "Run.h"

#include "Diff.h"
#include "LineEngine.h"
#include "Message.h"
#include "ReporterSet.h"
#include "SyntaxCheck.h"
#include "TextEncoding.h"

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
        : arguments(arguments), console(console), files(files),
          outColor(chooseColor(arguments.color, console.isOutTerminal, console.isColorUnwanted)),
          errColor(chooseColor(arguments.color, console.isErrTerminal, console.isColorUnwanted)),
          reporters(arguments, console, files, errColor) {}

    ExitStatus processAll() {
        if (arguments.engine == Engine::Tree && !arguments.checkSyntax) {
            printUsageError(console.err, "ombrel-format", missingTreeEngine, errColor);
            return ExitStatus::Usage;
        }
        for (const std::string& path : arguments.paths) {
            status = getWorse(status, process(path));
            if (!console.out) {
                break;
            }
        }
        status = getWorse(status, reporters.finish());
        return getWorse(status, flush());
    }

private:
    ExitStatus process(const std::string& path) {
        outcome = {};
        outcome.path = getShownName(path);
        const ExitStatus result = read(path);
        reporters.add(outcome);
        return result;
    }

    ExitStatus read(const std::string& path) {
        std::string bytes;
        try {
            bytes = path == "-" ? readStream(console.in) : files.read(path, maximalByteCount);
            return processBytes(path, bytes);
        } catch (const FileError& error) {
            return report({getStatus(error.kind), error.what()}, {});
        } catch (const std::bad_alloc&) {
            return report({ExitStatus::Refused, "not enough memory for this text"}, {});
        }
    }

    ExitStatus processBytes(const std::string& path, const std::string& bytes) {
        auto decoded = decode(bytes);
        if (const auto* problem = std::get_if<Problem>(&decoded)) {
            return report(*problem, decodeLossy(bytes));
        }
        const auto& source = std::get<DecodedText>(decoded);
        return arguments.checkSyntax ? checkSyntax(source.text) : format(path, bytes, source);
    }

    ExitStatus checkSyntax(const std::u16string& text) { return report(findSyntaxErrors(text), text); }

    ExitStatus format(const std::string& path, const std::string& bytes, const DecodedText& source) {
        const Suppression suppression = findSuppression(source.text);
        report(suppression.warnings, source.text);
        if (suppression.isWholeFile) {
            return deliverUnchanged(bytes);
        }
        auto formatted = formatLines(source.text, arguments.lineOptions, arguments.lines, suppression);
        if (const auto* problem = std::get_if<Problem>(&formatted)) {
            return report(*problem, source.text);
        }
        auto& result = std::get<std::u16string>(formatted);
        if (result == source.text) {
            return deliverUnchanged(bytes);
        }
        if (!isWriting() && reporters.wantsFirstChangedLine()) {
            outcome.firstChangedLine = findFirstChangedLine(source.text, result);
        }
        return deliverChanged(path, bytes, encode({std::move(result), source.hasByteOrderMark}));
    }

    ExitStatus deliverUnchanged(const std::string& bytes) {
        if (isPrinting()) {
            console.out << bytes;
        }
        return ExitStatus::Done;
    }

    ExitStatus deliverChanged(const std::string& path, const std::string& before, const std::string& after) {
        if (isWriting()) {
            write(path, after);
            outcome.status = FileStatus::Formatted;
            return ExitStatus::Done;
        }
        if (arguments.diff) {
            printDiff(console.out, outcome.path, before, after, outColor);
        }
        outcome.status = FileStatus::WouldChange;
        return ExitStatus::WouldChange;
    }

    void write(const std::string& path, const std::string& bytes) {
        if (arguments.inPlace) {
            files.replace(path, bytes);
        } else {
            console.out << bytes;
        }
    }

    bool isWriting() const { return !arguments.check && !arguments.diff; }

    bool isPrinting() const { return isWriting() && !arguments.inPlace; }

    const std::string& getShownName(const std::string& path) const {
        return path == "-" ? arguments.stdinName : path;
    }

    ExitStatus report(const Problem& problem, std::u16string_view text) {
        return report(std::vector<Problem>{problem}, text);
    }

    ExitStatus report(const std::vector<Problem>& problems, std::u16string_view text) {
        ExitStatus worst = ExitStatus::Done;
        for (Message& message : makeMessages(problems, text)) {
            worst = getWorse(worst, message.problem.status);
            outcome.messages.push_back(std::move(message));
        }
        outcome.status = worst == ExitStatus::Done ? outcome.status : FileStatus::Failed;
        return worst;
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
    Color outColor;
    Color errColor;
    ReporterSet reporters;
    FileOutcome outcome; ///< of the file at hand
    ExitStatus status = ExitStatus::Done;
};

} // namespace

ExitStatus run(const Arguments& arguments, Console& console, FileSystem& files) {
    return Run(arguments, console, files).processAll();
}

} // namespace ombrel
