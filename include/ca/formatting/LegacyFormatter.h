#pragma once

#include <ca/formatting/api.h>
#include <ca/lexer/Token.h>

#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace ca::formatting::legacy {

/// How function bodies are indented.
enum class FunctionStyle : std::uint32_t {
    Classic = 0, ///< no function's body is indented
    Mixed = 1,   ///< bodies of functions inside functions or classes are indented, outermost ones are not
    All = 2,     ///< every function's body is indented
};

/// What is done with blank lines.
enum class BlankLineStyle : std::uint32_t {
    Indent = 0, ///< they get the indentation of the code around them
    Ignore = 1, ///< they stay as they are
    Trim = 2,   ///< they lose their blanks
};

/// What one formatter does. Lines count from 1, sizes are columns.
struct Settings {
    std::uint32_t firstLine;  ///< first line that is changed
    std::uint32_t lastLine;   ///< last line that is changed, inclusive
    std::uint32_t useSpaces;  ///< 1: spaces only; 0: tabs, then spaces
    std::uint32_t tabSize;    ///< from one tab stop to the next; must not be 0
    std::uint32_t indentSize; ///< one level
    FunctionStyle functionIndentStyle;
    BlankLineStyle blankLineStyle;
};

/// Reindents the lines of one file on its token list, with no syntax tree.
///
/// A line's level is not worked out from the depth of the open blocks, but from the width of the leading
/// blanks that the line before it has, and what that line's tokens open and close. So lines outside the range
/// set the level for the lines behind them, as they stand, and damaged code gives a result too.
///
/// One object serves one file, once, on one thread. Apart from memory there are no errors; a `tabSize` of 0
/// breaks the contract. All members are public so that each step can be used and tested alone. A *line* is a
/// vector of tokens that ends in the token that ended it, and is never empty.
class CA_FORMATTING_API LegacyFormatter {
public:
    explicit LegacyFormatter(Settings settings);
    ~LegacyFormatter();

    /// The tokens of the whole file, reindented: every line in the settings' range, the others untouched.
    std::vector<ca::lexer::Token> indentCode(const std::vector<ca::lexer::Token>& tokens);

    /// All lexemes joined.
    std::u16string getFormattedText(const std::vector<ca::lexer::Token>& tokens) const;

    /// The tokens cut behind each line end and each line of a block comment. A text that ends in a line end
    /// has a last line that holds only `EndOfInput`; no tokens give no lines.
    std::vector<std::vector<ca::lexer::Token>> getLines(const std::vector<ca::lexer::Token>& tokens) const;

    bool isALineEnding(ca::lexer::TokenType type) const;

    /// Keywords that open a block, and the brackets `[` and `{`, which nest like blocks.
    bool isAnOpeningKeyword(ca::lexer::TokenType type) const;

    bool isASecondaryKeyword(ca::lexer::TokenType type) const;         ///< else, elseif, catch
    bool isASecondaryIndentedKeyword(ca::lexer::TokenType type) const; ///< case, otherwise

    /// Nothing but blanks and what ends the line. A line of a block comment is never blank.
    bool isBlankLine(const std::vector<ca::lexer::Token>& line) const;

    /// Takes the blanks off in front of the line's end, those at the end of a comment included.
    void removeTrailingWhitespaceInPlace(std::vector<ca::lexer::Token>& line) const;

    /// Adds `delta` 16-bit characters to the column of every token but the first.
    void adjustLineOffsetInPlace(std::vector<ca::lexer::Token>& line, long delta) const;

    /// Width of a run of blanks in columns. Tab stops count from the last tab; other characters have no
    /// width.
    unsigned int calculateIndentationSize(const std::u16string& text) const;

    /// Number of characters that buildWhitespaceLexeme() writes for `width` columns.
    unsigned int calculateNumOfWhitespaceChar(const unsigned int& width) const;

    /// Blanks of `width` columns: spaces, or tabs and then spaces.
    std::u16string buildWhitespaceLexeme(const unsigned int& width) const;

    /// Columns that the line is to be indented by, from the nesting that the lines before it left.
    unsigned int calculateIndentationOfLine(const std::vector<ca::lexer::Token>& line) const;

    /// Rewrites the line's leading blanks to calculateIndentationOfLine() and keeps all columns right.
    void indentLineInPlace(std::vector<ca::lexer::Token>& line) const;

    /// Carries the nesting over the line, measuring the leading blanks that the line now has.
    void trackIndentationCausedByLine(const std::vector<ca::lexer::Token>& line);

    /// True if some `End` of the file closes a function.
    bool checkForFunctionEnds(const std::vector<ca::lexer::Token>& tokens) const;

    std::deque<ca::lexer::Token>
        nestingStack;                     ///< open blocks, brackets, comments; `column` is an indentation
    std::uint32_t currentIndentation = 0; ///< columns that the next ordinary line gets
    Settings settings;                    ///< never changed
    bool inContinuation = false;          ///< the line before ended in a continuation outside brackets
    std::uint32_t bracketDepth = 0;       ///< open square brackets and braces
    std::uint32_t functionDepth = 0;      ///< open functions, classes and method blocks
    std::uint32_t functionsHaveEnds = 1;  ///< 0 or 1, set once by indentCode()
};

} // namespace ca::formatting::legacy
