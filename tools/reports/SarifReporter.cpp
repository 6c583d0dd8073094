#include "reports/SarifReporter.h"

#include "reports/JsonList.h"

#include <algorithm>
#include <cctype>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

/// "NotFormatted" for "not-formatted".
std::string makePascalCase(std::string_view name) {
    std::string result;
    bool isStart = true;
    for (const char c : name) {
        if (c != '-') {
            result += static_cast<char>(isStart ? std::toupper(static_cast<unsigned char>(c)) : c);
        }
        isStart = c == '-';
    }
    return result;
}

Json makeRule(const CodeInfo& info) {
    return {{"id", info.name},
            {"name", makePascalCase(info.name)},
            {"shortDescription", {{"text", info.summary}}},
            {"fullDescription", {{"text", info.cause}}},
            {"help", {{"text", fmt::format("{} {}", info.cause, info.remedy)}}},
            {"defaultConfiguration", {{"level", getWord(info.severity)}}}};
}

/// The rules that the results refer to, in the order of first use.
class RuleList {
public:
    /// The rule's number, from 0.
    std::size_t getIndex(Code code) {
        const auto found = std::find(codes.begin(), codes.end(), code);
        const auto index = static_cast<std::size_t>(found - codes.begin());
        if (found == codes.end()) {
            codes.push_back(code);
        }
        return index;
    }

    Json makeRules() const {
        Json list = Json::array();
        for (const Code code : codes) {
            list.push_back(makeRule(getInfo(code)));
        }
        return list;
    }

private:
    std::vector<Code> codes;
};

/// A path as a URI reference. Its colons are escaped too, so that none is read as the end of a scheme.
std::string makeUri(std::string_view path) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~/";
    std::string uri(path.starts_with('/') ? "file://" : "");
    for (const char c : path) {
        const bool isPlain = plain.find(c) != plain.npos;
        uri += isPlain ? std::string(1, c) : fmt::format("%{:02X}", static_cast<unsigned char>(c));
    }
    return uri;
}

Json makeLocation(const std::string& uri, const Problem& problem) {
    Json place = {{"artifactLocation", {{"uri", uri}}}};
    if (problem.line != 0) {
        place["region"]["startLine"] = problem.line;
    }
    if (problem.column != 0) {
        place["region"]["startColumn"] = problem.column;
    }
    return {{"physicalLocation", std::move(place)}};
}

Json makeRegion(const Change& change) {
    return {{"startLine", change.begin.line},
            {"startColumn", change.begin.column},
            {"endLine", change.end.line},
            {"endColumn", change.end.column}};
}

Json makeFix(const std::string& uri, const Change& change) {
    const Json replacement = {{"deletedRegion", makeRegion(change)},
                              {"insertedContent", {{"text", change.text}}}};
    const Json file = {{"artifactLocation", {{"uri", uri}}}, {"replacements", Json::array({replacement})}};
    return {{"description", {{"text", "Format these lines."}}}, {"artifactChanges", Json::array({file})}};
}

Json makeResult(const std::string& uri, const Problem& problem, RuleList& rules) {
    return {{"ruleId", getInfo(problem.code).name},
            {"ruleIndex", rules.getIndex(problem.code)},
            {"level", getWord(problem.severity)},
            {"message", {{"text", problem.text}}},
            {"locations", Json::array({makeLocation(uri, problem)})}};
}

Json makeResult(const std::string& uri, const Change& change, RuleList& rules) {
    Json result = makeResult(uri, makeFinding(change), rules);
    result["locations"][0]["physicalLocation"]["region"] = makeRegion(change);
    result["fixes"] = Json::array({makeFix(uri, change)});
    return result;
}

class SarifReporter : public Reporter {
public:
    SarifReporter(std::ostream& stream, std::string version) : stream(stream), version(std::move(version)) {}

    void add(const FileOutcome& outcome) override;
    void addFailure(const Problem& problem) override;
    void finish() override;

private:
    std::ostream& stream;
    std::string version;
    JsonList results{"results", 4};
    RuleList rules;
    Json notifications; ///< what kept the run from formatting files; null if nothing did
};

void SarifReporter::add(const FileOutcome& outcome) {
    const std::string uri = makeUri(outcome.path);
    for (const Problem& problem : getOtherFindings(outcome)) {
        results.add(makeResult(uri, problem, rules));
    }
    for (const Change& change : outcome.changes) {
        results.add(makeResult(uri, change, rules));
    }
}

void SarifReporter::addFailure(const Problem& problem) {
    notifications.push_back({{"descriptor", {{"id", getInfo(problem.code).name}}},
                             {"level", getWord(problem.severity)},
                             {"message", {{"text", problem.text}}}});
}

void SarifReporter::finish() {
    const Json driver = {{"name", "ombrel-format"}, {"version", version}, {"rules", rules.makeRules()}};
    Json run = {{"tool", {{"driver", driver}}},
                {"columnKind", "utf16CodeUnits"},
                {"newlineSequences", {"\r\n", "\n", "\r"}},
                {"results", Json::array()}};
    if (!notifications.is_null()) {
        run["invocations"] = Json::array(
            {{{"executionSuccessful", false}, {"toolConfigurationNotifications", std::move(notifications)}}});
    }
    const Json log = {{"$schema", "https://json.schemastore.org/sarif-2.1.0.json"},
                      {"version", "2.1.0"},
                      {"runs", Json::array({std::move(run)})}};
    results.write(stream, log);
}

} // namespace

std::unique_ptr<Reporter> makeSarifReporter(std::ostream& stream, std::string version) {
    return std::make_unique<SarifReporter>(stream, std::move(version));
}

} // namespace ombrel
