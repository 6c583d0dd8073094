#pragma once

#include <ca/lexer/Token.h>

#include <string>
#include <vector>

namespace ombrel {

// The tree formatter prints a comment as its token has it, and the token of a comment line holds the line's
// leading blanks. So an indented comment would move right by its level with every run:
//
//     if a                      if a
//         % why                         % why        the level's four blanks, then the comment's own
//         x = 1;                    x = 1;
//     end                       end
//
// Whoever calls it takes these blanks off first, and afterwards moves the inner lines of a block comment to
// where its opening line has gone.

/// The text of the tokens with each line end as LF, and with no blanks in front of comment lines and of the
/// opening lines of block comments if `isIndented`. Inner lines of a block comment stay as they are.
std::u16string getTextToFormat(const std::vector<ca::lexer::Token>& tokens, bool isIndented);

/// Puts block comments right in an indented result. A line of a block comment that began with the blanks of
/// the opening line begins with that line's new ones instead; a line further left stays. A comment directly
/// behind a block comment, which the formatter doesn't indent, gets the same blanks as the block comment.
/// `before` are the tokens of the text as it was before getTextToFormat.
std::u16string alignBlockComments(const std::vector<ca::lexer::Token>& before, const std::u16string& result);

} // namespace ombrel
