#include "ca/formatting/LegacyFormatter.h"
#include "legacy/Line.h"

#include <utility>

// A line that has its final blanks tells where the next line stands: at the width of those blanks (`base`)
// plus what the line's tokens open and close (`delta`). With a level of 4:
//
//     if a             base 0, delta 4       the next line stands at 4
//         b = [c       base 4, delta 4       at 8
//             d];      base 8, delta 0;      the bracket was opened on another line, so closing it
//                                            replaces the base by 4, from the bracket's entry on the stack
//     end              base 0                the same for a block: the line has no delta of its own to give
//     back
//
// Each entry of the stack is a copy of the token that opened something, with the width of its inside in
// `column`.

namespace ca::formatting::legacy {

namespace {

class LineTracker {
public:
    explicit LineTracker(LegacyFormatter& state)
        : state(state), settings(state.settings), levelWidth(state.settings.indentSize) {}

    void run(LineView line) {
        switch (line[0].type) {
        case TokenType::BlockCommentBody:
            return;
        case TokenType::BlockCommentOpen:
            openBlockComment(line[0]);
            return;
        case TokenType::BlockCommentClose:
            if (isTop(TokenType::BlockCommentOpen)) {
                state.nestingStack.pop_back();
                return;
            }
            break;
        default:
            break;
        }
        startLine(line);
        for (const Token& token : line) {
            trackToken(token);
        }
        state.currentIndentation = base + delta;
    }

private:
    const Token& top() const { return state.nestingStack.back(); }

    bool isTop(TokenType type) const { return !state.nestingStack.empty() && top().type == type; }

    bool isTopABracket() const { return !state.nestingStack.empty() && isOpeningBracket(top().type); }

    bool isTopAFunction() const { return top().type == TokenType::Function; }

    void push(const Token& token, std::uint32_t indentation) {
        state.nestingStack.push_back(token);
        state.nestingStack.back().column = indentation;
    }

    /// True if the line before ended in a continuation, which is forgotten.
    bool takeContinuation() { return std::exchange(state.inContinuation, false); }

    void openBlockComment(const Token& token) {
        push(token, measureBlanks(getLeadingBlanks(token.lexeme), settings));
        if (takeContinuation()) {
            state.currentIndentation = subtractLevel(state.currentIndentation, settings);
        }
    }

    void startLine(LineView line) {
        base = measureStart(line[0]);
        if (takeContinuation()) {
            base = subtractLevel(base, settings);
        }
        const TokenType first = getFirstCodeToken(line).type;
        if (state.isASecondaryKeyword(first) || state.isASecondaryIndentedKeyword(first)) {
            delta = levelWidth;
        }
    }

    std::uint32_t measureStart(const Token& token) const {
        switch (token.type) {
        case TokenType::Whitespace:
            return measureBlanks(token.lexeme, settings);
        case TokenType::LineComment:
            return measureBlanks(getLeadingBlanks(token.lexeme), settings);
        default:
            return 0;
        }
    }

    void trackToken(const Token& token) {
        switch (token.type) {
        case TokenType::Function:
            openFunction(token);
            return;
        case TokenType::ClassLevelKeyword20:
        case TokenType::ClassLevelKeyword22:
            ++state.functionDepth;
            openBlock(token);
            return;
        case TokenType::OpenSquareBracket:
        case TokenType::OpenBrace:
            openBracket(token);
            return;
        case TokenType::Continuation:
            continueLine();
            return;
        case TokenType::End:
            closeBlock();
            return;
        case TokenType::CloseSquareBracket:
        case TokenType::CloseBrace:
            closeBracket();
            return;
        default:
            if (state.isAnOpeningKeyword(token.type)) {
                openBlock(token);
            }
        }
    }

    /// A keyword's entry is one level in, however much the line has opened before it.
    void pushKeyword(const Token& token) { push(token, delta == 0 ? base : base + levelWidth); }

    void openBlock(const Token& token) {
        delta += levelWidth;
        pushKeyword(token);
    }

