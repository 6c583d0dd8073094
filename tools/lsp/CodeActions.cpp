#include "lsp/CodeActions.h"

#include "lsp/Blocks.h"
#include "lsp/Diagnostics.h"
#include "lsp/Formatting.h"
#include "lsp/OptionsText.h"
#include "lsp/SyntaxFault.h"
#include "text/TextEncoding.h"
#include "text/Whitespace.h"

#include <algorithm>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace ombrel::lsp {

namespace {

constexpr std::size_t mostActions = 10;      // each is tried, which costs a parse
constexpr std::size_t largestText = 1 << 20; // 16-bit characters; others would take too long

struct Fix {
    std::string title;
    Edit edit;
};

/// X in "did you mean 'X'?" or "did you mean X?".
std::optional<std::u16string> findMeant(std::u16string_view message) {
    constexpr std::u16string_view phrase = u"did you mean ";
    const std::size_t place = message.rfind(phrase);
    if (place == std::u16string_view::npos || !message.ends_with(u'?')) {
        return std::nullopt;
    }
    std::u16string_view meant = message.substr(place + phrase.size());
    meant.remove_suffix(1);
    if (meant.size() > 2 && meant.front() == u'\'' && meant.back() == u'\'') {
        meant = meant.substr(1, meant.size() - 2);
    }
    return std::u16string(meant);
}

Json writeAction(const Question& question, const Fix& fix, const Json& diagnostics) {
    const Document& document = question.getDocument();
    return {{"title", fix.title},
            {"kind", "quickfix"},
            {"isPreferred", true},
            {"diagnostics", diagnostics},
            {"edit", {{"changes", {{document.uri, writeEdits(document, {fix.edit})}}}}}};
}

/// The diagnostics of the request that start at the same place.
Json chooseDiagnostics(const Question& question, std::size_t offset) {
    Json chosen = Json::array();
    const auto context = question.params.find("context");
    if (context == question.params.end() || !context->contains("diagnostics")) {
        return chosen;
    }
    for (const Json& diagnostic : context->at("diagnostics")) {
        if (question.getDocument().findOffset(readRange(diagnostic.at("range")).start) == offset) {
            chosen.push_back(diagnostic);
        }
    }
    return chosen;
}

/// Quick fixes for syntax errors.
class SyntaxFixes {
public:
    SyntaxFixes(const Question& question, TextSpan wanted)
        : question(question), document(question.getDocument()), wanted(wanted), analysis(question.analyze()) {
    }

    Json find() {
        for (const ca::SyntaxError& error : analysis->parsed.errors) {
            const TextSpan span = findSpan(*analysis, error);
            if (isWanted(span) || isWanted(findPartner(*analysis, error).value_or(span))) {
                addFixes(error, span);
            }
            if (actions.size() == mostActions) {
                break;
            }
        }
        return std::move(actions);
    }

private:
    bool isWanted(TextSpan span) const { return span.begin <= wanted.end && wanted.begin <= span.end; }

    void addFixes(const ca::SyntaxError& error, TextSpan span) {
        for (const Fix& fix : makeFixes(error, span)) {
            if (helps(fix.edit)) {
                actions.push_back(writeAction(question, fix, chooseDiagnostics(question, span.begin)));
                return;
            }
        }
    }

    std::vector<Fix> makeFixes(const ca::SyntaxError& error, TextSpan span) const {
        if (const auto meant = findMeant(error.message)) {
            return {{"Change to '" + encodeLossy(*meant) + "'", {span.begin, span.end - span.begin, *meant}}};
        }
        if (error.message.find(u"did you forget '...'") != std::u16string::npos) {
            const std::size_t end = document.lines.getEnd(document.text, document.lines.findLine(span.begin));
            return {{"Continue the line with '...'", {end, 0, u" ..."}}};
        }
        return error.identifier == u"UnclosedBlock" ? makeEnds(error) : std::vector<Fix>();
    }

    /// The line of the block that lacks its `end`. The error names the outermost one that is open at the end,
    /// but an inner block that is indented deeper than the `end` that closes it has taken that of another.
    std::size_t findUnclosedLine(TextSpan named) const {
        const TokenList tokens(*analysis);
        std::size_t line = document.lines.findLine(named.begin);
        for (const Block& block : findBlocks(tokens)) {
            const std::size_t opener = tokens.getLine(block.opener);
            if (block.hasEnd && opener > line &&
                getIndentation(opener).size() > getIndentation(tokens.getLine(block.end)).size()) {
                line = opener;
            }
        }
        return line;
    }

