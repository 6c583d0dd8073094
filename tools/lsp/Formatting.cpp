#include "lsp/Formatting.h"

#include "format/Formatter.h"
#include "format/Suppression.h"
#include "lsp/ProgramText.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <optional>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

bool isHighSurrogate(char16_t c) {
    return (c & 0xFC00) == 0xD800;
}

/// Whether a place is inside of something that edits don't divide.
bool isInsidePair(std::u16string_view text, std::size_t offset) {
    return offset > 0 && offset < text.size() &&
           ((text[offset - 1] == u'\r' && text[offset] == u'\n') || isHighSurrogate(text[offset - 1]));
}

/// The same edit without the characters at its edges that it replaces by themselves.
Edit trim(std::u16string_view text, const Edit& edit) {
    const std::u16string_view before = text.substr(edit.offset, edit.length);
    const std::u16string_view after = edit.text;
    const auto shorter = std::min(before.size(), after.size());
    std::size_t front = 0;
    while (front < shorter && before[front] == after[front]) {
        ++front;
    }
    while (front > 0 && (isInsidePair(text, edit.offset + front) || isInsidePair(after, front))) {
        --front;
    }
    std::size_t back = 0;
    while (back < shorter - front && before[before.size() - back - 1] == after[after.size() - back - 1]) {
        ++back;
    }
    while (back > 0 && (isInsidePair(text, edit.offset + edit.length - back) ||
                        isInsidePair(after, after.size() - back))) {
        --back;
    }
    return {edit.offset + front, edit.length - front - back,
            std::u16string(after.substr(front, after.size() - front - back))};
}

/// One edit from the start of the first to the end of the last.
std::vector<Edit> join(std::u16string_view text, const std::vector<Edit>& edits) {
    Edit joined{edits.front().offset, 0, {}};
    std::size_t done = joined.offset;
    for (const Edit& edit : edits) {
        joined.text.append(text.substr(done, edit.offset - done)).append(edit.text);
        done = edit.getEnd();
    }
    joined.length = done - joined.offset;
    return {std::move(joined)};
}

/// The lines that a range touches. One that ends at the start of a line doesn't touch it.
LineRange readLines(const Document& document, const Json& json) {
    const Range range = readRange(json);
    const std::size_t a = document.findOffset(range.start);
    const std::size_t b = document.findOffset(range.end);
    const std::size_t first = document.lines.findLine(std::min(a, b));
    const std::size_t last = document.lines.findLine(std::max(a, b) - (a == b ? 0 : 1));
    return {static_cast<std::uint32_t>(first + 1), static_cast<std::uint32_t>(last + 1)};
}

/// Which problem keeps a document from being formatted, and how many there are.
RequestError makeError(const Problems& problems, const std::string& path = {}) {
    const Problem& first = problems.front();
    const std::string more =
        problems.size() == 1 ? std::string() : fmt::format(" (and {} more)", problems.size() - 1);
    const std::string place =
        first.line == 0 ? std::string() : fmt::format("{}:{}: ", first.line, first.column);
    return {ErrorCode::RequestFailed, fmt::format("{}{}{}{} [{}]{}", path, path.empty() ? "" : ":", place,
                                                  first.text, getInfo(first.code).name, more)};
}

bool isSyntaxFault(const Problems& problems) {
    return getInfo(problems.front().code).family == Family::Syntax;
}

/// Edits for the lines, all of them if there are none; throws RequestError. Nothing if the text doesn't
/// parse.
std::optional<std::vector<Edit>> findEdits(const Question& question, const std::vector<LineRange>& lines) {
    const Document& document = question.getDocument();
    if (!question.isAboutSource() || question.workspace.isIgnored(document)) {
        return std::vector<Edit>();
    }
    const ProgramText program(question.pointer);
    if (const auto problem = program.findEncodingProblem()) {
        throw makeError({*problem});
    }
    const Suppression suppression = findSuppression(program.get());
    if (suppression.isWholeFile) {
        return std::vector<Edit>();
    }
    const auto editorOptions = question.params.find("options");
    const DocumentOptions found = question.workspace.resolve(
        document, editorOptions == question.params.end() ? std::vector<Setting>()
                                                         : readFormattingOptions(*editorOptions));
    if (!found.faults.empty()) {
        throw makeError(found.faults.front().problems, found.faults.front().path);
    }
    auto formatted = formatText(program.get(), found.options, lines, suppression);
    if (!formatted && isSyntaxFault(formatted.error())) {
        return std::nullopt;
    }
    if (!formatted) {
        throw makeError(formatted.error());
    }
    return program.toDocument(formatted->edits);
}

Json format(const Question& question, const std::vector<LineRange>& lines) {
    const auto edits = findEdits(question, lines);
    return edits ? writeEdits(question.getDocument(), *edits) : Json();
}

} // namespace

Json formatDocument(const Question& question) {
    return format(question, {});
}

Json formatRange(const Question& question) {
    return format(question, {readLines(question.getDocument(), question.params.at("range"))});
}

Json formatRanges(const Question& question) {
    std::vector<LineRange> lines;
    for (const Json& range : question.params.at("ranges")) {
        lines.push_back(readLines(question.getDocument(), range));
    }
    return lines.empty() ? Json::array() : format(question, lines);
}

Json formatBeforeSaving(const Question& question) {
    if (!question.workspace.getSettings()->formatsOnSave) {
        return {};
    }
    try {
        return format(question, {});
    } catch (const RequestError&) {
        return {};
    }
}

Json writeEdits(const Document& document, const std::vector<Edit>& edits) {
    Json list = Json::array();
    const bool isJoined = edits.size() > maximalEditCount;
    PositionFinder finder = document.makeFinder();
    for (const Edit& whole : isJoined ? join(document.text, edits) : edits) {
        const Edit edit = trim(document.text, whole);
        if (edit.length > 0 || !edit.text.empty()) {
            list.push_back({{"range", finder.writeRange(edit.offset, edit.offset + edit.length)},
                            {"newText", encodeLossy(edit.text)}});
        }
    }
    return list;
}

} // namespace ombrel::lsp
