// Section names of .editorconfig files: `*` is a part of a name, `**` a part of a path, `?` a character,
// `[ab]` and `[!ab]` one of some, `{a,b}` a choice, `{1..9}` a number. A name with a slash is about the path
// from the folder of the .editorconfig, any other one about files in all folders below.
#include "options/SectionName.h"

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cstddef>
#include <optional>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// `*`, `*.omb`, `*.{omb,txt}`.
bool isAboutExtensions(std::string_view name) {
    if (name == "*") {
        return true;
    }
    if (!name.starts_with("*.")) {
        return false;
    }
    name.remove_prefix(2);
    const bool isList = name.size() > 1 && name.front() == '{' && name.back() == '}';
    const std::string_view words = isList ? name.substr(1, name.size() - 2) : name;
    return std::all_of(words.begin(), words.end(), [&](unsigned char c) {
        return std::isalnum(c) != 0 || c == '_' || (isList && c == ',');
    });
}

/// The steps that matching a path of ordinary length can take: the library tries all ways to divide a path
/// between stars, and all ways to choose in braces.
double estimateSteps(std::string_view name) {
    constexpr double pathLength = 100;
    double steps = 1;
    double stars = 0;
    for (std::size_t i = 0; i < name.size(); ++i) {
        if (name[i] == '*' && (i == 0 || name[i - 1] != '*')) {
            steps *= pathLength / ++stars;
        }
        steps *= name[i] == '{' ? 2 : 1;
    }
    return steps;
}

/// The characters of a text that a pattern has at a place: an escaped one is one.
std::size_t getLength(std::string_view pattern) {
    return pattern.front() == '\\' && pattern.size() > 1 ? 2 : 1;
}

/// Where the brace that is open at the start is closed.
std::size_t findClosingBrace(std::string_view pattern) {
    int depth = 0;
    for (std::size_t i = 0; i < pattern.size(); i += getLength(pattern.substr(i))) {
        depth += pattern[i] == '{' ? 1 : 0;
        depth -= pattern[i] == '}' ? 1 : 0;
        if (depth == 0) {
            return i;
        }
    }
    return std::string_view::npos;
}

/// What is between the commas that no inner braces enclose.
std::vector<std::string_view> splitChoices(std::string_view list) {
    std::vector<std::string_view> choices;
    int depth = 0;
    std::size_t start = 0;
    for (std::size_t i = 0; i < list.size(); i += getLength(list.substr(i))) {
        depth += list[i] == '{' ? 1 : 0;
        depth -= list[i] == '}' ? 1 : 0;
        if (list[i] == ',' && depth == 0) {
            choices.push_back(list.substr(start, i - start));
            start = i + 1;
        }
    }
    choices.push_back(list.substr(start));
    return choices;
}

/// Digits, after a sign if there is one.
std::optional<long long> readNumber(std::string_view text) {
    text.remove_prefix(text.starts_with('+') ? 1 : 0);
    long long number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    return error == std::errc() && end == text.data() + text.size() ? std::optional(number) : std::nullopt;
}

bool matches(std::string_view pattern, std::string_view text);

/// Whether what is left of the pattern matches after some of the text's first characters, all of them of a
/// name or, if `crossesFolders`, of any kind.
bool matchesAfterStar(std::string_view rest, std::string_view text, bool crossesFolders) {
    for (std::size_t i = 0;; ++i) {
        if (matches(rest, text.substr(i))) {
            return true;
        }
        if (i == text.size() || (text[i] == '/' && !crossesFolders)) {
            return false;
        }
    }
}

/// Folders, or none, between two slashes.
bool matchesFolders(std::string_view rest, std::string_view text) {
    for (std::size_t slash = text.starts_with('/') ? 0 : std::string_view::npos;
         slash != std::string_view::npos; slash = text.find('/', slash + 1)) {
        if (matches(rest, text.substr(slash + 1))) {
            return true;
        }
    }
    return false;
}

