#include "format/RowIndentation.h"

#include "format/GapEdits.h"
#include "text/LineSplitter.h"
#include "text/Whitespace.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace ombrel {

namespace {

/// The whitespace between a line's start and the token after a gap; nothing if the token isn't first on its
/// line.
std::optional<std::u16string_view> getLineStart(std::u16string_view gapText, bool isFirstGap) {
    const std::size_t lineEnd = gapText.find_last_of(u"\r\n");
    if (lineEnd == gapText.npos && !isFirstGap) {
        return std::nullopt;
    }
    const std::u16string_view start = gapText.substr(lineEnd + 1);
    return countLeadingWhitespace(start) == start.size() ? std::optional(start) : std::nullopt;
}

/// Whether a gap has line ends, and neither continuations nor comments: lines after those the formatter
/// indents itself.
bool hasRowEnd(std::u16string_view gapText) {
    return gapText.find_first_of(u"\r\n") != gapText.npos && gapText.find(u"...") == gapText.npos &&
           gapText.find(u'%') == gapText.npos;
}

/// What a statement's lines start with before and after formatting.
struct Move {
    std::u16string before;
    std::u16string after;

    std::u16string apply(std::u16string_view whitespace) const {
        if (whitespace.starts_with(before)) { // tabs stay where they are
            return after + std::u16string(whitespace.substr(before.size()));
        }
        if (after.size() > before.size()) {
            return after.substr(before.size()) + std::u16string(whitespace);
        }
        return std::u16string(whitespace.substr(std::min(before.size() - after.size(), whitespace.size())));
    }
};

/// The chosen text of a gap with the starts of its lines moved, where they are the same as in the source.
/// Nothing if it has other lines than the source.
std::optional<std::u16string> moveLines(std::u16string_view source, std::u16string_view chosen,
                                        const Move& move) {
    std::u16string result;
    LineSplitter before(source);
    LineSplitter after(chosen);
    for (bool isFirst = true;; isFirst = false) {
        const auto a = before.getNext();
        const auto b = after.getNext();
        if (!a || !b) {
            return a || b ? std::nullopt : std::optional(std::move(result));
        }
        const std::size_t length = countLeadingWhitespace(b->content);
        const std::u16string_view whitespace = b->content.substr(0, length);
        const bool isLast = b->end.empty();
        const bool isKept = whitespace == a->content.substr(0, countLeadingWhitespace(a->content));
        const bool isMoved = !isFirst && isKept && (isLast || length < b->content.size());
        result += isMoved ? move.apply(whitespace) : std::u16string(whitespace);
        result.append(b->content.substr(length)).append(isLast ? u"" : u"\n");
    }
}

class RowMover {
public:
    RowMover(const GapRuleInput& input, const EditSelection& selection, GapChoices& choices)
        : gaps(input.gaps), syntax(input.syntax), selection(selection), choices(choices) {}

    void run() {
        std::size_t unit = gaps.getCount();
        std::optional<Move> move;
        for (std::size_t gap = 1; gap < gaps.getCount(); ++gap) {
            if (!syntax.getLiteral(gap) || !hasRowEnd(gaps.getText(gap))) {
                continue;
            }
            if (const std::size_t own = syntax.getUnit(gap); own != unit) {
                unit = own;
                move = findMove(unit);
            }
            if (move) {
                moveGap(gap, *move);
            }
        }
    }

private:
    std::optional<Move> findMove(std::size_t unit) {
        const auto before = getLineStart(gaps.getText(unit), unit == 0);
        const auto after = getLineStart(choices.getText(unit), unit == 0);
        if (!before || !after || *before == *after || !isEdited(unit, before->size())) {
            return std::nullopt;
        }
        return Move{std::u16string(*before), std::u16string(*after)};
    }

    /// Whether an edit changes the line's start of this length before a token.
    bool isEdited(std::size_t token, std::size_t length) const {
        const Edits edits = makeEdits(gaps, choices, selection, token);
        return !edits.empty() && edits.back().getEnd() + length >= gaps.getEnd(token);
    }

    void moveGap(std::size_t gap, const Move& move) {
        if (!hasRowEnd(choices.getText(gap))) {
            return;
        }
        if (auto text = moveLines(gaps.getText(gap), choices.getText(gap), move)) {
            choices.choose(gap, *std::move(text));
        }
    }

    const GapList& gaps;
    const SyntaxContext& syntax;
    const EditSelection& selection;
    GapChoices& choices;
};

} // namespace

void moveRows(const GapRuleInput& input, const EditSelection& selection, GapChoices& choices) {
    RowMover(input, selection, choices).run();
}

} // namespace ombrel
