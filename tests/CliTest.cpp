#include "support/GoldenSuite.h"
#include "support/TemporaryFolder.h"

#include "text/TextEncoding.h"

// Scenarios of ombrel-format: a script of the shell, and what it has to print on both streams. A script runs
// in an empty folder after the functions of golden/cli/common.sh and of the prelude that the head of its
// file names; a last line "= N" is its exit status, if that isn't 0.

namespace {

std::u16string runScript(const std::u16string& script, const GoldenOptions& options) {
    const TemporaryFolder folder;
    const std::string preludes = OMBREL_SOURCE_DIR "/tests/golden/cli/";
    std::string all = "project='" OMBREL_SOURCE_DIR "'; top=$PWD; mkdir w; cd w; exec > ../out 2>&1\n";
    for (const std::string& prelude : {std::string("common"), options.at("prelude")}) {
        all += ". '" + preludes + prelude + ".sh'\n";
    }
    const int status = folder.shell(all + ombrel::encodeLossy(script));
    return ombrel::decodeLossy(folder.read("out") +
                               (status == 0 ? "" : "= " + std::to_string(status) + "\n"));
}

class Cli : public testing::TestWithParam<GoldenCase> {};

TEST_P(Cli, PrintsTheExpectedText) {
    expectGolden(GetParam(), GetParam().results.front(), runScript);
}

INSTANTIATE_TEST_SUITE_P(Golden, Cli, testing::ValuesIn(loadGoldenCases("cli", runScript)), getGoldenName);

} // namespace
