#pragma once

#include "AssignmentTracker.h"
#include "Characters.h"
#include "Keywords.h"
#include "Literals.h"
#include "Nesting.h"
#include "ca/lexer/LineTokenizer.h"

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace ca::lexer {

/// One pass over a text, a physical line at a time.
///
/// What a character means depends on what is open around it, and on little else: the brackets, the blocks,
/// whether a statement may start here, and which names have been assigned. All of it is small and explicit
/// state, and no look-ahead goes over the same text more than a fixed number of times, so the pass is linear
/// for any text.
class Lexer {
public:
    explicit Lexer(const std::u16string& source, TokenFilter filter = nullptr);

    /// As LineTokenizer::next().
    std::span<const TokenSpan> nextLine();

private:
    // Reading. The text is followed by a NUL character, so the character at its end can be read.
    char16_t at(std::size_t index) const { return text[index]; }
    bool isAtLineEnd(std::size_t index) const;
    bool isAtCommentOrLineEnd(std::size_t index) const;
    std::size_t skipBlanks(std::size_t index) const;
    std::size_t skipBlanksAndSeparators(std::size_t index) const;
    std::size_t skipNameCharacters(std::size_t index) const;
    std::size_t skipLineEnd(std::size_t index) const;
    std::size_t skipGap(std::size_t index) const;
    std::size_t skipContinuation(std::size_t index) const;
    std::size_t skipBlockComment(std::size_t index) const;
    std::size_t skipParentheses(std::size_t index) const;
    std::size_t skipString(std::size_t index) const;
    std::size_t skipQuoted(std::size_t index) const;
    std::size_t findLineEnd(std::size_t index) const;
    std::size_t trimBlanks(std::size_t begin, std::size_t end) const;
    std::u16string_view getText(std::size_t begin, std::size_t end) const;
    bool isLoneOnLine(std::size_t index, std::u16string_view mark) const;

    // Writing. Each makes a token of the text from `position` to `end` and moves there.
    void emit(TokenType type, std::size_t end);
    void emitCode(TokenType type, std::size_t end);
    void leaveOutMiddle();
    void emitBlanks() {
        if (isBlank(at(position))) {
            emit(TokenType::Whitespace, skipBlanks(position));
        }
    }
    void emitLineEnd();
    void emitWholeLine(TokenType type);

    // Lines.
    void lexLine();
    void lexBlockCommentLine();
    void lexCommentLine(std::size_t percent);
    void lexBlankLine();
    void lexCodeLine(std::size_t code);
    void endStatementLine();
    void giveUpUnclosedBrackets(std::size_t code);
    bool cannotBeInBrackets(std::size_t code, bool isInBlock) const;
    bool isLoneEnd(std::size_t code) const;

    // Tokens of a line of code.
    void lexToken();
    void beginCode(char16_t first);
    void lexCode(char16_t first);
    void lexCommandToken();
    std::size_t findWordEnd() const;
    void lexContinuation();
    void lexWord();
    void lexKeyword(TokenType type, std::size_t end);
    void lexEnd(std::size_t end);
    void lexQuote();
    void lexString();
    void lexDot();
    void lexSeparator();
    void lexNumber();
    void lexOperator();
    void lexBracket(TokenType bracket);
    void openBracket(TokenType bracket);
    void closeBracket(TokenType bracket);
    void lexUnrecognized();
    void noteStatement(TokenType first);
    void allowStatement();

    // Questions about a word.
    bool isKeywordHere(Keyword keyword, std::size_t end) const;
    bool isNamedLikeKeyword(std::size_t end) const;
    bool isArgumentsLine(std::size_t end) const;
    bool isImport(std::size_t end) const;
    bool namesCaughtError(std::size_t end) const;
    bool isCommand(std::u16string_view name, std::size_t end);
    bool isCommandWord(std::size_t index) const;
    bool isCommandOperator(std::size_t index) const;
    bool endsWords(std::size_t index) const;
    bool canBeTransposed() const;

    const char16_t* text;
    std::size_t size;
    TokenFilter filter; ///< as LineTokenizer's
    std::size_t position = 0;
    std::vector<TokenSpan> line;      ///< tokens of the line at hand
    std::size_t longLineSize = 8'192; ///< tokens that a line may have before some are left out
    bool isAtEnd = false;             ///< the end of the text has been delivered

    Brackets brackets;
    Blocks blocks;
    AssignmentTracker assignments;
    std::size_t blocksAroundBrackets = 0;        ///< open when the outermost open bracket was opened
    std::size_t blockComments = 0;               ///< open block comments
    TokenType lastToken = TokenType::EndOfInput; ///< of any kind, also of a line before; none at the start
    TokenType lastCode = TokenType::EndOfInput;  ///< last token of code of this statement

    bool mayStartStatement = true; ///< a statement, or a member of a class, may start with the next code
    bool isContinued = false;      ///< the line before ended in a continuation
    bool isInCommand = false;      ///< words follow
    bool startsStatement = false;  ///< the token at hand may start a statement

    /// A header such as `if (x) y = 1` may close its first parenthesis right before a statement.
    enum class Header {
        None,
        Keyword,          ///< the next code may be the parenthesis
        Spmd,             ///< so it may, and on a later line too
        FirstParenthesis, ///< it is open
        Closed,           ///< it has just been closed
    };
    Header header = Header::None;
};

} // namespace ca::lexer
