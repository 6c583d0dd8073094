// Three passes over the changed gaps. The first gives back what the meaning needs: a separator of rows, a
// space between words, a line end before a header. The second settles what depends on the rest of the layout,
// and the third looks at pairs of gaps next to each other. A rule sees tokens and syntax, not the source's
// whitespace, or else a second run could decide otherwise.
#include "format/GapRules.h"

#include "format/GapText.h"
#include "format/TokenKinds.h"
#include "format/WordGaps.h"
#include "text/Whitespace.h"

#include <ca/lexer/KeywordTypes.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <unordered_set>
#include <utility>
#include <vector>

namespace ombrel {

namespace {

using ca::lexer::TokenType;
namespace keyword = ca::lexer::keyword;

/// Whether a command's word has a quote that nothing on its line closes: what is joined to its line could.
bool hasUnclosedQuote(std::u16string_view word) {
    char16_t open = 0;
    for (const char16_t c : word) {
        if (open == 0 && (c == u'\'' || c == u'"')) {
            open = c;
        } else if (c == open) {
            open = 0;
        }
    }
    return open != 0;
}

std::ptrdiff_t countLineEnds(std::u16string_view layout) {
    return std::count(layout.begin(), layout.end(), u'\n');
}

/// Whether the layout of a gap ends at the start of a line.
bool endsAtLineStart(std::u16string_view layout) {
    const std::size_t last = layout.find_last_not_of(whitespace);
    return last != layout.npos && layout[last] == u'\n';
}

/// Whether nothing but whitespace, separators and a comment are left on the line, with no continuation.
bool startsWithLineEnd(std::u16string_view layout) {
    const std::size_t first = layout.find_first_not_of(u" \t,;");
    return first != layout.npos && (layout[first] == u'\n' || layout[first] == u'%');
}

class Rules {
public:
    Rules(const GapRuleInput& input, GapChoices& choices)
        : input(input), gaps(input.gaps), syntax(input.syntax), choices(choices) {}

    void applyAll() {
        for (std::size_t gap = 0; gap < gaps.getCount(); ++gap) {
            if (choices.isChanged(gap)) {
                repair(gap);
            }
        }
        for (std::size_t gap = 0; gap < gaps.getCount(); ++gap) {
            if (choices.isChanged(gap)) {
                settle(gap);
            }
        }
        for (std::size_t gap = 1; gap < gaps.getCount(); ++gap) {
            if (choices.isChanged(gap)) {
                lookAtNeighbours(gap);
            }
        }
    }

private:
    TokenView getPrevious(std::size_t gap) const { return gaps.getToken(gap - 1); }
    TokenView getNext(std::size_t gap) const { return gaps.getToken(gap); }

    std::u16string getSource(std::size_t gap) const { return getLayout(gaps, gap, gaps.getText(gap)); }
    std::u16string getChosen(std::size_t gap) const { return getLayout(gaps, gap, choices.getText(gap)); }

    void keep(std::size_t gap) {
        choices.choose(gap, keepApart(gaps, syntax, gap, getKeptText(gaps, gap, input.isTrimming)));
    }
    void doNotBreak(std::size_t gap) { choices.choose(gap, getConservativeText(input, gap)); }

    // The first pass: each gap by itself.

    void repair(std::size_t gap) {
        if (gap == 0) {
            return;
        }
        if (const auto literal = syntax.getLiteral(gap)) {
            repairRow(gap, *literal);
            keepLineStart(gap);
        } else if (joinsShellLine(gap) || joinsUnclosedQuote(gap) || separatesFromHeader(gap)) {
            doNotBreak(gap);
            if (joinsUnclosedQuote(gap)) { // by trimming a continuation
                keep(gap);
            }
            if (choices.getText(gap).empty()) { // the formatter wanted a separator, so at least not `)x = 1`
                choices.choose(gap, u" ");
            }
        }
        const std::u16string_view text = choices.getText(gap);
        if (text.empty() || text.starts_with(u"...")) {
            std::u16string apart = keepApart(gaps, syntax, gap, std::u16string(text));
            if (apart != text) {
                choices.choose(gap, std::move(apart));
            }
        }
    }

