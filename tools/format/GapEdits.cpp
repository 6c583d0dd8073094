// Turns each changed gap into edits, each as small as can be accepted alone, since a range of lines may
// accept some of a gap's edits and leave others. So a gap is cut at its comments, which never change, and
// what is between two comments is cut at its line ends. The gap between 1 and b has four such parts:
//
//     a = 1 ;   % c      the text before the comment, and nothing after it
//                        nothing
//       b                the whitespace before b
//
// Where a line was joined to another or split in two, all lines between two comments are one edit.

#include "format/GapEdits.h"

#include "format/GapEditor.h"
#include "text/LineSplitter.h"
#include "text/Whitespace.h"

#include <algorithm>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

namespace ombrel {

namespace {

using ca::lexer::TokenType;

std::u16string_view getFirstLineEnd(std::u16string_view text) {
    const std::u16string_view end = LineSplitter(text).getNext()->end;
    return end.empty() ? u"\n" : end;
}

/// A part of the source and of a chosen text, both between two comments.
struct Section {
    std::size_t offset;
    std::u16string_view before;
    std::u16string_view after;
};

/// The length of the whole lines that both texts start with.
std::size_t countSameLines(std::u16string_view before, std::u16string_view after) {
    const auto different = std::mismatch(before.begin(), before.end(), after.begin(), after.end()).first;
    const auto same = before.substr(0, static_cast<std::size_t>(different - before.begin()));
    return same.find_last_of(u'\n') + 1; // 0 if there is none
}

/// Whether the second text is the first one without some of its commas and semicolons, whitespace aside.
bool losesOnlySeparators(std::u16string_view before, std::u16string_view after) {
    std::size_t i = 0;
    for (const char16_t c : after) {
        if (isWhitespace(c)) {
            continue;
        }
        while (i < before.size() && before[i] != c && before[i] != u'.') {
            ++i;
        }
        if (i == before.size() || before[i] != c) {
            return false;
        }
        ++i;
    }
    return before.find(u'.', i) == before.npos;
}

/// A block comment in the source, whose lines are edited together.
struct Block {
    std::size_t begin; ///< of its first line
    std::size_t end;
};

std::vector<Block> findBlocks(std::u16string_view source, std::span<const GapComment> comments) {
    std::vector<Block> blocks;
    int depth = 0;
    for (const GapComment& comment : comments) {
        if (comment.type == TokenType::BlockCommentOpen && depth++ == 0) {
            const std::size_t lastLineEnd = source.substr(0, comment.offset).find_last_of(u"\r\n");
            blocks.push_back({lastLineEnd == source.npos ? 0 : lastLineEnd + 1, 0});
        } else if (comment.type == TokenType::BlockCommentClose && --depth == 0) {
            blocks.back().end = comment.offset + comment.text.size();
        }
    }
    return blocks;
}

/// Collects the edits of one text, gap by gap.
class Writer {
public:
    Writer(const GapList& gaps, const EditSelection& selection)
        : gaps(gaps), source(gaps.getSource()), selection(selection), editor(gaps) {}

    void write(std::size_t gap, std::u16string_view chosen) {
        editor.enter(gap);
        blocks.clear();
        nextBlock = 0;
        const Section section{gaps.getBegin(gap), gaps.getText(gap), chosen};
        if (editor.getComments().empty()) {
            writeSection(section);
        } else {
            writeBetweenComments(gap, section);
        }
    }

    Edits take() { return editor.take(); }

private:
    void writeBetweenComments(std::size_t gap, const Section& whole) {
        const std::vector<GapComment>& comments = editor.getComments();
        blocks = findBlocks(source, comments);
        if (!findComments(gaps, gap, whole.after, commentsAfter)) {
            throw std::logic_error("the text chosen for a gap isn't one of that gap");
        }
        std::size_t doneBefore = 0;
        std::size_t doneAfter = 0;
        for (std::size_t i = 0; i < comments.size(); ++i) {
            const std::size_t offset = comments[i].offset - whole.offset;
            const std::size_t offsetAfter = commentsAfter[i].offset;
            writeSection({whole.offset + doneBefore, whole.before.substr(doneBefore, offset - doneBefore),
                          whole.after.substr(doneAfter, offsetAfter - doneAfter)});
            doneBefore = offset + comments[i].text.size();
            doneAfter = offsetAfter + comments[i].text.size();
        }
        writeSection(
            {whole.offset + doneBefore, whole.before.substr(doneBefore), whole.after.substr(doneAfter)});
    }

    void writeSection(const Section& whole) {
        if (whole.before == whole.after) {
            return;
        }
        const std::size_t sameLines = countSameLines(whole.before, whole.after);
        const Section section{whole.offset + sameLines, whole.before.substr(sameLines),
                              whole.after.substr(sameLines)};
        if (isOneLine(section) && losesOnlySeparators(section.before, section.after)) {
            add(section.offset, section.before, section.after);
        } else if (isLineByLine(section)) {
            writeLines(section);
        } else {
            writeWhole(section);
        }
    }

