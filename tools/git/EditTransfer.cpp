#include "git/EditTransfer.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <string>

namespace ombrel {

namespace {

constexpr std::size_t nowhere = static_cast<std::size_t>(-1);

/// The lines of a text, as git counts them: by line feeds.
class LineTable {
public:
    explicit LineTable(std::u16string_view text) : text(text) {
        std::size_t start = 0;
        while (start < text.size()) {
            starts.push_back(start);
            start = std::min(text.find(u'\n', start), text.size() - 1) + 1;
        }
        starts.push_back(text.size());
    }

    std::size_t getCount() const { return starts.size() - 1; }
    std::size_t getStart(std::size_t line) const { return starts[line]; }

    /// The line that a place is in; the end of the text belongs to the last line.
    std::size_t find(std::size_t offset) const {
        const auto next = std::upper_bound(starts.begin(), starts.end() - 1, offset);
        return static_cast<std::size_t>(next - starts.begin()) - (next == starts.begin() ? 0 : 1);
    }

    std::u16string_view getContent(std::size_t line) const {
        const std::u16string_view all = getLine(line);
        return all.substr(0, all.size() - getLineEnd(line).size());
    }

    /// LF or CRLF; empty for a last line without one.
    std::u16string_view getLineEnd(std::size_t line) const {
        const std::u16string_view all = getLine(line);
        const std::size_t length = all.ends_with(u"\r\n") ? 2 : all.ends_with(u'\n') ? 1 : 0;
        return all.substr(all.size() - length);
    }

private:
    std::u16string_view getLine(std::size_t line) const {
        return text.substr(starts[line], starts[line + 1] - starts[line]);
    }

    std::u16string_view text;
    std::vector<std::size_t> starts; ///< and the end of the text
};

/// The index of the first line after the lines before a hunk: where there are lines, its own first.
std::size_t getStart(std::uint32_t first, std::uint32_t count) {
    return count == 0 ? first : first - 1;
}

/// For each line of the first version its number in the second one, or `nowhere`.
std::vector<std::size_t> findCounterparts(const LineTable& from, const std::vector<Hunk>& hunks,
                                          const LineTable& to) {
    std::vector<std::size_t> counterparts(from.getCount(), nowhere);
    std::size_t line = 0;
    std::size_t other = 0;
    const auto pairUpTo = [&](std::size_t end) {
        for (; line < std::min(end, from.getCount()) && other < to.getCount(); ++line, ++other) {
            counterparts[line] = from.getContent(line) == to.getContent(other) ? other : nowhere;
        }
    };
    for (const Hunk& hunk : hunks) {
        pairUpTo(getStart(hunk.oldFirst, hunk.oldCount));
        line = getStart(hunk.oldFirst, hunk.oldCount) + hunk.oldCount;
        other = getStart(hunk.newFirst, hunk.newCount) + hunk.newCount;
    }
    pairUpTo(from.getCount());
    return counterparts;
}

/// The text with other line ends, if it has LF or CRLF.
std::u16string replaceLineEnds(std::u16string_view text, std::u16string_view end) {
    std::u16string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const bool isCrLf = text.substr(i, 2) == u"\r\n";
        if (isCrLf || text[i] == u'\n') {
            result += end;
            i += isCrLf ? 1 : 0;
        } else {
            result += text[i];
        }
    }
    return result;
}

class Transfer {
public:
    Transfer(std::u16string_view from, const std::vector<Hunk>& hunks, std::u16string_view to)
        : from(from), to(to), counterparts(findCounterparts(this->from, hunks, this->to)) {}

    std::optional<Edit> move(const EditView& edit) const {
        if (from.getCount() == 0) {
            return std::nullopt;
        }
        const std::size_t first = from.find(edit.offset);
        const std::size_t last = from.find(edit.getEnd());
        for (std::size_t line = first; line <= last; ++line) {
            if (counterparts[line] == nowhere || counterparts[line] != counterparts[first] + line - first) {
                return std::nullopt;
            }
        }
        const std::size_t begin = movePlace(edit.offset, first);
        return Edit{begin, movePlace(edit.getEnd(), last) - begin, moveText(edit.text, first)};
    }

private:
    std::size_t movePlace(std::size_t offset, std::size_t line) const {
        const std::size_t column = offset - from.getStart(line);
        return column <= from.getContent(line).size() ? to.getStart(counterparts[line]) + column
                                                      : to.getStart(counterparts[line] + 1);
    }

    std::u16string moveText(std::u16string_view text, std::size_t line) const {
        const std::u16string_view before = from.getLineEnd(line);
        const std::u16string_view after = to.getLineEnd(counterparts[line]);
        return before == after || before.empty() || after.empty() ? std::u16string(text)
                                                                  : replaceLineEnds(text, after);
    }

    LineTable from;
    LineTable to;
    std::vector<std::size_t> counterparts;
};

} // namespace

std::vector<Edit> transferEdits(std::u16string_view from, const Edits& edits, const std::vector<Hunk>& hunks,
                                std::u16string_view to) {
    const Transfer transfer(from, hunks, to);
    std::vector<Edit> moved;
    for (const EditView edit : edits) {
        if (auto counterpart = transfer.move(edit)) {
            moved.push_back(*std::move(counterpart));
        }
    }
    return moved;
}

} // namespace ombrel