    /// The separators of rows stay, and so do those that are elements:
    ///
    ///     [1; 2]      the formatter writes [1 2 ]
    ///     {1;; , 2}   the second and third row are a `;` and a `,`
    ///
    /// A single comma between elements may go, and so may line ends and what separates nothing next to the
    /// literal's brackets. A `;` before `}` stays: the formatter gives it the width of a space only as long
    /// as it is there, so that the lines would be broken in another way the next time.
    void repairRow(std::size_t gap, std::size_t literal) {
        const std::u16string source = getSource(gap);
        const std::u16string separators = getSeparators(source);
        const bool isSame = separators == getSeparators(getChosen(gap));
        if (isSame) {
            dropSpaceAfterComment(gap, source, separators);
        } else if (!mayLose(gap, separators)) {
            keep(gap);
            keepOpening(literal);
            literalsWithRows.insert(literal);
            if (separators.find(u'\n') != separators.npos) {
                rowEnds.push_back(gap);
            }
            return;
        }
        if (isClosing(gaps.getType(gap)) && literalsWithRows.contains(literal) &&
            source.find(u'%') == source.npos) {
            keep(gap);
        }
    }

    bool mayLose(std::size_t gap, std::u16string_view separators) const {
        if (isOpening(gaps.getType(gap - 1))) {
            return separators.find_first_of(u",;") == separators.npos;
        }
        if (!isClosing(gaps.getType(gap))) {
            return separators == u",";
        }
        const bool isBrace = gaps.getType(gap) == TokenType::CloseBrace;
        const std::size_t first = separators.find_first_of(u",;");
        const bool isAlone = first == separators.find_last_of(u",;");
        return isAlone && (!isBrace || first == separators.npos || separators[first] == u',');
    }

    /// The line end after the opening bracket of a literal stays if those of its rows do.
    void keepOpening(std::size_t literal) {
        const std::size_t gap = literal + 1;
        if (choices.isChanged(gap) && getSource(gap).find(u'%') == std::u16string::npos) {
            keep(gap);
        }
    }

    /// The formatter takes a row's last comma and what follows it for one gap, and the end of the row for
    /// another one, which trimming makes a space. After a comment that is the start of a line, and the row
    /// would move right each time. Without indentation, keepLineStart() sees to that.
    void dropSpaceAfterComment(std::size_t gap, std::u16string_view source, std::u16string_view separators) {
        const std::size_t comma = std::min(separators.find_first_of(u",;"), separators.size());
        const bool endsRow = separators.substr(comma).starts_with(u',') && !syntax.hasElement(gap) &&
                             (separators.find(u'\n', comma) != separators.npos ||
                              gaps.getType(gap) == TokenType::CloseSquareBracket);
        const std::u16string_view text = choices.getText(gap);
        if (input.isTrimming && input.isIndenting && endsRow && source.find(u'%') != source.npos &&
            text.ends_with(u' ') && gaps.getType(gap) != TokenType::CloseBrace) {
            choices.choose(gap, std::u16string(text.substr(0, text.size() - 1)));
        }
    }

    /// Without indentation, lines start where they do in the source. Trimming would move one to the right by
    /// a space each time if separators and a comment are before it.
    void keepLineStart(std::size_t gap) {
        if (!input.isTrimming || input.isIndenting) {
            return;
        }
        const std::u16string source = getSource(gap);
        const std::u16string_view text = choices.getText(gap);
        const std::size_t last = text.find_last_not_of(whitespace);
        const std::size_t lastInSource = source.find_last_not_of(whitespace);
        const bool isLineStart = last != text.npos && text[last] == u'\n' && lastInSource != source.npos &&
                                 source[lastInSource] == u'\n';
        if (isLineStart && text.size() - last > source.size() - lastInSource) {
            choices.choose(gap, std::u16string(text.substr(0, last + source.size() - lastInSource)));
        }
    }

    /// Whether the gap would put something on the line of a shell line, which reaches to the line's end.
    bool joinsShellLine(std::size_t gap) const {
        return (isShellLine(gaps.getType(gap - 1)) && !startsWithLineEnd(getChosen(gap)) &&
                gaps.getType(gap) != TokenType::EndOfInput) ||
               (isShellLine(gaps.getType(gap)) && !endsAtLineStart(getChosen(gap)));
    }

