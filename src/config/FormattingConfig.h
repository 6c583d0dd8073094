#pragma once

#include <ca/config/ConfigIssue.h>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <iosfwd>
#include <unordered_set>

namespace ca::formatting {

/// The options of the tree formatter: all that it has a choice in is asked here and nowhere else.
///
/// In a JSON text the answer of `getIndentWidth` is called "indentWidth", and so on; what holds where nobody
/// says anything is what `FormattingFactoryConfig` answers.
///
/// An option set never changes, so the same question gets the same answer however often it is asked, on any
/// thread. All answers are plain values.
class FormattingConfig {
public:
    /// The construct that an option is about. The numbers are stored in trees and never change.
    enum class ContainerKind : std::int32_t {
        If = 0,               ///< an `if` statement with all its branches
        While = 1,            ///< a `while` statement
        For = 2,              ///< a `for` statement
        Parfor = 3,           ///< a `parfor` statement
        Switch = 4,           ///< a `switch` statement
        Case = 5,             ///< a `case` or `otherwise` block
        Try = 6,              ///< a `try` statement
        Spmd = 7,             ///< a key of options only: nothing in a tree has this kind
        Exponent = 8,         ///< a chain of exponent operators
        MultiplyDivide = 9,   ///< a chain of multiplication and division operators
        PlusMinus = 10,       ///< a chain of addition and subtraction operators
        Comparison = 11,      ///< a chain of comparison operators
        Logical = 12,         ///< a chain of logical operators
        Colon = 13,           ///< a colon expression
        ParenthesisList = 14, ///< a list in parentheses
        BracketList = 15,     ///< a list in square brackets
        BraceList = 16,       ///< a list in braces
        Inheritance = 17,     ///< a key of options only: nothing in a tree has this kind
        None = 18,            ///< what has no options of its own; look for it before asking for one
    };

    /// What may happen to the items of a construct when lines are broken.
    enum class LineBreakBehavior : std::int32_t {
        SeparateLines = 0,        ///< each item on a line of its own
        AllowSingleLine = 1,      ///< all on one line if that fits, otherwise a line for each
        AllowMultiplePerLine = 2, ///< as many on each line as fit
    };

    /// On which side of a line break an operator stays.
    enum class SeparatorPlacement : std::int32_t {
        StartOfLine = 0,
        EndOfLine = 1,
    };

    /// What indentation is built from.
    enum class IndentCharacter : std::int32_t {
        Space = 0,
        Tab = 1,
    };

    /// How function bodies are indented.
    enum class FunctionIndentStyle : std::int32_t {
        Classic = 0,      ///< bodies are at the level of their headers, nested functions one deeper
        IndentNested = 1, ///< only the bodies of nested functions are indented
        IndentAll = 2,    ///< the body of every function is indented
    };

    virtual ~FormattingConfig() = default;

    /// What was wrong with the configuration that these options come from.
    virtual std::unordered_set<ca::config::ConfigIssue> getIssues() const = 0;

    /// Master switch, for the host: the formatter itself doesn't look at it.
    virtual bool getEnabled() const = 0;

    /// Whether whitespace between tokens becomes one space where it is needed and goes where it isn't.
    virtual bool getTrimUnnecessaryWhitespace() const = 0;

    /// Whether line starts are rewritten.
    virtual bool getIndentationEnabled() const = 0;

    virtual FunctionIndentStyle getFunctionIndentStyle() const = 0;

    /// Whether the cases of a `switch` are one level deeper than the `switch`.
    virtual bool getIndentCaseBlocks() const = 0;

    /// Whether blank lines receive indentation.
    virtual bool getIndentBlankLines() const = 0;

    virtual IndentCharacter getIndentCharacter() const = 0;

    /// Characters of one level, whichever the character is: a width of 4 with `Tab` is four tabs a level.
    virtual std::uint32_t getIndentWidth() const = 0;

    /// Whether lines are broken and joined at all.
    virtual bool getLineBreakingEnabled() const = 0;

    /// Columns that line breaking keeps lines within, in 16-bit characters.
    virtual std::uint32_t getColumnLimit() const = 0;

    /// What may happen to the items of this kind of construct. The kind must not be `None`.
    virtual LineBreakBehavior getLineBreakBehavior(ContainerKind kind) const = 0;

    /// On which side of a break the operators of this kind of chain stay. The kind must not be `None`.
    virtual SeparatorPlacement getSeparatorPlacement(ContainerKind kind) const = 0;

protected:
    FormattingConfig() = default;
    FormattingConfig(const FormattingConfig&) = default;
    FormattingConfig& operator=(const FormattingConfig&) = default;
};

/// Writes the enumerator's name; nothing for `None` and for numbers that are no enumerator.
std::ostream& operator<<(std::ostream& stream, FormattingConfig::ContainerKind kind);
std::ostream& operator<<(std::ostream& stream, FormattingConfig::LineBreakBehavior behavior);
std::ostream& operator<<(std::ostream& stream, FormattingConfig::SeparatorPlacement placement);

} // namespace ca::formatting

/// The number itself, so that tables keyed by it are plain tables of integers.
template <>
struct std::hash<ca::formatting::FormattingConfig::ContainerKind> {
    std::size_t operator()(ca::formatting::FormattingConfig::ContainerKind kind) const noexcept {
        return static_cast<std::size_t>(static_cast<std::int32_t>(kind));
    }
};
