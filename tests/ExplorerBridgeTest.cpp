#include "entry/FormattingExplorerBridgeImpl.h"

#include <ca/config/ConfigSource.h>
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
        {"an issue of the source before one of the section", u"x",
         uR"({"formatting": {}, "formatting": {"enabled": 1}})",
         u"\"formatting\" is there twice; remove one of the two\n  line: 1\n  column: 20\n"
         u"enabled: expected true or false, found 1\n  line: 1\n  column: 46\n"},
        {"an issue of the source", u"x", uR"({"extends": "base.json"})",
         u"extends: paths are relative to the file that they are in, and this text is in none\n"
         u"  line: 1\n  column: 13\n"},
        {"a warning, which stops it like an error", u"x", uR"({"formatting": {}, "formatting": {}})",
         u"\"formatting\" is there twice; remove one of the two\n  line: 1\n  column: 20\n"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(row.wanted, callBridge(row.source, row.json)) << row.what;
    }
}

using namespace ca::formatting;

TreeFormatResult callParsed(const std::u16string& source, const std::u16string& json) {
    const auto config = std::make_shared<ca::config::Config>(
        std::make_shared<ca::config::JsonConfigSource>(std::nullopt, json, nullptr));
    return FormattingExplorerBridgeImpl().formatParsed({parseSource(source), config});
}

TEST(ExplorerBridge, GivesValuesForAParsedSource) {
    EXPECT_EQ(std::get<std::u16string>(callParsed(u"if a\n  % c\nb = 1;\nend\n", indenting)),
              u"if a\n    % c\n  b = 1;\nend\n");
    const auto errors = std::get<std::vector<ca::SyntaxError>>(callParsed(u"x = (1;\n", u"{"));
    ASSERT_EQ(errors.size(), 1u);
    EXPECT_EQ(errors[0].column, 7u);
    const auto issues = std::get<std::vector<ca::config::ConfigIssue>>(
        callParsed(u"x", uR"({"formatting": {}, "formatting": {"columnLimit": -1, "enabled": 1}})"));
    ASSERT_EQ(issues.size(), 3u);
    EXPECT_EQ(issues[0].start->column, 20u);
    EXPECT_EQ(issues[2].severity, ca::config::Severity::Error);
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