    bool joinsUnclosedQuote(std::size_t gap) {
        return gaps.getType(gap - 1) == TokenType::CommandWord &&
               countLineEnds(getChosen(gap)) < countLineEnds(getSource(gap)) && hasUnclosedWord(gap);
    }

    /// Whether a word of the command before a gap has an unclosed quote. Gaps come in ascending order, so
    /// each word is read once.
    bool hasUnclosedWord(std::size_t gap) {
        for (; nextWord < gap; ++nextWord) {
            const TokenView token = gaps.getToken(nextWord);
            isWordUnclosed =
                token.type == TokenType::CommandWord && (isWordUnclosed || hasUnclosedQuote(token.lexeme));
        }
        return isWordUnclosed;
    }

    /// A statement that follows the header of its block directly is never a command, and does not count as
    /// one that sets a variable. With a separator before it, it could be the first, and the second could make
    /// another statement of a later command.
    bool separatesFromHeader(std::size_t gap) {
        const TokenView next = getNext(gap);
        return syntax.isStatementStart(gap) &&
               (isName(next.type) || next.type == TokenType::OpenSquareBracket) && !isStartOfStatement(gap) &&
               getSeparators(getSource(gap)).empty() && !getSeparators(getChosen(gap)).empty() &&
               (mayBeCommand(gap) || namesCommand(gap));
    }

    /// Whether a statement could be a command if it stood for itself, by the token after its name.
    bool mayBeCommand(std::size_t token) const {
        if (!isName(gaps.getType(token)) || syntax.getUnitEnd(syntax.getUnit(token)) == token + 1 ||
            !getSeparators(getSource(token + 1)).empty()) {
            return false;
        }
        const TokenView next = getNext(token + 1);
        return !isOpening(next.type) && next.type != TokenType::Assign;
    }

    /// Whether one of the names that a statement sets is also the name of a command in this text.
    bool namesCommand(std::size_t token) {
        const bool isList = !isName(gaps.getType(token));
        for (std::size_t i = token; i < gaps.getCount(); ++i) {
            if (isName(gaps.getType(i)) && getCommandNames().contains(gaps.getToken(i).lexeme)) {
                return true;
            }
            if (!isList || isClosing(gaps.getType(i))) {
                return false;
            }
        }
        return false;
    }

    const std::unordered_set<std::u16string_view>& getCommandNames() {
        if (!commandNames) {
            commandNames.emplace();
            for (std::size_t token = 1; token < gaps.getCount(); ++token) {
                if (gaps.getType(token) == TokenType::CommandWord && isName(gaps.getType(token - 1))) {
                    commandNames->insert(getPrevious(token).lexeme);
                }
            }
        }
        return *commandNames;
    }

    /// Whether the tokenizer lets a statement start after the token before a gap, without any separator.
    bool isStartOfStatement(std::size_t gap) const {
        switch (gaps.getType(gap - 1)) {
        case keyword::Else:
        case keyword::Try:
        case keyword::Catch:
        case keyword::Otherwise:
        case keyword::Spmd:
        case TokenType::End:
            return true;
        case TokenType::CloseParenthesis:
            return isAllInParentheses(syntax.getUnit(gap - 1) + 1, gap - 1);
        default:
            return false;
        }
    }

    /// Whether one pair of parentheses is around all tokens from `first` to `last`.
    bool isAllInParentheses(std::size_t first, std::size_t last) const {
        int depth = 0;
        for (std::size_t token = first; token < last; ++token) {
            depth += isOpening(gaps.getType(token)) ? 1 : isClosing(gaps.getType(token)) ? -1 : 0;
            if (depth == 0) {
                return false;
            }
        }
        return depth == 1;
    }

    // The second pass: what the literals' rows have come to is known.

    /// The formatter measures a literal as if its rows were on one line. If they stay on lines of their own,
    /// breaking the operators after it would serve nothing.
    void settle(std::size_t gap) {
        while (nextRowEnd < rowEnds.size() && rowEnds[nextRowEnd] < gap) {
            endOfUnitWithRows = syntax.getUnitEnd(syntax.getUnit(rowEnds[nextRowEnd++]));
        }
        if (gap < endOfUnitWithRows && breaksOperator(gap)) {
            choices.choose(gap, u" ");
        }
    }

