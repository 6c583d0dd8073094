#include "entry/FormattingExplorerBridgeImpl.h"
#include "support/ConfigText.h"
#include "support/ExampleFiles.h"
#include "support/GoldenFile.h"

#include "format/TreeEngine.h"

#include <gtest/gtest.h>

#include <regex>
#include <set>

// The examples under many options, through the tool's engine and the bridge, with the check of the result on.

namespace {

using namespace ombrel;

/// The options of a set, but for trimming.
const char* const optionSets[] = {
    R"()",
    R"("indentationEnabled": true)",
    R"("indentationEnabled": true, "indentWidth": 2, "functionIndentStyle": "Classic")",
    R"("indentationEnabled": true, "indentWidth": 1, "indentCharacter": "Tab", "indentBlankLines": true)",
    R"("indentationEnabled": true, "functionIndentStyle": "IndentNested", "indentCaseBlocks": false)",
    R"("lineBreakingEnabled": true, "columnLimit": 60)",
    R"("indentationEnabled": true, "lineBreakingEnabled": true, "lineBreakBehavior": "SeparateLines")",
    R"("indentationEnabled": true, "lineBreakingEnabled": true, "lineBreakBehavior": "AllowSingleLine",
       "separatorPlacement": "EndOfLine", "columnLimit": 40)",
    R"("indentationEnabled": true, "lineBreakingEnabled": true, "lineBreakBehavior": "AllowMultiplePerLine",
       "separatorPlacement": "StartOfLine", "columnLimit": 72)",
    R"("indentationEnabled": true, "lineBreakingEnabled": true, "indentCharacter": "Tab", "indentWidth": 1,
       "lineBreakBehavior": {"Lists": "AllowMultiplePerLine", "Inheritance": "SeparateLines",
       "Expressions": "AllowSingleLine", "Statements": "SeparateLines"})",
};

std::u16string makeJson(const char* options, bool trims) {
    const std::string trimming = trims ? R"("trimUnnecessaryWhitespace": true)" : R"("enabled": true)";
    return decodeLossy(R"({"formatting": {)" + trimming + (*options == '\0' ? "" : ", ") + options + "}}");
}

/// What a difference is about, without the names: "put node into the matrix row before it".
std::string getShape(const std::string& difference) {
    std::string shape =
        std::regex_replace(difference, std::regex(R"(^(\d+:\d+ )?the formatter would |;.*)"), "");
    shape = std::regex_replace(shape, std::regex("'.*'"), "token");
    return std::regex_replace(shape, std::regex("this [a-z ]+ (into|out of)"), "node $1");
}

/// The shapes of all that the formatter's rules are known to do to a program's meaning.
std::set<std::string> readKnownShapes() {
    std::set<std::string> shapes;
    for (const GoldenFile& file : readGoldenFolder(OMBREL_SOURCE_DIR "/tests/golden/tree-meaning")) {
        for (const GoldenCase& golden : file.cases) {
            for (const GoldenResult& result : golden.results) {
                shapes.insert(getShape(showText(result.text.substr(0, result.text.find(u'\n')))));
            }
        }
    }
    return shapes;
}

TEST(TreeExamples, ComeOutTheSameTwiceUnderTwentyOptionSets) {
    const std::set<std::string> known = readKnownShapes();
    const TreeFormatter formatter = [](const ca::formatting::TreeFormatRequest& request) {
        return FormattingExplorerBridgeImpl().formatParsed(request);
    };
    std::size_t formatted[2] = {};
    const std::vector<ExampleFile> examples = readExamples();
    for (const auto& [path, source] : examples) {
        for (const bool trims : {false, true}) {
            for (const char* options : optionSets) {
                SCOPED_TRACE(path.filename().string() + " {" + options +
                             "}, trimming: " + (trims ? "yes" : "no"));
                const TreeOptions tree{getTreeConfig(makeJson(options, trims)), MixedLineEnds::UseFirst};
                const auto once = formatTree(source, tree, formatter);
                if (const Problems* problems = once ? nullptr : &once.error()) {
                    EXPECT_TRUE(trims) << problems->front().text;
                    EXPECT_EQ(problems->front().code, Code::UnsafeResult);
                    EXPECT_TRUE(known.contains(getShape(problems->front().text))) << problems->front().text;
                    continue;
                }
                ++formatted[trims];
                const auto& text = *once;
                const auto twice = formatTree(text, tree, formatter);
                ASSERT_TRUE(twice);
                EXPECT_EQ(showText(twice.value()), showText(text));
            }
        }
    }
    const std::size_t count = examples.size() * std::size(optionSets);
    EXPECT_EQ(formatted[false], count);
    EXPECT_GE(formatted[true] * 6, count) << "most examples have a matrix with rows, which trimming joins";
}

} // namespace
