#include "git/GitDiff.h"

#include "git/Git.h"
#include "text/LineSplitter.h"

#include <cctype>
#include <charconv>
#include <map>

#include <fmt/format.h>

namespace ombrel {

namespace {

[[noreturn]] void refuse(std::string_view line) {
    throw GitError(fmt::format("can't read git's diff at \"{}\"", line));
}

/// Takes lines from the front of a text, without their ends.
class LineReader {
public:
    explicit LineReader(std::string_view text) : rest(text) {}

    bool isAtEnd() const { return rest.empty(); }
    bool isAt(char c) const { return rest.starts_with(c); }

    std::string_view getNext() { return takeLine(rest); }

private:
    std::string_view rest;
};

bool takePrefix(std::string_view& text, std::string_view prefix) {
    if (!text.starts_with(prefix)) {
        return false;
    }
    text.remove_prefix(prefix.size());
    return true;
}

std::uint32_t takeNumber(std::string_view& text, std::string_view line) {
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        refuse(line);
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

/// `@@ -2 +2,3 @@ …`: a count that is missing is 1.
Hunk parseHunk(std::string_view line) {
    Hunk hunk{0, 1, 0, 1};
    std::string_view rest = line;
    takePrefix(rest, "@@ -");
    hunk.oldFirst = takeNumber(rest, line);
    hunk.oldCount = takePrefix(rest, ",") ? takeNumber(rest, line) : 1;
    if (!takePrefix(rest, " +")) {
        refuse(line);
    }
    hunk.newFirst = takeNumber(rest, line);
    hunk.newCount = takePrefix(rest, ",") ? takeNumber(rest, line) : 1;
    return hunk;
}

char takeEscaped(std::string_view& text, std::string_view line) {
    static const std::map<char, char> letters{{'a', '\a'}, {'b', '\b'}, {'t', '\t'}, {'n', '\n'}, {'v', '\v'},
                                              {'f', '\f'}, {'r', '\r'}, {'"', '"'},  {'\\', '\\'}};
    if (const auto letter = letters.find(text.front()); letter != letters.end()) {
        text.remove_prefix(1);
        return letter->second;
    }
    unsigned value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + std::min<std::size_t>(3, text.size()), value, 8);
    if (error != std::errc() || end != text.data() + 3) {
        refuse(line);
    }
    text.remove_prefix(3);
    return static_cast<char>(value);
}

/// The name after `+++ b/`. Names with unusual bytes are in quotes, with octal escapes; others with spaces
/// have a tab after them.
std::string parseName(std::string_view line) {
    std::string_view rest = line;
    const bool isQuoted = takePrefix(rest, "\"");
    if (!takePrefix(rest, "b/")) {
        refuse(line);
    }
    if (!isQuoted) {
        return std::string(rest.substr(0, rest.find('\t')));
    }
    std::string name;
    while (!rest.empty() && rest.front() != '"') {
        const char c = rest.front();
        rest.remove_prefix(1);
        name += c == '\\' && !rest.empty() ? takeEscaped(rest, line) : c;
    }
    return name;
}

class DiffParser {
public:
    explicit DiffParser(std::string_view text) : lines(text) {}

    std::vector<FileDiff> parse() {
        while (!lines.isAtEnd()) {
            parseLine(lines.getNext());
        }
        return std::move(files);
    }

private:
    void parseLine(std::string_view line) {
        std::string_view rest = line;
        if (takePrefix(rest, "diff --git ")) {
            next = FileDiff{};
            isThere = false;
        } else if (takePrefix(rest, "index ")) {
            parseIndex(rest, line);
        } else if (takePrefix(rest, "new mode ") || takePrefix(rest, "new file mode ")) {
            next.isRegular = rest.starts_with("100");
        } else if (takePrefix(rest, "+++ ") && rest != "/dev/null") {
            next.path = parseName(rest);
            isThere = true;
            files.push_back(std::move(next));
        } else if (line.starts_with("@@ ")) {
            addHunk(parseHunk(line));
        }
    }

    /// `index OLD..NEW`, and the mode if it is the same on both sides.
    void parseIndex(std::string_view rest, std::string_view line) {
        const std::size_t dots = rest.find("..");
        if (dots == std::string_view::npos) {
            refuse(line);
        }
        const std::size_t space = std::min(rest.find(' '), rest.size());
        next.blob = rest.substr(dots + 2, space - dots - 2);
        if (space < rest.size()) {
            next.isRegular = rest.substr(space + 1).starts_with("100");
        }
    }

    /// Its lines are skipped by their number: they may look like anything.
    void addHunk(const Hunk& hunk) {
        for (std::uint64_t i = 0; i < std::uint64_t{hunk.oldCount} + hunk.newCount; ++i) {
            lines.getNext();
            if (lines.isAt('\\')) {
                lines.getNext();
            }
        }
        if (isThere) {
            files.back().hunks.push_back(hunk);
        }
    }

    LineReader lines;
    std::vector<FileDiff> files;
    FileDiff next;        ///< the file whose header is being read
    bool isThere = false; ///< the hunks to come belong to the last of `files`, not to a file that is gone
};

/// A name as git reads it in a diff, each byte that could mean something as an octal escape.
std::string quote(const std::string& name) {
    std::string quoted;
    for (const char c : name) {
        const auto byte = static_cast<unsigned char>(c);
        const bool isHarmless = byte < 0x80 && (std::isalnum(byte) != 0 || c == '/' || c == '.');
        quoted += isHarmless ? std::string(1, c) : fmt::format("\\{:03o}", byte);
    }
    return quoted;
}

} // namespace

const std::vector<std::string>& getDiffOptions() {
    static const std::vector<std::string> options{"-p",
                                                  "--unified=0",
                                                  "--inter-hunk-context=0",
                                                  "--text",
                                                  "--full-index",
                                                  "--no-color",
                                                  "--no-ext-diff",
                                                  "--no-textconv",
                                                  "--src-prefix=a/",
                                                  "--dst-prefix=b/",
                                                  "--find-renames",
                                                  "--ignore-submodules=all"};
    return options;
}

std::vector<FileDiff> parseDiff(std::string_view text) {
    return DiffParser(text).parse();
}

std::vector<LineRange> getNewLines(const FileDiff& file) {
    std::vector<LineRange> ranges;
    for (const Hunk& hunk : file.hunks) {
        if (hunk.newCount > 0) {
            ranges.push_back({hunk.newFirst, hunk.newFirst + hunk.newCount - 1});
        }
    }
    return ranges;
}

std::string makeExchange(const std::string& path, const std::string& before, const std::string& after) {
    // The length that git's format wants after the ids is that of an empty text: git takes the text from the
    // object `after`.
    return fmt::format("diff --git \"a/{0}\" \"b/{0}\"\nindex {1}..{2}\nGIT binary patch\n"
                       "literal 0\nHcmV?d00001\n\n",
                       quote(path), before, after);
}

} // namespace ombrel
