#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ombrel {

/// One pattern with the syntax and the meaning that git gives the lines of its ignore files:
///
///     *.omb          a name, at any depth
///     /gen, a/gen    a path, from the folder of the rules
///     gen/           a folder only
///     a/**/b         any number of folders between
///     !keep.omb      takes back what earlier rules left out
class IgnoreRule {
public:
    explicit IgnoreRule(std::string_view pattern);

    /// `path` is relative to the folder of the rules, without a slash at its ends.
    bool matches(std::string_view path, bool isFolder) const;

    bool isNegated() const { return negated; }

    /// Why it never matches, as a clause for people; empty if it can.
    std::string_view getFault() const;

private:
    bool negated = false;
    bool isForFolders = false;
    bool isForNames = false;        ///< it is compared with the last part of a path, in any folder
    bool isInvalid = false;         ///< it never matches: a bracket isn't closed
    std::vector<std::string> parts; ///< between slashes, as `fnmatch` reads them
};

/// The rules of one ignore file, or those of the command line.
class IgnoreRules {
public:
    struct Match {
        bool isIgnored;
        std::size_t line; ///< of the rule that decides, from 1
        std::string pattern;
    };

    IgnoreRules() = default;

    /// Reads the text of an ignore file: empty lines and those that start with `#` are ignored, and so are
    /// spaces and tabs at the end of a line unless a backslash is before them.
    explicit IgnoreRules(std::string_view text);

    /// Adds a pattern as it is.
    void add(std::string_view pattern) { add(pattern, lines.size() + 1); }

    bool isEmpty() const { return lines.empty(); }

    /// The last rule that matches decides; nothing if none does. A path below an ignored folder has to be
    /// asked for from the top: first the folder, then what is in it.
    std::optional<Match> match(std::string_view path, bool isFolder) const;

private:
    struct Line {
        IgnoreRule rule;
        std::size_t number;
        std::string pattern;
    };

    void add(std::string_view pattern, std::size_t number);

    std::vector<Line> lines;
};

} // namespace ombrel
