#include "support/GoldenFile.h"
#include "support/ProgramRun.h"

#include "format/Suppression.h"
#include "text/TextEncoding.h"

#include <gtest/gtest.h>

namespace {

using namespace ombrel;

std::vector<std::string> getWords(const GoldenResult& wanted) {
    const auto lines = wanted.options.find("lines");
    if (lines == wanted.options.end()) {
        return {};
    }
    std::string range = lines->second;
    range[range.find('-')] = ':';
    return {"--lines", range};
}

TEST(Suppression, GoldenCases) {
    const auto folder = std::filesystem::path(OMBREL_SOURCE_DIR) / "tests/golden/suppression";
    for (const GoldenFile& file : readGoldenFolder(folder)) {
        for (const GoldenCase& golden : file.cases) {
            SCOPED_TRACE(golden.path.string() + ":" + std::to_string(golden.line) + ": " + golden.sentence);
            const GoldenResult& wanted = golden.results.front();
            const std::string once = runProgram(getWords(wanted), encodeLossy(golden.input)).out;
            EXPECT_EQ(showGoldenText(decodeLossy(once)), showGoldenText(wanted.text));
            EXPECT_EQ(runProgram(getWords(wanted), once).out, once) << "in the second run";
        }
    }
}

} // namespace