bool isInSet(std::string_view set, char c) {
    for (std::size_t i = 0; i < set.size(); ++i) {
        i += set[i] == '\\' && i + 1 < set.size() ? std::size_t{1} : 0;
        const bool isRange = i + 2 < set.size() && set[i + 1] == '-';
        if (isRange ? set[i] <= c && c <= set[i + 2] : set[i] == c) {
            return true;
        }
        i += isRange ? std::size_t{2} : 0;
    }
    return false;
}

/// A bracket before a slash is one of the characters of a name. Otherwise one without a partner matches
/// nothing.
bool matchesSet(std::string_view pattern, std::string_view text) {
    const std::size_t end = pattern.find(']', 1);
    const std::string_view set = pattern.substr(1, end == std::string_view::npos ? end : end - 1);
    if (set.find('/') != std::string_view::npos) {
        return text.starts_with('[') && matches(pattern.substr(1), text.substr(1));
    }
    const bool isNegated = set.starts_with('!');
    return end != std::string_view::npos && !text.empty() &&
           isInSet(set.substr(isNegated ? 1 : 0), text.front()) != isNegated &&
           matches(pattern.substr(end + 1), text.substr(1));
}

bool matchesNumber(long long low, long long high, std::string_view rest, std::string_view text) {
    const std::size_t sign = text.starts_with('-') || text.starts_with('+') ? 1 : 0;
    const std::size_t end = std::min(text.find_first_not_of("0123456789", sign), text.size());
    const auto number = readNumber(text.substr(0, end));
    return number && low <= *number && *number <= high && matches(rest, text.substr(end));
}

/// Braces without a partner, or around a word that is no choice, are characters of a name.
bool matchesChoice(std::string_view pattern, std::string_view text) {
    const std::size_t end = findClosingBrace(pattern);
    if (end == std::string_view::npos) {
        return text.starts_with('{') && matches(pattern.substr(1), text.substr(1));
    }
    const std::string_view list = pattern.substr(1, end - 1);
    const std::string_view rest = pattern.substr(end + 1);
    const std::vector<std::string_view> choices = splitChoices(list);
    if (choices.size() == 1) {
        const std::size_t dots = std::min(list.find(".."), list.size());
        const auto low = readNumber(list.substr(0, dots));
        const auto high = readNumber(list.substr(std::min(dots + 2, list.size())));
        return low && high ? matchesNumber(*low, *high, rest, text)
                           : matches(fmt::format("\\{{{}\\}}{}", list, rest), text);
    }
    return std::any_of(choices.begin(), choices.end(), [&](std::string_view choice) {
        return matches(fmt::format("{}{}", choice, rest), text);
    });
}

bool matches(std::string_view pattern, std::string_view text) {
    if (pattern.empty()) {
        return text.empty();
    }
    if (pattern.starts_with("/**/")) {
        return matchesFolders(pattern.substr(4), text);
    }
    if (pattern.starts_with("**")) {
        return matchesAfterStar(pattern.substr(2), text, true);
    }
    const std::size_t length = getLength(pattern);
    switch (pattern.front()) {
    case '*':
        return matchesAfterStar(pattern.substr(1), text, false);
    case '?':
        return !text.empty() && text.front() != '/' && matches(pattern.substr(1), text.substr(1));
    case '[':
        return matchesSet(pattern, text);
    case '{':
        return matchesChoice(pattern, text);
    default:
        return !text.empty() && pattern[length - 1] == text.front() &&
               matches(pattern.substr(length), text.substr(1));
    }
}

} // namespace

SectionNames classifySectionNames(const std::vector<std::string>& names) {
    constexpr double mostSteps = 1e7; // about a third of a second
    double steps = 0;
    for (const std::string& name : names) {
        steps += estimateSteps(name);
    }
    if (steps > mostSteps) {
        return SectionNames::Excessive;
    }
    return std::all_of(names.begin(), names.end(), isAboutExtensions) ? SectionNames::Extensions
                                                                      : SectionNames::Paths;
}

bool matchesSection(std::string_view name, std::string_view path) {
    const bool hasFolder = name.find('/') != std::string_view::npos;
    const std::string_view start = !hasFolder ? "**/" : name.starts_with('/') ? "" : "/";
    return matches(fmt::format("{}{}", start, name), fmt::format("/{}", path));
}

} // namespace ombrel
