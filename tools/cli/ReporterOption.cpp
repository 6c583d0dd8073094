#include "cli/ReporterOption.h"

#include "cli/Arguments.h"
#include "diagnostics/Suggestion.h"

#include <algorithm>
#include <optional>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

const std::vector<std::string> words = {"human",  "json",  "github",     "sarif",
                                        "gitlab", "junit", "checkstyle", "rdjson"};

const std::string& getWord(ReporterKind kind) {
    return words[static_cast<std::size_t>(kind)];
}

[[noreturn]] void refuse(const std::string& text, const std::string& reason) {
    throw CLI::ValidationError(fmt::format("--reporter {}: {}", text, reason));
}

/// The kind alone, or kind, colon and file; `-` is standard output as it is standard input elsewhere.
ReporterChoice parseChoice(const std::string& text) {
    const std::size_t colon = std::min(text.find(':'), text.size());
    const std::string word = text.substr(0, colon);
    const auto found = std::find(words.begin(), words.end(), word);
    if (found == words.end()) {
        refuse(text, fmt::format("expected human, or one of {} with :FILE after it if you like{}",
                                 fmt::join(words.begin() + 1, words.end(), ", "), suggest(word, words)));
    }
    const auto kind = static_cast<ReporterKind>(found - words.begin());
    if (colon == text.size()) {
        return {kind, {}};
    }
    const std::string file = text.substr(colon + 1);
    if (kind == ReporterKind::Human) {
        refuse(text, "human writes to standard error and can't have a file");
    }
    if (file.empty()) {
        refuse(text, "a file name is missing after the colon");
    }
    if (file.ends_with(".omb")) {
        refuse(text, "a report can't go to a source file");
    }
    return {kind, file == "-" ? std::string() : file};
}

bool isHuman(const ReporterChoice& choice) {
    return choice.kind == ReporterKind::Human;
}

bool usesStandardOutput(const ReporterChoice& choice) {
    return !isHuman(choice) && choice.file.empty();
}

/// What goes to standard output beside any report, and how to keep it away.
struct PrintedResult {
    const char* name;
    const char* advice;
};

std::optional<PrintedResult> getPrintedResult(const Arguments& arguments) {
    if (arguments.diff) {
        return PrintedResult{"the diff", ""};
    }
    if (printsNames(arguments)) {
        return PrintedResult{"the names that --reporter human prints with --check", ", or add --quiet"};
    }
    if (!arguments.inPlace && !arguments.check && !arguments.checkSyntax) {
        return PrintedResult{"the formatted text", ", or use --in-place or --check"};
    }
    return std::nullopt;
}

std::string describeConflict(const ReporterChoice& choice, const PrintedResult& result) {
    const std::string& word = getWord(choice.kind);
    return fmt::format("--reporter {} and {} would both go to standard output: give the report a file, as in "
                       "--reporter {}:FILE{}",
                       word, result.name, word, result.advice);
}

std::string describeConflict(const ReporterChoice& first, const ReporterChoice& second) {
    if (isHuman(second)) {
        return "--reporter human is given twice";
    }
    if (!second.file.empty()) {
        return fmt::format("two reports can't both go to {}", second.file);
    }
    const std::string& word = getWord(second.kind);
    return fmt::format("--reporter {} and --reporter {} would both go to standard output: give one of them a "
                       "file, as in --reporter {}:FILE",
                       getWord(first.kind), word, word);
}

} // namespace

void addReporterOption(CLI::App& app, std::vector<ReporterChoice>& choices) {
    const auto store = [&choices](const std::vector<std::string>& texts) {
        std::transform(texts.begin(), texts.end(), std::back_inserter(choices), parseChoice);
    };
    app.add_option_function<std::vector<std::string>>(
           "--reporter", store,
           "How to report results, all but human optionally to a file; repeatable [human]")
        ->type_name(fmt::format("{}[:FILE]", fmt::join(words, "|")))
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

bool hasHumanReporter(const Arguments& arguments) {
    return std::any_of(arguments.reporters.begin(), arguments.reporters.end(), isHuman);
}

bool printsNames(const Arguments& arguments) {
    return hasHumanReporter(arguments) && arguments.check && !arguments.diff && !arguments.quiet;
}

namespace {

Result<void> checkBugReport(const Arguments& arguments) {
    const std::string& file = arguments.bugReport;
    const auto isReport = [&](const ReporterChoice& choice) { return choice.file == file; };
    const auto& choices = arguments.reporters;
    if (file.empty()) {
        return {};
    }
    if (file == "-") {
        return fail(Code::UsageError, "--bug-report needs a file of its own, not standard output");
    }
    if (file.ends_with(".omb") || std::count(arguments.paths.begin(), arguments.paths.end(), file) > 0) {
        return fail(Code::UsageError,
                    fmt::format("a bug report can't go to {}, which is a source file", file));
    }
    if (std::any_of(choices.begin(), choices.end(), isReport)) {
        return fail(Code::UsageError, fmt::format("two reports can't both go to {}", file));
    }
    return {};
}

} // namespace

Result<void> checkReporters(const Arguments& arguments) {
    const auto& choices = arguments.reporters;
    const auto result = getPrintedResult(arguments);
    for (auto choice = choices.begin(); choice != choices.end(); ++choice) {
        if (result && usesStandardOutput(*choice)) {
            return fail(Code::UsageError, describeConflict(*choice, *result));
        }
        const auto other = std::find_if(choices.begin(), choice, [&](const ReporterChoice& earlier) {
            return earlier.file == choice->file && isHuman(earlier) == isHuman(*choice);
        });
        if (other != choice) {
            return fail(Code::UsageError, describeConflict(*other, *choice));
        }
        if (!choice->file.empty() &&
            std::count(arguments.paths.begin(), arguments.paths.end(), choice->file) > 0) {
            return fail(Code::UsageError,
                        fmt::format("a report can't go to {}, which is an input", choice->file));
        }
    }
    return checkBugReport(arguments);
}

} // namespace ombrel
