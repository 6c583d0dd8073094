// What the manuals and the shell completions say about options, made from the tables that the program itself
// uses, so that neither can be out of date. Each shell has templates; a listing is what replaces a name
// there.
#include "Listings.h"

#include "cli/Arguments.h"
#include "options/OptionTable.h"

#include <algorithm>
#include <span>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

using Strings = std::vector<std::string>;

/// How the values of an option are completed. Each template has a function for each but Flag, or its shell
/// has.
enum class Completion { Flag, Words, WordsOrFile, Files, Revisions, Settings, None };

constexpr std::string_view fileSuffix = "[:FILE]"; // after words that a colon and a file may follow

Completion getCompletion(const OptionDescription& option) {
    static const std::vector<std::pair<std::string_view, Completion>> table = {
        {"", Completion::Flag},         {"FILE", Completion::Files},    {"NAME", Completion::Files},
        {"PATTERN", Completion::Files}, {"REV", Completion::Revisions}, {"KEY=VALUE", Completion::Settings},
    };
    const auto found =
        std::find_if(table.begin(), table.end(), [&](const auto& row) { return row.first == option.value; });
    if (found != table.end()) {
        return found->second;
    }
    if (option.value.ends_with(fileSuffix)) {
        return Completion::WordsOrFile;
    }
    return option.value.find('|') == std::string::npos ? Completion::None : Completion::Words;
}

/// The words that an option accepts, with spaces between them.
std::string getWords(const OptionDescription& option) {
    std::string words = option.value.substr(0, option.value.find(fileSuffix));
    std::replace(words.begin(), words.end(), '|', ' ');
    return words;
}

template <class Rows, class Write>
std::string writeLines(const Rows& rows, Write write) {
    Strings lines;
    for (const auto& row : rows) {
        lines.push_back(write(row));
    }
    return fmt::format("{}", fmt::join(lines, "\n"));
}

/// In single quotes for any shell but fish, which knows backslashes in them.
std::string quote(std::string_view text) {
    std::string quoted = "'";
    for (const char c : text) {
        quoted += c == '\'' ? "'\\''" : std::string(1, c);
    }
    return quoted + '\'';
}

std::string escape(std::string_view text, std::string_view special) {
    std::string escaped;
    for (const char c : text) {
        escaped.append(special.find(c) == std::string_view::npos ? 0 : 1, '\\');
        escaped += c;
    }
    return escaped;
}

/// A help text and its default, which may be empty: "Columns of one level" and "4".
std::pair<std::string, std::string> splitHelp(const std::string& help) {
    const std::size_t bracket = help.rfind(" [");
    if (bracket == std::string::npos || !help.ends_with(']')) {
        return {help, ""};
    }
    return {help.substr(0, bracket), help.substr(bracket + 2, help.size() - bracket - 3)};
}

// The options of the options file, as --set takes them

std::string getRange(const Option& option) {
    return option.type == TreeOptionType::Number ? fmt::format("{} to {}", option.low, option.high) : "";
}

Strings getValues(const Option& option) {
    if (option.type == TreeOptionType::Boolean) {
        return {"false", "true"};
    }
    return {option.words.begin(), option.words.end()};
}

/// "engine=line" and the like, one for each value; "line.tabSize=" where any number is possible.
std::string listSettings() {
    Strings settings;
    for (const Option& option : getOptions()) {
        const Strings values = getValues(option);
        for (const std::string& value : values.empty() ? Strings{""} : values) {
            settings.push_back(fmt::format("{}={}", option.getName(), value));
        }
    }
    return fmt::format("{}", fmt::join(settings, "\n"));
}

// bash

std::string writeBashCase(const OptionDescription& option) {
    const std::string names = fmt::format("{}", fmt::join(option.names, " | "));
    switch (getCompletion(option)) {
    case Completion::Words:
        return fmt::format("    {}) _ombrel_format_words \"$value\" {} ;;", names, getWords(option));
    case Completion::WordsOrFile:
        return fmt::format("    {}) _ombrel_format_words_or_file \"$value\" {} ;;", names, getWords(option));
    case Completion::Files:
        return fmt::format("    {}) _ombrel_format_files \"$value\" ;;", names);
    case Completion::Revisions:
        return fmt::format("    {}) _ombrel_format_revisions \"$value\" ;;", names);
    case Completion::Settings:
        return fmt::format("    {}) _ombrel_format_settings \"$value\" ;;", names);
    default:
        return fmt::format("    {}) ;;", names);
    }
}

std::string writeBashCases() {
    std::vector<OptionDescription> options = describeCommandLine();
    std::erase_if(options, [](const auto& option) { return getCompletion(option) == Completion::Flag; });
    return writeLines(options, writeBashCase);
}

