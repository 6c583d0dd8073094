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
    Trim = 2,   ///< they lose their whitespace
};

/// What one formatter does. Lines count from 1; sizes are columns, and a column is one 16-bit character
/// except for tabs.
struct Settings {
    std::uint32_t firstLine;  ///< first line that is changed
    std::uint32_t lastLine;   ///< last line that is changed, inclusive
    std::uint32_t useSpaces;  ///< 1: spaces only; 0: tabs, then spaces
    std::uint32_t tabSize;    ///< from one tab stop to the next; greater than 0, which nothing checks
    std::uint32_t indentSize; ///< one level; may be 0
    FunctionStyle functionIndentStyle;
    BlankLineStyle blankLineStyle;
};

/// Reindents the lines of one file on its token list, with no syntax tree.
///
/// A line's level does not come from the number of open blocks, but from the width of the leading whitespace
/// of the line before it, and from what that line's tokens open and close. So lines before the range set the
/// level for the range, as they are, and code with errors is formatted too.
///
/// Use one object for one file, once, on one thread. The only exception is std::bad_alloc, except where a
/// member says otherwise. With a `tabSize` of 0, tabs in leading whitespace divide by zero, and so does all
/// indentation if `useSpaces` is 0.
///
/// All members are public so that each step can be used and tested alone. A *line* is a vector of tokens that
/// ends in the token that ended it, and is never empty.
class CA_FORMATTING_API LegacyFormatter {
public:
    explicit LegacyFormatter(Settings settings);
    ~LegacyFormatter();

    /// The tokens of the whole file, with the lines of the settings' range reindented.
    std::vector<ca::lexer::Token> indentCode(const std::vector<ca::lexer::Token>& tokens);

    /// All lexemes joined.
    std::u16string getFormattedText(const std::vector<ca::lexer::Token>& tokens) const;

    /// The tokens split after each line end and each line of a block comment. A text that ends in a line end
    /// has a last line that holds only `EndOfInput`; an empty list has no lines.
    std::vector<std::vector<ca::lexer::Token>> getLines(const std::vector<ca::lexer::Token>& tokens) const;

    bool isALineEnding(ca::lexer::TokenType type) const;

    /// Keywords that open a block, and the brackets `[` and `{`, which nest like blocks.
    bool isAnOpeningKeyword(ca::lexer::TokenType type) const;

    bool isASecondaryKeyword(ca::lexer::TokenType type) const;         ///< else, elseif, catch
    bool isASecondaryIndentedKeyword(ca::lexer::TokenType type) const; ///< case, otherwise

    /// A line end or the end of the text, with whitespace at most. A line of a block comment is never blank.
    bool isBlankLine(const std::vector<ca::lexer::Token>& line) const;

    /// Removes the whitespace before the line's end, at the end of a comment too.
    void removeTrailingWhitespaceInPlace(std::vector<ca::lexer::Token>& line) const;

    /// Adds `delta`, in 16-bit characters, to the column of every token but the first.
    void adjustLineOffsetInPlace(std::vector<ca::lexer::Token>& line, long delta) const;

    /// Columns of a run of whitespace. Tab stops count from the last tab; other characters have no width.
    unsigned int calculateIndentationSize(const std::u16string& text) const;

    /// Number of characters that buildWhitespaceLexeme() writes for `width` columns.
    unsigned int calculateNumOfWhitespaceChar(const unsigned int& width) const;

    /// Whitespace of `width` columns: spaces, or tabs and then spaces.
    std::u16string buildWhitespaceLexeme(const unsigned int& width) const;

    /// Columns that the line is to be indented by, given what the lines before it have opened.
    unsigned int calculateIndentationOfLine(const std::vector<ca::lexer::Token>& line) const;

    /// Indents the line by calculateIndentationOfLine() and updates the columns of its tokens. Throws
    /// std::out_of_range for a line of a block comment that holds nothing but whitespace, which no
    /// tokenizer delivers.
    void indentLineInPlace(std::vector<ca::lexer::Token>& line) const;

    /// Updates the nesting for the next line, from the leading whitespace that this line has now.
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