    /// Where the missing `end` may belong: before the first line that is indented no more than the line with
    /// the opening word, or at the end of the text.
    std::vector<Fix> makeEnds(const ca::SyntaxError& error) const {
        const auto opener = findPartner(*analysis, error);
        if (!opener) {
            return {};
        }
        const std::size_t line = findUnclosedLine(*opener);
        const std::u16string_view indentation = getIndentation(line);
        const std::u16string lineEnd(getLineEnd(line));
        const std::u16string text = std::u16string(indentation) + u"end" + lineEnd;
        std::vector<Fix> fixes;
        for (std::size_t i = line + 1; i < document.lines.getLineCount(); ++i) {
            if (!isBlank(i) && getIndentation(i).size() <= indentation.size()) {
                fixes.push_back({endTitle, {document.lines.getStart(i), 0, text}});
                break;
            }
        }
        const bool isLineOpen = !isBlank(document.lines.getLineCount() - 1);
        fixes.push_back({endTitle, {document.text.size(), 0, isLineOpen ? lineEnd + text : text}});
        return fixes;
    }

    std::u16string_view getLine(std::size_t line) const {
        const std::size_t begin = document.lines.getStart(line);
        return std::u16string_view(document.text)
            .substr(begin, document.lines.getEnd(document.text, line) - begin);
    }

    std::u16string_view getIndentation(std::size_t line) const {
        return getLine(line).substr(0, countLeadingWhitespace(getLine(line)));
    }

    bool isBlank(std::size_t line) const { return getIndentation(line).size() == getLine(line).size(); }

    std::u16string_view getLineEnd(std::size_t line) const {
        if (line + 1 == document.lines.getLineCount()) {
            return u"\n";
        }
        const std::size_t end = document.lines.getEnd(document.text, line);
        return std::u16string_view(document.text).substr(end, document.lines.getStart(line + 1) - end);
    }

    bool helps(const Edit& edit) const {
        auto changed = std::make_shared<Document>(document);
        changed->text.replace(edit.offset, edit.length, edit.text);
        return Analysis(changed).parsed.errors.size() < analysis->parsed.errors.size();
    }

    static constexpr const char* endTitle = "Add the missing 'end'";

    const Question& question;
    const Document& document;
    TextSpan wanted;
    AnalysisPointer analysis;
    Json actions = Json::array();
};

/// Quick fixes for keys and words of an options file.
Json findOptionFixes(const Question& question, TextSpan wanted) {
    const Document& document = question.getDocument();
    Json actions = Json::array();
    for (const PlacedProblem& problem : findOptionsProblems(question)) {
        const TextSpan span = problem.span;
        const auto meant = findMeant(decodeLossy(problem.problem.text));
        const bool isString = span.begin < span.end && document.text[span.begin] == u'"';
        const bool isOverlapping = span.begin <= wanted.end && wanted.begin <= span.end;
        if (!meant || !isString || !isOverlapping || meant->find(u'.') != std::u16string::npos) {
            continue; // a name with a dot belongs elsewhere in the file
        }
        const Fix fix{"Change to \"" + encodeLossy(*meant) + "\"",
                      {span.begin, span.end - span.begin, u'"' + *meant + u'"'}};
        actions.push_back(writeAction(question, fix, chooseDiagnostics(question, span.begin)));
    }
    return actions;
}

} // namespace

Json findActions(const Question& question) {
    const Document& document = question.getDocument();
    const Range range = readRange(question.params.at("range"));
    const auto [begin, end] = std::minmax({document.findOffset(range.start), document.findOffset(range.end)});
    if (!question.client.hasActionLiterals || document.text.size() > largestText) {
        return Json::array();
    }
    switch (document.kind) {
    case DocumentKind::Source:
        return SyntaxFixes(question, {begin, end}).find();
    case DocumentKind::OptionsFile:
        return findOptionFixes(question, {begin, end});
    case DocumentKind::Other:
        break;
    }
    return Json::array();
}

} // namespace ombrel::lsp
