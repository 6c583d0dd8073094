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
// Whoever lets it indent takes these blanks off first. The inner lines of a block comment are never indented
// and a comment directly behind one isn't either; to move them along with the opening line one has to know
// where that line goes, which a first run tells. All of this happens before the text is handed over, because
// the lengths of comments take part in breaking lines, and a second run has to find the same lengths.

/// The text of the tokens with LF as its only line end.
std::u16string joinLexemes(const std::vector<ca::lexer::Token>& tokens);

/// The same, with no blanks in front of comment lines and of the lines that open block comments.
std::u16string joinWithBareComments(const std::vector<ca::lexer::Token>& tokens);

/// The same as joinWithBareComments, with the blanks that block comments need: a line of a block comment that
/// begins with the blanks of the opening line begins with that line's new ones instead, a line further left
/// stays, and a comment directly behind a block comment gets the new ones too. `indented` is what the
/// formatter makes of joinWithBareComments, whichever other changes it makes.
std::u16string joinWithAlignedComments(const std::vector<ca::lexer::Token>& tokens,
                                       const std::u16string& indented);

/// Whether there is a block comment.
bool hasBlockComment(const std::vector<ca::lexer::Token>& tokens);

} // namespace ombrel