std::string listNames() {
    return writeLines(describeCommandLine(), [](const OptionDescription& option) {
        return fmt::format("{}", fmt::join(option.names, " "));
    });
}

// zsh

/// What follows an option's name and help: a message and an action.
std::string writeZshAction(const OptionDescription& option) {
    const std::string message = escape(option.value, ":");
    switch (getCompletion(option)) {
    case Completion::Flag:
        return "";
    case Completion::Words:
        return fmt::format(":{}:({})", message, getWords(option));
    case Completion::WordsOrFile:
        return fmt::format(":{}: _ombrel_format_words_or_file {}", message, getWords(option));
    case Completion::Files:
        return fmt::format(":{}:_files", message);
    case Completion::Revisions:
        return fmt::format(":{}:_ombrel_format_revisions", message);
    case Completion::Settings:
        return fmt::format(":{}:_ombrel_format_settings", message);
    case Completion::None:
        break;
    }
    return fmt::format(":{}: ", message);
}

/// A line for each name. A flag excludes its other names, an option with a value may be repeated.
std::string writeZshOption(const OptionDescription& option) {
    const bool isFlag = option.value.empty();
    return writeLines(option.names, [&](const std::string& name) {
        const std::string front = isFlag ? fmt::format("({})", fmt::join(option.names, " ")) : "*";
        const char* const suffix = isFlag ? "" : name.starts_with("--") ? "=" : "+";
        const std::string help = escape(option.help, "[]");
        return "    " +
               quote(fmt::format("{}{}{}[{}]{}", front, name, suffix, help, writeZshAction(option))) + " \\";
    });
}

std::string writeZshOptions() {
    return writeLines(describeCommandLine(), writeZshOption);
}

// fish

std::string writeFishAction(const OptionDescription& option) {
    switch (getCompletion(option)) {
    case Completion::Flag:
        return "";
    case Completion::Words:
        return fmt::format(" -xa '{}'", getWords(option));
    case Completion::WordsOrFile:
        return fmt::format(" -rFa '{}'", getWords(option));
    case Completion::Files:
        return " -rF";
    case Completion::Revisions:
        return " -xa '(__ombrel_format_revisions)'";
    case Completion::Settings:
        return " -xa '(__ombrel_format_settings)'";
    case Completion::None:
        break;
    }
    return " -x";
}

std::string writeFishOption(const OptionDescription& option) {
    std::string names;
    for (const std::string& name : option.names) {
        names += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
    }
    return fmt::format("complete -c ombrel-format{}{} -d '{}'", names, writeFishAction(option),
                       escape(option.help, "\\'"));
}

std::string writeFishOptions() {
    return writeLines(describeCommandLine(), writeFishOption);
}

// Manual

std::string escapeForManual(std::string_view text) {
    return escape(text, "\\_*<~");
}

/// A paragraph of the manual: a head in bold, its values underlined, and what it means.
std::string writeEntry(const std::string& head, const std::string& value, const std::string& help,
                       const std::string& factory) {
    const std::string values = value.empty() ? "" : fmt::format(" _{}_", escapeForManual(value));
    const std::string end = factory.empty() ? "." : fmt::format(". Default: {}.", escapeForManual(factory));
    return fmt::format("{}{}\n\t{}{}\n", head, values, escapeForManual(help), end);
}

std::string writeManualOption(const OptionDescription& option) {
    const auto [help, factory] = splitHelp(option.help);
    return writeEntry(fmt::format("*{}*", fmt::join(option.names, "*, *")), option.value, help, factory);
}

std::string writeManualOptions() {
    return writeLines(describeCommandLine(), writeManualOption);
}

std::string writeManualSetting(const Option& option) {
    const std::string values = option.type == TreeOptionType::Number
                                   ? getRange(option)
                                   : fmt::format("{}", fmt::join(getValues(option), "|"));
    return writeEntry(fmt::format("*{}*", option.getName()), values, std::string(option.description),
                      std::string(option.factory));
}

std::string writeManualSettings() {
    return writeLines(getOptions(), writeManualSetting);
}

std::string getVersion() {
    return OMBREL_VERSION;
}

} // namespace

const std::vector<Listing>& getListings() {
    static const std::vector<Listing> listings = {
        {"version", getVersion},
        {"settings", listSettings},
        {"names", listNames},
        {"bash-values", writeBashCases},
        {"zsh-options", writeZshOptions},
        {"fish-options", writeFishOptions},
        {"manual-options", writeManualOptions},
        {"manual-settings", writeManualSettings},
    };
    return listings;
}

} // namespace ombrel
