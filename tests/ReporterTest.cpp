#include "support/TemporaryFolder.h"

#include "reports/GithubReporter.h"
#include "reports/HumanReporter.h"
#include "reports/JsonReporter.h"
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

} // namespace
