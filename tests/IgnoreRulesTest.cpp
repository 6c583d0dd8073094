#include "files/IgnoreRules.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

namespace {

using ombrel::IgnoreRules;

const std::vector<std::string> folders = {"a", "a/b", "a/b/a", "b", "b/a", "a b", "-", "ab", "[a"};
const std::vector<std::string> files = {"c",  "a/c", "a/b/c",  "a/b/a/c", "b/a/c", "a b/c", "b/#a", "#a",
                                        "!a", "a.b", "b/a.b",  "a*",      "b/a*",  "a\\",   "a ",   "c]",
                                        "-c", "b/-", "ab/abc", "b/ab\\",  ".c",    "a/.c",  "]",    "[a/b"};

/// As a search does: from the top, and nothing below an ignored folder counts for itself.
bool isIgnored(const IgnoreRules& rules, const std::string& path, bool isFolder) {
    for (std::size_t end = path.find('/'); end != std::string::npos; end = path.find('/', end + 1)) {
        const auto match = rules.match(path.substr(0, end), true);
        if (match && match->isIgnored) {
            return true;
        }
    }
    const auto match = rules.match(path, isFolder);
    return match && match->isIgnored;
}

/// Patterns of the characters that mean something, and of names.
std::vector<std::string> makeRandomPatterns(std::size_t count) {
    const std::vector<std::string> pieces = {"a", "b", "c",    "*",  "**",         "/",    "/**/", "?",
                                             "[", "]", "[ab]", "!",  "^",          "-",    "\\",   ".",
                                             "#", " ", "[!",   "[^", "[[:alpha:]", "[a-c]"};
    std::mt19937 random(20);
    std::vector<std::string> patterns;
    while (patterns.size() < count) {
        std::string pattern;
        for (std::size_t length = 1 + random() % 6; length > 0; --length) {
            pattern += pieces[random() % pieces.size()];
        }
        patterns.push_back(pattern);
    }
    return patterns;
}

class IgnoreRulesTest : public testing::Test {
protected:
    IgnoreRulesTest() {
        for (const std::string& folder : folders) {
            std::filesystem::create_directories(disk.getPath() / folder);
        }
    }

    /// Compares our verdicts on all paths with git's.
    void expectGitsVerdicts(const std::vector<std::string>& texts) {
        std::string asked;
        for (const auto* paths : {&folders, &files}) {
            for (const std::string& path : *paths) {
                asked += path + '\0';
            }
        }
        disk.write("asked", asked);
        std::string script = "git init -q .\n";
        for (std::size_t i = 0; i < texts.size(); ++i) {
            const std::string name = "texts/" + std::to_string(i);
            disk.write(name, texts[i]);
            script += "git -c core.excludesFile=" + name +
                      " check-ignore --no-index -z --stdin < asked; printf '=\\0'\n";
        }
        disk.write("script", script);
        ASSERT_EQ(disk.shell("sh script | tr '\\0' '\\n' > ignored"), 0);
        std::istringstream answers(disk.read("ignored"));
        for (const std::string& text : texts) {
            std::set<std::string> ignored;
            std::string line;
            while (std::getline(answers, line) && line != "=") {
                ignored.insert(line);
            }
            ASSERT_EQ(line, "=") << "git has stopped";
            compare(text, ignored);
        }
    }

    static void compare(const std::string& text, const std::set<std::string>& ignored) {
        const IgnoreRules rules(text);
        for (const std::string& path : folders) {
            EXPECT_EQ(isIgnored(rules, path, true), ignored.contains(path)) << '\'' << text << "' " << path;
        }
        for (const std::string& path : files) {
            EXPECT_EQ(isIgnored(rules, path, false), ignored.contains(path)) << '\'' << text << "' " << path;
        }
    }

    TemporaryFolder disk;
};

/// One or more patterns per line, with bars for line ends; those that a text file can't contain are here.
TEST_F(IgnoreRulesTest, MatchesGitCheckIgnore) {
    std::ifstream stream(OMBREL_SOURCE_DIR "/tests/golden/ignore_patterns.txt");
    std::vector<std::string> patterns = {"a ",
                                         "a\\ ",
                                         "a\\ \\  ",
                                         "\n\nc\r\n#b",
                                         "c\r",
                                         "\xEF\xBB\xBF"
                                         "c"};
    for (std::string pattern; std::getline(stream, pattern);) {
        std::replace(pattern.begin(), pattern.end(), '|', '\n');
        patterns.push_back(pattern);
    }
    ASSERT_GT(patterns.size(), 50U);
    expectGitsVerdicts(patterns);
}

TEST_F(IgnoreRulesTest, MatchesGitCheckIgnoreForRandomPatterns) {
    expectGitsVerdicts(makeRandomPatterns(200));
}

TEST_F(IgnoreRulesTest, FindsFaultsOnlyInPatternsThatNeverMatch) {
    int faults = 0;
    for (const std::string& pattern : makeRandomPatterns(5000)) {
        const ombrel::IgnoreRule rule(pattern);
        faults += rule.getFault().empty() ? 0 : 1;
        for (const std::string path : {"a", "../b", "../../c", "a/b", "a\\", "a/b/c", "..", "[a", "c/\\"}) {
            EXPECT_FALSE(!rule.getFault().empty() && rule.matches(path, true)) << pattern << ' ' << path;
        }
    }
    EXPECT_GT(faults, 100);
}

TEST_F(IgnoreRulesTest, MatchesManyStarsInLinearTime) {
    const std::string path = std::string(200, 'a') + '/' + std::string(200, 'a');
    EXPECT_FALSE(IgnoreRules("a*a*a*a*a*a*a*a*a*a*a*a*a*a*a*b").match(path, false));
    std::string deep = "a";
    std::string pattern = "**";
    for (int i = 0; i < 200; ++i) {
        deep += "/a";
        pattern += "/a/**";
    }
    EXPECT_FALSE(IgnoreRules(pattern + "/b").match(deep, false));
}

} // namespace
