#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const std::string ugly = "if a\nx\nend\n";
const std::string tidy = "if a\n    x\nend\n";

/// What the program takes and leaves in a tree of files.
class FileSearch : public testing::Test {
protected:
    FileSearch() {
        for (const char* name :
             {"b.omb", "B.omb", "sub/a.omb", "sub/deep/z.omb", "sub-2.omb", "notes.txt", "gen/g.omb",
              "gen/keep.omb", ".git.omb", ".hidden/h.omb", "sub/.git/no.omb"}) {
            disk.write(name, ugly);
        }
        std::filesystem::remove_all(disk.getPath() / "sub/.git");
    }

    /// The program's standard output; standard error is added if there is any, the status if it isn't 0.
    std::string call(const std::string& words) const {
        const int status = disk.shell("check() { format --check \"$@\" 2> /dev/null; }; { " + words +
                                      "; } > \"$TMPOUT\" 2>&1");
        const std::string out = disk.read(".out/text");
        return status == 0 ? out : out + "= " + std::to_string(status) + '\n';
    }

    void SetUp() override {
        disk.write(".out/text", "");
        ::setenv("TMPOUT", (disk.getPath() / ".out/text").c_str(), 1);
    }

    TemporaryFolder disk;
};

TEST_F(FileSearch, TakesEachFileBelowAFolderOnceInTheOrderOfNames) {
    EXPECT_EQ(call("format --check . -j2"), ".git.omb\n.hidden/h.omb\nB.omb\nb.omb\ngen/g.omb\ngen/"
                                            "keep.omb\nsub/a.omb\nsub/deep/z.omb\nsub-2.omb\n"
                                            "9 of 9 files would change\n= 1\n");
    EXPECT_EQ(call("check ./sub/ sub/deep sub/../b.omb b.omb ./sub/a.omb"),
              "./sub/a.omb\n./sub/deep/z.omb\nsub/../b.omb\n= 1\n");
    EXPECT_EQ(call("cd sub && check .."), call("cd sub && check ../"));
    EXPECT_EQ(call("format -i sub b.omb; cat sub/a.omb; format -i sub"),
              "3 of 3 files formatted\n" + tidy + "0 of 2 files formatted\n");
    EXPECT_EQ(call("format notes.txt"), tidy);
}

TEST_F(FileSearch, FollowsLinksToFilesOnly) {
    EXPECT_EQ(call("cd sub; ln -s .. up; ln -s z.omb deep/again.omb; ln -s nothing dead.omb; mkfifo f.omb; "
                   "ln -s deep linked; check . up/gen; format --list-files . linked"),
              "a.omb\ndeep/again.omb\nup/gen/g.omb\nup/gen/keep.omb\n"
              "a.omb: taken: found\n"
              "dead.omb: left: a symbolic link to nothing\n"
              "deep/again.omb: taken: found\n"
              "deep/z.omb: left: taken before\n"
              "f.omb: left: not a regular file\n"
              "linked: left: a symbolic link to a folder\n"
              "up: left: a symbolic link to a folder\n"
              "linked/again.omb: left: taken before\n"
              "linked/z.omb: left: taken before\n");
}

TEST_F(FileSearch, ReadsListsOfPaths) {
    EXPECT_EQ(call("printf 'b.omb\\n\\nsub/deep' > list; check --files-from list B.omb"),
              "B.omb\nb.omb\nsub/deep/z.omb\n= 1\n");
    EXPECT_EQ(call("cp b.omb \"$(printf 'new\\nline')\"; cp b.omb ./-; "
                   "printf 'new\\nline\\0-\\0' | check -0 --files-from -"),
              "new\nline\n./-\n= 1\n");
    EXPECT_EQ(call("format --files-from none"),
              "none: error: can't open it: No such file or directory\n= 2\n");
    EXPECT_EQ(call("format --files-from - - < list").substr(0, 55),
              "ombrel-format: error: standard input can be read only o");
    EXPECT_EQ(call("format -0 b.omb").substr(0, 48), "ombrel-format: error: -0 goes with --files-from\n");
}

TEST_F(FileSearch, ObeysIgnoreFilesOfEveryLevel) {
    disk.write(".ombrel-format-ignore", "# generated\ngen/*\n!gen/keep.omb\n.*\ndeep/\n");
    disk.write("sub/.ombrel-format-ignore", "!deep/\n/a.omb\n");
    EXPECT_EQ(call("check ."), "B.omb\nb.omb\ngen/keep.omb\nsub/deep/z.omb\nsub-2.omb\n= 1\n");
    EXPECT_EQ(call("cd sub/deep; check . ../a.omb ../../gen"), "z.omb\n../a.omb\n../../gen/keep.omb\n= 1\n");
    EXPECT_EQ(call("format --list-files --force-exclude sub/a.omb b.omb .hidden gen"),
              "sub/a.omb: left: sub/.ombrel-format-ignore:2: /a.omb\n"
              "b.omb: taken: named\n"
              ".hidden: left: .ombrel-format-ignore:4: .*\n"
              "gen/g.omb: left: .ombrel-format-ignore:2: gen/*\n"
              "gen/keep.omb: taken: .ombrel-format-ignore:3: !gen/keep.omb\n");
}