    static bool isOneLine(const Section& section) {
        return std::none_of(section.before.begin(), section.before.end(), isLineEnd) &&
               std::none_of(section.after.begin(), section.after.end(), isLineEnd);
    }

    /// Whether each line changes for itself: whitespace may come and go, and separators may go. One that
    /// comes may be what takes the place of another line's.
    static bool isLineByLine(const Section& section) {
        LineSplitter before(section.before);
        LineSplitter after(section.after);
        for (;;) {
            const auto a = before.getNext();
            const auto b = after.getNext();
            if (!a || !b) {
                return !a && !b;
            }
            if (!losesOnlySeparators(a->content, b->content)) {
                return false;
            }
        }
    }

    void writeLines(const Section& section) {
        LineSplitter before(section.before);
        LineSplitter after(section.after);
        std::size_t offset = section.offset;
        while (const auto line = before.getNext()) {
            const std::u16string_view content = after.getNext()->content;
            const bool joinsLineEnds =
                content.empty() && line->end == u"\n" && source.substr(0, offset).ends_with(u'\r');
            if (!joinsLineEnds) {
                add(offset, line->content, content);
            }
            offset += line->content.size() + line->end.size();
        }
    }

    void writeWhole(const Section& section) {
        std::u16string text;
        std::u16string_view end = getLineEndBefore(section.offset);
        LineSplitter before(section.before);
        LineSplitter after(section.after);
        while (const auto line = after.getNext()) {
            text += line->content;
            const auto lineBefore = before.getNext();
            if (lineBefore && !lineBefore->end.empty()) {
                end = lineBefore->end;
            }
            if (!line->end.empty()) {
                text += text.ends_with(u'\r') && end == u"\n" ? u"\r" : end;
            }
        }
        addDifference(section.offset, section.before, text);
    }

    /// The end of the line before a place, which a new line gets. Places come in ascending order, so the text
    /// is searched once.
    std::u16string_view getLineEndBefore(std::size_t offset) {
        const std::size_t last = source.substr(searched, offset - searched).find_last_of(u"\r\n");
        if (last != source.npos) {
            const std::size_t end = searched + last + 1;
            const std::size_t length = end > 1 && source.substr(end - 2, 2) == u"\r\n" ? 2 : 1;
            lineEndBefore = source.substr(end - length, length);
        } else if (lineEndBefore.empty()) {
            lineEndBefore = getFirstLineEnd(source);
        }
        searched = offset;
        return lineEndBefore;
    }

    /// Without what both texts have in common at their start and end.
    void addDifference(std::size_t offset, std::u16string_view before, std::u16string_view after) {
        std::size_t start = 0;
        while (start < before.size() && start < after.size() && before[start] == after[start]) {
            ++start;
        }
        if (start > 0 && before[start - 1] == u'\r') { // never between CR and LF
            --start;
        }
        before.remove_prefix(start);
        after.remove_prefix(start);
        while (!before.empty() && !after.empty() && before.back() == after.back() && before.back() != u'\n') {
            before.remove_suffix(1);
            after.remove_suffix(1);
        }
        add(offset + start, before, after);
    }

    void add(std::size_t offset, std::u16string_view before, std::u16string_view after) {
        if (before == after || !isSelected(offset, offset + before.size())) {
            return;
        }
        editor.add({offset, before.size(), std::u16string(after)});
    }

    /// Places come in ascending order.
    bool isSelected(std::size_t begin, std::size_t end) {
        while (nextBlock < blocks.size() && blocks[nextBlock].end < begin) {
            ++nextBlock;
        }
        for (std::size_t i = nextBlock; i < blocks.size() && blocks[i].begin <= end; ++i) {
            begin = std::min(begin, blocks[i].begin);
            end = std::max(end, blocks[i].end);
        }
        return selection.accepts(begin, end);
    }

    const GapList& gaps;
    std::u16string_view source;
    const EditSelection& selection;
    GapEditor editor;
    std::size_t searched = 0;              ///< how far the source was searched for line ends
    std::u16string_view lineEndBefore;     ///< the last one there; the first of the text before that
    std::vector<GapComment> commentsAfter; ///< of the gap, in its chosen text
    std::vector<Block> blocks;             ///< of the gap
    std::size_t nextBlock = 0;             ///< the first that ends at the current place or after it
};

} // namespace

Edits makeEdits(const GapList& gaps, const GapChoices& choices, const EditSelection& selection) {
    Writer writer(gaps, selection);
    for (std::size_t gap = 0; gap < gaps.getCount(); ++gap) {
        if (choices.isChanged(gap)) {
            writer.write(gap, choices.getText(gap));
        }
    }
    return writer.take();
}

Edits makeEdits(const GapList& gaps, const GapChoices& choices, const EditSelection& selection,
                std::size_t gap) {
    Writer writer(gaps, selection);
    writer.write(gap, choices.getText(gap));
    return writer.take();
}

} // namespace ombrel
