#include "support/ProgramRun.h"
#include "support/TemporaryFolder.h"

#include "options/OptionsFile.h"
#include "options/OptionsResolver.h"
#include "options/SectionName.h"
#include "options/VersionRange.h"
#include "text/TextEncoding.h"

#include <gtest/gtest.h>

#include <map>

namespace {

using namespace ombrel;

class CountingFileSystem : public DiskFileSystem {
public:
    bool isThere(const std::string& path) override {
        ++lookUps[path];
        return DiskFileSystem::isThere(path);
    }
    std::string readRegular(const std::string& path, ReadLimit limit) override {
        ++reads[path];
        return DiskFileSystem::readRegular(path, limit);
    }

    std::map<std::string, int> lookUps;
    std::map<std::string, int> reads;
};

class OptionsTest : public testing::Test {
protected:
    const CurrentFolder folder;
    CountingFileSystem disk;
};

TEST_F(OptionsTest, PlacesTheFaultsOfBrokenTexts) {
    const std::string text = R"({"extends": ["a"], "overrides": [{"files": "*", "line": {"tabSize": 8}}],)"
                             R"("formatting": {"separatorPlacement": {"Statements": {"If": "EndOfLine"}}}})";
    const auto check = [](const std::string& broken) {
        const OptionsFile file = readOptionsFile(broken);
        for (const Problem& problem : file.problems) {
            EXPECT_EQ(problem.line, 1U) << broken;
            EXPECT_TRUE(1 <= problem.column && problem.column <= broken.size() + 1) << broken;
        }
        return file.problems.size();
    };
    for (std::size_t i = 0; i < text.size(); ++i) {
        EXPECT_GT(check(text.substr(0, i)), 0U) << i;
        for (const char c : std::string_view("{}[]\",:0x")) {
            std::string broken = text;
            broken[i] = c;
            check(broken);
        }
    }
}

TEST_F(OptionsTest, ReadsAndLooksForEachFileOnceInARun) {
    folder.write("p/.ombrel-format.json", R"({"extends": ["../base.json", "../base.json"]})");
    folder.write(".ombrel-format.json", R"({"extends": "base.json"})");
    folder.write("base.json", "{}");
    folder.write("p/.editorconfig", "[*]\nindent_size = 2\n");
    for (const char* path : {"a.omb", "p/b.omb", "p/q/c.omb", "p/q/d.omb"}) {
        folder.write(path, "x = 1;\n");
    }
    EXPECT_EQ(runProgram({"--check", "."}, "", disk).status, 0);
    const auto top = folder.getPath();
    for (const auto* path :
         {"p/.ombrel-format.json", ".ombrel-format.json", "base.json", "p/.editorconfig"}) {
        EXPECT_EQ(disk.reads[top / path], 1) << path;
    }
    for (const auto* path : {"p/q/.ombrel-format.json", "p/.ombrel-format.json", ".ombrel-format.json"}) {
        EXPECT_EQ(disk.lookUps[top / path], 1) << path;
    }

    disk.lookUps.clear();
    EXPECT_EQ(runProgram({"--check", "--no-config", "p/q"}, "", disk).status, 0);
    EXPECT_FALSE(disk.lookUps.contains(top / "p/q/.ombrel-format.json"));
}

TEST_F(OptionsTest, KnowsWhichVersionsARangeContains) {
    struct Row {
        const char* range;
        std::vector<Version> inside;
        std::vector<Version> outside;
    };
    const Row rows[] = {
        {"1.2.3", {{1, 2, 3}}, {{1, 2, 2}, {1, 2, 4}}},
        {"1.2", {{1, 2, 0}, {1, 2, 9}}, {{1, 1, 9}, {1, 3, 0}}},
        {"=1.X", {{1, 0, 0}, {1, 9, 9}}, {{0, 9, 9}, {2, 0, 0}}},
        {"x", {{0, 0, 0}, {9, 9, 9}}, {}},
        {">1.2", {{1, 3, 0}, {2, 0, 0}}, {{1, 2, 9}}},
        {">1.2.3", {{1, 2, 4}}, {{1, 2, 3}}},
        {">*", {}, {{0, 0, 0}, {9, 9, 9}}},
        {"<=1.2", {{1, 2, 9}, {0, 0, 0}}, {{1, 3, 0}}},
        {"<1.2", {{1, 1, 9}}, {{1, 2, 0}}},
        {">=1.2 <2", {{1, 2, 0}, {1, 9, 9}}, {{1, 1, 9}, {2, 0, 0}}},
        {"^1.2.3", {{1, 2, 3}, {1, 9, 0}}, {{1, 2, 2}, {2, 0, 0}}},
        {"^0.2.3", {{0, 2, 3}, {0, 2, 9}}, {{0, 2, 2}, {0, 3, 0}}},
        {"^0.0.3", {{0, 0, 3}}, {{0, 0, 2}, {0, 0, 4}}},
        {"^0.0", {{0, 0, 9}}, {{0, 1, 0}}},
        {"^0", {{0, 9, 9}}, {{1, 0, 0}}},
        {"~1.2.3", {{1, 2, 3}, {1, 2, 9}}, {{1, 2, 2}, {1, 3, 0}}},
        {"~1", {{1, 0, 0}, {1, 9, 9}}, {{2, 0, 0}}},
        {"<1 || 1.5.x || >3", {{0, 9, 9}, {1, 5, 5}, {4, 0, 0}}, {{1, 0, 0}, {3, 0, 0}}},
    };
    for (const Row& row : rows) {
        const auto range = VersionRange::parse(row.range);
        ASSERT_TRUE(range) << row.range;
        for (const Version& version : row.inside) {
            EXPECT_TRUE(range->contains(version)) << row.range << ": " << describe(version);
        }
        for (const Version& version : row.outside) {
            EXPECT_FALSE(range->contains(version)) << row.range << ": " << describe(version);
        }
    }
}

TEST_F(OptionsTest, FindsTheSectionsThatTheLibraryFinds) {
    const char* const names[] = {
        "*",         "*.omb",      "**.omb",     "a?omb",      "a.[op]mb",      "[!a].omb",   "[a-c].omb",
        "{a,b}.omb", "{a}.omb",    "{,a,b}.omb", "{a,{b,c}}*", "{1..20}.omb",   "{20..-1}.*", "p/*.omb",
        "/*.omb",    "/p/**",      "p/**/a.omb", "**/a.omb",   "p/{q,r}/*.omb", "{a.omb",     "a}.omb",
        "\\*.omb",   "p*/a.omb",   "[a/b].omb",  "a\\.omb",    "p/?/a.omb",     "*/q/*",      "{p,q/r}/a.omb",
        "[a.omb",    "[!a-b].omb", "{p/**,x}",   "{a,b",
    };
    const char* const paths[] = {"a.omb",   "b.omb",     "d.omb",     "15.omb",      "-1.omb",  "25.omb",
                                 "p/a.omb", "p/q/a.omb", "q/r/a.omb", "p/q/r/b.omb", "{a}.omb", "*.omb",
                                 ".omb",    "a.pmb",     "{a.omb",    "a}.omb",      "[a.omb"};
    for (const std::string name : names) {
        folder.write(".editorconfig", "root = true\n[" + name + "]\nindent_size = 7\n");
        for (const std::string path : paths) {
            const auto settings = readEditorConfig(folder.getPath() / path);
            EXPECT_EQ(matchesSection(name, path), !std::get<0>(settings).empty()) << name << ' ' << path;
        }
    }
}

TEST_F(OptionsTest, HandsTheTreeEngineOneText) {
    folder.write(
        "base.json",
        R"({"formatting": {"columnLimit": 90, "indentWidth": 2, "lineBreakBehavior": "SeparateLines"}})");
    folder.write(".ombrel-format.json",
                 R"({"extends": "base.json", "formatting": {"columnLimit": 1e2, "separatorPlacement":
{"Statements": "EndOfLine", "Inheritance": "EndOfLine", /* last */ "Lists": "EndOfLine",
"Expressions": "StartOfLine"}},
"overrides": [{"files": "*.omb", "formatting": {"indentationEnabled": true}}]})");
    const OptionsRequest request;
    OptionsResolver resolver(request, disk);
    resolver.prepare({"a.omb"});
    const FileOptions options = resolver.resolve("a.omb");
    EXPECT_EQ(encodeLossy(options.formattingJson),
              R"({"formatting": {"indentationEnabled": true, "indentWidth": 2, "columnLimit": 100, )"
              R"("lineBreakBehavior": "SeparateLines", "separatorPlacement": {"Statements": "EndOfLine", )"
              R"("Inheritance": "EndOfLine", "Lists": "EndOfLine", "Expressions": "StartOfLine"}}})");
}

} // namespace
