#include "text/Diff.h"

#include "text/Printable.h"

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

#include <fmt/format.h>

// The edits say what differs: the lines that they touch are replaced, and all others are context.

namespace ombrel {

namespace {

constexpr std::size_t contextLineCount = 3;

std::size_t countLines(std::string_view text) {
    const auto count = static_cast<std::size_t>(std::count(text.begin(), text.end(), '\n'));
    return count + (text.empty() || text.ends_with('\n') ? 0 : 1);
}

/// Offset of the line that a place is in.
std::size_t findLineStart(std::string_view text, std::size_t offset) {
    const std::size_t last = offset == 0 ? text.npos : text.rfind('\n', offset - 1);
    return last == text.npos ? 0 : last + 1;
}

/// Offset after the line that a place is in.
std::size_t findLineEnd(std::string_view text, std::size_t offset) {
    const std::size_t end = text.find('\n', offset);
    return end == text.npos ? text.size() : end + 1;
}

/// Whole lines that are replaced by others.
struct Change {
    std::size_t begin = 0; ///< offset in the text before
    std::size_t end = 0;   ///< after the last line; the same if lines are only added
    std::string after;
};

/// Leaves lines out that an edit only touches: one that removes a line ends at the start of the next.
void removeCommonLines(std::string_view text, Change& change) {
    std::size_t same = 0;
    while (change.begin < change.end) {
        const std::size_t length = findLineEnd(text, change.begin) - change.begin;
        if (change.after.compare(same, length, text, change.begin, length) != 0) {
            break;
        }
        change.begin += length;
        same += length;
    }
    change.after.erase(0, same);
    while (change.begin < change.end) {
        const std::size_t start = findLineStart(text, change.end - 1);
        const std::string_view line = text.substr(start, change.end - start);
        const std::size_t rest = change.after.size() - std::min(change.after.size(), line.size());
        if (!change.after.ends_with(line) || findLineStart(change.after, rest) != rest) {
            break;
        }
        change.end = start;
        change.after.resize(rest);
    }
}

/// Whether an edit can leave whole lines as they are.
bool hasLineEnd(std::string_view text, const ByteEdit& edit) {
    return text.substr(edit.offset, edit.length).find('\n') != text.npos ||
           edit.text.find('\n') != edit.text.npos;
}

/// What the edits do to lines, in order. Changes that follow each other directly are one.
std::vector<Change> makeChanges(std::string_view text, const std::vector<ByteEdit>& edits) {
    std::vector<Change> changes;
    Change change;
    for (auto edit = edits.begin(); edit != edits.end();) {
        change.begin = findLineStart(text, edit->offset);
        change.after.clear();
        std::size_t done = change.begin;
        bool hasLineEnds = false;
        do {
            change.after.append(text, done, edit->offset - done).append(edit->text);
            hasLineEnds = hasLineEnds || hasLineEnd(text, *edit);
            done = edit->offset + edit->length;
            change.end = findLineEnd(text, done);
            ++edit;
        } while (edit != edits.end() &&
                 (edit->offset < change.end || !text.substr(0, change.end).ends_with('\n')));
        change.after.append(text, done, change.end - done);
        if (hasLineEnds) {
            removeCommonLines(text, change);
        }
        if (!changes.empty() && changes.back().end == change.begin) {
            changes.back().end = change.end;
            changes.back().after += change.after;
        } else {
            changes.push_back(change);
        }
    }
    return changes;
}

/// The name as tools that apply diffs read it: a tab ends one with spaces, unless quotes do.
std::string getHeaderName(std::string_view path) {
    const std::string name = getQuotedName(path);
    const bool needsTab = name == path && path.find(' ') != path.npos;
    return name + (needsTab ? "\t" : "");
}

/// A changed line for people: an arrow before each tab, and whitespace at the end of the line on red.
std::string showWhitespace(std::string_view line) {
    const std::string_view content = line.substr(0, line.size() - (line.ends_with('\r') ? 1 : 0));
    const std::size_t last = content.find_last_not_of(" \t");
    const std::size_t tail = last == content.npos ? 0 : last + 1;
    std::string shown;
    for (std::size_t i = 0; i < content.size(); ++i) {
        shown += i == tail ? "\033[41m" : "";
        shown += content[i] == '\t' ? "\u2192\t" : std::string(1, content[i]);
    }
    shown += tail < content.size() ? "\033[49m" : "";
    return shown.append(line.substr(content.size()));
}

/// Prints the hunks of one text in order.
class Printer {
public:
    Printer(std::string_view text, Color color) : text(text), isColored(color == Color::On) {}

