#include "reports/GitlabReporter.h"

#include "reports/JsonText.h"

#include <algorithm>
#include <cstdint>
#include <ostream>
#include <unordered_map>

#include <fmt/format.h>
#include <nlohmann/json.hpp>

namespace ombrel {

namespace {

using Json = nlohmann::ordered_json;

constexpr SeverityWords words{.note = "info", .warning = "minor", .error = "major"};

/// FNV-1a: the same on every machine, and fingerprints guard against nobody.
std::uint64_t hash(std::string_view text) {
    std::uint64_t value = 14695981039346656037U;
    for (const char c : text) {
        value = (value ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    return value;
}

using PathMaker = std::function<std::string(const std::string&)>;

class GitlabReporter : public FindingReporter {
public:
    GitlabReporter(std::ostream& stream, PathMaker getPath)
        : stream(stream), getPath(std::move(getPath)), list(Json::array()) {}

    void addFailure(const Problem& problem) override { addIssue(".", problem); }

    void finish() override { stream << makeJsonText(list) << '\n'; }

private:
    void addFinding(const std::string& path, const Problem& problem) override {
        addIssue(getPath(path), problem);
    }

    void addIssue(const std::string& path, const Problem& problem) {
        const auto name = getInfo(problem.code).name;
        const std::uint32_t line = std::max<std::uint32_t>(problem.line, 1);
        list.push_back(
            {{"type", "issue"},
             {"description", problem.text},
             {"check_name", name},
             {"categories", Json::array({"Style"})},
             {"fingerprint", makeFingerprint(fmt::format("{}\n{}\n{}", path, name, problem.text))},
             {"severity", words.get(problem.severity)},
             {"location",
              {{"path", path}, {"lines", {{"begin", line}, {"end", std::max(line, problem.lastLine)}}}}}});
    }

    /// The same for a finding that has moved to another line, and another one for each of several.
    std::string makeFingerprint(const std::string& text) {
        return fmt::format("{:016x}{:016x}", hash(text), ++counts[text]);
    }

    std::ostream& stream;
    PathMaker getPath;
    Json list;
    std::unordered_map<std::string, std::uint64_t> counts; ///< findings by what they say
};

} // namespace

std::unique_ptr<Reporter> makeGitlabReporter(std::ostream& stream, PathMaker getPath) {
    return std::make_unique<GitlabReporter>(stream, std::move(getPath));
}

} // namespace ombrel
