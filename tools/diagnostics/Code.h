#pragma once

#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace ombrel {

/// Names one kind of problem and stays the same when the words of its message change. Reports, the language
/// server and scripts know a problem by its name: `NotUtf8` is "not-utf8" to them.
enum class Code {
    NotFormatted,

    SyntaxError, ///< a syntax error that the host knows by a name that isn't listed here
    EmptyParentheses,
    InvalidTarget,
    MalformedNumber,
    MisplacedBlock,
    MisplacedBranch,
    MisplacedDefault,
    MisplacedEnd,
    MisplacedFunction,
    MisplacedSeparator,
    MisplacedStatement,
    MisplacedWhitespace,
    MissingElement,
    MissingSeparator,
    MisspelledKeyword,
    NestingTooDeep,
    UnclosedBlock,
    UnclosedBracket,
    UnclosedComment,
    UnclosedString,
    UnexpectedText,
    UnmatchedBracket,
    UnmatchedEnd,
    UnrecognizedText,

    NotUtf8,
    NulCharacter,
    TooLarge,
    OutOfMemory,
    RunawayIndentation,
    TimeLimit,

    UsageError,
    NoFiles,
    UnreadableInput,
    RangeAfterEnd,
    MissingTreeEngine,
    RefusedOptions,
    UnreadableOptions,
    InvalidJson,
    UnknownOption,
    InvalidValue,
    InvalidExtends,
    RequiredVersion,
    InvalidEditorConfig,
    InvalidReport,
    GitFailed,

    UnsafeResult,
    InternalError,

    WriteFailed,

    UnclosedSuppression,
    RepeatedSuppression,
    UselessSuppression,
    UnneededSuppression,
    KeptStatement,
    OptionWithoutEffect,
    InvalidEditorConfigValue,
    LeftOut,
};

/// Which part of the work a problem belongs to. Programs derive what they do about it: an exit status, say.
enum class Family {
    Formatting, ///< the file isn't formatted
    Syntax,     ///< the file doesn't parse
    Input,      ///< the file can't be accepted as it is
    Usage,      ///< wrong options, unreadable files
    Safety,     ///< a fault of ours; nothing was written
    Writing,    ///< a result couldn't be written
    Comments,   ///< what was formatted all the same, or was not to be formatted
};

enum class Severity {
    Note,    ///< nothing is wrong
    Warning, ///< the file was formatted all the same
    Error,   ///< this kept the file from being formatted, or its formatting is what is wrong
};

/// What there is to know about a code; docs/messages.md and the rules of SARIF reports show it.
struct CodeInfo {
    Code code;
    std::string_view name; ///< kebab case
    Family family;
    Severity severity;
    std::string_view summary; ///< one sentence
    std::string_view cause;   ///< sentences
    std::string_view remedy;  ///< sentences
};

/// All codes, in the order of the enumeration.
std::span<const CodeInfo> getCodes();

const CodeInfo& getInfo(Code code);

/// The code with this name in kebab case.
std::optional<Code> findCode(std::string_view name);

/// The code of a syntax error that the host calls `identifier`: "UnclosedBlock" is "unclosed-block". An
/// identifier that isn't known is SyntaxError.
Code getSyntaxCode(std::u16string_view identifier);

/// What somebody calls the severities: a word, a number, a color.
template <class T>
struct ForSeverity {
    T note;
    T warning;
    T error;

    constexpr T get(Severity severity) const {
        switch (severity) {
        case Severity::Note:
            return note;
        case Severity::Warning:
            return warning;
        case Severity::Error:
            break;
        }
        return error;
    }
};

using SeverityWords = ForSeverity<std::string_view>;

/// "note", "warning", "error".
std::string_view getWord(Severity severity);

} // namespace ombrel
