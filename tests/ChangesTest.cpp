#include "support/TemporaryFolder.h"

#include "format/EditAdoption.h"
#include "git/GitDiff.h"
#include "git/StagedFiles.h"
#include "process/Process.h"

#include <gtest/gtest.h>

#include <chrono>
#include <system_error>
#include <tuple>

#include <sys/socket.h>
#include <unistd.h>

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
};

TEST_F(Staged, WhatWasStagedMeanwhileStays) {
    StagedFiles staged(git, {{"a.omb", "a.omb", folder.read("id"), {}}}, disk, adoptEdits);
    folder.shell("printf new > a.omb; git add .");
    EXPECT_EQ(staged.read("a.omb", 1000), "b;c");
    EXPECT_THROW(staged.read("a.omb", 2), FileError);
    EXPECT_THROW(staged.replace("a.omb", "b;c", "formatted"), FileError);
    EXPECT_EQ(readIndex("a.omb") + folder.read("a.omb"), "newnew");
}

/// The edits of the tree engine go to the lines that are the same in the work tree, if its program stays.
TEST_F(Staged, EditsGoToTheSameLinesOfTheWorkTree) {
    struct Row {
        std::string workTree;
        std::string wanted;
        bool isNoted;
    };
    const std::string staged = "if a, b, end\n% k\nx=1\n";
    const std::string after = "if a\n    b\nend\n% k\nx = 1\n";
    const Row rows[] = {
        {staged, after, false},
        {"y=2\r\nif a, b, end\r\n% k\r\nz\r\n", "y=2\r\nif a\r\n    b\r\nend\r\n% k\r\nz\r\n", false},
        {"%{\nif a, b, end\n%}\n% k\nx=1\n", "%{\nif a, b, end\n%}\n% k\nx=1\n", true}, // a comment there
        {"if a, b, end\n% k\nx=1\nf(", "if a, b, end\n% k\nx=1\nf(", true},
        {"if a, b, end\n\377", "if a, b, end\n\377", true},
    };
    folder.write("a.omb", staged);
    folder.write(".gitattributes", "*.omb text eol=crlf\n");
    for (const Row& row : rows) {
        folder.shell("git add a.omb; git rev-parse :a.omb | tr -d '\\n' > id");
        const std::string id = folder.read("id");
        const auto edits = adoptEdits(std::u16string(staged.begin(), staged.end()),
                                      {{4, 2, u"\n    "}, {7, 2, u"\n"}, {18, 0, u" "}, {19, 0, u" "}});
        ASSERT_TRUE(edits);
        folder.write("a.omb", row.workTree);
        StagedFiles files(git, {{"a.omb", "a.omb", id, {}}}, disk, adoptEdits);
        files.edit("a.omb", staged, *edits);
        EXPECT_EQ(readIndex("a.omb"), after);
        EXPECT_EQ(folder.read("a.omb"), row.wanted);
        EXPECT_EQ(files.getNotes().size(), row.isNoted ? 1U : 0U);
        folder.write("a.omb", staged);
    }
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

const std::vector<std::string> environment{"PATH=/usr/bin:/bin", "X=5"};
const ombrel::ProcessLimits minute{std::chrono::minutes(1)};

TEST(RunProcess, ExchangesMuchTextInBothDirections) {
    const std::string much(5'000'000, 'x');
    const auto echo = runProcess({"sh", "-c", "tee /dev/fd/2; exit $X"}, environment, much, minute);
    EXPECT_EQ(echo.status, 5);
    EXPECT_TRUE(echo.out == much && echo.err == much);
    EXPECT_EQ(runProcess({"true"}, environment, much, minute).status, 0); // nobody reads it
    EXPECT_EQ(runProcess({"cat"}, environment, "", minute).out, "");      // it doesn't wait for ours
    EXPECT_EQ(runProcess({"sh", "-c", "kill -9 $$"}, environment, much, minute).status, 137);
}

TEST(RunProcess, KillsWhatTakesTooMuch) {
    ombrel::ProcessLimits little = minute;
    little.outputLimit = 100'000;
    EXPECT_EQ(runProcess({"head", "-c", "100000", "/dev/zero"}, environment, "", little).status, 0);
    int ends[2];
    ASSERT_EQ(::socketpair(AF_UNIX, SOCK_STREAM, 0, ends), 0);
    ::close(ends[1]);
    ombrel::ProcessLimits unwanted = minute;
    unwanted.client = ends[0];
    using Words = std::vector<std::string>;
    for (const auto& [words, limits, error] :
         {std::tuple(Words{"no-such-program"}, minute, std::errc::no_such_file_or_directory),
          std::tuple(Words{"sleep", "50"}, ombrel::ProcessLimits{std::chrono::milliseconds(20)},
                     std::errc::timed_out),
          std::tuple(Words{"head", "-c", "100001", "/dev/zero"}, little, std::errc::value_too_large),
          std::tuple(Words{"sleep", "50"}, unwanted, std::errc::operation_canceled)}) {
        const auto start = std::chrono::steady_clock::now();
        try {
            runProcess(words, environment, "", limits);
            ADD_FAILURE() << words.back();
        } catch (const std::system_error& thrown) {
            EXPECT_EQ(thrown.code(), error) << words.back();
        }
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(25));
    }
    ::close(ends[0]);
}

} // namespace
