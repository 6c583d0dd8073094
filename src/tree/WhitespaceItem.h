#pragma once

#include <ca/lexer/Token.h>

#include <cstdint>
#include <vector>

namespace ca::formatting {

enum class WhitespaceItemKind : std::uint32_t {
    LineEndingItem = 0,       ///< a line end; always has a token
    LineStartItem = 1,        ///< where a line's indentation goes; has a token if there was whitespace
    InlineWhitespaceItem = 2, ///< whitespace inside a line; always has a token
    SeparatorItem = 3,        ///< a semicolon, a comma or a continuation; always has a token
    CommentItem = 4,          ///< a comment or the text after a continuation; always has a token
};

/// One thing in the gap between two tokens of code.
struct WhitespaceItem {
    const ca::lexer::Token* token; ///< owned by the tree; may be null
    WhitespaceItemKind kind;
    bool isBlankLine; ///< of a line start: the line has nothing on it
};

/// Says what each token of a run stands for, and adds a line start without a token wherever a line begins
/// without whitespace:
///
///     ;⏎          SeparatorItem  LineEndingItem
///     ⏎           LineStartItem (blank)  LineEndingItem
///       % note⏎   CommentItem  LineEndingItem            the comment's lexeme holds its whitespace
///     x           LineStartItem                          x itself is the token after the run
///
/// A run that begins a file has no line start for the first line, since no line end is before it. `items` is
/// overwritten.
void classifyRun(const std::vector<const ca::lexer::Token*>& run, std::vector<WhitespaceItem>& items);

} // namespace ca::formatting
