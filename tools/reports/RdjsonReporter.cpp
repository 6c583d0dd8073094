#include "reports/RdjsonReporter.h"

#include "reports/JsonText.h"

#include <ostream>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

constexpr SeverityWords words{.note = "INFO", .warning = "WARNING", .error = "ERROR"};

class RdjsonReporter : public FindingReporter {
public:
    explicit RdjsonReporter(std::ostream& stream) : stream(stream), diagnostics(Json::array()) {}

    void finish() override {
        const Json document = {{"source", {{"name", "ombrel-format"}}},
                               {"diagnostics", std::move(diagnostics)}};
        stream << makeJsonText(document) << '\n';
    }

private:
    void addFinding(const std::string& path, const Problem& problem) override {
        Json location = {{"path", path}};
        if (problem.line != 0) {
            location["range"]["start"]["line"] = problem.line;
        }
        diagnostics.push_back({{"message", problem.text},
                               {"location", std::move(location)},
                               {"severity", words.get(problem.severity)},
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
