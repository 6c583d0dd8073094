#include "lsp/Diagnostics.h"

#include "diagnostics/Code.h"
#include "format/SuppressionUse.h"
#include "lsp/OptionsText.h"
#include "lsp/SyntaxFault.h"
#include "lsp/Uri.h"
#include "text/TextEncoding.h"

#include <algorithm>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <utility>

#include <fmt/format.h>

namespace ombrel::lsp {

namespace {

constexpr const char* source = "ombrel";
constexpr int unnecessary = 1; // DiagnosticTag

constexpr ForSeverity<int> severityNumbers{.note = 3, .warning = 2, .error = 1};

Json makeDiagnostic(Json range, Code code, Severity severity, const std::string& text) {
    return {{"range", std::move(range)},
            {"severity", severityNumbers.get(severity)},
            {"code", getInfo(code).name},
            {"source", source},
            {"message", text}};
}

class DiagnosticList {
public:
    explicit DiagnosticList(const Question& question)
        : question(question), document(question.getDocument()), finder(document.makeFinder()) {}

    Json takeSource() {
        const AnalysisPointer analysis = question.analyze();
        const DocumentOptions options = question.workspace.resolve(document, {});
        addOptionsFaults(options);
        addIgnoredValues(options);
        if (const auto problem = analysis->program.findEncodingProblem()) {
            addLine(*problem);
        }
        for (const ca::SyntaxError& error : analysis->parsed.errors) {
            addSyntaxError(*analysis, error);
        }
        addSuppression(analysis->program.get(), options);
        return std::move(list);
    }

    Json takeOptionsFile() {
        for (const auto& [span, problem] : findOptionsProblems(question)) {
            add(span.begin, span.end, problem);
        }
        return std::move(list);
    }

private:
    void add(std::size_t begin, std::size_t end, const Problem& problem) {
        list.push_back(
            makeDiagnostic(finder.writeRange(begin, end), problem.code, problem.severity, problem.text));
    }

    /// A problem of which only the start is known: it is shown to the end of its line.
    void addLine(const Problem& problem) {
        const std::size_t begin = document.findPlace(problem.line, problem.column);
        add(begin, std::max(begin, document.lines.getEnd(document.text, document.lines.findLine(begin))),
            problem);
    }

    void addSuppression(const std::u16string& text, const DocumentOptions& options) {
        const Suppression suppression = findSuppression(text);
        addSuppressionWarnings(suppression.warnings);
        if (options.faults.empty() && !question.workspace.isIgnored(document)) {
            addSuppressionWarnings(findUnneededSuppression(text, options.options, suppression));
        }
    }

    void addSuppressionWarnings(const Problems& warnings) {
        for (const Problem& warning : warnings) {
            addLine(warning);
            if (warning.code != Code::UnclosedSuppression) { // the comment itself does nothing
                list.back()["tags"] = Json::array({unnecessary});
            }
        }
    }

    void addSyntaxError(const Analysis& analysis, const ca::SyntaxError& error) {
        const TextSpan span = findSpan(analysis, error);
        add(span.begin, span.end, {getSyntaxCode(error.identifier), encodeLossy(error.message)});
        const auto partner = findPartner(analysis, error);
        if (partner && question.client.showsRelatedInformation) {
            addRelated(document.uri, document.makeFinder().writeRange(partner->begin, partner->end),
                       "opened here");
        }
    }

    void addOptionsFaults(const DocumentOptions& options) {
        for (const OptionsFault& fault : options.faults) {
            addElsewhere(fault.path, fault.problems.front(),
                         "not formatted until this options file is right: ");
        }
    }

    void addIgnoredValues(const DocumentOptions& options) {
        for (const OptionsFault& file : options.ignoredValues) {
            for (const Problem& problem : file.problems) {
                addElsewhere(file.path, problem, "");
            }
        }
    }

    /// A problem of another file that matters for this document. It is shown at the document's first line.
    void addElsewhere(const std::string& path, const Problem& problem, const char* consequence) {
        const std::uint32_t line = std::max(problem.line, 1U);
        Problem shown = problem;
        shown.text = fmt::format("{}{}:{}: {}", consequence, path, line, problem.text);
        add(0, document.lines.getEnd(document.text, 0), shown);
        if (question.client.showsRelatedInformation) {
            const Json place = writePosition({line - 1, std::max(problem.column, 1U) - 1});
            addRelated(makeUri(path), {{"start", place}, {"end", place}}, problem.text);
        }
    }

    void addRelated(const std::string& uri, Json range, const std::string& text) {
        list.back()["relatedInformation"] =
            Json::array({{{"location", {{"uri", uri}, {"range", std::move(range)}}}, {"message", text}}});
    }

    const Question& question;
    const Document& document;
    PositionFinder finder;
    Json list = Json::array();
};

} // namespace

std::vector<PlacedProblem> findOptionsProblems(const Question& question) {
    const Document& document = question.getDocument();
    std::vector<PlacedProblem> problems;
    for (Problem& problem : question.workspace.checkOptionsFile(document)) {
        const std::size_t place = document.findPlace(problem.line, problem.column);
        problems.push_back({findFaultyText(document.text, place), std::move(problem)});
    }
    return problems;
}

Json makeDiagnostics(const Question& question) {
    switch (question.getDocument().kind) {
    case DocumentKind::Source:
        return DiagnosticList(question).takeSource();
    case DocumentKind::OptionsFile:
        return DiagnosticList(question).takeOptionsFile();
    case DocumentKind::Other:
        break;
    }
    return Json::array();
}

Json reportDiagnostics(const Question& question) {
    Json items = makeDiagnostics(question);
    const std::string id = std::to_string(std::hash<Json>()(items));
    if (question.params.value("previousResultId", "") == id) {
        return {{"kind", "unchanged"}, {"resultId", id}};
    }
    return {{"kind", "full"}, {"resultId", id}, {"items", std::move(items)}};
}

} // namespace ombrel::lsp
