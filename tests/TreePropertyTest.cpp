// What holds for every program, tried on the examples and on generated programs.

#include "support/DeepInput.h"
#include "support/GoldenFile.h"
#include "support/ProgramGenerator.h"
#include "support/SyntaxSketch.h"
#include "support/TreeFormatting.h"
#include "support/TreeProperties.h"

#include <ca/Analyzer.h>

#include <gtest/gtest.h>

TEST(ProgramGenerator, MakesProgramsThatParse) {
    for (std::uint32_t seed = 1; seed <= 3000; ++seed) {
        const std::u16string text = generateProgram(seed);
        try {
            ASSERT_EQ(findTreeFault(text, {}), "") << showGoldenText(text);
        } catch (const ca::SyntaxErrorException& exception) {
            const ca::SyntaxError& error = exception.getErrors().front();
            ADD_FAILURE() << "seed " << seed << ", " << error.line << ":" << error.column << " "
                   << std::string(error.message.begin(), error.message.end()) << "\n"
                   << showGoldenText(text);
        }
    }
}