    void openFunction(const Token& token) {
        const FunctionStyle style = settings.functionIndentStyle;
        if (style == FunctionStyle::All || (style == FunctionStyle::Mixed && state.functionDepth != 0)) {
            delta += levelWidth;
        }
        ++state.functionDepth;
        pushKeyword(token);
    }

    /// Only the outermost bracket indents.
    void openBracket(const Token& token) {
        if (state.bracketDepth == 0) {
            delta += levelWidth;
        }
        ++state.bracketDepth;
        push(token, base + delta);
    }

    /// Lends the next line a level, which that line gives back when its own turn comes. A list needs none.
    void continueLine() {
        if (!isTopABracket()) {
            state.inContinuation = true;
            delta += levelWidth;
        }
    }

    /// Takes a level off this line's delta, if it has one to give.
    bool takeLevel() {
        if (delta < levelWidth) {
            return false;
        }
        delta -= levelWidth;
        return true;
    }

    /// Gives back the level of what `top` opened. An entry less than one level in wraps around.
    void closeLevel() {
        if (!takeLevel()) {
            base = top().column - levelWidth;
        }
    }

    /// Closes what is on top, be it a bracket, which `bracketDepth` then still counts.
    void closeBlock() {
        if (state.nestingStack.empty()) {
            return;
        }
        if (isTopAFunction()) {
            closeFunction();
        } else {
            state.functionDepth -= isClassLevelKeyword(top().type) ? 1 : 0;
            closeLevel();
        }
        state.nestingStack.pop_back();
    }

    void closeFunction() {
        --state.functionDepth;
        if (!takeLevel()) {
            base = getBaseBehindFunction();
        }
    }

    /// Under Classic a function inside another one or a class gives back a level that its body never took, so
    /// a run of methods walks to the left. Users of that style know it so.
    std::uint32_t getBaseBehindFunction() const {
        const std::uint32_t inside = top().column;
        const FunctionStyle style = settings.functionIndentStyle;
        if (state.functionDepth == 0 && style != FunctionStyle::All) {
            return inside;
        }
        const std::uint32_t outside = subtractLevel(inside, settings);
        if (state.functionDepth == 1 && style == FunctionStyle::Mixed) {
            return subtractLevel(outside, settings);
        }
        return outside;
    }

    /// Either closing bracket closes either opening one.
    void closeBracket() {
        if (!isTopABracket()) {
            return;
        }
        --state.bracketDepth;
        if (state.bracketDepth == 0) {
            closeLevel();
        }
        state.nestingStack.pop_back();
    }

    LegacyFormatter& state;
    const Settings& settings;
    const std::uint32_t levelWidth;
    std::uint32_t base = 0;
    std::uint32_t delta = 0;
};

/// The scan for function ends is stricter about brackets than the tracker: each kind closes only its own.
bool closesTop(TokenType type, TokenType top) {
    switch (type) {
    case TokenType::End:
        return true;
    case TokenType::CloseBrace:
        return top == TokenType::OpenBrace;
    case TokenType::CloseSquareBracket:
        return top == TokenType::OpenSquareBracket;
    default:
        return false;
    }
}

} // namespace

void trackLine(LegacyFormatter& formatter, LineView line) {
    LineTracker(formatter).run(line);
}

void LegacyFormatter::trackIndentationCausedByLine(const std::vector<Token>& line) {
    trackLine(*this, line);
}

bool LegacyFormatter::checkForFunctionEnds(const std::vector<Token>& tokens) const {
    std::vector<TokenType> open;
    for (const Token& token : tokens) {
        if (isAnOpeningKeyword(token.type)) {
            open.push_back(token.type);
        } else if (!open.empty() && closesTop(token.type, open.back())) {
            if (token.type == TokenType::End && open.back() == TokenType::Function) {
                return true;
            }
            open.pop_back();
        }
    }
    return false;
}

} // namespace ca::formatting::legacy
