#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"

#include <ombrel-format/reports/GithubReporter.h>
#include <ombrel-format/reports/HumanReporter.h>
#include <ombrel-format/reports/JsonReporter.h>
#include <ombrel-format/reports/SarifReporter.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

#include <sys/stat.h>

namespace {

using namespace ombrel;

std::string readFile(const std::filesystem::path& path) {
    std::ostringstream bytes;
    bytes << std::ifstream(path, std::ios::binary).rdbuf();
    return bytes.str();
}

/// One file of each kind, with names and texts that every form has to escape.
std::vector<FileOutcome> makeOutcomes() {
    FileOutcome fine{"fine.omb", FileStatus::Unchanged, 0, {}};
    FileOutcome ugly{"a b/100%,c:d\n.omb", FileStatus::WouldChange, 3, {}};
    FileOutcome warned{"/tmp/\xFF.omb", FileStatus::Formatted, 0, {}};
    warned.messages = makeMessages({{ExitStatus::Done, "odd", 1, 2}}, u"x;");
    FileOutcome bad{"bad.omb", FileStatus::Failed, 0, {}};
    bad.messages = makeMessages({{ExitStatus::Unparsable, "50% of \"'\xC3\xA4'\",\r\n: lost", 2, 5},
                                 {ExitStatus::WriteFailed, "the disk is full"}},
                                u"\n\tx = ;");
    return {fine, ugly, warned, bad};
}

std::string report(Reporter& reporter, const std::ostringstream& stream) {
    for (const FileOutcome& outcome : makeOutcomes()) {
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
    HumanReporter reporter(human, human, {Color::Off, true, true, true});
    expectGolden("report.human", report(reporter, human));
}

TEST(Reporter, EmptyRunIsAWholeDocument) {
    std::ostringstream json;
    makeJsonReporter(json)->finish();
    EXPECT_NE(json.str().find("\"files\": [],"), std::string::npos) << json.str();
    std::ostringstream sarif;
    makeSarifReporter(sarif, "1")->finish();
    EXPECT_NE(sarif.str().find("\"results\": []"), std::string::npos) << sarif.str();
}

TEST(Reporter, NamesTheFirstLineThatChanges) {
    EXPECT_EQ(findFirstChangedLine(u"a\r\nb\rc", u"a\r\nb\r c"), 3U);
    EXPECT_EQ(findFirstChangedLine(u"a\nb", u"a\rb"), 1U);
    EXPECT_EQ(findFirstChangedLine(u"a\nb", u"a\nb\nc"), 2U);
    EXPECT_EQ(findFirstChangedLine(u"a\nb", u"a"), 1U);
}

class ReporterRun : public testing::Test {
protected:
    TemporaryFolder disk;
    const std::filesystem::path folder = disk.getPath();
};

const std::string ugly = "x\n  if a\nend\n";

TEST_F(ReporterRun, ReportsGoToStandardOutputOrWholeToFiles) {
    const std::string file = folder / "a.omb";
    std::ofstream(file) << ugly;
    const std::string json = folder / "report.json";
    const mode_t mask = ::umask(027);
    const ProgramOutcome check =
        runProgram({"--check", "--reporter", "github", "--reporter", "json:" + json, file});
    ::umask(mask);
    EXPECT_EQ(check.status, 1);
    EXPECT_EQ(check.out.find("::error file=" + file + ",line=2::"), 0U) << check.out;
    EXPECT_EQ(check.err, "");
    EXPECT_NE(readFile(json).find("\"firstChangedLine\": 2,"), std::string::npos);

    EXPECT_EQ(std::filesystem::status(json).permissions(), std::filesystem::perms(0640));

    // The old report goes only when the new one is whole.
    std::filesystem::permissions(json, std::filesystem::perms::owner_read);
    const ProgramOutcome refused = runProgram({"--reporter=json:" + json}, "\xFF");
    EXPECT_EQ(refused.status, 6);
    EXPECT_EQ(refused.err.find(json + ": error: not replaced: it is read-only"), 0U) << refused.err;
    EXPECT_NE(readFile(json).find("firstChangedLine"), std::string::npos);
    EXPECT_EQ(runProgram({"--reporter=sarif:" + (folder / "none/x").string()}).status, 6);
    EXPECT_EQ(runProgram({"--reporter=sarif:/dev/full"}).status, 6);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder), {}), 2) << "nothing is left behind";

    const ProgramOutcome both =
        runProgram({"-i", "-v", "--reporter=human", "--reporter=json:-", file, (folder / "b.omb").string()});
    EXPECT_EQ(both.status, 2);
    EXPECT_EQ(both.err,
              file + ": formatted\n" + (folder / "b.omb").string() +
                  ": error: can't open it: No such file or directory\n1 of 2 files formatted, 1 failed\n");
    EXPECT_NE(both.out.find("\"formatted\": 1,"), std::string::npos) << both.out;
}

TEST_F(ReporterRun, FaultsOfOptionsFilesAreReported) {
    const std::string file = folder / "a.omb";
    const std::string options = folder / ".ombrel-format.json";
    std::ofstream(file) << ugly;
    std::ofstream(options) << "{\n  \"engin\": \"line\",\n  \"line\": {\"indentSize\": 65}\n}\n";
    const std::string json = folder / "report.json";
    const ProgramOutcome check =
        runProgram({"--check", "--reporter=github", "--reporter=json:" + json, file, file});
    EXPECT_EQ(check.status, 2);
    EXPECT_EQ(check.err, "");
    EXPECT_EQ(check.out, "::error file=" + options +
                             ",line=2,col=3::unknown option engin; did you mean engine?\n" +
                             "::error file=" + options + ",line=3,col=26::expected a number from 0 to 64\n");
    EXPECT_NE(readFile(json).find("\"failed\": 1,\n    \"errors\": 2"), std::string::npos);
    EXPECT_EQ(runProgram({"--print-config", "-q", file}).err.find(options + ":2:3: error: "), 0U);
}

TEST_F(ReporterRun, RefusesTwoWritersOfOnePlace) {
    struct Row {
        std::vector<std::string> words;
        std::string message;
    };
    const Row rows[] = {
        {{"--reporter", "jsn"}, "expected human or json|github|sarif[:FILE]; did you mean json?"},
        {{"--reporter", "human:x"}, "takes no file"},
        {{"--reporter", "json:"}, "a file name is missing"},
        {{"--reporter=json"}, "json and the formatted text would both go to standard output"},
        {{"--reporter=sarif", "--diff"},
         "the diff would both go to standard output: give the report a file, as in --reporter sarif:FILE"},
        {{"--reporter=human", "--reporter=json", "--check"}, "as in --reporter json:FILE, or add --quiet"},
        {{"--reporter=json", "--reporter=github", "--check"}, "as in --reporter github:FILE"},
        {{"--reporter=json:x", "--reporter=github:x"}, "can't both go to x"},
        {{"--reporter=human", "--reporter=human"}, "given twice"},
        {{"--reporter=json:x", "y", "x"}, "a report can't go to x, which is an input"},
    };
    for (const Row& row : rows) {
        const ProgramOutcome outcome = runProgram(row.words);
        EXPECT_EQ(outcome.status, 2);
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(row.message), std::string::npos) << outcome.err;
    }
    for (const char* mode : {"--check", "--check-syntax"}) {
        EXPECT_EQ(runProgram({mode, "--reporter=json"}).out.substr(0, 1), "{") << mode;
    }
    EXPECT_EQ(runProgram({"--reporter=human", "--reporter=github", "--check", "-q"}).status, 0);
}

} // namespace
