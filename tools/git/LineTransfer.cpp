#include "git/LineTransfer.h"

#include "text/LineSplitter.h"

#include <algorithm>

namespace ombrel {

namespace {

std::string_view getContent(std::string_view line) {
    const std::size_t length = line.size() - (line.ends_with('\n') ? 1 : 0);
    return line.substr(0, length > 0 && line[length - 1] == '\r' ? length - 1 : length);
}

/// The index of the first line after the lines before a hunk: where there are lines, its own first.
std::size_t getStart(std::uint32_t first, std::uint32_t count) {
    return count == 0 ? first : first - 1;
}

class Transfer {
public:
    Transfer(std::string_view before, std::string_view after, std::string_view text)
        : before(splitLines(before)), after(splitLines(after)), lines(splitLines(text)) {
        result.reserve(text.size() + after.size() - std::min(before.size(), after.size()));
    }

    bool isPossible() const { return before.size() == after.size(); }

    std::string run(const std::vector<Hunk>& hunks) {
        for (const Hunk& hunk : hunks) {
            transferUpTo(getStart(hunk.newFirst, hunk.newCount));
            old = getStart(hunk.oldFirst, hunk.oldCount) + hunk.oldCount;
            keep(hunk.newCount);
        }
        transferUpTo(lines.size());
        return std::move(result);
    }

private:
    void transferUpTo(std::size_t end) {
        for (; next < std::min(end, lines.size()); ++next, ++old) {
            const std::string_view line = lines[next];
            if (old < before.size() && getContent(before[old]) == getContent(line)) {
                const std::string_view lineEnd = line.substr(getContent(line).size());
                result.append(getContent(after[old])).append(lineEnd);
            } else {
                result += line;
            }
        }
    }

    void keep(std::size_t count) {
        for (const std::size_t end = std::min(next + count, lines.size()); next < end; ++next) {
            result += lines[next];
        }
    }

    std::vector<std::string_view> before;
    std::vector<std::string_view> after;
    std::vector<std::string_view> lines;
    std::size_t old = 0;  ///< index in `before` and `after`
    std::size_t next = 0; ///< index in `lines`
    std::string result;
};

} // namespace

std::string transferLines(std::string_view before, std::string_view after, const std::vector<Hunk>& hunks,
                          std::string_view text) {
    Transfer transfer(before, after, text);
    return transfer.isPossible() ? transfer.run(hunks) : std::string(text);
}

} // namespace ombrel
