#include "text/Diff.h"

#include "text/LineSplitter.h"
#include "text/Printable.h"

#include <ostream>
#include <vector>

#include <dtl/dtl.hpp>

namespace ombrel {

namespace {

using Lines = std::vector<std::string_view>;
using DiffOfLines = dtl::Diff<std::string_view, Lines>;
using EditedLine = std::pair<std::string_view, dtl::elemInfo>;
using Hunk = dtl::uniHunk<EditedLine>;

/// The name as tools that apply diffs read it: a tab ends one with spaces, unless quotes do.
std::string getHeaderName(std::string_view path) {
    const std::string name = getQuotedName(path);
    const bool needsTab = name == path && path.find(' ') != path.npos;
    return name + (needsTab ? "\t" : "");
}

class Printer {
public:
    Printer(std::ostream& stream, Color color) : stream(stream), isColored(color == Color::On) {}

    void printHeader(std::string_view path) {
        const std::string name = getHeaderName(path);
        start("\033[1m") << "--- " << name;
        finish();
        start("\033[1m") << "+++ " << name;
        finish();
    }

    void printHunk(const Hunk& hunk) {
        start("\033[36m") << "@@ -" << getStart(hunk.a, hunk.b) << ',' << hunk.b << " +"
                          << getStart(hunk.c, hunk.d) << ',' << hunk.d << " @@";
        finish();
        printLines(hunk.common[0]);
        printLines(hunk.change);
        printLines(hunk.common[1]);
    }

private:
    /// A range of no lines is named by the line before it.
    static long long getStart(long long first, long long count) { return count == 0 ? first - 1 : first; }

    void printLines(const std::vector<EditedLine>& lines) {
        for (const auto& [line, edit] : lines) {
            printLine(line, edit.type);
        }
    }

    void printLine(std::string_view line, dtl::edit_t type) {
        const bool hasEnd = line.ends_with('\n');
        line.remove_suffix(hasEnd ? 1 : 0);
        if (type == dtl::SES_ADD) {
            start("\033[32m") << '+' << line;
        } else if (type == dtl::SES_DELETE) {
            start("\033[31m") << '-' << line;
        } else {
            start("") << ' ' << line;
        }
        finish();
        if (!hasEnd) {
            stream << "\\ No newline at end of file\n";
        }
    }

    std::ostream& start(const char* paint) {
        isPainted = isColored && *paint != '\0';
        return isPainted ? stream << paint : stream;
    }

    void finish() { stream << (isPainted ? "\033[0m\n" : "\n"); }

    std::ostream& stream;
    bool isColored;
    bool isPainted = false;
};

} // namespace

void printDiff(std::ostream& stream, std::string_view path, std::string_view before, std::string_view after,
               Color color) {
    if (before == after) {
        return;
    }
    // With their ends, so that a last line without one differs from the same line with one.
    DiffOfLines diff(splitLines(before), splitLines(after));
    diff.compose();
    diff.composeUnifiedHunks();

    Printer printer(stream, color);
    printer.printHeader(path);
    for (const Hunk& hunk : diff.getUniHunks()) {
        printer.printHunk(hunk);
    }
}

} // namespace ombrel
