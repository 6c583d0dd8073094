// Every code with what a user should know about it. docs/messages.md, the rules of SARIF reports and the help
// of the language server are made from this table.

#include "diagnostics/Code.h"

#include <algorithm>
#include <iterator>

namespace ombrel {

namespace {

constexpr CodeInfo codes[] = {
    {Code::NotFormatted, "not-formatted", Family::Formatting, Severity::Error, "The file is not formatted.",
     "--check or --diff found a file whose text differs from its formatted text.",
     "Run ombrel-format --in-place on the file, or look at the changes with --diff first."},
    {Code::SyntaxError, "syntax-error", Family::Syntax, Severity::Error, "The file does not parse.",
     "The parser found an error for which there is no code of its own.",
     "Correct the text at the place that the message names."},
    {Code::EmptyParentheses, "empty-parentheses", Family::Syntax, Severity::Error,
     "Parentheses are empty where a value is needed.", "An enumeration member is followed by ().",
     "Remove the parentheses or write the member's values between them."},
    {Code::InvalidTarget, "invalid-target", Family::Syntax, Severity::Error,
     "Something is assigned to that can't hold a value.",
     "The left side of an = is a number, a text, a call with operators or another expression.",
     "Assign to a name, a field or an indexed name. To compare values use ==."},
    {Code::MalformedNumber, "malformed-number", Family::Syntax, Severity::Error,
     "A number runs into the text after it.",
     "A digit, a letter or a dot follows a number directly, as in 2x or 1.2.3.",
     "Write an operator or a space between them, or complete the number."},
    {Code::MisplacedBlock, "misplaced-block", Family::Syntax, Severity::Error,
     "A block is in a place where it isn't allowed.",
     "A section of a class is outside of a class, or a statement is directly inside one.",
     "Look for a missing 'end' before this line, or move the block."},
    {Code::MisplacedBranch, "misplaced-branch", Family::Syntax, Severity::Error,
     "A branch has no block that it belongs to.",
     "else, elseif, case, otherwise or catch is outside of its if, switch or try, or comes after a final "
     "branch.",
     "Look for an 'end' too many before this line."},
    {Code::MisplacedDefault, "misplaced-default", Family::Syntax, Severity::Error,
     "An argument has a default value where none is allowed.",
     "An argument that accepts the properties of a class has = and a value.", "Remove the default value."},
    {Code::MisplacedEnd, "misplaced-end", Family::Syntax, Severity::Error,
     "'end' is used as an index outside of an index.",
     "Inside parentheses or braces 'end' means the last index of the variable that they index, and here "
     "there is no such variable.",
     "Write the number, or close the brackets before the 'end' of a block."},
    {Code::MisplacedFunction, "misplaced-function", Family::Syntax, Severity::Error,
     "A function is inside another block.", "The word function follows a block that isn't closed.",
     "Add the missing 'end', or move the function out of the block."},
    {Code::MisplacedSeparator, "misplaced-separator", Family::Syntax, Severity::Error,
     "A separator is in a list that doesn't allow it.",
     "The list of outputs of an assignment or a function contains a semicolon or a line end.",
     "Separate outputs with commas or spaces."},
    {Code::MisplacedStatement, "misplaced-statement", Family::Syntax, Severity::Error,
     "A statement is in a part of the file that doesn't allow it.",
     "Statements follow a class definition or the functions of a file.",
     "Move the statement into a function, or before the functions."},
    {Code::MisplacedWhitespace, "misplaced-whitespace", Family::Syntax, Severity::Error,
     "A space inside brackets separates a name from its field.",
     "In [a .b] the space ends the element, so .b has nothing before it.",
     "Remove the space, or write a comma if two elements are meant."},
    {Code::MissingElement, "missing-element", Family::Syntax, Severity::Error,
     "A value is missing in a list.",
     "Two commas follow each other, or a comma comes first or last in an argument list.",
     "Write the missing value or remove the comma."},
    {Code::MissingSeparator, "missing-separator", Family::Syntax, Severity::Error,
     "Two elements of a list have nothing between them.",
     "In brackets two values follow each other without a comma, a semicolon or a space.",
     "Write a comma or a space between them."},
    {Code::MisspelledKeyword, "misspelled-keyword", Family::Syntax, Severity::Error,
     "A word looks like a misspelled keyword.",
     "The words after it only make sense if this word is a keyword, and it is spelled almost like one.",
     "Use the keyword that the message suggests."},
    {Code::NestingTooDeep, "nesting-too-deep", Family::Syntax, Severity::Error,
     "The text is nested too deeply.",
     "Brackets, operators or blocks are inside each other more often than the parser allows.",
     "Split the expression or move inner blocks to functions."},
    {Code::UnclosedBlock, "unclosed-block", Family::Syntax, Severity::Error, "A block has no 'end'.",
     "The file or an enclosing block ends before this block's 'end'.", "Add the missing 'end'."},
    {Code::UnclosedBracket, "unclosed-bracket", Family::Syntax, Severity::Error, "A bracket is not closed.",
     "The statement ends before the bracket's partner.",
     "Add the missing bracket, or '...' at the end of a line that goes on."},
    {Code::UnclosedComment, "unclosed-comment", Family::Syntax, Severity::Error,
     "A block comment is not closed.", "The file ends before the %} of this %{.", "Add a line with only %}."},
    {Code::UnclosedString, "unclosed-string", Family::Syntax, Severity::Error, "A text has no closing quote.",
     "The line ends before the quote's partner.",
     "Add the missing quote. A quote inside a text is written twice."},
    {Code::UnexpectedText, "unexpected-text", Family::Syntax, Severity::Error,
     "Something else was expected here.", "The text doesn't continue in any way that the language allows.",
     "The message names what was expected. Complete or remove the text."},
    {Code::UnmatchedBracket, "unmatched-bracket", Family::Syntax, Severity::Error,
     "A closing bracket has no partner.", "No bracket of this kind is open here.",
     "Remove the bracket, or add its opening partner."},
    {Code::UnmatchedEnd, "unmatched-end", Family::Syntax, Severity::Error, "An 'end' closes nothing.",
     "No block is open here.", "Remove the 'end', or look for a block that was closed too early."},
    {Code::UnrecognizedText, "unrecognized-text", Family::Syntax, Severity::Error,
     "A character has no meaning in the language.", "The text contains a character that belongs to no token.",
     "Remove the character, or put it into a text or a comment."},
    {Code::NotUtf8, "not-utf8", Family::Input, Severity::Error, "The file is not UTF-8.",
     "The bytes at the named place are not valid UTF-8. The file may be in another encoding.",
     "Convert the file to UTF-8, with iconv for example."},
    {Code::NulCharacter, "nul-character", Family::Input, Severity::Error,
     "The file contains a NUL character.",
     "No text contains one. The file may be binary, or in another encoding, such as UTF-16.",
     "Convert the file to UTF-8, with iconv for example, or remove the character."},
    {Code::TooLarge, "too-large", Family::Input, Severity::Error, "The file is too large.",
     "The file exceeds the size limit that the message names.",
     "Split the file. If it is too large for the tree engine, use the line engine (--engine line)."},
    {Code::OutOfMemory, "out-of-memory", Family::Input, Severity::Error,
     "There is not enough memory for this file.", "The system refused to provide memory.",
     "Use fewer parallel jobs (--jobs 1), or split the file."},
    {Code::RunawayIndentation, "runaway-indentation", Family::Input, Severity::Error,
     "The indentation would get out of hand.",
     "Damaged code can make the line engine move each line further to the right than the one before.",
     "Look above the line for an 'end', a bracket or an 'else' without a partner."},
    {Code::TimeLimit, "time-limit", Family::Input, Severity::Error, "Formatting the file takes too long.",
     "The work on the file wasn't done within the time of --time-limit. Nothing was written.",
     "Allow more time, split the file, or leave it out with an ignore file."},
    {Code::UsageError, "usage-error", Family::Usage, Severity::Error, "The command line is wrong.",
     "An option is unknown, lacks its value, or can't be combined with another one.",
     "See ombrel-format --help."},
    {Code::NoFiles, "no-files", Family::Usage, Severity::Error, "There is no file to format.",
     "No named path is a source file or contains one that isn't left out.",
     "--list-files says what was left out and why. --allow-no-files makes this a success."},
    {Code::UnreadableInput, "unreadable-input", Family::Usage, Severity::Error,
     "A file or folder can't be read.", "It doesn't exist, or the system refused to open it.",
     "Check the path and the permissions."},
    {Code::RangeAfterEnd, "range-after-end", Family::Usage, Severity::Error,
     "--lines starts after the last line.", "The range begins after the end of the file.",
     "Use line numbers of the file."},
    {Code::MissingTreeEngine, "missing-tree-engine", Family::Usage, Severity::Error,
     "The tree engine isn't installed.", "The companion library of the formatter was not found.",
     "Install the package ombrel-devtools."},
    {Code::RefusedOptions, "refused-options", Family::Usage, Severity::Error,
     "The tree engine refuses its options.",
     "The formatter's library reports a fault in the options that it was given.",
     "Correct the option that the message names."},
    {Code::UnreadableOptions, "unreadable-options", Family::Usage, Severity::Error,
     "An options file can't be read.",
     "It doesn't exist, isn't a regular file, is too large, or the system refused to open it.",
     "Check the path and the permissions."},
    {Code::InvalidJson, "invalid-json", Family::Usage, Severity::Error, "An options file is not valid JSON.",
     "Options files are JSON in UTF-8. Comments and trailing commas are allowed.",
     "Correct the text at the named place."},
    {Code::UnknownOption, "unknown-option", Family::Usage, Severity::Error, "There is no such option.",
     "A key of an options file or of --set isn't the name of an option.",
     "The message suggests names that are similar. ombrel-format --schema lists all."},
    {Code::InvalidValue, "invalid-value", Family::Usage, Severity::Error, "An option can't have this value.",
     "The value has the wrong type, is out of range, or isn't one of the option's words.",
     "The message names what is expected."},
    {Code::InvalidExtends, "invalid-extends", Family::Usage, Severity::Error,
     "An options file can't extend this file.",
     "The file named in \"extends\" doesn't exist, extends itself, or the chain is too long.",
     "Correct the path or break the chain."},
    {Code::RequiredVersion, "required-version", Family::Usage, Severity::Error,
     "An options file is for other versions of the program.",
     "\"requiredVersion\" in an options file, or in one that it extends, doesn't contain this version.",
     "Install a version that the message names, or correct \"requiredVersion\"."},
    {Code::InvalidEditorConfig, "invalid-editor-config", Family::Usage, Severity::Error,
     "An .editorconfig file can't be understood.",
     "A line of the file is neither a section, a property nor a comment.",
     "Correct the line. --no-config ignores the file."},
    {Code::InvalidReport, "invalid-report", Family::Usage, Severity::Error, "A report can't be merged.",
     "--merge-reports was given a file that isn't a JSON report of ombrel-format.",
     "Write the report with --reporter json:FILE, with the same version."},
    {Code::GitFailed, "git-failed", Family::Usage, Severity::Error, "Git failed.",
     "--since and --staged ask git for the changes, and git isn't installed or refused.",
     "The message contains git's own words."},
    {Code::UnsafeResult, "unsafe-result", Family::Safety, Severity::Error,
     "The result was not the same program.",
     "The safety check compares the result with the source, and found a difference. Nothing was written.",
     "This is a fault of the formatter. Please report it with what --bug-report FILE writes."},
    {Code::InternalError, "internal-error", Family::Safety, Severity::Error,
     "Formatting failed unexpectedly.",
     "The formatter reported an error that should not occur. Nothing was written.",
     "This is a fault of the formatter. Please report it with what --bug-report FILE writes."},
    {Code::WriteFailed, "write-failed", Family::Writing, Severity::Error, "The result could not be written.",
     "The system refused to write, the file is protected, or it was changed by another program meanwhile.",
     "The message names the reason. The old file is untouched."},
    {Code::UnclosedSuppression, "unclosed-suppression", Family::Comments, Severity::Warning,
     "Formatting is off until the end of the file.",
     "A comment '% ombrel-format off' has no '% ombrel-format on' after it.",
     "Add the comment that turns formatting on again, or put the first comment before all code if the whole "
     "file is meant."},
    {Code::RepeatedSuppression, "repeated-suppression", Family::Comments, Severity::Warning,
     "Formatting is turned off twice.",
     "A comment '% ombrel-format off' is in a region where formatting is off already.",
     "Remove one of the two. One 'on' ends both."},
    {Code::UselessSuppression, "useless-suppression", Family::Comments, Severity::Warning,
     "A comment that turns formatting on or off has no effect.",
     "A comment '% ombrel-format on' has no 'off' before it, or no statement follows '% ombrel-format off "
     "next' "
     "in its block.",
     "Remove the comment."},
    {Code::UnneededSuppression, "unneeded-suppression", Family::Comments, Severity::Warning,
     "Formatting is off where it would change nothing.",
     "The lines that a comment '% ombrel-format off' or 'off next' is for are formatted already.",
     "Remove the comment, and the 'on' that belongs to it."},
    {Code::KeptStatement, "kept-statement", Family::Comments, Severity::Note,
     "A statement was left as it is.",
     "By its rules the tree formatter would have changed what the statement means.",
     "Nothing is wrong. Write the statement in another way if it should be formatted."},
    {Code::OptionWithoutEffect, "option-without-effect", Family::Comments, Severity::Warning,
     "An option does nothing.",
     "The option belongs to the engine that isn't used, or another option has to be on for it.",
     "The message names the option to set instead, or besides."},
    {Code::InvalidEditorConfigValue, "invalid-editor-config-value", Family::Comments, Severity::Warning,
     "A value in an .editorconfig file is ignored.",
     "indent_style, indent_size, tab_width or max_line_length has a value that it can't have.",
     "Correct the value. The message names what is expected."},
    {Code::LeftOut, "left-out", Family::Comments, Severity::Note, "A named file or folder was left out.",
     "With --force-exclude, ignore files and --exclude apply to paths that are named too. What belongs to "
     "git "
     "is always left out.",
     "Nothing is wrong. --list-files shows which rule decides."},
};

constexpr bool isInOrder() {
    for (std::size_t i = 0; i < std::size(codes); ++i) {
        if (codes[i].code != static_cast<Code>(i)) {
            return false;
        }
    }
    return codes[std::size(codes) - 1].code == Code::LeftOut;
}
static_assert(isInOrder(), "each code needs its row, in the order of the enumeration");

/// "unclosed-block" for "UnclosedBlock". Identifiers are ASCII.
std::string makeKebabCase(std::u16string_view identifier) {
    std::string name;
    for (const char16_t c : identifier) {
        const bool isCapital = u'A' <= c && c <= u'Z';
        name += isCapital && !name.empty() ? "-" : "";
        name += static_cast<char>(isCapital ? c - u'A' + u'a' : c);
    }
    return name;
}

} // namespace

std::span<const CodeInfo> getCodes() {
    return codes;
}

const CodeInfo& getInfo(Code code) {
    return codes[static_cast<std::size_t>(code)];
}

std::optional<Code> findCode(std::string_view name) {
    const auto* found = std::find_if(std::begin(codes), std::end(codes),
                                     [&](const CodeInfo& info) { return info.name == name; });
    return found == std::end(codes) ? std::nullopt : std::optional(found->code);
}

Code getSyntaxCode(std::u16string_view identifier) {
    const auto code = findCode(makeKebabCase(identifier));
    return code && getInfo(*code).family == Family::Syntax ? *code : Code::SyntaxError;
}

std::string_view getWord(Severity severity) {
    return SeverityWords{.note = "note", .warning = "warning", .error = "error"}.get(severity);
}

} // namespace ombrel
