#pragma once

#include "tree/WhitespaceItem.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace ca::formatting {

/// Moves the comments of one run that have a line of their own to the level of the run.
///
/// A comment's token holds the whitespace before it, and the node prints the indentation of the level
/// before it, so that whitespace is left out. Where the node prints none, since the token before it is a
/// line of a block comment with its line end, the indentation is part of what this class prints:
///
///     x             item by item: line end, line start with the indentation,
///       %{                         "%{⏎" without its two spaces,
///         why                      the indentation and "  why⏎": all but the two spaces of the line above,
///       %}                         the indentation and "%}⏎",
///       % and how                  the indentation and "% and how"
///
/// A block comment is in one run from its first line to its last, so one run is all that has to be known.
class CommentMover {
public:
    /// Without an indentation, only line ends change: to LF.
    /// The indentation has to outlive the mover.
    CommentMover(bool isIndenting, std::u16string_view indentation)
        : isIndenting(isIndenting), indentation(indentation) {}

    /// To be called with each item of the run in turn. What a comment is printed as is kept until the next
    /// call.
    void step(const WhitespaceItem& item);

    /// Length of the comment as it is printed, in 16-bit characters.
    std::size_t getWidth() const;

    void append(std::u16string& text) const;

private:
    void stepComment(const ca::lexer::Token& comment);
    void printBare(bool isAfterBlock);
    void printMoved();

    bool isIndenting;
    std::u16string indentation;           ///< of the level
    std::size_t depth = 0;                ///< open block comments
    bool isBlockClosed = false;           ///< by the item before
    std::u16string_view blockIndentation; ///< in the source, of the block comment that is open

    std::u16string_view content; ///< of the comment: no line end, nor what is left out
    bool isIndented = false;     ///< the indentation comes first
    bool hasLineEnd = false;
};

} // namespace ca::formatting
