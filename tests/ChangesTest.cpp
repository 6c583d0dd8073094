#include "support/TemporaryFolder.h"

#include "git/GitDiff.h"
#include "git/Process.h"
#include "git/StagedFiles.h"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <system_error>

using namespace ombrel;

namespace {

/// Two files of the same text are staged, and then one of them changes in the work tree.
class Staged : public testing::Test {
protected:
    std::string readIndex(const std::string& file) const { return git.run({"cat-file", "blob", ":" + file}); }

    const CurrentFolder folder;
    const int status = folder.shell("git init -q; printf 'b;c' | tee a.omb > b.omb; git add .; "
                                    "printf 'b;c;d' > b.omb; git rev-parse :a.omb | tr -d '\\n' > id");
    const Git git; // of the current folder
    DiskFileSystem disk;
    const StagedFiles::LineComparison areSame = std::equal_to<>();
};

TEST_F(Staged, WhatWasStagedMeanwhileStays) {
    StagedFiles staged(git, {{"a.omb", "a.omb", folder.read("id"), {}}}, disk, areSame);
    folder.shell("printf new > a.omb; git add .");
    EXPECT_EQ(staged.read("a.omb", 1000), "b;c");
    EXPECT_THROW(staged.read("a.omb", 2), FileError);
    EXPECT_THROW(staged.replace("a.omb", "b;c", "formatted"), FileError);
    EXPECT_EQ(readIndex("a.omb") + folder.read("a.omb"), "newnew");
}

TEST_F(Staged, TheTreeEngineTouchesOnlyWorkTreesThatAreTheSame) {
    const std::string id = folder.read("id");
    StagedFiles staged(git, {{"a.omb", "a.omb", id, {}}, {"b.omb", "b.omb", id, {}}}, disk, areSame);
    staged.replace("a.omb", "b;c", "b;\nc");
    staged.replace("b.omb", "b;c", "b;\nc");
    EXPECT_EQ(readIndex("a.omb") + readIndex("b.omb"), "b;\ncb;\nc");
    EXPECT_EQ(folder.read("a.omb") + folder.read("b.omb"), "b;\ncb;c;d");
    ASSERT_EQ(staged.getNotes().size(), 1U);
    EXPECT_EQ(staged.getNotes()[0].path, "b.omb");
}

TEST(GitDiffText, LinesOfCodeAreNeverTakenForHeaders) {
    const auto files = parseDiff(
        "diff --git a/a b/a\nindex 1..2 100644\n--- a/a\n+++ b/a\n@@ -1,2 +1 @@ f\n"
        "--- a/x\n-@@ -7 +7 @@\n\\ No newline at end of file\n+++ b/x\n"
        "\\ No newline at end of file\n"
        "diff --git \"a/\\303\\244\" \"b/\\303\\244\"\nold mode 120000\nnew mode 100755\n"
        "index 3..4\n--- \"a/\\303\\244\"\n+++ \"b/\\303\\244\"\n@@ -3,0 +4,2 @@\n+\n+\n@@ -9 +10,0 @@\n-\n");
    ASSERT_EQ(files.size(), 2U);
    EXPECT_EQ(files[0].path + files[0].blob + files[1].path + files[1].blob, "a2\xC3\xA4"
                                                                             "4");
    EXPECT_EQ(files[0].hunks.size(), 1U);
    const auto lines = getNewLines(files[1]);
    ASSERT_EQ(lines.size(), 1U);
    EXPECT_EQ(lines[0].first * 10 + lines[0].last, 45U);
    EXPECT_THROW(parseDiff("+++ b/a\n@@ nonsense\n"), GitError);
}

TEST(RunProcess, ExchangesMuchTextInBothDirections) {
    const std::vector<std::string> environment{"PATH=/usr/bin:/bin", "X=5"};
    constexpr std::chrono::minutes minute{1};
    const std::string much(5'000'000, 'x');
    const auto echo = runProcess({"sh", "-c", "tee /dev/fd/2; exit $X"}, environment, much, minute);
    EXPECT_EQ(echo.status, 5);
    EXPECT_TRUE(echo.out == much && echo.err == much);
    EXPECT_EQ(runProcess({"true"}, environment, much, minute).status, 0); // nobody reads it
    EXPECT_EQ(runProcess({"cat"}, environment, "", minute).out, "");      // it doesn't wait for ours
    EXPECT_EQ(runProcess({"sh", "-c", "kill -9 $$"}, environment, much, minute).status, 137);
    EXPECT_THROW(runProcess({"no-such-program"}, environment, "", minute), std::system_error);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_THROW(runProcess({"sleep", "50"}, environment, "", std::chrono::milliseconds(20)),
                 std::system_error);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(25));
}

} // namespace
