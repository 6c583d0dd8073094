#include "reports/JsonReporter.h"

#include "reports/JsonList.h"

#include <cstdint>
#include <ostream>
#include <string_view>

#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

Json toNumberOrNull(std::uint32_t number) {
    return number == 0 ? Json(nullptr) : Json(number);
}

constexpr SeverityWords totalNames{.note = "notes", .warning = "warnings", .error = "errors"};

Json makeMessage(const Problem& problem) {
    Json message = {{"severity", getWord(problem.severity)},
                    {"code", getInfo(problem.code).name},
                    {"line", toNumberOrNull(problem.line)},
                    {"column", toNumberOrNull(problem.column)},
                    {"text", problem.text}};
    if (problem.lastLine != 0) {
        message["lines"] = {problem.line, problem.lastLine};
    }
    return message;
}

Json makePlace(const TextPlace& place) {
    return {{"line", place.line}, {"column", place.column}, {"byteColumn", place.byteColumn}};
}

Json makeChanges(const std::vector<Change>& changes) {
    Json list = Json::array();
    for (const Change& change : changes) {
        list.push_back({{"begin", makePlace(change.begin)},
                        {"end", makePlace(change.end)},
                        {"text", change.text},
                        {"what", change.what}});
    }
    return list;
}

class JsonReporter : public Reporter {
public:
    explicit JsonReporter(std::ostream& stream);

    void add(const FileOutcome& outcome) override;
    void addFailure(const Problem& problem) override;
    void finish() override;

private:
    Json countMessage(const Problem& problem);
    void increment(std::string_view total);

    std::ostream& stream;
    JsonList files{"files", 2};
    Json failures; ///< null if there are none
    Json totals;
};

JsonReporter::JsonReporter(std::ostream& stream)
    : stream(stream), totals({{"files", 0},
                              {"unchanged", 0},
                              {"formatted", 0},
                              {"would-change", 0},
                              {"failed", 0},
                              {"errors", 0},
                              {"warnings", 0},
                              {"notes", 0}}) {}

Json JsonReporter::countMessage(const Problem& problem) {
    increment(totalNames.get(problem.severity));
    return makeMessage(problem);
}

void JsonReporter::increment(std::string_view total) {
    auto& number = totals[total];
    number = number.get<std::uint64_t>() + 1;
}

void JsonReporter::add(const FileOutcome& outcome) {
    Json file = {{"path", outcome.path}, {"status", getWord(outcome.status)}};
    if (outcome.status == FileStatus::WouldChange) {
        file["firstChangedLine"] = outcome.firstChangedLine;
        file["changes"] = makeChanges(outcome.changes);
    }
    Json messages = Json::array();
    for (const Message& message : outcome.messages) {
        messages.push_back(countMessage(message.problem));
    }
    file["messages"] = std::move(messages);
    files.add(file);
    increment("files");
    increment(getWord(outcome.status));
}

void JsonReporter::addFailure(const Problem& problem) {
    failures.push_back(countMessage(problem));
}

void JsonReporter::finish() {
    Json document = {{"files", Json::array()}, {"totals", std::move(totals)}};
    if (!failures.is_null()) {
        document["messages"] = std::move(failures);
    }
    files.write(stream, document);
}

} // namespace

std::unique_ptr<Reporter> makeJsonReporter(std::ostream& stream) {
    return std::make_unique<JsonReporter>(stream);
}

} // namespace ombrel
