#pragma once

#include <ca/lexer/Token.h>

#include <cstddef>
#include <optional>
#include <vector>

namespace ombrel {

/// Follows the tokens of a text and knows whether a statement goes on: in a matrix, after a continuation.
/// Needs no syntax tree, since text that doesn't parse has statements too. A block's header counts as a
/// statement, and so does a member of a class.
class StatementTracker {
public:
    /// To be called for each token, in order.
    void take(const ca::lexer::Token& token);

    /// Whether a statement has begun before the next token and goes on with it.
    bool isInside() const { return inside; }

    /// Whether the last token has ended a statement: a separator, or the end of a line that doesn't go on.
    bool hasEnded() const { return ended; }

    /// Whether the statement before the last token was unfinished: a keyword at the start of a line says that
    /// its brackets were forgotten.
    bool hasGivenUp() const { return givenUp; }

private:
    void takeLineEnd();
    void takeCode(const ca::lexer::Token& token);
    void close(ca::lexer::TokenType opening);
    void end();

    std::vector<ca::lexer::TokenType> brackets; ///< that are open, by their opening tokens
    bool inside = false;
    bool ended = false;
    bool givenUp = false;
    bool isLineStart = true; ///< no code on the line so far
    bool isContinued = false;
    bool hasComment = false; ///< the line is a comment
};

/// Looks for the end of a statement, a block being one with all that is in it: of the one that goes on, or
/// else of the first one that begins.
class StatementSearch {
public:
    /// Starts after the tokens that the tracker has taken, at this offset in the text, in 16-bit characters.
    /// If functions aren't closed by `end`, one ends before the next.
    StatementSearch(const StatementTracker& tracker, std::size_t offset, bool areFunctionsClosed);

    /// To be called for each token from there on, in order, while it is true.
    bool take(const ca::lexer::Token& token);

    /// The offset after the last line of the statement. Nothing if the block, or the text, ends before there
    /// is one.
    std::optional<std::size_t> getEnd() const;

private:
    bool isBefore(const ca::lexer::Token& token) const;
    void takeCode(ca::lexer::TokenType type);
    void takeLineEnd();

    StatementTracker tracker;
    std::optional<std::size_t> end;
    std::size_t offset;  ///< after the tokens so far
    std::size_t codeEnd; ///< after the last line with code
    bool areFunctionsClosed;
    bool hasBegun;
    bool hasCode = false; ///< on the line
    bool isOver = false;  ///< the statement ends with the line
    int depth = 0;        ///< of blocks
};

/// Whether the functions of a text are closed by `end`: one that is decides for all.
bool hasFunctionEnds(const std::vector<ca::lexer::Token>& tokens);

} // namespace ombrel