TEST_F(FileSearch, ObeysPatternsOfTheCommandLineInTheirOrder) {
    disk.write(".ombrel-format-ignore", "gen/\n");
    EXPECT_EQ(call("check . --exclude '*' --include '*.txt' --include sub/ --include 'sub/*.omb'"),
              "notes.txt\nsub/a.omb\n= 1\n");
    EXPECT_EQ(call("check . --include '*.txt' --include gen --exclude '/[b-s]*' --exclude '.*'"),
              "B.omb\n= 1\n");
    EXPECT_EQ(call("cd sub; check .. --exclude '../*.omb' --exclude '.hidden' --exclude /deep"),
              "../sub/a.omb\n= 1\n");
    EXPECT_EQ(call("check --exclude b.omb b.omb"), "b.omb\n= 1\n");
}

TEST_F(FileSearch, LeavesOutWhatGitIgnores) {
    const std::string quiet = "export GIT_CONFIG_GLOBAL=/dev/null; git init -q .; ";
    disk.write(".gitignore", "sub/\n*-2.omb\n.*\n");
    disk.write("sub/new.omb", ugly);
    EXPECT_EQ(call(quiet + "git add -f sub/a.omb; check ."),
              "B.omb\nb.omb\ngen/g.omb\ngen/keep.omb\nsub/a.omb\n= 1\n");
    EXPECT_EQ(call("check --no-gitignore sub"), "sub/a.omb\nsub/deep/z.omb\nsub/new.omb\n= 1\n");
    EXPECT_EQ(call("format --list-files sub-2.omb sub --force-exclude"),
              "sub-2.omb: left: ignored by git\nsub/a.omb: taken: found\n"
              "sub/deep/: left: ignored by git\nsub/new.omb: left: ignored by git\n");
    // A repository within the repository has its own rules, also if a hook of the outer one calls.
    EXPECT_EQ(
        call("cd gen; git init -q .; echo g.omb > .gitignore; cd ..; export GIT_DIR=$PWD/.git; check gen"),
        "gen/keep.omb\n= 1\n");
    EXPECT_EQ(call("PATH=/nothing; check gen"), "gen/g.omb\ngen/keep.omb\n= 1\n");
    EXPECT_EQ(call("echo [ > gen/.git/config; format --check gen"),
              "ombrel-format: warning: git can't say what is ignored in gen, so nothing is\n"
              "gen/g.omb\ngen/keep.omb\n2 of 2 files would change\n= 1\n");
}

/// A process costs more than formatting a small file.
TEST_F(FileSearch, AsksGitOnceForEachRepositoryAndNeverForNamedFiles) {
    disk.write("bin/git", "#!/bin/sh\necho \"$2\" >> \"$TMPOUT\"; exec /usr/bin/git \"$@\"\n");
    const std::string start = "git init -q .; chmod +x bin/git; PATH=$PWD/bin:$PATH; ";
    EXPECT_EQ(call(start + "check b.omb sub/a.omb"), "b.omb\nsub/a.omb\n= 1\n");
    EXPECT_EQ(call(start + "check sub gen sub/deep > names"), disk.getPath().string() + "\n= 1\n");
}

TEST_F(FileSearch, HavingNothingToDoIsAnErrorUnlessAllowed) {
    EXPECT_EQ(call("mkdir empty; format -i empty").substr(0, 43),
              "ombrel-format: error: no file to format; --");
    EXPECT_EQ(call("format -i empty; exit 7"), call("format -i empty; exit 7"));
    EXPECT_EQ(call("format -i empty --allow-no-files; format -i --allow-no-files --files-from /dev/null"),
              "");
    EXPECT_EQ(call("format --check b.omb none sub/deep nowhere/"),
              "none: error: can't open it: No such file or directory\n"
              "nowhere/: error: can't open it: No such file or directory\n"
              "b.omb\nsub/deep/z.omb\n2 of 4 files would change, 2 failed\n= 2\n");
    EXPECT_EQ(call("format --lines 1:2 sub"), "ombrel-format: error: --lines goes with one file\n= 2\n");
    EXPECT_EQ(call("format --list-files none b.omb"),
              "none: error: there is no such file\nb.omb: taken: named\n= 2\n");
}

} // namespace
