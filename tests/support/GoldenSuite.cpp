#include "support/GoldenSuite.h"

#include <cstdlib>
#include <iterator>

std::vector<GoldenCase> loadGoldenCases(const char* folder, GoldenProducer produce) {
    std::vector<GoldenCase> cases;
    for (GoldenFile& file :
         readGoldenFolder(std::filesystem::path(OMBREL_SOURCE_DIR) / "tests/golden" / folder)) {
        if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
            for (GoldenCase& golden : file.cases) {
                for (GoldenResult& result : golden.results) {
                    result.text = produce(golden.input, result.options);
                }
            }
            writeGoldenFile(file);
        }
        std::move(file.cases.begin(), file.cases.end(), std::back_inserter(cases));
    }
    return cases;
}

std::string getGoldenName(const testing::TestParamInfo<GoldenCase>& info) {
    return info.param.path.stem().string() + "_" + std::to_string(info.param.line);
}

void expectGolden(const GoldenCase& golden, const GoldenResult& wanted, GoldenProducer produce) {
    EXPECT_EQ(showGoldenText(wanted.text), showGoldenText(produce(golden.input, wanted.options)))
        << getGoldenPlace(golden, wanted.line);
}

std::string getGoldenPlace(const GoldenCase& golden, std::size_t line) {
    return golden.path.string() + ":" + std::to_string(line) + ": " + golden.sentence;
}

void PrintTo(const GoldenCase& golden, std::ostream* stream) {
    *stream << getGoldenPlace(golden, golden.line);
}
