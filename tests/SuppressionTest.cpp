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

/// What an engine that joins and breaks lines may return.
std::string restore(const std::u16string& before, const std::u16string& after) {
    const auto restored = restoreSuppressed(before, findSuppression(before), after);
    return restored ? encodeLossy(*restored) : restored.error().front().text;
}

TEST(Suppression, RestoresRegionsInATextWithOtherLines) {
    const std::u16string off = u"% ombrel-format off\n";
    const std::u16string on = u"% ombrel-format on\n";
    const std::u16string before = u"a = [1\n2]\n  " + off + u"b  =  1\nc\n\n" + on + u"d\n" + off + u"e";
    const std::u16string after =
        u"a = [1 2]\n\n\n" + off + u"b = 1, c\n    " + on + u"d = ...\n1\n" + off + u"e\ne\n";
    EXPECT_EQ(restore(before, after), encodeLossy(u"a = [1 2]\n\n\n  " + off + u"b  =  1\nc\n\n" + on +
                                                  u"d = ...\n1\n" + off + u"e"));

    const char* refusal =
        "the formatter would have moved a comment that turns formatting off or on; nothing was written";
    EXPECT_EQ(restore(before, u"a, " + off + on + off), refusal) << "one is no comment line any more";
    EXPECT_EQ(restore(before, off + on + off + on), refusal);
    EXPECT_EQ(restore(before, u"x\n" + off + off + on), refusal);
    EXPECT_EQ(restore(before, u"a\n"), refusal);
}

} // namespace
