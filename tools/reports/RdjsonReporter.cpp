#include "reports/RdjsonReporter.h"

#include <ostream>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

const char* getWordOf(Severity severity) {
    switch (severity) {
    case Severity::Note:
        return "INFO";
    case Severity::Warning:
        return "WARNING";
    case Severity::Error:
        break;
    }
    return "ERROR";
}

class RdjsonReporter : public Reporter {
public:
    explicit RdjsonReporter(std::ostream& stream) : stream(stream), diagnostics(Json::array()) {}

    void add(const FileOutcome& outcome) override {
        for (const Problem& problem : getFindings(outcome)) {
            add(outcome.path, problem);
        }
    }

    void addFailure(const Problem& problem) override { add(".", problem); }

    void finish() override {
        const Json document = {{"source", {{"name", "ombrel-format"}}},
                               {"diagnostics", std::move(diagnostics)}};
        stream << document.dump(2, ' ', false, Json::error_handler_t::replace) << '\n';
    }

private:
    void add(const std::string& path, const Problem& problem) {
        Json location = {{"path", path}};
        if (problem.line != 0) {
            location["range"]["start"]["line"] = problem.line;
        }
        diagnostics.push_back({{"message", problem.text},
                               {"location", std::move(location)},
                               {"severity", getWordOf(problem.severity)},
                               {"code", {{"value", getInfo(problem.code).name}}}});
    }

    std::ostream& stream;
    Json diagnostics;
};

} // namespace

std::unique_ptr<Reporter> makeRdjsonReporter(std::ostream& stream) {
    return std::make_unique<RdjsonReporter>(stream);
}

} // namespace ombrel
