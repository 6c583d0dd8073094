#include "pass/FormattingExplorerBridgeImpl.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace {

std::u16string callBridge(const std::u16string& source, const std::u16string& json) {
    return FormattingExplorerBridgeImpl().format(source, json);
}

const std::u16string allOff = u"{}";
const std::u16string indenting = uR"({"formatting": {"indentationEnabled": true, "indentWidth": 2}})";

struct Row {
    const char* what;
    std::u16string source;
    std::u16string json;
    std::u16string wanted;
};

TEST(ExplorerBridge, GivesTextOrReasons) {
    const Row rows[] = {
        {"an empty file", u"", allOff, u""},
        {"everything off", u"if a\r\n  b  = 1;\r\nend\r\n", allOff, u"if a\n  b  = 1;\nend\n"},
        {"an option", u"if a\nb = 1;\nend\n", indenting, u"if a\n  b = 1;\nend\n"},
        {"enabled isn't asked", u"if a\nb\nend\n",
         uR"({"formatting": {"enabled": false, "indentationEnabled": true, "indentWidth": 1}})",
         u"if a\n b\nend\n"},
        {"errors of both texts", u"x = (1;\n", u"{",
         u"Syntax errors:\n   expected ')' to close the '(' in column 5 before ';' line: 1 column: 7\n"},
        {"several syntax errors, in order", u"x = );\ny = ];\n", allOff,
         u"Syntax errors:\n"
         u"   expected an expression before ')' line: 1 column: 5\n"
         u"   expected an expression before ']' line: 2 column: 5\n"},
        {"an issue of the section", u"x", uR"({"formatting": {"functionIndentStyle": "all"}})",
         u"invalid functionIndentStyle\n  line: 1\n  column: 40\n"},
        {"an issue of the source in front of one of the section", u"x",
         uR"({"formatting": {}, "formatting": {"enabled": 1}})",
         u"\"formatting\" is there twice, and only the last one counts\n  line: 1\n  column: 20\n"
         u"enabled: expected true or false, found 1\n  line: 1\n  column: 46\n"},
        {"an issue of the source", u"x", uR"({"extends": "base.json"})",
         u"extends: paths count from the file that they stand in, and this text is in none\n"
         u"  line: 1\n  column: 13\n"},
        {"a warning, which stops it like an error", u"x", uR"({"formatting": {}, "formatting": {}})",
         u"\"formatting\" is there twice, and only the last one counts\n  line: 1\n  column: 20\n"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.wanted, callBridge(row.source, row.json)) << row.what;
    }
}

TEST(ExplorerBridge, ServesEightThreadsAtOnce) {
    std::u16string source;
    for (int i = 0; i < 50; ++i) {
        source += u"if a && b\n[x, y] = f(1, 2) + g{3};\nend\n";
    }
    const std::u16string wanted = callBridge(source, indenting);
    std::vector<std::u16string> results(8);
    {
        std::vector<std::jthread> threads;
        for (std::u16string& result : results) {
            threads.emplace_back([&] { result = callBridge(source, indenting); });
        }
    }
    EXPECT_EQ(results, std::vector<std::u16string>(8, wanted));
}

} // namespace
