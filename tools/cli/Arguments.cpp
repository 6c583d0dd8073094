// The command line as a table of options for the parser, in the order of the help, and then the rules that no
// parser knows: what can't be combined, and what needs something else. The manuals and the shell completions
// are made from the same table.

#include "cli/Arguments.h"

#include "cli/Help.h"
#include "cli/OptionFlags.h"
#include "diagnostics/CodePage.h"
#include "diagnostics/Message.h"
#include "diagnostics/Suggestion.h"
#include "options/OptionsSchema.h"

#include <algorithm>
#include <charconv>
#include <chrono>
#include <limits>
#include <optional>
#include <string_view>
#include <utility>

#include <CLI/CLI.hpp>
#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

constexpr std::uint32_t largestLine = std::numeric_limits<std::uint32_t>::max();

const char* const whatToDo = "What to do";
const char* const whatToFormat = "What to format";
const char* const layout = "Options";
const char* const changedLines = "Changed lines";
const char* const reports = "Reports";

Failure refuse(std::string_view message) {
    return fail(Code::UsageError, getPrintableName(message));
}

/// Decimal digits and nothing else.
std::optional<std::uint32_t> parseNumber(std::string_view text) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc() || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return number;
}

/// Two numbers from 1 on with `separator` between them, the first not above the second.
std::optional<std::pair<std::uint32_t, std::uint32_t>> parsePair(std::string_view text, char separator) {
    const std::size_t middle = std::min(text.find(separator), text.size());
    const auto first = parseNumber(text.substr(0, middle));
    const auto last = parseNumber(text.substr(std::min(middle + 1, text.size())));
    if (!first || !last || *first == 0 || *first > *last) {
        return std::nullopt;
    }
    return std::pair(*first, *last);
}

LineRange parseRange(const std::string& text) {
    const auto pair = parsePair(text, ':');
    if (!pair) {
        throw CLI::ValidationError(fmt::format(
            "--lines {}: expected A:B, two line numbers from 1 to {} with A not above B", text, largestLine));
    }
    return {pair->first, pair->second};
}

Shard parseShard(const std::string& text) {
    constexpr std::uint32_t mostShards = 10000;
    const auto pair = parsePair(text, '/');
    if (!pair || pair->second > mostShards) {
        throw CLI::ValidationError(
            fmt::format("--shard {}: expected K/N, shard K of N, with K from 1 to N and N from 1 to {}", text,
                        mostShards));
    }
    return {pair->first, pair->second};
}

/// Seconds with or without a fraction.
std::chrono::milliseconds parseTimeLimit(const std::string& text) {
    constexpr double shortest = 0.001;
    constexpr double longest = 86400;
    double seconds = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), seconds, std::chars_format::fixed);
    if (error != std::errc() || end != text.data() + text.size() ||
        !(shortest <= seconds && seconds <= longest)) {
        throw CLI::ValidationError(
            fmt::format("--time-limit {}: expected seconds from {} to {}", text, shortest, longest));
    }
    return std::chrono::round<std::chrono::milliseconds>(std::chrono::duration<double>(seconds));
}

/// `shownDefault` is for the help text; empty: the number that is in `target`.
CLI::Option* addNumber(CLI::App& app, const std::string& name, std::uint32_t& target, std::uint32_t low,
                       std::uint32_t high, const std::string& help, const std::string& shownDefault = {}) {
    const std::string longName = name.substr(name.rfind(',') + 1);
    const auto store = [=, &target](const std::string& text) {
        const auto number = parseNumber(text);
        if (!number || *number < low || *number > high) {
            throw CLI::ValidationError(
                fmt::format("{} {}: expected a number from {} to {}", longName, text, low, high));
        }
        target = *number;
    };
    return app
        .add_option_function<std::string>(
            name, store,
            fmt::format("{} [{}]", help, shownDefault.empty() ? std::to_string(target) : shownDefault))
        ->type_name("N");
}

template <class Value>
using Choices = std::vector<std::pair<std::string, Value>>;

/// An option that accepts one of a few words. The first of the choices is the default and is already in
/// `target`.
template <class Value>
CLI::Option* addChoice(CLI::App& app, const std::string& name, Value& target, const Choices<Value>& choices,
                       const std::string& help) {
    std::vector<std::string> words;
    for (const auto& choice : choices) {
        words.push_back(choice.first);
    }
    const std::string list = fmt::format("{}", fmt::join(words, "|"));
    const auto store = [=, &target](const std::string& text) {
        const auto found = std::find(words.begin(), words.end(), text);
        if (found == words.end()) {
            throw CLI::ValidationError(
                fmt::format("{} {}: expected {}{}", name, text, list, suggest(text, words)));
        }
        target = choices[static_cast<std::size_t>(found - words.begin())].second;
    };
    return app.add_option_function<std::string>(name, store, fmt::format("{} [{}]", help, words.front()))
        ->type_name(list);
}

