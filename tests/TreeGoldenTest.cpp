#include "support/GoldenSuite.h"
#include "support/TreeFormatting.h"
#include "support/TreeProperties.h"
#include "tree/FormatTree.h"

#include <ca/Analyzer.h>

#include <stdexcept>

// The tree formatter's cases. Each runs more checks than it states: see TreeProperties.h, and a second run,
// made as a front end does, changes nothing unless the case says why.

using ca::formatting::FormatTree;

namespace {

std::u16string produceText(const std::u16string& input, const GoldenOptions& options) {
    return formatText(input, readTreeOptions(options));
}

/// The result of a second run, or a remark if there can't be one.
std::u16string formatAgain(const std::u16string& once, const TestOptions& options) {
    try {
        return formatText(prepareText(once, options), options);
    } catch (const ca::SyntaxErrorException&) {
        return u"(doesn't parse)";
    }
}

class TreeCase : public testing::TestWithParam<GoldenCase> {};

TEST_P(TreeCase, Formats) {
    const GoldenCase& golden = GetParam();
    bool isStable = true;
    for (const GoldenResult& wanted : golden.results) {
        SCOPED_TRACE(getGoldenPlace(golden, wanted.line));
        const TestOptions options = readTreeOptions(wanted.options);
        expectGolden(golden, wanted, produceText);
        EXPECT_EQ(findTreeFault(golden.input, options), "");
        const std::u16string again = formatAgain(wanted.text, options);
        isStable = isStable && again == wanted.text;
        if (!golden.isUnstable) {
            EXPECT_EQ(showGoldenText(wanted.text), showGoldenText(again)) << "in the second run";
        }
    }
    EXPECT_NE(isStable, golden.isUnstable) << "marked as unstable without need";
}

std::u16string produceDump(const std::u16string& input, const GoldenOptions& options) {
    const FormatTree tree(input);
    const std::string& dump = options.at("dump");
    if (dump == "leaves") {
        return tree.dumpLeaves();
    }
    if (dump == "text-tree") {
        return tree.dumpTextTree();
    }
    return dump == "indent-tree" ? tree.dumpIndentTree() : throw std::runtime_error("no such dump: " + dump);
}

class DumpCase : public testing::TestWithParam<GoldenCase> {};

TEST_P(DumpCase, ShowsTheTree) {
    for (const GoldenResult& wanted : GetParam().results) {
        expectGolden(GetParam(), wanted, produceDump);
    }
    EXPECT_EQ(findTreeFault(GetParam().input, {}), "");
}

INSTANTIATE_TEST_SUITE_P(Golden, TreeCase, testing::ValuesIn(loadGoldenCases("tree", produceText)),
                         getGoldenName);
INSTANTIATE_TEST_SUITE_P(Golden, DumpCase, testing::ValuesIn(loadGoldenCases("dumps", produceDump)),
                         getGoldenName);

} // namespace
