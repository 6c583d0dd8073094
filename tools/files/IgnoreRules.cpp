#include "files/IgnoreRules.h"

#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <algorithm>

#include <fnmatch.h>

namespace ombrel {

namespace {

using Parts = std::vector<std::string>;

/// Index after the bracket expression that starts at `first`, npos if it has no end. A `]` right at its
/// start, one after a backslash and one in a class such as [:alpha:] don't end it.
std::size_t findBracketEnd(std::string_view pattern, std::size_t first) {
    std::size_t i = first + 1;
    i += i < pattern.size() && (pattern[i] == '!' || pattern[i] == '^') ? 1 : 0;
    const std::size_t start = i;
    while (i < pattern.size()) {
        if (pattern[i] == ']' && i > start) {
            return i + 1;
        }
        if (pattern.substr(i, 2) == "[:") {
            const std::size_t end = pattern.find(":]", i + 2);
            i = end == std::string_view::npos ? i + 1 : end + 2;
        } else {
            i += pattern[i] == '\\' ? 2 : 1;
        }
    }
    return std::string_view::npos;
}

/// Splits a pattern at the slashes outside of brackets. A slash after a backslash is a slash too. Nothing if
/// a bracket has no end.
std::optional<Parts> splitPattern(std::string_view pattern) {
    Parts parts(1);
    for (std::size_t i = 0; i < pattern.size();) {
        std::size_t end = i + 1;
        if (pattern[i] == '[') {
            end = findBracketEnd(pattern, i);
        } else if (pattern[i] == '\\' && pattern.substr(i + 1, 1) != "/") {
            end = std::min(i + 2, pattern.size());
        }
        if (end == std::string_view::npos) {
            return std::nullopt;
        }
        const std::string_view piece = pattern.substr(i, end - i);
        if (piece == "/") {
            parts.emplace_back();
        } else if (piece != "\\" || end == pattern.size()) {
            parts.back() += piece;
        }
        i = end;
    }
    return parts;
}

bool isAnyParts(const std::string& pattern) {
    return pattern.size() >= 2 && pattern.find_first_not_of('*') == std::string::npos;
}

Parts splitPath(std::string_view path) {
    Parts parts;
    for (std::size_t first = 0; first <= path.size();) {
        const std::size_t end = std::min(path.find('/', first), path.size());
        parts.emplace_back(path.substr(first, end - first));
        first = end + 1;
    }
    return parts;
}

bool matchesPart(const std::string& pattern, const std::string& part) {
    return ::fnmatch(pattern.c_str(), part.c_str(), 0) == 0;
}

/// `**` stands for any number of parts, one at least if it is the last. Goes back only to the last `**`,
/// since an earlier one can take nothing that this one can't.
bool matchesParts(const Parts& pattern, const Parts& path) {
    constexpr std::size_t none = static_cast<std::size_t>(-1);
    std::size_t p = 0;
    std::size_t restartPattern = none;
    std::size_t restartPath = 0;
    std::size_t i = 0;
    while (i < path.size()) {
        if (p < pattern.size() && isAnyParts(pattern[p])) {
            if (p + 1 == pattern.size()) {
                return true;
            }
            restartPattern = ++p;
            restartPath = i;
        } else if (p < pattern.size() && matchesPart(pattern[p], path[i])) {
            ++p;
            ++i;
        } else if (restartPattern != none) {
            p = restartPattern;
            i = ++restartPath;
        } else {
            return false;
        }
    }
    return p == pattern.size();
}

/// True if there is an odd number of backslashes at the end.
bool endsInEscape(std::string_view part) {
    const std::size_t last = part.find_last_not_of('\\');
    return (part.size() - (last == std::string_view::npos ? 0 : last + 1)) % 2 == 1;
}

/// True for a name with `..` after it. Paths start with `..` where they lead out of the folder of the rules,
/// and a wildcard matches that too.
bool isUndone(std::string_view part, std::string_view next) {
    return next == ".." && part != ".." && part.find_first_of("*?[\\") == std::string_view::npos;
}

/// Removes the spaces and tabs at the end, but not those after a backslash.
std::string_view trimEnd(std::string_view line) {
    std::size_t length = 0;
    for (std::size_t i = 0; i < line.size(); ++i) {
        if (line[i] == '\\') {
            length = std::min(++i + 1, line.size());
        } else if (line[i] != ' ') {
            length = i + 1;
        }
    }
    return line.substr(0, length);
}

} // namespace

IgnoreRule::IgnoreRule(std::string_view pattern) {
    negated = pattern.starts_with('!');
    pattern.remove_prefix(negated ? 1 : 0);
    isForFolders = pattern.ends_with('/');
    pattern.remove_suffix(isForFolders ? 1 : 0);
    isForNames = pattern.find('/') == std::string_view::npos;
    pattern.remove_prefix(pattern.starts_with('/') ? 1 : 0);
    auto split = splitPattern(pattern);
    isInvalid = !split;
    parts = std::move(split).value_or(Parts());
}

bool IgnoreRule::matches(std::string_view path, bool isFolder) const {
    if (isInvalid || (isForFolders && !isFolder)) {
        return false;
    }
    if (isForNames) {
        return matchesPart(parts.front(), std::string(path.substr(path.rfind('/') + 1)));
    }
    return matchesParts(parts, splitPath(path));
}

std::string_view IgnoreRule::getFault() const {
    if (isInvalid) {
        return "its '[' has no ']'";
    }
    if (endsInEscape(parts.back())) {
        return "nothing follows its last backslash";
    }
    if (std::find(parts.begin(), parts.end(), "") != parts.end()) {
        return "a name is missing in it";
    }
    if (std::find(parts.begin(), parts.end(), ".") != parts.end()) {
        return "'.' is never part of a path, so remove it";
    }
    if (std::adjacent_find(parts.begin(), parts.end(), isUndone) != parts.end()) {
        return "'..' is never part of a path after a name";
    }
    return {};
}

IgnoreRules::IgnoreRules(std::string_view text) {
    text.remove_prefix(text.starts_with(byteOrderMark) ? byteOrderMark.size() : 0);
    for (std::size_t number = 1; !text.empty(); ++number) {
        std::string_view line = takeLine(text);
        line.remove_suffix(line.ends_with('\r') ? 1 : 0);
        if (!line.starts_with('#')) {
            add(trimEnd(line), number);
        }
    }
}

void IgnoreRules::add(std::string_view pattern, std::size_t number) {
    if (!pattern.empty()) {
        lines.push_back({IgnoreRule(pattern), number, std::string(pattern)});
    }
}

std::optional<IgnoreRules::Match> IgnoreRules::match(std::string_view path, bool isFolder) const {
    const auto found = std::find_if(lines.rbegin(), lines.rend(),
                                    [&](const Line& line) { return line.rule.matches(path, isFolder); });
    if (found == lines.rend()) {
        return std::nullopt;
    }
    return Match{!found->rule.isNegated(), found->number, found->pattern};
}

} // namespace ombrel
