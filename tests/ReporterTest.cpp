#include "support/TemporaryFolder.h"

#include "format/EditAdoption.h"
#include "reports/GithubReporter.h"
#include "reports/HumanReporter.h"
#include "reports/JsonReport.h"
#include "reports/JsonReporter.h"
#include "reports/RdjsonReporter.h"
#include "reports/SarifReporter.h"
#include "reports/XmlText.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <fmt/format.h>

namespace {

using namespace ombrel;

/// One file of each kind, with names and texts that every form has to escape.
std::vector<FileOutcome> makeOutcomes() {
    FileOutcome fine{"fine.omb", FileStatus::Unchanged, 0, {}};
    FileOutcome ugly{"a b/100%,c:d\n.omb", FileStatus::WouldChange, 3, {}};
    FileOutcome warned{"/tmp/\xFF.omb", FileStatus::Formatted, 0, {}};
    Problem kept(Code::KeptStatement, "kept", 2, 1);
    kept.lastLine = 3;
    warned.messages = makeMessages({{Code::UselessSuppression, "odd", 1, 2}, kept}, u"x;\n[1\n2]");
    FileOutcome bad{"bad.omb", FileStatus::Failed, 0, {}};
    bad.messages = makeMessages({{Code::UnclosedString, "50% of \"'\xC3\xA4'\",\r\n: lost", 2, 5},
                                 {Code::WriteFailed, "the disk is full"}},
                                u"\n\tx = ;");
    return {fine, ugly, warned, bad};
}

std::string report(Reporter& reporter, const std::ostringstream& stream,
                   const std::vector<FileOutcome>& outcomes = makeOutcomes()) {
    for (const FileOutcome& outcome : outcomes) {
        reporter.add(outcome);
    }
    reporter.finish();
    return stream.str();
}

/// With OMBREL_UPDATE_GOLDEN set, what a reporter writes now becomes what the file wants.
void expectGolden(const char* name, const std::string& text) {
    const std::filesystem::path path =
        std::filesystem::path(OMBREL_SOURCE_DIR) / "tests/golden/reports" / name;
    if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
        std::ofstream(path, std::ios::binary) << text;
    }
    EXPECT_EQ(text, readFile(path));
}

TEST(Reporter, WritesEveryForm) {
    std::ostringstream json;
    expectGolden("report.json", report(*makeJsonReporter(json), json));
    std::ostringstream sarif;
    expectGolden("report.sarif", report(*makeSarifReporter(sarif, "1.2.3"), sarif));
    std::ostringstream github;
    expectGolden("report.github", report(*makeGithubReporter(github), github));
    std::ostringstream human;
    HumanReporter reporter(human, human, {Color::Off, true, false, true, true});
    expectGolden("report.human", report(reporter, human));
}

TEST(Reporter, XmlHasOnlyWhatItMayContain) {
    EXPECT_EQ(
        escapeXml("<a b=\"c\">&\t\r\n\x01\xEF\xBF\xBE\xFF\xF0\x9F\x99\x82\xE2\x80\xAE"),
        "&lt;a "
        "b=&quot;c&quot;&gt;&amp;&#9;&#13;&#10;\xEF\xBF\xBD\xEF\xBF\xBD\xEF\xBF\xBD\xF0\x9F\x99\x82&#x202E;");
}

/// Reports are merged by way of JSON, so JSON has to have all that is in any other form.
TEST(Reporter, JsonIsEnoughForTheOthers) {
    std::vector<FileOutcome> outcomes = makeOutcomes();
    outcomes[2].path = "/tmp/readable.omb"; // bytes that aren't UTF-8 don't survive
    outcomes[1].changes = {{{3, 2, 3}, {4, 1, 1}, "\xC3\xA4 ", "spacing"}};
    std::ostringstream json;
    const auto read = readJsonReport(report(*makeJsonReporter(json), json, outcomes));
    ASSERT_TRUE(read) << read.error().front().text;
    const auto expectSame = [&](auto make) {
        std::ostringstream direct;
        std::ostringstream again;
        EXPECT_EQ(report(*make(again), again, read->files), report(*make(direct), direct, outcomes));
    };
    expectSame([](std::ostream& stream) { return makeJsonReporter(stream); });
    expectSame([](std::ostream& stream) { return makeGithubReporter(stream); });
    expectSame([](std::ostream& stream) { return makeSarifReporter(stream, "1.2.3"); });
    expectSame([](std::ostream& stream) { return makeRdjsonReporter(stream); });
}

