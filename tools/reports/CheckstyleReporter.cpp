#include "reports/CheckstyleReporter.h"

#include "reports/XmlText.h"

#include <ostream>

#include <fmt/format.h>

namespace ombrel {

namespace {

constexpr SeverityWords words{.note = "info", .warning = "warning", .error = "error"};

std::string makePlace(const Problem& problem) {
    std::string place = problem.line == 0 ? "" : fmt::format(" line=\"{}\"", problem.line);
    return place + (problem.column == 0 ? "" : fmt::format(" column=\"{}\"", problem.column));
}

class CheckstyleReporter : public Reporter {
public:
    explicit CheckstyleReporter(std::ostream& stream) : stream(stream) {
        stream << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<checkstyle version=\"4.3\">\n";
    }

    void add(const FileOutcome& outcome) override { write(outcome.path, getFindings(outcome)); }

    void addFailure(const Problem& problem) override { write(".", {problem}); }

    void finish() override { stream << "</checkstyle>\n"; }

private:
    void write(std::string_view path, const Problems& problems) {
        stream << "  <file name=\"" << escapeXml(path) << "\">\n";
        for (const Problem& problem : problems) {
            stream << fmt::format(
                "    <error{} severity=\"{}\" message=\"{}\" source=\"ombrel-format.{}\"/>\n",
                makePlace(problem), words.get(problem.severity), escapeXml(problem.text),
                getInfo(problem.code).name);
        }
        stream << "  </file>\n";
    }

    std::ostream& stream;
};

} // namespace

std::unique_ptr<Reporter> makeCheckstyleReporter(std::ostream& stream) {
    return std::make_unique<CheckstyleReporter>(stream);
}

} // namespace ombrel
