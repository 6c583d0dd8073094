#include "format/LineEngine.h"

#include "format/IndentationGuard.h"
#include "format/LineRanges.h"
#include "text/LineEdgeEditor.h"
#include "text/Whitespace.h"

#include <ca/formatting/LegacyFormatter.h>
#include <ca/formatting/LineTracker.h>
#include <ca/formatting/lineWalk.h>
#include <ca/lexer/LineTokenizer.h>

#include <algorithm>
#include <limits>
#include <span>
#include <utility>

#include <fmt/format.h>

// The formatter works on tokens and may change any of them. What counts here is only the whitespace that a
// line has at its edges before and after: where that differs, it is an edit. Everything else is the source
// text.
//
// The text is formatted while it is tokenized, and of each line only the tokens that matter are made, so that
// a text costs little more memory than its edits.

namespace ombrel {

namespace {

using namespace ca::formatting::legacy;
using ca::lexer::Token;
using ca::lexer::TokenType;
using Tokens = std::vector<Token>;
using Spans = std::span<const ca::lexer::TokenSpan>;

constexpr std::uint32_t lastPossibleLine = std::numeric_limits<std::uint32_t>::max();

Problem makeProblem(const RunawayIndentation& runaway) {
    constexpr const char* advice = "; look above for an `end`, a bracket or an `else` that has no partner";
    const std::string text =
        runaway.width > maximalIndentation
            ? fmt::format("this line would be indented by {} columns{}", runaway.width, advice)
            : fmt::format("up to this line indentation would add {} characters{}", runaway.whitespaceCount,
                          advice);
    return {Code::RunawayIndentation, text, runaway.line, 1};
}

/// LegacyFormatter::checkForFunctionEnds() of all tokens of the text.
bool hasFunctionEnds(const std::u16string& text, const LegacyFormatter& formatter) {
    FunctionEndFinder finder(formatter);
    ca::lexer::LineTokenizer tokenizer(text, changesNesting);
    for (Spans line = tokenizer.next(); !line.empty(); line = tokenizer.next()) {
        if (std::any_of(line.begin(), line.end(),
                        [&finder](const auto& token) { return finder.isFunctionEnd(token.type); })) {
            return true;
        }
    }
    return false;
}

/// Appends the whitespace that the line starts with, which may be in several tokens.
void appendLeadingWhitespace(std::u16string& run, const Tokens& line) {
    for (const Token& token : line) {
        const std::size_t length = countLeadingWhitespace(token.lexeme);
        run.append(token.lexeme, 0, length);
        if (length != token.lexeme.size()) {
            return;
        }
    }
}

/// Whether whitespace is left before the line's end. Tokens without content don't count, such as line ends
/// and the end of the text.
bool endsInWhitespace(const Tokens& line) {
    const auto last = std::find_if(line.rbegin(), line.rend(),
                                   [](const Token& token) { return !removeLineEnds(token.lexeme).empty(); });
    return last != line.rend() && isWhitespace(removeLineEnds(last->lexeme).back());
}

/// One run over the lines of a text.
class LineRun {
public:
    LineRun(const std::u16string& text, const Settings& settings, const std::vector<LineRange>& ranges,
            const Suppression& suppression)
        : text(text), editor(text), formatter(settings), guard(text.size()), range(ranges.begin()),
          rangeEnd(ranges.end()), region(suppression.regions.begin()), regionEnd(suppression.regions.end()) {}

    void run() {
        ca::lexer::LineTokenizer tokenizer(text, changesNesting);
        for (Spans tokens = tokenizer.next(); !tokens.empty(); tokens = tokenizer.next()) {
            // The line of a block comment that ends the text comes with the text's end, which is a line too.
            const bool isTwo = tokens.size() > 1 && endsLine(tokens[tokens.size() - 2].type);
            if ((isTwo && !takeLine(tokens.first(tokens.size() - 1))) ||
                !takeLine(isTwo ? tokens.last(1) : tokens)) {
                return;
            }
        }
    }

    Result<Edits> getResult() {
        if (const auto& runaway = guard.getRunaway()) {
            return fail(makeProblem(*runaway));
        }
        return editor.take();
    }

private:
    /// False if the lines that follow don't matter.
    bool takeLine(Spans tokens) {
        startLine();
        if (range == rangeEnd) {
            return false;
        }
        if (tokens.size() == 1 && isEmptyAndStaysSo(tokens[0].type)) {
            offset += tokens[0].length;
            return true;
        }
        const std::size_t length = makeLine(tokens);
        const LineSteps steps = getLineSteps(formatter, getPlace(), line);
        if (steps.trims) {
            formatter.removeTrailingWhitespaceInPlace(line);
        }
        if (steps.indents && !indent()) {
            return false;
        }
        if (steps.tracks) {
            track(tokens);
        }
        if (steps.trims && !isSuppressed()) {
            addEdits(std::u16string_view(text).substr(offset, length));
        }
        offset += length;
        return true;
    }

