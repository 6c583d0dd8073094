#include "reports/GithubReporter.h"

#include "text/Printable.h"

#include <ostream>
#include <string_view>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// Text with the given characters and the `%` of the escapes themselves as `%0A`, say.
std::string escape(std::string_view text, std::string_view special) {
    std::string escaped;
    for (const char c : escapeHidden(text)) {
        const bool isSpecial = c == '%' || special.find(c) != special.npos;
        escaped += isSpecial ? fmt::format("%{:02X}", static_cast<unsigned char>(c)) : std::string(1, c);
    }
    return escaped;
}

constexpr SeverityWords commands{.note = "notice", .warning = "warning", .error = "error"};

std::string makeCommand(std::string_view path, const Problem& problem) {
    std::string command = fmt::format("::{} file={}", commands.get(problem.severity), escape(path, "\r\n:,"));
    if (problem.line != 0) {
        command += fmt::format(",line={}", problem.line);
    }
    if (problem.column != 0) {
        command += fmt::format(",col={}", problem.column);
    }
    command += fmt::format(",title={}", getInfo(problem.code).name);
    return command + "::" + escape(problem.text, "\r\n");
}

class GithubReporter : public Reporter {
public:
    explicit GithubReporter(std::ostream& stream) : stream(stream) {}

    void addFailure(const Problem& problem) override {
        stream << "::error::" << escape(problem.text, "\r\n") << '\n';
    }

    void add(const FileOutcome& outcome) override {
        for (const Problem& problem : getFindings(outcome)) {
            stream << makeCommand(outcome.path, problem) << '\n';
        }
    }

private:
    std::ostream& stream;
};

} // namespace

std::unique_ptr<Reporter> makeGithubReporter(std::ostream& stream) {
    return std::make_unique<GithubReporter>(stream);
}

} // namespace ombrel
