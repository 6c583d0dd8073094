#pragma once

#include <ca/lexer/Token.h>

#include <cstdint>
#include <memory_resource>
#include <optional>
#include <vector>

namespace ca::formatting {

enum class WhitespaceItemKind : std::uint32_t {
    LineEndingItem = 0,       ///< a line end; always has a token
    LineStartItem = 1,        ///< where a line's indentation goes; has a token if there were blanks
    InlineWhitespaceItem = 2, ///< blanks inside a line; always has a token
    SeparatorItem = 3,        ///< a semicolon, a comma or a continuation; always has a token
    CommentItem = 4,          ///< a comment or the text behind a continuation; always has a token
};

/// One thing in the gap between two tokens of code.
struct WhitespaceItem {
    WhitespaceItemKind kind;
    std::optional<const ca::lexer::Token*> token; ///< owned by the tree
    bool isBlankLine;                             ///< of a line start: the line has nothing on it
};

/// Says what each token of a run stands for, and adds a line start without a token wherever a line begins
/// without blanks:
///
///     ;⏎          SeparatorItem  LineEndingItem
///     ⏎           LineStartItem (blank)  LineEndingItem
///       % note⏎   CommentItem  LineEndingItem            the comment's lexeme holds its blanks
///     x           LineStartItem                          x itself is the token behind the run
///
/// A run that begins a file has no line start for the first line, since no line end is in front of it. The
/// items are kept in `memory`.
std::pmr::vector<WhitespaceItem> classifyRun(const std::vector<const ca::lexer::Token*>& run,
                                             std::pmr::memory_resource* memory);

} // namespace ca::formatting