    /// Whether the formatter breaks a line in a gap that has no continuation and no comment.
    bool breaksOperator(std::size_t gap) const {
        const std::u16string chosen = getChosen(gap);
        return chosen.find(u"...") != chosen.npos && chosen.find(u'%') == chosen.npos &&
               getSource(gap).find(u"...") == std::u16string::npos;
    }

    // The third pass: gaps that depend on each other.

    void lookAtNeighbours(std::size_t gap) {
        lookAtOperator(gap - 1);
        lookAtOperator(gap);
        lookAtEndIndex(gap - 1);
        lookAtEndIndex(gap);
    }

    void lookAtOperator(std::size_t token) {
        if (token == 0 || token + 1 >= gaps.getCount()) {
            return;
        }
        if (syntax.isSuperclassAt(token)) {
            balanceAt(token);
        } else if (isSign(gaps.getType(token)) && syntax.getLiteral(token)) {
            keepSign(token);
        }
    }

    /// `name@Super` has spaces on both sides of its @ or on none.
    void balanceAt(std::size_t token) {
        const bool isEmptyBefore = choices.getText(token).empty();
        if (isEmptyBefore != choices.getText(token + 1).empty()) {
            choices.choose(isEmptyBefore ? token : token + 1, u" ");
        }
    }

    /// In a literal, a sign with something before it and nothing after it starts an element, and one with
    /// something after it doesn't.
    void keepSign(std::size_t token) {
        const std::u16string before = getChosen(token);
        const bool isEmptyAfter = choices.getText(token + 1).empty();
        if (!syntax.isPrefix(token) && !before.empty() && isEmptyAfter) {
            choices.choose(token + 1, u" ");
        } else if (syntax.isPrefix(token) && !isEmptyAfter && getSeparators(before).empty() &&
                   endsOperand(gaps.getType(token - 1))) {
            const std::u16string_view text = choices.getText(token);
            choices.choose(token, text == u" " ? u"," : u"," + std::u16string(text));
        }
    }

    /// An `end` that has a line for itself closes a block. So the index of that name may not be left alone by
    /// a line break before it.
    void lookAtEndIndex(std::size_t token) {
        if (token == 0 || gaps.getType(token) != TokenType::EndIndex || !choices.isChanged(token) ||
            token + 1 >= gaps.getCount()) {
            return;
        }
        const std::u16string before = getChosen(token);
        if (endsAtLineStart(before) && before.find(u'%') == before.npos &&
            startsWithLineEnd(getChosen(token + 1))) {
            choices.choose(token, u" ");
        }
    }

    const GapRuleInput& input;
    const GapList& gaps;
    const SyntaxContext& syntax;
    GapChoices& choices;
    std::unordered_set<std::size_t> literalsWithRows; ///< whose rows the formatter would have joined
    std::vector<std::size_t> rowEnds;                 ///< line ends that it would have taken from these
    std::size_t nextWord = 0;    ///< the first token that wasn't looked at for unclosed quotes
    bool isWordUnclosed = false; ///< of the command that it may belong to
    std::size_t nextRowEnd = 0;
    std::size_t endOfUnitWithRows = 0; ///< the unit of the last row end before a gap
    std::optional<std::unordered_set<std::u16string_view>> commandNames; ///< found when they are asked for
};

} // namespace

void repairGaps(const GapRuleInput& input, GapChoices& choices) {
    Rules(input, choices).applyAll();
}

std::u16string getConservativeText(const GapRuleInput& input, std::size_t gap) {
    const std::u16string_view text = input.gaps.getText(gap);
    if (countLeadingWhitespace(text) == text.size()) { // has nothing to break or to join
        return input.isTrimming && !text.empty() ? u" " : std::u16string(text);
    }
    const std::u16string separators = getSeparators(getLayout(input.gaps, gap, text));
    if (const GapAlignment* unbroken = input.getUnbroken()) {
        const std::u16string_view formatted = unbroken->getText(gap);
        if (getSeparators(getLayout(input.gaps, gap, formatted)) == separators) {
            return keepApart(input.gaps, input.syntax, gap, std::u16string(formatted));
        }
    }
    return keepApart(input.gaps, input.syntax, gap, getKeptText(input.gaps, gap, input.isTrimming));
}

} // namespace ombrel
