#include "reports/JsonReport.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <stdexcept>
#include <string>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::json;

/// Stops the reading; what() says what is wrong, and `where` is added on the way out.
class InvalidReport : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

const Json& getValue(const Json& object, const char* key) {
    if (!object.is_object()) {
        throw InvalidReport("expected an object");
    }
    const auto found = object.find(key);
    if (found == object.end()) {
        throw InvalidReport(fmt::format("\"{}\" is missing", key));
    }
    return *found;
}

std::string getText(const Json& object, const char* key) {
    const Json& value = getValue(object, key);
    if (!value.is_string()) {
        throw InvalidReport(fmt::format("\"{}\": expected a string", key));
    }
    return value.get<std::string>();
}

const Json& getList(const Json& object, const char* key) {
    const Json& value = getValue(object, key);
    if (!value.is_array()) {
        throw InvalidReport(fmt::format("\"{}\": expected an array", key));
    }
    return value;
}

/// `key` is where it was found. 0 for null.
std::uint32_t getNumber(const Json& value, const char* key) {
    if (value.is_null()) {
        return 0;
    }
    if (!value.is_number_unsigned() ||
        value.get<std::uint64_t>() > std::numeric_limits<std::uint32_t>::max()) {
        throw InvalidReport(fmt::format("\"{}\": expected a number from 1 to 4294967295", key));
    }
    return value.get<std::uint32_t>();
}

std::uint32_t getPlace(const Json& object, const char* key) {
    return getNumber(getValue(object, key), key);
}

/// The second of "lines", which only problems about several lines have; 0 for all others.
std::uint32_t getLastLine(const Json& message) {
    if (!message.contains("lines")) {
        return 0;
    }
    const Json& lines = getList(message, "lines");
    if (lines.size() != 2) {
        throw InvalidReport("\"lines\": expected the first and the last line");
    }
    return getNumber(lines[1], "lines");
}

/// The one of the values that has this word.
template <class Value>
Value findWord(const std::string& word, const char* key, std::initializer_list<Value> values) {
    for (const Value value : values) {
        if (getWord(value) == word) {
            return value;
        }
    }
    throw InvalidReport(fmt::format("\"{}\": unknown word \"{}\"", key, word));
}

Problem readProblem(const Json& object) {
    const std::string name = getText(object, "code");
    const std::optional<Code> code = findCode(name);
    if (!code) {
        throw InvalidReport(fmt::format("unknown code \"{}\": another version wrote this report", name));
    }
    Problem problem(*code, getText(object, "text"), getPlace(object, "line"), getPlace(object, "column"));
    problem.severity = findWord(getText(object, "severity"), "severity",
                                {Severity::Note, Severity::Warning, Severity::Error});
    problem.lastLine = getLastLine(object);
    return problem;
}

TextPlace readPlace(const Json& object, const char* key) {
    const Json& place = getValue(object, key);
    const bool hasBytes = place.contains("byteColumn"); // reports of older versions haven't
    return {getPlace(place, "line"), getPlace(place, "column"), hasBytes ? getPlace(place, "byteColumn") : 0};
}

/// Reports of older versions have none.
std::vector<Change> readChanges(const Json& file) {
    std::vector<Change> changes;
    if (file.contains("changes")) {
        for (const Json& change : getList(file, "changes")) {
            changes.push_back({readPlace(change, "begin"), readPlace(change, "end"), getText(change, "text"),
                               getText(change, "what")});
        }
    }
    return changes;
}

FileOutcome readOutcome(const Json& object) {
    FileOutcome outcome;
    outcome.path = getText(object, "path");
    outcome.status =
        findWord(getText(object, "status"), "status",
                 {FileStatus::Unchanged, FileStatus::Formatted, FileStatus::WouldChange, FileStatus::Failed});
    if (outcome.status == FileStatus::WouldChange) {
        outcome.firstChangedLine = getPlace(object, "firstChangedLine");
        outcome.changes = readChanges(object);
    }
    for (const Json& message : getList(object, "messages")) {
        outcome.messages.push_back({readProblem(message), {}});
    }
    return outcome;
}

Report readReport(const Json& document) {
    Report report;
    const Json& files = getList(document, "files");
    report.files.reserve(files.size());
    for (const Json& file : files) {
        try {
            report.files.push_back(readOutcome(file));
        } catch (const InvalidReport& error) {
            throw InvalidReport(
                fmt::format("file {} of the report: {}", report.files.size() + 1, error.what()));
        }
    }
    if (document.contains("messages")) {
        for (const Json& message : getList(document, "messages")) {
            report.failures.push_back(readProblem(message));
        }
    }
    return report;
}

} // namespace

Result<Report> readJsonReport(std::string_view document) {
    const Json json = Json::parse(document, nullptr, false);
    if (json.is_discarded()) {
        return fail(Code::InvalidReport, "this is not a JSON document");
    }
    try {
        return readReport(json);
    } catch (const InvalidReport& error) {
        return fail(Code::InvalidReport, error.what());
    }
}

} // namespace ombrel