    /// Such a line needs no step at all, wherever it is.
    bool isEmptyAndStaysSo(TokenType type) const {
        return formatter.isALineEnding(type) && formatter.settings.blankLineStyle != BlankLineStyle::Indent;
    }

    /// Makes the tokens at the edges of a line, all that the steps before tracking look at. Returns the
    /// length of the whole line.
    std::size_t makeLine(Spans tokens) {
        line.resize(std::min<std::size_t>(tokens.size(), 5));
        auto token = line.begin();
        std::uint32_t place = 0;
        for (std::size_t index = 0; index != tokens.size(); ++index) {
            const auto& [type, length] = tokens[index];
            if (index < 2 || index + 3 >= tokens.size()) {
                token->type = type;
                token->lexeme.assign(text, offset + place, length);
                token->line = number;
                token->column = place + 1;
                ++token;
            }
            place += length;
        }
        return place;
    }

    /// `tokens` are those of the line before it was indented, but only whitespace makes a difference.
    void track(Spans tokens) {
        LineTracker tracker(formatter);
        if (!tracker.start(line)) {
            return;
        }
        for (const auto& [type, length] : tokens) {
            if (changesNesting(type)) {
                tracker.take({type, {}, number, 1});
            }
        }
        tracker.finish();
    }

    void startLine() {
        ++number;
        while (range != rangeEnd && range->last < number) {
            ++range;
        }
        while (region != regionEnd && region->end <= offset) {
            ++region;
        }
    }

    LinePlace getPlace() const { return number < range->first ? LinePlace::BeforeRange : LinePlace::InRange; }

    bool isSuppressed() const { return region != regionEnd && region->begin <= offset; }

    bool indent() {
        if (!knowsFunctionEnds && !formatter.nestingStack.empty() &&
            getFirstCodeToken(line) == TokenType::Function) {
            formatter.functionsHaveEnds = hasFunctionEnds(text, formatter) ? 1 : 0;
            knowsFunctionEnds = true;
        }
        const bool isEnd = line.front().type == TokenType::EndOfInput;
        const std::uint32_t width = isEnd ? 0 : formatter.calculateIndentationOfLine(line);
        if (!guard.allows(number, width, formatter.calculateNumOfWhitespaceChar(width))) {
            return false;
        }
        formatter.indentLineInPlace(line);
        return true;
    }

    /// What has become of the whitespace at the edges of the line at `offset`.
    void addEdits(std::u16string_view source) {
        const std::u16string_view content = removeLineEnds(source);
        const std::size_t leading = countLeadingWhitespace(content);
        indentation.clear();
        appendLeadingWhitespace(indentation, line);
        const bool isBlank = leading == content.size();
        if (content.substr(0, leading) != indentation && !(isBlank && joinsLineEnds(source))) {
            editor.add({offset, leading, indentation});
        }
        const std::size_t kept = removeTrailingWhitespace(content).size();
        if (!isBlank && kept != content.size() && !endsInWhitespace(line)) {
            editor.add({offset + kept, content.size() - kept, {}});
        }
    }

    /// Whether a blank line that loses its whitespace would disappear: its LF would belong to the CR before
    /// it.
    bool joinsLineEnds(std::u16string_view source) const {
        return indentation.empty() && source.ends_with(u'\n') && !source.ends_with(u"\r\n") && offset > 0 &&
               text[offset - 1] == u'\r';
    }

    const std::u16string& text;
    LineEdgeEditor editor;
    LegacyFormatter formatter;
    IndentationGuard guard;
    std::vector<LineRange>::const_iterator range; ///< that ends at this line or after it
    std::vector<LineRange>::const_iterator rangeEnd;
    std::vector<SuppressedRegion>::const_iterator region; ///< likewise
    std::vector<SuppressedRegion>::const_iterator regionEnd;
    std::uint32_t number = 0; ///< of the line
    std::size_t offset = 0;   ///< of the line in the text
    Tokens line;
    std::u16string indentation;
    bool knowsFunctionEnds = false; ///< not before the first function inside something else
};

Settings makeSettings(const LineOptions& options) {
    return {1,
            lastPossibleLine,
            options.useTabs ? 0U : 1U,
            options.tabSize,
            options.indentSize,
            options.functionStyle,
            options.blankLines};
}

} // namespace

Result<Edits> formatLines(const std::u16string& text, const LineOptions& options,
                          std::vector<LineRange> ranges, const Suppression& suppression) {
    if (auto checked = checkRanges(text, ranges); !checked) {
        return fail(std::move(checked.error()));
    }
    if (ranges.empty()) {
        ranges.push_back({1, lastPossibleLine});
    }
    ranges = mergeRanges(std::move(ranges));
    LineRun run(text, makeSettings(options), ranges, suppression);
    run.run();
    return run.getResult();
}

} // namespace ombrel
