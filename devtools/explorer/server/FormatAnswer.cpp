#include "explorer/server/AnswerJson.h"
#include "explorer/server/Answers.h"
#include "explorer/server/RequestOptions.h"

#include "format/Formatter.h"
#include "format/SuppressionUse.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <chrono>

namespace ombrel {

namespace {

using Clock = std::chrono::steady_clock;

/// What one run makes of a text.
struct Formatted {
    TreeResult result;
    Problems warnings;
};

Result<Formatted> run(const std::u16string& text, const FileOptions& options,
                      const std::vector<LineRange>& lines) {
    const Suppression suppression = findSuppression(text);
    Formatted formatted{{}, suppression.warnings};
    if (suppression.isWholeFile) {
        return formatted;
    }
    auto result = formatText(text, options, lines, suppression);
    if (!result) {
        return fail(std::move(result.error()));
    }
    formatted.result = *std::move(result);
    if (lines.empty()) {
        const Problems unneeded = findUnneededSuppression(text, options, suppression);
        formatted.warnings.insert(formatted.warnings.end(), unneeded.begin(), unneeded.end());
    }
    return formatted;
}

/// Where a line of the source ends up in the result. The first line of a range stays: edits in the range
/// start after what is before it.
class LineMap {
public:
    LineMap(std::u16string_view text, const Edits& edits) : text(text), edits(edits) {}

    LineRange map(const LineRange& range) const {
        const std::int64_t first = range.first + countAddedLines(range.first);
        const std::int64_t last = range.last + countAddedLines(std::uint64_t{range.last} + 1);
        return {clamp(first), clamp(std::max(first, last))};
    }

private:
    static std::uint32_t clamp(std::int64_t line) {
        return static_cast<std::uint32_t>(std::clamp<std::int64_t>(line, 1, UINT32_MAX));
    }

    /// Line ends that edits before a line add to the text, less those that they take out.
    std::int64_t countAddedLines(std::uint64_t line) const {
        std::int64_t count = 0;
        for (const EditView edit : edits) {
            if (findLine(text, edit.offset) >= line) {
                break;
            }
            count += countLines(edit.text) - countLines(text.substr(edit.offset, edit.length));
        }
        return count;
    }

    static std::int64_t countLines(std::u16string_view part) {
        return findLine(std::u16string(part) + u" ", part.size());
    }

    std::u16string_view text;
    const Edits& edits;
};

bool isStable(const std::u16string& text, const Edits& edits, const FileOptions& options,
              const std::vector<LineRange>& lines) {
    const std::u16string result = applyEdits(text, edits);
    std::vector<LineRange> resultLines;
    for (const LineRange& range : lines) {
        resultLines.push_back(LineMap(text, edits).map(range));
    }
    const auto again = run(result, options, resultLines);
    return again && again->result.edits.empty();
}

Json makeJson(const Edits& edits, std::size_t shift) {
    Json json = Json::array();
    for (const EditView edit : edits) {
        json.push_back(
            {{"offset", edit.offset + shift}, {"length", edit.length}, {"text", encodeLossy(edit.text)}});
    }
    return json;
}

Json makeJson(const std::vector<ExceptionalGap>& gaps, std::size_t shift) {
    Json json = Json::array();
    for (const ExceptionalGap& gap : gaps) {
        json.push_back({{"begin", gap.begin + shift},
                        {"end", gap.end + shift},
                        {"kind", gap.isKept ? "kept" : "repaired"}});
    }
    return json;
}

class AnswerMaker {
public:
    explicit AnswerMaker(const ApiRequest& request) : request(request) {}

    std::string make() {
        answer = {{"text", request.text},      {"edits", Json::array()}, {"errors", Json::array()},
                  {"problems", Json::array()}, {"kept", Json::array()},  {"isStable", nullptr},
                  {"milliseconds", 0.0}};
        const RequestOptions options = readOptions(request);
        const RequestText source = readText(request.text);
        add(options.problems, "options");
        add(source.problems, "source");
        if (answer["errors"].empty()) {
            formatText(source, options.values);
        }
        return print(answer);
    }

private:
    void add(const Problems& problems, std::string_view place) {
        for (const Problem& problem : problems) {
            answer[problem.isError() ? "errors" : "problems"].push_back(ombrel::makeJson(problem, place));
        }
    }

    void formatText(const RequestText& source, const FileOptions& options) {
        const auto start = Clock::now();
        const auto formatted = run(source.text, options, request.lines);
        const std::chrono::duration<double, std::milli> duration = Clock::now() - start;
        answer["milliseconds"] = duration.count();
        if (!formatted) {
            add(formatted.error(), "source");
            return;
        }
        add(formatted->warnings, "source");
        add(formatted->result.notes, "source");
        const Edits& edits = formatted->result.edits;
        answer["text"] = applyEdits(request.text, edits);
        answer["edits"] = makeJson(edits, source.shift);
        answer["kept"] = makeJson(formatted->result.exceptions, source.shift);
        answer["isStable"] = isStable(source.text, edits, options, request.lines);
    }

    const ApiRequest& request;
    Json answer;
};

} // namespace

std::string makeFormatAnswer(const ApiRequest& request) {
    return AnswerMaker(request).make();
}

} // namespace ombrel