/// Ends the reading of the command line with a text to print, as help does.
class TextCall : public CLI::Success {
public:
    explicit TextCall(std::string text)
        : Success("TextCall", "print a text", CLI::ExitCodes::Success), text(std::move(text)) {}

    std::string text;
};

/// The page of docs/messages.md about a code, which may be in brackets as in messages.
std::string explainCode(std::string name) {
    if (name.starts_with('[') && name.ends_with(']')) {
        name = name.substr(1, name.size() - 2);
    }
    if (const auto code = findCode(name)) {
        return describeCode(getInfo(*code));
    }
    std::vector<std::string> names;
    for (const CodeInfo& info : getCodes()) {
        names.emplace_back(info.name);
    }
    throw CLI::ValidationError(fmt::format("--explain {}: expected the code of a message, such as not-utf8{}",
                                           name, suggest(name, names)));
}

CLI::Option* addTexts(CLI::App& app, const std::string& name, std::vector<std::string>& target,
                      const std::string& help) {
    return app.add_option(name, target, help)
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void addModes(CLI::App& app, Arguments& arguments) {
    app.option_defaults()->group(whatToDo);
    app.add_flag("-i,--in-place", arguments.inPlace, "Write changed files back");
    app.add_flag("--check", arguments.check, "Write nothing, name files that would change, exit 1 if any");
    app.add_flag("--diff", arguments.diff, "Write nothing, show what would change, exit 1 if anything");
    app.add_flag("--check-syntax", arguments.checkSyntax,
                 "Format nothing, print every syntax error, exit 4 if any");
    app.add_flag("--print-config", arguments.printConfig,
                 "Print the options that apply to the FILEs or this folder and where each comes from");
    app.add_flag("--init", arguments.init, "Write an options file to start with into this folder");
    app.add_flag_callback(
        "--schema", [] { throw TextCall(makeOptionsSchema()); }, "Print the JSON Schema of options files");
    app.add_option_function<std::string>(
           "--explain", [](const std::string& name) { throw TextCall(explainCode(name)); },
           "Print cause and remedy of the messages with this code")
        ->type_name("CODE");
    app.add_flag("--merge-reports", arguments.mergesReports,
                 "Report what several runs have reported: PATHs are reports of --reporter json");
    app.set_version_flag("--version", "ombrel-format " OMBREL_VERSION, "Print the version")->group(whatToDo);
    app.set_help_flag("-h,--help", "Print this help")->group(whatToDo);
}

/// Patterns of the command line. The parser keeps each option's, and their common order matters.
struct PatternOptions {
    std::vector<std::string> excluded;
    std::vector<std::string> included;

    std::vector<std::string> join(const CLI::App& app) const {
        std::vector<std::string> patterns;
        auto nextExcluded = excluded.begin();
        auto nextIncluded = included.begin();
        for (const CLI::Option* option : app.parse_order()) {
            if (option->check_name("--exclude")) {
                patterns.push_back(*nextExcluded++);
            } else if (option->check_name("--include")) {
                patterns.push_back('!' + *nextIncluded++);
            }
        }
        return patterns;
    }
};

void addLines(CLI::App& app, Arguments& arguments) {
    const auto store = [&arguments](const std::vector<std::string>& texts) {
        std::transform(texts.begin(), texts.end(), std::back_inserter(arguments.lines), parseRange);
    };
    app.add_option_function<std::vector<std::string>>("--lines", store,
                                                      "Format only lines A to B, from 1; repeatable")
        ->type_name("A:B")
        ->allow_extra_args(false)
        ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

void addSearchOptions(CLI::App& app, SearchOptions& options, PatternOptions& patterns) {
    app.option_defaults()->group(whatToFormat);
    app.add_option("--files-from", options.pathList, "Read more paths, one per line; - is standard input")
        ->type_name("FILE");
    app.add_flag("-0", options.isPathListNulEnded,
                 "The paths of --files-from end in NUL; without it, the names of --check");
    addTexts(app, "--exclude", patterns.excluded,
             "Leave out what matches, as in an ignore file of the current folder; repeatable")
        ->type_name("PATTERN");
    addTexts(
        app, "--include", patterns.included,
        "Format what matches, whatever its name; of --exclude and --include the last one wins; repeatable")
        ->type_name("PATTERN");
    app.add_flag_callback(
        "--no-gitignore", [&options] { options.honorsGitignore = false; },
        "Format files that git ignores too");
    app.add_option_function<std::string>(
           "--shard", [&options](const std::string& text) { options.shard = parseShard(text); },
           "Format one of N parts of the files, chosen by their paths; together the N runs format all")
        ->type_name("K/N");
    app.add_flag("--force-exclude", options.forcesExclusion, "Leave out named files and folders too");
    app.add_flag("--list-files", options.listsOnly,
                 "Print which files would be formatted or left out and why, and stop");
    app.add_flag("--allow-no-files", options.allowsNoFiles, "Exit with 0 if there are no files to format");
}

void addChangeOptions(CLI::App& app, ChangeOptions& options) {
    app.option_defaults()->group(changedLines);
    const auto store = [&options](const std::string& revision) {
        if (revision.empty()) {
            throw CLI::ValidationError("--since needs a revision");
        }
        options.since = revision;
    };
    app.add_option_function<std::string>(
           "--since", store,
           "Format only the lines changed since this revision of git; REV...: since HEAD left it")
        ->type_name("REV");
    app.add_flag("--staged", options.isStaged,
                 "Format only the staged lines, in the index; without --check and --diff, write them back");
    app.add_flag("--whole-files", options.takesWhole,
                 "With --since and --staged: format all lines of files that have changed");
}

void addReplacementRules(CLI::App& app, ReplacementRules& rules) {
    app.add_flag("--allow-hard-links", rules.allowsHardLinks,
                 "Replace files that have other names too, which keep the old text");
    app.add_flag("--force-read-only", rules.allowsReadOnly, "Replace read-only files too");
}

void addStandardInputName(CLI::App& app, Arguments& arguments) {
    app.add_option("--stdin-filename", arguments.stdinName,
                   "Name of standard input in messages; it also decides which options apply")
        ->type_name("NAME");
}

void addExecutionOptions(CLI::App& app, Arguments& arguments) {
    app.option_defaults()->group(layout);
    addReplacementRules(app, arguments.replacement);
    app.add_flag_callback(
        "--force", [] {}, "Has no effect: no file has to be forced any more");
    addNumber(app, "-j,--jobs", arguments.jobs, 1, 1024, "Files to format in parallel, 1 to 1024",
              "all cores");
    app.add_option_function<std::string>(
           "--time-limit",
           [&arguments](const std::string& text) { arguments.timeLimit = parseTimeLimit(text); },
           "Leave a file as it is, with status 3, if the work on it takes longer, 0.001 to 86400 [none]")
        ->type_name("SECONDS");
}

void addReportOptions(CLI::App& app, Arguments& arguments) {
    app.option_defaults()->group(reports);
    addReporterOption(app, arguments.reporters);
    addChoice<ColorChoice>(
        app, "--color", arguments.color,
        {{"auto", ColorChoice::Auto}, {"always", ColorChoice::Always}, {"never", ColorChoice::Never}},
        "Color in messages and diffs; auto: on a terminal, unless NO_COLOR is set");
    app.add_option(
           "--bug-report", arguments.bugReport,
           "If the formatter fails with status 5, write what a report about that needs, sources included")
        ->type_name("FILE");
    app.add_flag("--stats", arguments.printsStatistics,
                 "Print at the end what was done and how long each stage took");
    app.add_flag("-q,--quiet", arguments.quiet, "Only errors and results that were asked for");
    app.add_flag("-v,--verbose", arguments.verbose, "Report what was done with each file");
}

std::vector<std::string> getOptionNames(const CLI::App& app) {
    std::vector<std::string> names;
    for (const CLI::Option* option : app.get_options()) {
        for (const std::string& name : option->get_lnames()) {
            names.push_back("--" + name);
        }
    }
    return names;
}

/// The words that are no options, since the parser would read a path such as [a,b] as a list of two; after a
/// `--` all words are paths. Fails if one looks like an option and isn't.
Result<std::vector<std::string>> getPaths(const CLI::App& app) {
    std::vector<std::string> paths;
    bool isAfterDashes = false;
    for (const std::string& word : app.remaining()) {
        if (!isAfterDashes && word == "--") {
            isAfterDashes = true;
        } else if (isAfterDashes || word == "-" || !word.starts_with('-')) {
            paths.push_back(word);
        } else {
            const std::string name = word.starts_with("-=") ? word : word.substr(0, word.find('='));
            return refuse("unknown option " + name + suggest(name, getOptionNames(app)));
        }
    }
    return paths;
}

/// Refuses an option with an equals sign and nothing after it: the parser would use the next word as its
/// value.
Result<void> checkValues(int argc, const char* const* argv) {
    for (int i = 1; i < argc && std::string_view(argv[i]) != "--"; ++i) {
        const std::string_view word = argv[i];
        if (word.starts_with("--") && word.ends_with('=')) {
            return refuse(std::string(word.substr(0, word.size() - 1)) + " needs a value");
        }
    }
    return {};
}

void refuseFlagValues(CLI::App& app) {
    for (CLI::Option* option : app.get_options([](const CLI::Option*) { return true; })) {
        if (option->get_expected_min() == 0) {
            option->disable_flag_override();
        }
    }
}

bool isFormattingAsked(const Arguments& arguments) {
    return arguments.inPlace || arguments.check || arguments.diff || !arguments.lines.empty();
}

/// Whether the options can be combined with formatting changes.
Result<void> checkChanges(const Arguments& arguments) {
    const ChangeOptions& changes = arguments.changes;
    if (!changes.isAsked()) {
        return changes.takesWhole ? refuse("--whole-files needs --since or --staged") : Result<void>();
    }
    if (changes.isStaged && !changes.since.empty()) {
        return refuse("--since looks at the work tree, --staged at the index: use one or the other");
    }
    if (!arguments.lines.empty()) {
        return refuse("--lines can't be combined with --since and --staged, which find the lines themselves");
    }
    if (!arguments.search.pathList.empty() ||
        std::count(arguments.paths.begin(), arguments.paths.end(), "-") > 0) {
        return refuse(
            "--since and --staged need files and folders: they can't be combined with standard input "
            "or --files-from");
    }
    return {};
}

/// Whether the options can be combined with a shard, or with merging the reports of shards.
Result<void> checkShards(const Arguments& arguments) {
    if (arguments.search.shard.count > 1 &&
        std::count(arguments.paths.begin(), arguments.paths.end(), "-") > 0) {
        return refuse("--shard needs files and folders: standard input can't be divided");
    }
    const bool isOther = arguments.inPlace || arguments.diff || arguments.checkSyntax || arguments.init ||
                         arguments.printConfig || arguments.changes.isAsked() || !arguments.lines.empty() ||
                         !arguments.search.pathList.empty() || arguments.search.listsOnly ||
                         arguments.printsStatistics || !arguments.bugReport.empty();
    if (arguments.mergesReports && isOther) {
        return refuse("--merge-reports only reads reports: it can't be combined with other modes");
    }
    return {};
}

/// Whether options that are fine one by one can be combined.
Result<void> checkCombination(const Arguments& arguments) {
    const SearchOptions& search = arguments.search;
    const auto standardInputs =
        std::count(arguments.paths.begin(), arguments.paths.end(), "-") + (search.pathList == "-" ? 1 : 0);
    if (arguments.checkSyntax && isFormattingAsked(arguments)) {
        return refuse("--check-syntax formats nothing: it can't be combined with --in-place, --check, --diff "
                      "or --lines");
    }
    if (arguments.inPlace && (arguments.check || arguments.diff)) {
        return refuse("--in-place writes, --check and --diff don't: use one or the other");
    }
    if (arguments.inPlace && std::count(arguments.paths.begin(), arguments.paths.end(), "-") > 0) {
        return refuse("--in-place needs files: standard input can't be written back");
    }
    if (standardInputs > 1) {
        return refuse("standard input can be read only once");
    }
    if (!arguments.lines.empty() && arguments.paths.size() > 1) {
        return refuse("--lines needs exactly one file");
    }
    if (search.isPathListNulEnded && search.pathList.empty() && !arguments.check) {
        return refuse("-0 needs --files-from or --check");
    }
    if (arguments.options.ignoresFiles && !arguments.options.file.empty()) {
        return refuse("--config and --no-config contradict each other");
    }
    if (arguments.init && (arguments.printConfig || isFormattingAsked(arguments))) {
        return refuse("--init writes a new options file and does nothing else");
    }
    if (arguments.printConfig && (arguments.checkSyntax || isFormattingAsked(arguments))) {
        return refuse("--print-config formats nothing: it can't be combined with other modes");
    }
    if (arguments.quiet && arguments.verbose) {
        return refuse("--quiet and --verbose contradict each other");
    }
    return checkChanges(arguments).and_then([&] { return checkReporters(arguments); });
}

/// The parser's own words for a flag with a value, such as --check=no, don't help a user.
std::string getErrorText(const CLI::ParseError& error) {
    constexpr std::string_view flagOverride = " was given a disallowed flag override";
    std::string text = error.what();
    if (!text.ends_with(flagOverride)) {
        return text;
    }
    const std::string name = text.substr(0, text.size() - flagOverride.size());
    return (name.size() == 1 ? "-" : "--") + name + " doesn't accept a value";
}

/// What is read goes to `arguments` and `patterns`, which have to outlive the parser.
void addOptions(CLI::App& app, Arguments& arguments, PatternOptions& patterns) {
    app.option_defaults()->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
    app.allow_extras();
    addModes(app, arguments);
    addSearchOptions(app, arguments.search, patterns);
    addStandardInputName(app, arguments);
    app.option_defaults()->group(layout);
    addOptionFlags(app, arguments.options);
    addExecutionOptions(app, arguments);
    addChangeOptions(app, arguments.changes);
    addLines(app, arguments);
    addReportOptions(app, arguments);
    refuseFlagValues(app);
}

OptionDescription makeDescription(const CLI::Option& option) {
    OptionDescription description;
    for (const std::string& name : option.get_snames()) {
        description.names.push_back('-' + name);
    }
    for (const std::string& name : option.get_lnames()) {
        description.names.push_back("--" + name);
    }
    description.value = option.get_expected_min() == 0 ? "" : option.get_type_name();
    description.help = option.get_description();
    description.group = option.get_group();
    return description;
}

} // namespace

Result<std::variant<Arguments, PrintedText>> parseArguments(int argc, const char* const* argv,
                                                            std::size_t helpWidth) {
    Arguments arguments;
    CLI::App app;
    PatternOptions patterns;
    addOptions(app, arguments, patterns);
    if (const auto checked = checkValues(argc, argv); !checked) {
        return fail(checked.error());
    }
    try {
        app.parse(argc, argv);
    } catch (const TextCall& call) {
        return PrintedText{call.text};
    } catch (const CLI::CallForHelp&) {
        return PrintedText{makeHelp(describeCommandLine(), helpWidth)};
    } catch (const CLI::CallForVersion& version) {
        return PrintedText{std::string(version.what()) + '\n'};
    } catch (const CLI::ParseError& error) {
        return refuse(getErrorText(error));
    }
    auto paths = getPaths(app);
    if (!paths) {
        return fail(paths.error());
    }
    arguments.paths = *std::move(paths);
    if (arguments.paths.empty() && arguments.search.pathList.empty() && !arguments.changes.isAsked()) {
        const bool isFolderMeant = arguments.printConfig && app.count("--stdin-filename") == 0;
        arguments.paths.emplace_back(isFolderMeant ? "." : "-");
        arguments.isInputImplied = !isFolderMeant && !arguments.init;
    }
    arguments.search.patterns = patterns.join(app);
    arguments.search.stdinName = app.count("--stdin-filename") == 0 ? "" : arguments.stdinName;
    if (const auto checked = checkShards(arguments); !checked) {
        return fail(checked.error());
    }
    arguments.check = arguments.check || arguments.mergesReports;
    if (arguments.reporters.empty()) {
        arguments.reporters.push_back({ReporterKind::Human, {}});
    }
    if (const auto checked = checkCombination(arguments); !checked) {
        return fail(checked.error());
    }
    return arguments;
}

std::vector<OptionDescription> describeCommandLine() {
    Arguments arguments;
    PatternOptions patterns;
    CLI::App app;
    addOptions(app, arguments, patterns);
    std::vector<OptionDescription> descriptions;
    for (const CLI::Option* option : std::as_const(app).get_options()) {
        descriptions.push_back(makeDescription(*option));
    }
    const std::vector<std::string> groups = {whatToFormat, whatToDo, layout, changedLines, reports};
    const auto getRank = [&](const OptionDescription& option) {
        return std::find(groups.begin(), groups.end(), option.group);
    };
    std::stable_sort(descriptions.begin(), descriptions.end(),
                     [&](const auto& a, const auto& b) { return getRank(a) < getRank(b); });
    return descriptions;
}

} // namespace ombrel
