#pragma once

#include <ca/formatting/LegacyFormatter.h>
#include <ca/formatting/lineWalk.h>

#include <cstdint>
#include <utility>
#include <vector>

// A line whose leading whitespace is final sets the indentation of the next line: the width of that
// whitespace (`base`) plus what the line's tokens open and close (`delta`). With a level of 4:
//
//     if a             base 0, delta 4       the next line is indented by 4
//         b = [c       base 4, delta 4       by 8
//             d];      base 8, delta 0       The bracket was opened on another line, so closing it replaces
//                                            the base: 4, from the bracket's entry on the stack.
//     end              base 0                The same for a block, which this line has not opened either.
//
// Each entry of the stack is a copy of the token that opened something, with the indentation of its inside in
// `column`.

namespace ca::formatting::legacy {

/// `width` less one level, and never less than 0.
inline std::uint32_t subtractLevel(std::uint32_t width, const Settings& settings) {
    return settings.indentSize < width ? width - settings.indentSize : 0;
}

/// The type of the token that says what a line is: its first one, or its second after whitespace.
inline ca::lexer::TokenType getFirstCodeToken(const std::vector<ca::lexer::Token>& line) {
    return line[line.size() > 1 && line[0].type == ca::lexer::TokenType::Whitespace ? 1 : 0].type;
}

/// LegacyFormatter::trackIndentationCausedByLine() one token at a time, for callers who have no list of the
/// line's tokens. The formatter has to outlive the tracker, which is for one line.
class LineTracker {
    using Token = ca::lexer::Token;
    using TokenType = ca::lexer::TokenType;

public:
    explicit LineTracker(LegacyFormatter& state)
        : state(state), settings(state.settings), levelWidth(state.settings.indentSize) {}

    /// Takes the line's first tokens, which decide where it starts. False if its tokens don't change the
    /// nesting, as those of a block comment's line: there is nothing else to do then.
    bool start(const std::vector<Token>& line) {
        switch (line[0].type) {
        case TokenType::BlockCommentBody:
            return false;
        case TokenType::BlockCommentOpen:
            openBlockComment(line[0]);
            return false;
        case TokenType::BlockCommentClose:
            if (isTop(TokenType::BlockCommentOpen)) {
                state.nestingStack.pop_back();
                return false;
            }
            break;
        default:
            break;
        }
        startLine(line);
        return true;
    }

    /// Takes each token of the line, or at least those that pass changesNesting(). Their text doesn't matter.
    void take(const Token& token) {
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
            if (opensNesting(token.type)) {
                openBlock(token);
            }
        }
    }

    /// Sets the level of the next line.
    void finish() { state.currentIndentation = base + delta; }

private:
    const Token& top() const { return state.nestingStack.back(); }

    bool isTop(TokenType type) const { return !state.nestingStack.empty() && top().type == type; }

    bool isTopABracket() const { return isTop(TokenType::OpenSquareBracket) || isTop(TokenType::OpenBrace); }

    bool isTopAFunction() const { return top().type == TokenType::Function; }

    void push(const Token& token, std::uint32_t indentation) {
        state.nestingStack.push_back(token);
        state.nestingStack.back().column = indentation;
    }

    /// True if the line before ended in a continuation. The next call returns false.
    bool takeContinuation() { return std::exchange(state.inContinuation, false); }

    void openBlockComment(const Token& token) {
        push(token, measureLeadingWhitespace(token));
        if (takeContinuation()) {
            state.currentIndentation = subtractLevel(state.currentIndentation, settings);
        }
    }

    void startLine(const std::vector<Token>& line) {
        base = measureStart(line[0]);
        if (takeContinuation()) {
            base = subtractLevel(base, settings);
        }
        const TokenType first = getFirstCodeToken(line);
        if (state.isASecondaryKeyword(first) || state.isASecondaryIndentedKeyword(first)) {
            delta = levelWidth;
        }
    }

    std::uint32_t measureLeadingWhitespace(const Token& token) const {
        return state.calculateIndentationSize(token.lexeme.substr(0, token.lexeme.find_first_not_of(u"\t ")));
    }

    std::uint32_t measureStart(const Token& token) const {
        switch (token.type) {
        case TokenType::Whitespace:
            return state.calculateIndentationSize(token.lexeme);
        case TokenType::LineComment:
            return measureLeadingWhitespace(token);
        default:
            return 0;
        }
    }

    /// A keyword's entry is one level in, even if the line has opened other blocks before it.
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

    /// Indents the next line by one more level, which takeContinuation() takes back there. Lines of a list
    /// are indented by their bracket and need no other level.
    void continueLine() {
        if (!isTopABracket()) {
            state.inContinuation = true;
            delta += levelWidth;
        }
    }

    /// Removes a level from this line's delta; false if the line has opened none.
    bool takeLevel() {
        if (delta < levelWidth) {
            return false;
        }
        delta -= levelWidth;
        return true;
    }

    /// Removes the level of what `top` opened. If its entry is less than one level in, the base wraps around.
    void closeLevel() {
        if (!takeLevel()) {
            base = top().column - levelWidth;
        }
    }

    /// Closes whatever is on top. If that is a bracket, `bracketDepth` still counts it.
    void closeBlock() {
        if (state.nestingStack.empty()) {
            return;
        }
        if (isTopAFunction()) {
            closeFunction();
        } else {
            const bool isOfClass =
                isTop(TokenType::ClassLevelKeyword20) || isTop(TokenType::ClassLevelKeyword22);
            state.functionDepth -= isOfClass ? 1 : 0;
            closeLevel();
        }
        state.nestingStack.pop_back();
    }

    void closeFunction() {
        --state.functionDepth;
        if (!takeLevel()) {
            base = getBaseAfterFunction();
        }
    }

    /// Under Classic the body of a function inside another function or a class is not indented, but its `end`
    /// removes a level all the same, so each method in a row is indented less than the one before. This is
    /// meant: it is how files in that style look.
    std::uint32_t getBaseAfterFunction() const {
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

} // namespace ca::formatting::legacy
