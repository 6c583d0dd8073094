#include "format/LineEngine.h"

#include "format/IndentationGuard.h"
#include "format/SafetyCheck.h"
#include "text/LineSplitter.h"

#include <ca/formatting/LegacyFormatter.h>
#include <ca/lexer/lex.h>

#include <algorithm>
#include <limits>
#include <utility>

#include <fmt/format.h>

namespace ombrel {

namespace {

using ca::formatting::legacy::LegacyFormatter;
using ca::formatting::legacy::Settings;

constexpr std::uint32_t lastPossibleLine = std::numeric_limits<std::uint32_t>::max();

std::vector<LineRange> mergeRanges(std::vector<LineRange> ranges) {
    std::sort(ranges.begin(), ranges.end(),
              [](const LineRange& a, const LineRange& b) { return a.first < b.first; });
    std::vector<LineRange> merged;
    for (const LineRange& range : ranges) {
        if (!merged.empty() && range.first <= merged.back().last) {
            merged.back().last = std::max(merged.back().last, range.last);
        } else {
            merged.push_back(range);
        }
    }
    return merged;
}

std::size_t countLines(std::u16string_view text) {
    std::size_t count = 0;
    LineSplitter lines(text);
    while (lines.getNext()) {
        ++count;
    }
    return count;
}

std::optional<Problem> checkRange(std::u16string_view text, const LineRange& last) {
    const std::size_t count = countLines(text);
    if (last.first <= count) {
        return std::nullopt;
    }
    return Problem{ExitStatus::Usage,
                   fmt::format("the lines {}:{} begin behind the end: the text has {} {}", last.first,
                               last.last, count, count == 1 ? "line" : "lines")};
}

Problem describe(const RunawayIndentation& runaway) {
    constexpr const char* advice = "; look above for an `end`, a bracket or an `else` that has no partner";
    const std::string text =
        runaway.width > maximalIndentation
            ? fmt::format("this line would be indented by {} columns{}", runaway.width, advice)
            : fmt::format("up to this line indentation would add {} blanks{}", runaway.blankCount, advice);
    return {ExitStatus::Refused, text, runaway.line, 1};
}

/// What `ca_format` does, but for looking at the tokens on the way.
std::variant<std::u16string, Problem> formatRange(const std::u16string& text, const LineOptions& options,
                                                  const LineRange& range) {
    const Settings settings{range.first,       range.last,         options.useTabs ? 0U : 1U,
                            options.tabSize,   options.indentSize, options.functionStyle,
                            options.blankLines};
    const auto tokens = ca::lexer::lex(text);
    if (const auto runaway = findRunawayIndentation(tokens, settings)) {
        return describe(*runaway);
    }
    LegacyFormatter formatter(settings);
    return formatter.getFormattedText(formatter.indentCode(tokens));
}

} // namespace

std::variant<std::u16string, Problem> formatLines(const std::u16string& text, const LineOptions& options,
                                                  std::vector<LineRange> ranges,
                                                  const Suppression& suppression) {
    if (ranges.empty()) {
        ranges.push_back({1, lastPossibleLine});
    }
    ranges = mergeRanges(std::move(ranges));
    if (const auto problem = checkRange(text, ranges.back())) {
        return *problem;
    }
    std::u16string result = text;
    for (const LineRange& range : ranges) {
        auto formatted = formatRange(result, options, range);
        if (const auto* problem = std::get_if<Problem>(&formatted)) {
            return *problem;
        }
        result = std::move(std::get<std::u16string>(formatted));
    }
    auto restored = restoreSuppressed(text, suppression, std::move(result));
    if (const auto* formatted = std::get_if<std::u16string>(&restored)) {
        if (const auto problem = checkOnlyEdgesChanged(text, *formatted)) {
            return *problem;
        }
    }
    return restored;
}

} // namespace ombrel
