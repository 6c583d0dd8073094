#include "reports/RdjsonReporter.h"

#include "reports/JsonList.h"

#include <ostream>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

constexpr SeverityWords words{.note = "INFO", .warning = "WARNING", .error = "ERROR"};

Json makeDiagnostic(const std::string& path, const Problem& problem) {
    Json location = {{"path", path}};
    if (problem.line != 0) {
        location["range"]["start"]["line"] = problem.line;
    }
    return {{"message", problem.text},
            {"location", std::move(location)},
            {"severity", words.get(problem.severity)},
            {"code", {{"value", getInfo(problem.code).name}}}};
}

Json makePosition(const TextPlace& place) {
    return {{"line", place.line}, {"column", place.byteColumn}};
}

Json makeDiagnostic(const std::string& path, const Change& change) {
    Json diagnostic = makeDiagnostic(path, makeFinding(change));
    if (change.begin.byteColumn != 0) {
        const Json range = {{"start", makePosition(change.begin)}, {"end", makePosition(change.end)}};
        diagnostic["location"]["range"] = range;
        diagnostic["suggestions"] = Json::array({{{"range", range}, {"text", change.text}}});
    }
    return diagnostic;
}

class RdjsonReporter : public FindingReporter {
public:
    explicit RdjsonReporter(std::ostream& stream) : stream(stream) {}

    void finish() override {
        diagnostics.write(stream, {{"source", {{"name", "ombrel-format"}}}, {"diagnostics", Json::array()}});
    }

private:
    void addFinding(const std::string& path, const Problem& problem) override {
        diagnostics.add(makeDiagnostic(path, problem));
    }

    void addChanges(const std::string& path, const std::vector<Change>& changes) override {
        for (const Change& change : changes) {
            diagnostics.add(makeDiagnostic(path, change));
        }
    }

    std::ostream& stream;
    JsonList diagnostics{"diagnostics", 2};
};

} // namespace

std::unique_ptr<Reporter> makeRdjsonReporter(std::ostream& stream) {
    return std::make_unique<RdjsonReporter>(stream);
}

} // namespace ombrel
