#include "cli/FileFormatter.h"

#include "files/InputReader.h"
#include "format/Companion.h"
#include "format/LineEngine.h"
#include "format/Suppression.h"
#include "format/SyntaxCheck.h"
#include "git/ChangedFiles.h"
#include "text/Diff.h"
#include "text/Edit.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <exception>
#include <new>
#include <sstream>
#include <variant>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr const char* linesWithTree = "the tree engine lays out whole files: --lines doesn't go with it, and "
                                      "--since and --staged need --whole-files";

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

/// What to change in a text, or why nothing is.
using Outcome = std::variant<Edits, std::vector<Problem>>;

/// One edit for everything from the first to the last difference.
Edits findDifference(std::u16string_view before, std::u16string_view after) {
    if (before == after) {
        return {};
    }
    const auto first = std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first;
    const auto start = static_cast<std::size_t>(first - before.begin());
    before.remove_prefix(start);
    after.remove_prefix(start);
    const auto last = std::mismatch(before.rbegin(), before.rend(), after.rbegin(), after.rend()).first;
    const auto kept = static_cast<std::size_t>(last - before.rbegin());
    return {{start, before.size() - kept, std::u16string(after.substr(0, after.size() - kept))}};
}

/// The work on one input.
class Task {
public:
    Task(const Arguments& arguments, const OptionsResolver& resolver, Console& console, FileSystem& files,
         const std::string& path, bool wantsFirstChangedLine)
        : arguments(arguments), resolver(resolver), console(console), files(files), path(path),
          wantsFirstChangedLine(wantsFirstChangedLine) {
        outcome.path = arguments.getShownName(path);
    }

    FileResult run() {
        try {
            process(readInput(path, console.in, files));
        } catch (const FileError& error) {
            report({getStatus(error.kind), error.what()}, {});
        } catch (const std::bad_alloc&) {
            report({ExitStatus::Refused, "not enough memory for this text"}, {});
        } catch (const std::exception& error) { // a fault of ours, and no reason to leave out the other files
            report({ExitStatus::Unsafe, fmt::format("formatting failed: {}", error.what())}, {});
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
            report(findSyntaxErrors(source.text), source.text);
        } else {
            format(std::move(bytes), source);
        }
    }

    void format(std::string bytes, const DecodedText& source) {
        const Suppression suppression = findSuppression(source.text);
        report(suppression.warnings, source.text);
        if (suppression.isWholeFile) {
            deliverUnchanged(std::move(bytes));
            return;
        }
        auto formatted = layOut(source.text, suppression);
        if (const auto* problems = std::get_if<std::vector<Problem>>(&formatted)) {
            report(*problems, source.text);
            return;
        }
        const auto& edits = std::get<Edits>(formatted);
        if (edits.empty()) {
            deliverUnchanged(std::move(bytes));
            return;
        }
        if (wantsFirstChangedLine && (arguments.check || arguments.diff)) {
            outcome.firstChangedLine = findLine(source.text, edits.front().offset);
        }
        deliverChanged(bytes, applyEdits(bytes, edits));
    }

    Outcome layOut(const std::u16string& text, const Suppression& suppression) const {
        const FileOptions options = resolver.resolve(outcome.path);
        return options.engine == Engine::Tree ? layOutTree(text, options, suppression)
                                              : layOutLines(text, options, suppression);
    }

    Outcome layOutLines(const std::u16string& text, const FileOptions& options,
                        const Suppression& suppression) const {
        auto formatted = formatLines(text, options.line, getLines(text), suppression);
        if (auto* problem = std::get_if<Problem>(&formatted)) {
            return std::vector<Problem>{std::move(*problem)};
        }
        return std::get<Edits>(std::move(formatted));
    }

    Outcome layOutTree(const std::u16string& text, const FileOptions& options,
                       const Suppression& suppression) const {
        static const TreeFormatter treeFormatter = findTreeFormatter();
        if (!arguments.lines.empty() || arguments.changedLines.contains(path)) {
            return std::vector<Problem>{{ExitStatus::Usage, linesWithTree}};
        }
        if (!treeFormatter) {
            return std::vector<Problem>{{ExitStatus::Usage, missingTreeEngine}};
        }
        const TreeOptions treeOptions{getTreeConfig(options.formattingJson), arguments.mixedLineEnds};
        auto formatted = formatTree(text, treeOptions, treeFormatter, suppression);
        if (auto* problems = std::get_if<std::vector<Problem>>(&formatted)) {
            return std::move(*problems);
        }
        return findDifference(text, std::get<std::u16string>(formatted));
    }

    std::vector<LineRange> getLines(std::u16string_view text) const {
        const auto changed = arguments.changedLines.find(path);
        return changed == arguments.changedLines.end() ? arguments.lines
                                                       : countAllLineEnds(text, changed->second);
    }

    void deliverUnchanged(std::string bytes) {
        if (arguments.isPrinting()) {
            result.out = std::move(bytes);
        }
    }

    void deliverChanged(const std::string& before, std::string after) {
        if (arguments.inPlace) {
            files.replace(path, before, after);
            outcome.status = FileStatus::Formatted;
        } else if (arguments.isPrinting()) {
            result.out = std::move(after);
            outcome.status = FileStatus::Formatted;
        } else {
            result.status = ExitStatus::WouldChange;
            outcome.status = FileStatus::WouldChange;
            showChange(before, after);
        }
    }

    void showChange(const std::string& before, const std::string& after) {
        if (arguments.diff) {
            std::ostringstream stream;
            printDiff(stream, outcome.path, before, after, console.getOutColor(arguments.color));
            result.out = std::move(stream).str();
        }
    }

    void report(const Problem& problem, std::u16string_view text) {
        report(std::vector<Problem>{problem}, text);
    }

    void report(const std::vector<Problem>& problems, std::u16string_view text) {
        for (Message& message : makeMessages(problems, text)) {
            result.status = getWorse(result.status, message.problem.status);
            outcome.messages.push_back(std::move(message));
        }
        if (result.status != ExitStatus::Done) {
            outcome.status = FileStatus::Failed;
        }
    }

    const Arguments& arguments;
    const OptionsResolver& resolver;
    Console& console;
    FileSystem& files;
    const std::string& path;
    bool wantsFirstChangedLine;
    FileResult result;
    FileOutcome& outcome = result.outcome;
};

} // namespace

FileResult FileFormatter::process(const std::string& path) const {
    return Task(arguments, options, console, files, path, wantsFirstChangedLine).run();
}

FileResult FileFormatter::fail(const std::string& path, const Problem& problem) const {
    return Task(arguments, options, console, files, path, wantsFirstChangedLine).fail(problem);
}

} // namespace ombrel