    void printHeader(std::string_view path) {
        const std::string name = getHeaderName(path);
        printPainted("\033[1m", "--- " + name);
        printPainted("\033[1m", "+++ " + name);
    }

    void printHunks(const std::vector<Change>& changes) {
        result.reserve(estimateLength(changes));
        for (auto first = changes.begin(); first != changes.end();) {
            auto last = first;
            std::size_t end = findContextEnd(last->end);
            while (std::next(last) != changes.end() && findContextStart(std::next(last)->begin) <= end) {
                end = findContextEnd((++last)->end);
            }
            printHunk(first, ++last, end);
            first = last;
        }
    }

    std::string take() { return std::move(result); }

private:
    using Changes = std::vector<Change>::const_iterator;

    /// Without context and color, but with some room for the marks before lines.
    static std::size_t estimateLength(const std::vector<Change>& changes) {
        std::size_t length = 0;
        for (const Change& change : changes) {
            length += change.end - change.begin + change.after.size();
        }
        return length + length / 8;
    }

    std::size_t findContextStart(std::size_t offset) const {
        for (std::size_t i = 0; i < contextLineCount && offset > 0; ++i) {
            offset = findLineStart(text, offset - 1);
        }
        return offset;
    }

    std::size_t findContextEnd(std::size_t offset) const {
        for (std::size_t i = 0; i < contextLineCount && offset < text.size(); ++i) {
            offset = findLineEnd(text, offset);
        }
        return offset;
    }

    void printHunk(Changes first, Changes last, std::size_t end) {
        const std::size_t begin = findContextStart(first->begin);
        const std::size_t countBefore = countLines(text.substr(begin, end - begin));
        std::size_t countAfter = countBefore;
        for (auto change = first; change != last; ++change) {
            countAfter += countLines(change->after);
            countAfter -= countLines(text.substr(change->begin, change->end - change->begin));
        }
        linesBefore += countLines(text.substr(counted, begin - counted));
        linesAfter += countLines(text.substr(counted, begin - counted));
        printPainted("\033[36m", fmt::format("@@ -{},{} +{},{} @@", getStart(linesBefore, countBefore),
                                             countBefore, getStart(linesAfter, countAfter), countAfter));
        std::size_t done = begin;
        for (auto change = first; change != last; ++change) {
            printLines("", ' ', text.substr(done, change->begin - done));
            printLines("\033[31m", '-', text.substr(change->begin, change->end - change->begin));
            printLines("\033[32m", '+', change->after);
            done = change->end;
        }
        printLines("", ' ', text.substr(done, end - done));
        linesBefore += countBefore;
        linesAfter += countAfter;
        counted = end;
    }

    /// The number of the first line. A range of no lines is named by the line before it.
    static std::size_t getStart(std::size_t linesAhead, std::size_t count) {
        return linesAhead + (count == 0 ? 0 : 1);
    }

    void printLines(std::string_view paint, char mark, std::string_view lines) {
        const bool isPainted = isColored && !paint.empty();
        while (!lines.empty()) {
            const std::size_t length = findLineEnd(lines, 0);
            const bool hasEnd = lines[length - 1] == '\n';
            const std::string_view content = lines.substr(0, length - (hasEnd ? 1 : 0));
            if (isPainted) {
                result.append(paint).append(1, mark).append(showWhitespace(content)).append("\033[0m\n");
            } else {
                result.append(1, mark).append(content).append(1, '\n');
            }
            result += hasEnd ? "" : "\\ No newline at end of file\n";
            lines.remove_prefix(length);
        }
    }

    void printPainted(std::string_view paint, std::string_view line) {
        result.append(isColored ? paint : "").append(line).append(isColored ? "\033[0m\n" : "\n");
    }

    std::string_view text;
    bool isColored;
    std::size_t counted = 0;     ///< offset up to which lines are counted
    std::size_t linesBefore = 0; ///< in the text before the edits, up to there
    std::size_t linesAfter = 0;  ///< the same lines after the edits
    std::string result;
};

} // namespace

std::string makeDiff(std::string_view path, std::string_view bytes, const Edits& edits, Color color) {
    const std::vector<Change> changes = makeChanges(bytes, makeByteEdits(bytes, edits));
    if (changes.empty()) {
        return {};
    }
    Printer printer(bytes, color);
    printer.printHeader(path);
    printer.printHunks(changes);
    return printer.take();
}

} // namespace ombrel
