#include "cli/BugReport.h"

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

Json makeProblems(const std::vector<Message>& messages) {
    Json list = Json::array();
    for (const Message& message : messages) {
        const Problem& problem = message.problem;
        list.push_back({{"severity", getWord(problem.severity)},
                        {"code", getInfo(problem.code).name},
                        {"line", problem.line},
                        {"column", problem.column},
                        {"text", problem.text}});
    }
    return list;
}

Json makeLines(const std::vector<LineRange>& lines) {
    Json list = Json::array();
    for (const LineRange& range : lines) {
        list.push_back({range.first, range.last});
    }
    return list;
}

Json makeOptions(const std::vector<OptionInForce>& options) {
    Json list = Json::array();
    for (const OptionInForce& entry : options) {
        list.push_back({{"name", entry.option->getName()},
                        {"value", Json::parse(getJson(entry.value))},
                        {"origin", entry.origin}});
    }
    return list;
}

} // namespace

BugReport::BugReport(const OptionsResolver& options)
    : options(options), files(std::make_unique<Json>(Json::array())) {}

BugReport::~BugReport() = default;

void BugReport::add(const FileResult& result) {
    if (result.failure == nullptr || ++count > most) {
        return;
    }
    const FailedText& failure = *result.failure;
    files->push_back({{"path", result.outcome.path},
                      {"problems", makeProblems(result.outcome.messages)},
                      {"lines", makeLines(failure.lines)},
                      {"options", makeOptions(options.explain(result.outcome.path))},
                      {"source", failure.source},
                      {"result", failure.result ? Json(*failure.result) : Json()}});
}

std::string BugReport::make() const {
    const Json report = {{"tool", "ombrel-format"},
                         {"version", OMBREL_VERSION},
                         {"contains", "the whole text of each file: look through it before you pass it on"},
                         {"omittedFiles", count - files->size()},
                         {"files", *files}};
    return report.dump(2, ' ', true, Json::error_handler_t::replace) + '\n';
}

} // namespace ombrel
