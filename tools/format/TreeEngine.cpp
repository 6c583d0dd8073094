#include "format/TreeEngine.h"

#include "format/CommentLines.h"
#include "format/SyntaxCheck.h"
#include "format/TreeSafetyCheck.h"
#include "text/LineSplitter.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <exception>
#include <new>
#include <optional>
#include <string_view>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

using Outcome = std::variant<std::u16string, std::vector<Problem>>;

Outcome fail(Problem problem) {
    return std::vector<Problem>{std::move(problem)};
}

const char* describe(std::u16string_view lineEnd) {
    return lineEnd == u"\n" ? "LF" : lineEnd == u"\r" ? "CR" : "CRLF";
}

/// The end of the first line, LF if the text has no other.
std::u16string_view getFirstLineEnd(std::u16string_view text) {
    const std::u16string_view end = LineSplitter(text).getNext()->end;
    return end.empty() ? u"\n" : end;
}

std::optional<Problem> checkLineEnds(std::u16string_view text) {
    const std::u16string_view first = getFirstLineEnd(text);
    LineSplitter lines(text);
    for (std::uint32_t number = 1; const auto line = lines.getNext(); ++number) {
        if (!line->end.empty() && line->end != first) {
            return Problem{
                ExitStatus::Refused,
                fmt::format("this line ends in {} and the first one in {}: the tree engine can't "
                            "keep line ends that are mixed; --force gives all lines the first one's",
                            describe(line->end), describe(first)),
                number, static_cast<std::uint32_t>(line->content.size() + 1)};
        }
    }
    return std::nullopt;
}

std::u16string withLineEnd(std::u16string text, std::u16string_view end) {
    if (end == u"\n") {
        return text;
    }
    std::u16string result;
    LineSplitter lines(text);
    while (const auto line = lines.getNext()) {
        result += line->content;
        result += line->end.empty() ? std::u16string_view() : end;
    }
    return result;
}

std::u16string_view withoutLeadingBlanks(std::u16string_view text) {
    return text.substr(std::min(text.find_first_not_of(u" \t\r\n"), text.size()));
}

std::string getFirstLine(std::u16string_view text) {
    return encodeLossy(text.substr(0, text.find(u'\n')));
}

/// The formatter's reasons come in the place of a text and can't be told from one by their looks. But of the
/// empty text it makes blanks at most, so any words are about the options.
std::optional<Problem> checkOptions(const TreeOptions& options, const TreeFormatter& formatter) {
    const std::u16string answer = formatter({}, options.json);
    const std::u16string_view words = withoutLeadingBlanks(answer);
    if (words.empty()) {
        return std::nullopt;
    }
    return Problem{ExitStatus::Usage,
                   fmt::format("the tree formatter doesn't take these options: {}", getFirstLine(words))};
}

/// Whether the formatter found syntax errors in the text, which the tool's own parser didn't. A program that
/// starts with the same word can't be told from them here, and the safety check looks after it.
bool isListOfSyntaxErrors(std::u16string_view answer, std::u16string_view text) {
    constexpr std::u16string_view heading = u"Syntax errors:";
    return answer.starts_with(heading) && !withoutLeadingBlanks(text).starts_with(u"Syntax");
}

/// The first run over a text with a block comment shows where its opening line goes.
std::u16string layOutIndented(const ParsedText& source, const TreeOptions& options,
                              const TreeFormatter& formatter) {
    const std::u16string bare = joinWithBareComments(source.tokens);
    std::u16string result = formatter(bare, options.json);
    if (hasBlockComment(source.tokens)) {
        const std::u16string aligned = joinWithAlignedComments(source.tokens, result);
        result = aligned == bare ? result : formatter(aligned, options.json);
    }
    return result;
}

std::u16string layOut(const ParsedText& source, const TreeOptions& options, const TreeFormatter& formatter) {
    std::u16string result = options.isIndentationEnabled
                                ? layOutIndented(source, options, formatter)
                                : formatter(joinLexemes(source.tokens), options.json);
    return withLineEnd(std::move(result), getFirstLineEnd(source.text));
}

/// What the formatter makes of the text, or why it makes nothing of it.
Outcome callFormatter(const ParsedText& source, const TreeOptions& options, const TreeFormatter& formatter) {
    try {
        if (auto problem = checkOptions(options, formatter)) {
            return fail(std::move(*problem));
        }
        std::u16string result = layOut(source, options, formatter);
        if (isListOfSyntaxErrors(result, source.text)) {
            return fail({ExitStatus::Unsafe, "the tree formatter finds syntax errors where there are none"});
        }
        return result;
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        return fail({ExitStatus::Unsafe, fmt::format("the tree formatter failed: {}", error.what())});
    }
}

Outcome format(const ParsedText& source, const TreeOptions& options, const TreeFormatter& formatter,
               const Suppression& suppression) {
    if (options.mixedLineEnds == MixedLineEnds::Refuse) {
        if (auto problem = checkLineEnds(source.text)) {
            return fail(*problem);
        }
    }
    Outcome outcome = callFormatter(source, options, formatter);
    if (std::holds_alternative<std::vector<Problem>>(outcome)) {
        return outcome;
    }
    auto restored = restoreSuppressed(source.text, suppression, std::get<std::u16string>(std::move(outcome)));
    if (auto* problem = std::get_if<Problem>(&restored)) {
        return fail(std::move(*problem));
    }
    std::u16string result = std::get<std::u16string>(std::move(restored));
    if (result == source.text) {
        return result;
    }
    if (auto problem = checkSameProgram(source, result)) {
        return fail(*problem);
    }
    return result;
}

} // namespace

Outcome formatTree(const std::u16string& text, const TreeOptions& options, const TreeFormatter& formatter,
                   const Suppression& suppression) {
    std::optional<ParsedText> source;
    try {
        source.emplace(text);
    } catch (const ca::SyntaxErrorException& exception) {
        return describe(exception.getErrors());
    }
    return format(*source, options, formatter, suppression);
}

} // namespace ombrel