struct ChangeCase {
    std::string source;
    std::vector<Edit> edits;
    std::string wanted; ///< for each change: line:column:byte column, the same of its end, what, [new text]
};

TEST(Reporter, ChangesSayWhereAndWhat) {
    const ChangeCase cases[] = {
        {"x=1", {{1, 0, u" "}}, "1:2:2 1:2:2 spacing: none, expected 1 space [ ]"},
        {"if a\n\t x\nend",
         {{5, 2, u"\t\t"}},
         "2:1:1 2:3:3 indentation: 1 tab and 1 space, expected 2 tabs [\t\t]"},
        {"x  \r\ny", {{1, 2, u""}}, "1:2:2 1:4:4 whitespace at the end of a line: 2 spaces []"},
        {" x\t",
         {{0, 1, u""}, {2, 1, u""}},
         "1:1:1 1:4:4 indentation: 1 space, expected none, and 1 more in these lines [x]"},
        {"x;y", {{2, 0, u"\n"}}, "1:3:3 1:3:3 a line break is missing [\n]"},
        {"x;\n\n\ny", {{2, 3, u"\n"}}, "1:3:3 4:1:1 there are too many line breaks [\n]"},
        {"x;\r\n\ry", {{2, 3, u"\r\n"}}, "1:3:3 3:1:1 there are too many line breaks [\r\n]"},
        {"x; \ny", {{2, 2, u"\n"}}, "1:3:3 2:1:1 whitespace at the end of a line [\n]"},
        {"if a\n  x\nend",
         {{4, 3, u"\n    "}},
         "1:5:5 2:3:3 indentation: 2 spaces, expected 4 spaces [\n    ]"},
        {"x, y", {{1, 2, u"\n"}}, "1:2:2 1:4:4 separators or line breaks [\n]"},
        {"x=1\ny=2\n\nz=3",
         {{1, 0, u" "}, {5, 0, u" "}, {10, 0, u" "}},
         "1:2:2 2:2:2 spacing: none, expected 1 space, and 1 more in these lines [ =1\ny ]\n"
         "4:2:2 4:2:2 spacing: none, expected 1 space [ ]"},
        {"\xEF\xBB\xBFx('\xC3\xA4\xE2\x82\xAC\xF0\x9F\x99\x82')=1",
         {{9, 0, u" "}},
         "1:10:18 1:10:18 spacing: none, expected 1 space [ ]"},
    };
    const auto show = [](const TextPlace& place) {
        return fmt::format("{}:{}:{}", place.line, place.column, place.byteColumn);
    };
    for (const ChangeCase& row : cases) {
        const DecodedText source = decode(row.source).value();
        const auto edits = adoptEdits(source.text, row.edits);
        ASSERT_TRUE(edits) << row.wanted << edits.error().front().text;
        std::string found;
        for (const Change& change : describeChanges(source, *edits)) {
            found += fmt::format("{}{} {} {} [{}]", found.empty() ? "" : "\n", show(change.begin),
                                 show(change.end), change.what, change.text);
        }
        EXPECT_EQ(found, row.wanted);
    }
}

TEST(Reporter, JsonOfOthersIsRefusedWithAReason) {
    const std::string start = R"({"files": [{"path": "a", "status": )";
    for (
        const auto& [document, reason] : std::vector<std::pair<std::string, std::string>>{
            {"{", "this is not a JSON document"},
            {"[]", "expected an object"},
            {R"({"files": {}})", R"("files": expected an array)"},
            {R"({"files": [{}]})", R"(file 1 of the report: "path" is missing)"},
            {start + "1}]}", R"(file 1 of the report: "status": expected a string)"},
            {start + R"("done", "messages": []}]})",
             R"(file 1 of the report: "status": unknown word "done")"},
            {start + R"("would-change", "firstChangedLine": -1}]})",
             R"(file 1 of the report: "firstChangedLine": expected a number from 1 to 4294967295)"},
            {start +
                 R"("failed", "messages": [{"code": "write-failed", "text": "", "line": 1, "column": 1, "severity": "error", "lines": [1]}]}]})",
             R"(file 1 of the report: "lines": expected the first and the last line)"},
            {R"({"files": [], "messages": [{"code": "new"}]})",
             R"(unknown code "new": another version wrote this report)"}}) {
        const auto read = readJsonReport(document);
        EXPECT_EQ(read ? "" : read.error().front().text, reason) << document;
    }
}

} // namespace
