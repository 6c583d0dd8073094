#include "reports/JunitReporter.h"

#include "reports/XmlText.h"

#include <ostream>

#include <fmt/format.h>

namespace ombrel {

namespace {

/// A finding on a line of its own, with its place first.
std::string describe(const Problem& problem) {
    const std::string column = problem.column == 0 ? "" : fmt::format(":{}", problem.column);
    const std::string place = problem.line == 0 ? "" : fmt::format("{}{}: ", problem.line, column);
    return fmt::format("{}{} [{}]\n", place, problem.text, getInfo(problem.code).name);
}

class JunitReporter : public Reporter {
public:
    explicit JunitReporter(std::ostream& stream) : stream(stream) {}

    void add(const FileOutcome& outcome) override {
        const Problems findings = getFindings(outcome);
        if (outcome.status == FileStatus::Failed) {
            ++errors;
            write(outcome.path, "error", findings);
        } else if (outcome.status == FileStatus::WouldChange) {
            ++failures;
            write(outcome.path, "failure", findings);
        } else {
            write(outcome.path, "", {});
        }
    }

    void addFailure(const Problem& problem) override {
        ++errors;
        write("ombrel-format", "error", {problem});
    }

    void finish() override {
        const std::string counts =
            fmt::format("tests=\"{}\" failures=\"{}\" errors=\"{}\"", tests, failures, errors);
        stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites " << counts
               << ">\n  <testsuite name=\"ombrel-format\" " << counts << ">\n"
               << cases << "  </testsuite>\n</testsuites>\n";
    }

private:
    /// `element` says how the test ended; empty: it passed.
    void write(std::string_view name, std::string_view element, const Problems& problems) {
        ++tests;
        cases += fmt::format("    <testcase name=\"{}\" classname=\"ombrel-format\"", escapeXml(name));
        if (element.empty()) {
            cases += "/>\n";
            return;
        }
        std::string text;
        for (const Problem& problem : problems) {
            text += describe(problem);
        }
        cases += fmt::format(">\n      <{0} type=\"{1}\" message=\"{2}\">{3}</{0}>\n    </testcase>\n",
                             element, getInfo(problems.front().code).name, escapeXml(problems.front().text),
                             escapeXml(text));
    }

    std::ostream& stream;
    std::string cases; ///< their counts come before them
    std::size_t tests = 0;
    std::size_t failures = 0;
    std::size_t errors = 0;
};

} // namespace

std::unique_ptr<Reporter> makeJunitReporter(std::ostream& stream) {
    return std::make_unique<JunitReporter>(stream);
}

} // namespace ombrel
