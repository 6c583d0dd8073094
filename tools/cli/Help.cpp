#include "cli/Help.h"

#include <algorithm>
#include <string_view>

#include <fmt/format.h>
#include <fmt/ranges.h>

namespace ombrel {

namespace {

constexpr std::size_t indentation = 2;
constexpr std::size_t widestNames = 24; // columns; the help text of longer names starts on a new line

constexpr const char* usage = "Usage: ombrel-format [options] [FILE|FOLDER|-]...\n";

constexpr const char* description =
    "Formats Ombrel source: FILEs and the *.omb files of FOLDERs, or standard input if there is neither. One "
    "file is printed to standard output; for folders say what to do.";

constexpr const char* statuses =
    "Exit status, the largest wins: 0 done; 1 would change (--check, --diff); 2 wrong options or unreadable "
    "input; 3 input refused; 4 doesn't parse; 5 safety check failed, file untouched; 6 writing failed.";

constexpr std::string_view examples = R"(
Examples:
  ombrel-format -i .                         format a source tree
  ombrel-format --diff sum.omb               see what would change
  ombrel-format --check --reporter github .  check in continuous integration
  ombrel-format --staged                     format what is staged, as a git hook
  ombrel-format --engine tree - < sum.omb    lay out the syntax tree, as a filter
)";

/// Breaks a text between words, each line after the first starting with spaces.
std::string wrap(std::string_view text, std::size_t start, std::size_t width) {
    std::string wrapped;
    std::size_t column = start;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find(' '), text.size());
        if (column > start && column + 1 + end > width) {
            wrapped += '\n' + std::string(start, ' ');
            column = start;
        } else if (column > start) {
            wrapped += ' ';
            ++column;
        }
        wrapped += text.substr(0, end);
        column += end;
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return wrapped + '\n';
}

std::string makeEntry(const OptionDescription& option, std::size_t width) {
    std::string entry = std::string(indentation, ' ') + fmt::format("{}", fmt::join(option.names, ", "));
    entry += option.value.empty() ? "" : ' ' + option.value;
    const std::size_t start = indentation + widestNames + 2;
    entry +=
        entry.size() + 2 > start ? '\n' + std::string(start, ' ') : std::string(start - entry.size(), ' ');
    return entry + wrap(option.help, start, width);
}

} // namespace

std::string makeHelp(const std::vector<OptionDescription>& options, std::size_t width) {
    std::string help = usage + ('\n' + wrap(description, 0, width));
    std::string_view group;
    for (const OptionDescription& option : options) {
        if (option.group != group) {
            group = option.group;
            help += fmt::format("\n{}:\n", group);
        }
        help += makeEntry(option, width);
    }
    return help.append("\n").append(wrap(statuses, 0, width)).append(examples);
}

} // namespace ombrel
