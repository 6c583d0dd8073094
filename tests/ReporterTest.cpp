#include "support/TemporaryFolder.h"

#include "reports/GithubReporter.h"
#include "reports/HumanReporter.h"
#include "reports/JsonReport.h"
#include "reports/JsonReporter.h"
#include "reports/RdjsonReporter.h"
#include "reports/SarifReporter.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

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

TEST(Reporter, JsonOfOthersIsRefusedWithAReason) {
    const std::string start = R"({"files": [{"path": "a", "status": )";
    for (const auto& [document, reason] : std::vector<std::pair<std::string, std::string>>{
             {"{", "this is not a JSON document"},
             {"[]", "expected an object"},
             {R"({"files": {}})", R"("files": expected an array)"},
             {R"({"files": [{}]})", R"(file 1 of the report: "path" is missing)"},
             {start + "1}]}", R"(file 1 of the report: "status": expected a string)"},
             {start + R"("done", "messages": []}]})",
              R"(file 1 of the report: "status": unknown word "done")"},
             {start + R"("would-change", "firstChangedLine": -1}]})",
              R"(file 1 of the report: "firstChangedLine": expected a number from 1 to 4294967295)"},
             {R"({"files": [], "messages": [{"code": "new"}]})",
              R"(unknown code "new": another version wrote this report)"}}) {
        const auto read = readJsonReport(document);
        EXPECT_EQ(read ? "" : read.error().front().text, reason) << document;
    }
}

} // namespace
