#include "support/GoldenSuite.h"
#include "support/ProgramRun.h"

#include "text/TextEncoding.h"

namespace {

using namespace ombrel;

std::u16string format(const std::u16string& input, const GoldenOptions& options) {
    std::vector<std::string> words = {"-q", "--engine", options.at("formatter")};
    if (const auto lines = options.find("lines"); lines != options.end()) {
        std::string range = lines->second;
        range[range.find('-')] = ':';
        words.insert(words.end(), {"--lines", range});
    }
    return decodeLossy(runProgram(words, encodeLossy(input)).out);
}

class Suppression : public testing::TestWithParam<GoldenCase> {};

TEST_P(Suppression, LeavesLinesAloneInBothRuns) {
    const GoldenResult& wanted = GetParam().results.front();
    expectGolden(GetParam(), wanted, format);
    EXPECT_EQ(showGoldenText(format(wanted.text, wanted.options)), showGoldenText(wanted.text));
}

INSTANTIATE_TEST_SUITE_P(Golden, Suppression, testing::ValuesIn(loadGoldenCases("suppression", format)),
                         getGoldenName);

} // namespace
