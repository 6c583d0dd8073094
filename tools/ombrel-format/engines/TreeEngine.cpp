#include "engines/TreeEngine.h"

#include "engines/CommentLines.h"
#include "engines/LineSplitter.h"
#include "engines/SyntaxCheck.h"
#include "engines/TreeSafetyCheck.h"

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

Outcome format(const ParsedText& source, const TreeOptions& options, const TreeFormatter& formatter,
               const Suppression& suppression) {
    if (options.mixedLineEnds == MixedLineEnds::Refuse) {
        if (auto problem = checkLineEnds(source.text)) {
            return fail(*problem);
        }
    }
    std::u16string result;
    try {
        result = layOut(source, options, formatter);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception& error) {
        return fail({ExitStatus::Unsafe, fmt::format("the tree formatter failed: {}", error.what())});
    }
    if (!suppression.regions.empty()) {
        auto restored = restoreSuppressed(source.text, suppression, std::move(result));
        if (auto* problem = std::get_if<Problem>(&restored)) {
            return fail(std::move(*problem));
        }
        result = std::get<std::u16string>(std::move(restored));
    }
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
