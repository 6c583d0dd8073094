#include "support/TemporaryFolder.h"

#include <ombrel-format/git/ChangedFiles.h>
#include <ombrel-format/git/GitDiff.h>
#include <ombrel-format/git/Process.h>
#include <ombrel-format/git/StagedFiles.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <system_error>

using namespace ombrel;

namespace {

// Every case is a script of the shell in a new repository without a commit, and what it has to print on both
// streams. `put FILE TEXT` writes a file through printf, `show FILE` prints it with bars for line ends,
// `show :FILE` prints what is staged, `status COMMAND...` prints the exit status behind all else, and `save`
// commits everything. Lines that count files are left out. The file a.omb is there; its lines 2 and 4 are
// badly indented, so that it tells which of its lines were formatted.
constexpr const char* prelude = R"(
export HOME=/nonexistent GIT_CONFIG_NOSYSTEM=1 GIT_AUTHOR_NAME=n GIT_AUTHOR_EMAIL=e
export GIT_COMMITTER_NAME=n GIT_COMMITTER_EMAIL=e
put() { printf "$2" > "$1"; }
show() { case $1 in :*) git cat-file blob "$1";; *) cat "$1";; esac | tr '\n' '|'; echo; }
status() { "$@"; echo "$?"; }
save() { git add -A && git commit -qm saved; }
hook() { printf '#!/bin/sh\n%s %s\n' "$program" "$1" > .git/hooks/pre-commit; chmod +x .git/hooks/pre-commit; }
rm -rf r && git init -q -b main r && cd r
put a.omb 'if a\np\nif b\nq\nend\nend\n'
)";

struct Case {
    const char* name;
    const char* script;
    std::string out;
};

class Changes : public testing::Test {
protected:
    void expect(const Case& test) {
        folder.shell(std::string("{ ") + prelude + test.script +
                     "\n} 2>&1 | sed '/^[0-9]* of [0-9]* files /d' > out");
        EXPECT_EQ(folder.read("out"), test.out) << test.name;
    }

    template <std::size_t count>
    void expectAll(const Case (&cases)[count]) {
        for (const Case& test : cases) {
            expect(test);
        }
    }

    TemporaryFolder folder;
};

TEST_F(Changes, SinceFormatsOnlyLinesThatChanged) {
    const Case cases[] = {
        {"changed, added, and none in front of a deletion",
         R"(save; put a.omb 'if a\nx\nif b\ny\nend'; format -i --since HEAD; show a.omb)",
         "if a|    x|if b|    y|end\n"},
        {"one of two",
         R"(save; put a.omb 'if a\np\nif b\ny\nend\nend\n'; format --since HEAD -i; show a.omb)",
         "if a|p|if b|    y|end|end|\n"},
        {"only deleted lines", R"(save; put a.omb 'if a\np\nend\n'; status format --check --since HEAD)",
         "0\n"},
        {"whole files, of which a deletion is a change too",
         R"(put b.omb ' b'; save; put a.omb 'if a\np\nend\n'; status format --check --since HEAD --whole-files)",
         "a.omb\n1\n"},
        {"touched but not changed",
         R"(save; touch -d yesterday a.omb; chmod +x a.omb; status format --check --since HEAD --whole-files)",
         "0\n"},
        {"several commits back, and what is staged is in the work tree too",
         R"(save; put b.omb ' b'; save; put c.omb ' c'; git add .; status format --check --since HEAD~1)",
         "b.omb\nc.omb\n1\n"},
        {"printed, with the diff applied", R"(save; put a.omb 'if a\nx\n'; format --since HEAD
            status format --diff --since HEAD | tail -4)",
         "if a\n    x\n if a\n-x\n+    x\n1\n"},
        {"renamed: only what is different in it", R"(put b.omb 'if a\np\nif b\nq\nr\ns\nt\nu\nv\n'; save
            mkdir s; git mv b.omb s/c.omb; put s/c.omb 'if a\np\nif b\nx\nr\ns\nt\nu\nv\n'
            format --since HEAD -i s; show s/c.omb)",
         "if a|p|if b|    x|r|s|t|u|v|\n"},
        {"new files wholly, but no ignored ones, links or other kinds",
         R"(put .gitignore 'i.omb\n'; save; put n.omb ' n'; put i.omb ' i'; put t.txt ' t'; ln -s a.omb l.omb
            put m.omb ' m\n'; git add -N m.omb; status format --check --since HEAD)",
         "m.omb\nn.omb\n1\n"},
        {"left out by an ignore file and a pattern",
         R"(save; put .ombrel-format-ignore 'n.omb\n'; put n.omb ' n'; put m.omb ' m'; put o.omb ' o'
            status format --check --exclude o.omb --since HEAD)",
         "m.omb\n1\n"},
        {"deleted, replaced by a link, a link replaced by a file",
         R"(put d.omb ' d'; put f.omb ' f'; ln -s a.omb l.omb; save; rm d.omb f.omb l.omb; ln -s a.omb f.omb
            put l.omb ' l'; status format --check --since HEAD)",
         "l.omb\n1\n"},
        {"a submodule",
         R"(save; git init -q s.omb; git -C s.omb commit -q --allow-empty -m 1; git add s.omb 2> /dev/null
            status format --check --since HEAD; status format --check --staged)",
         "0\n0\n"},
        {"conflicts", R"(save; git checkout -qb o; put a.omb 'if a\no\n'; save; git checkout -q main
            put a.omb 'if a\nm\n'; save; git merge -q o > /dev/null; cp a.omb ../a
            format -i --since HEAD --whole-files; format --staged; cmp a.omb ../a)",
         "a.omb: note: left out: it has unresolved conflicts\n"
         "a.omb: note: left out: it has unresolved conflicts\n"},
        {"since the branch left the other one",
         R"(put b.omb 'b\n'; save; git checkout -qb o; put a.omb ' o\n'; save
            git checkout -q main; put b.omb ' b\n'; save; git checkout -q o
            status format --check --since main...; put b.omb ' c\n'; status format --check --since main...)",
         "a.omb\n1\na.omb\nb.omb\n1\n"},
        {"no commit yet",
         R"(status format --check --since HEAD; git add .; status format --check --since HEAD)",
         "a.omb\n1\na.omb\n1\n"},
        {"a lone CR ends a line for the formatter only", R"(put c.omb 'if a\rp\nif b\nq\n'; save
            put c.omb 'if a\rp\nif b\nx\n'; format -i --since HEAD; show c.omb | tr '\r' '!')",
         "if a!p|if b|    x|\n"},
        {"lines of CRLF, in the work tree only", R"(git config core.autocrlf true; save 2> /dev/null
            put a.omb 'if a\r\np\r\nif b\r\nx\r\nend\r\nend\r\n'; format -i --since HEAD; show a.omb | tr '\r' '!')",
         "if a!|p!|if b!|    x!|end!|end!|\n"},
        {"syntax errors of changed files", R"(put b.omb 'x = ;\n'; save; put a.omb 'y = ;\n'
            status format --check-syntax --since HEAD 2>&1 | sed -n 's/ error: .*//p;$p')",
         "a.omb:1:5:\n4\n"},
    };
    expectAll(cases);
}

TEST_F(Changes, PathsAndNamesAreTakenAsTheyAre) {
    const std::string make = R"sh(
mkdir -p s/t
each() { for n in '*.omb' '-i.omb' ' s p.omb' "$(printf 'n\nl\t\377"\\.omb')"; do
    put "s/$n" "$1"; put "s/t/$n" "$1"
done; }
each ' x\n'; save; each ' y\n'
)sh";
    const std::string show = "; git diff --cached; cat s/*.omb s/t/*.omb | tr -d '\\n'";
    const std::string all = make + "format -i -q --since HEAD" + show;
    const std::string staged = make + "git add .; format --staged -q; git diff; git reset -q HEAD ." + show;
    const std::string one = make + "format -i -q --since HEAD 's/*.omb'" + show;
    const Case cases[] = {
        {"odd names", all.c_str(), "yyyyyyyy"},
        {"odd names, staged", staged.c_str(), "yyyyyyyy"},
        {"a name that could be a pattern", one.c_str(), " yy y y y y y y"},
        {"from a subfolder, shown from there",
         R"(mkdir s; save; put b.omb ' b'; put s/c.omb ' c'; put s/d.omb ' d'; cd s
            status format --check -q --since HEAD; format --check --since HEAD; format --check --since HEAD . 2>&1
            format --check --since HEAD ../b.omb "$PWD/d.omb"; git add ..; format --staged ../b.omb; show :b.omb)",
         "1\n../b.omb\nc.omb\nd.omb\nc.omb\nd.omb\n../b.omb\nd.omb\nb\n"},
        {"a named file may be called anything, unless it hasn't changed",
         R"(put t.txt ' t'; save; put u.txt ' u'; put v.txt ' v'; status format --check --since HEAD t.txt u.txt)",
         "u.txt\n1\n"},
        {"through a symbolic link to the work tree",
         R"(save; put b.omb ' b'; ln -s r ../l; cd ../l; status format --check --since HEAD; rm ../l)",
         "b.omb\n1\n"},
        {"whatever is configured",
         R"(save; git config diff.noprefix true; git config diff.interHunkContext 9; git config color.ui always
            git config diff.external false; git config diff.relative true; git config diff.renames false
            printf '*.omb diff=x\n' > .gitattributes; git config diff.x.textconv false; git config diff.x.binary true
            export GIT_DIFF_OPTS=-u5 GIT_LITERAL_PATHSPECS=1 GIT_EXTERNAL_DIFF=false
            put a.omb 'if a\nx\nif b\nq\nend\n'; status format -i --since HEAD; show a.omb)",
         "0\nif a|    x|if b|q|end|\n"},
        {"a repository that only the environment names",
         R"(save; mkdir s; git mv a.omb s/; mv .git ../g; cd s; put a.omb 'if a\nx\nif b\nq\nend\nend\n'
            export GIT_DIR=../../g GIT_WORK_TREE=..; format -i --since HEAD; git add -u ..
            put a.omb 'if a\nx\nend\n'; git add a.omb; format --staged; git show :s/a.omb; rm -rf ../../g)",
         "if a\n    x\nend\n"},
    };
    expectAll(cases);
}

TEST_F(Changes, StagedNeverTouchesUnstagedWork) {
    // What is staged is always the same: line 2 is new. What differs is the work tree.
    const std::string stage = "save; put a.omb 'if a\\nx\\nif b\\nq\\nend\\nend\\n'; git add .\n";
    const std::string show = "\nstatus format --staged; show :a.omb; show a.omb";
    const std::string index = "0\nif a|    x|if b|q|end|end|\n";
    const std::string alone =
        "a.omb: note: formatted in the index; the file in the work tree is left alone: ";
    const Case cases[] = {
        {"the same as staged", "", index + "if a|    x|if b|q|end|end|\n"},
        {"changed and added lines, with blanks of their own",
         "put a.omb ' n\\nif a\\nx\\n  m \\nif b\\nr\\nend\\nend'",
         index + " n|if a|    x|  m |if b|r|end|end\n"},
        {"the same line changed", "put a.omb 'if a\\nz\\nif b\\nq\\n'", index + "if a|z|if b|q|\n"},
        {"the same line indented in another way", "put a.omb 'if a\\n x\\nif b\\nq\\n'",
         index + "if a| x|if b|q|\n"},
        {"the lines in front of it deleted", "put a.omb 'x\\nif b\\n'", index + "    x|if b|\n"},
        {"emptied", "put a.omb ''", index + "\n"},
        {"other line ends", "put a.omb 'if a\\r\\nx\\r\\nif b'", index + "if a\r|x\r|if b\n"},
        {"not UTF-8", "put a.omb 'if a\\nx\\n\\377'", index + "if a|    x|\377\n"},
        {"deleted", "rm a.omb", index + "cat: a.omb: No such file or directory\n\n"},
        {"a link now", "rm a.omb; put b 'b'; ln -s b a.omb",
         alone + "it is no regular file there\n" + index + "b\n"},
        {"a folder now", "rm a.omb; mkdir a.omb; put a.omb/b 'b'",
         alone + "it is no regular file there\n" + index + "cat: a.omb: Is a directory\n\n"},
        {"read-only", "chmod a-w a.omb",
         alone + "not replaced: it is read-only; --force-read-only replaces it\n" + index +
             "if a|x|if b|q|end|end|\n"},
        {"two names", "ln a.omb b",
         alone +
             "not replaced: it has 2 names (hard links), and the others would keep the old text; "
             "--allow-hard-links "
             "replaces it\n" +
             index + "if a|x|if b|q|end|end|\n"},
        {"git looks away", "git update-index --assume-unchanged a.omb; put a.omb 'y\\nz\\nif b\\n'",
         index + "y|z|if b|\n"},
    };
    expect({"a file in a folder that is a link now",
            R"(mkdir s; put s/a.omb 'if a\nx\n'; git add .; mv s t; ln -s t s; format --staged; show :s/a.omb
                show t/a.omb)",
            "s/" + alone + "it is no regular file there\nif a|    x|\nif a|x|\n"});
    for (const Case& test : cases) {
        const std::string script = stage + test.script + show;
        expect({test.name, script.c_str(), test.out});
    }
}

TEST_F(Changes, StagedWritesTheIndexAndNothingElse) {
    const Case cases[] = {
        {"nothing is written when asked", R"(save; put a.omb 'if a\nx\n'; git add .; find . | sort > ../before
            git ls-files -s >> ../before; cp .git/index ../index; put a.omb ' other'
            status format --check --staged; status format --staged --diff | tail -2
            status format --check-syntax --staged > /dev/null 2>&1
            { find . | sort; git ls-files -s; } | cmp - ../before; cmp .git/index ../index; show a.omb; rm ../index)",
         "a.omb\n1\n+    x\n1\n other\n"},
        {"no commit yet, an executable, and a second run",
         R"(chmod +x a.omb; git add .; status format --staged --in-place; show :a.omb; git ls-files -s | cut -c -7
            cp .git/index ../index; status format --staged; cmp .git/index ../index; rm ../index; git diff)",
         "0\nif a|    p|    if b|        q|    end|end|\n100755 \n0\n"},
        {"an empty repository", R"(status format --staged)", "0\n"},
        {"whole files", R"(save; put a.omb 'if a\nx\nif b\nq\nend\nend\n'; git add .
            format --staged --whole-files; show :a.omb; git diff)",
         "if a|    x|    if b|        q|    end|end|\n"},
        {"an entry without content, a link, a renamed file",
         R"(save; put i.omb ' i'; git add -N i.omb; ln -s a.omb l.omb; git add l.omb; git mv a.omb b.omb
            status format --staged; show :b.omb; show i.omb)",
         "0\nif a|p|if b|q|end|end|\n i\n"},
        {"CRLF that git takes away: in the work tree it stays",
         R"(git config core.autocrlf true; save 2> /dev/null; put a.omb 'if a\r\nx\r\nend\r\n'; git add . 2> /dev/null
            format --staged 2>&1; show :a.omb; show a.omb | tr '\r' '!'; git diff)",
         "if a|    x|end|\nif a!|    x!|end!|\n"},
        {"CRLF in the index stays though git would take it away now",
         R"(put a.omb 'if a\r\np\r\nend\r\n'; save; put a.omb 'if a\r\nx\r\nend\r\n'; git add .
            git config core.autocrlf input; format --staged 2>&1; show :a.omb | tr '\r' '!')",
         "if a!|    x!|end!|\n"},
        {"another encoding in the work tree",
         R"(printf '*.omb working-tree-encoding=UTF-16LE\n' > .gitattributes
            put a.omb 'i\0f\0 \0a\0\n\0x\0\n\0'; git add .; format --staged; show :a.omb; git diff --name-only)",
         "if a|    x|\na.omb\n"},
        {"what a filter has made",
         R"(git config filter.f.clean 'sed s/^/.../'; printf 'f.omb filter=f\n' > .gitattributes
            put f.omb 'x\n'; git add .; format --staged; show :f.omb; show :a.omb)",
         "f.omb: note: left out: what is staged went through the filter f\n...x|\n"
         "if a|    p|    if b|        q|    end|end|\n"},
        {"files that a sparse work tree leaves out", R"(save; put a.omb 'if a\nx\n'; git add .; rm a.omb
            git update-index --skip-worktree a.omb; format --staged; show :a.omb; git status --short)",
         "if a|    x|\nM  a.omb\n"},
        {"a merge: only what neither side has", R"(put b.omb 'b\n'; save; git checkout -qb o; put b.omb ' o\n'
            put a.omb 'if a\no\nif b\no\nend\n'; put n.omb ' n\n'; save; git checkout -q main
            put a.omb 'if a\nm\nif b\nq\nend\n'; save; git merge -q o > /dev/null 2>&1
            put a.omb 'if a\nx\nif b\no\nend\n'; git add .; status format --check --staged --whole-files
            format --staged; show :a.omb; show :b.omb)",
         "a.omb\n1\nif a|    x|if b|o|end|\n o|\n"},
        {"somebody else holds the index",
         R"(git add .; touch .git/index.lock; cp a.omb ../a; git ls-files -s > ../before
            status format --staged 2>&1 | sed 's/ .[^ ]*index.lock./ LOCK/'; git ls-files -s | cmp - ../before; cmp a.omb ../a)",
         "a.omb: error: not written to the index: git apply failed (128): fatal: Unable to create LOCK: File "
         "exists.\n6\n"},
        {"another index",
         R"(git add .; cp .git/index i; export GIT_INDEX_FILE=i; cp .git/index ../before; mkdir s; cd s
            format --staged; cd ..; show :a.omb; cmp .git/index ../before)",
         "if a|    p|    if b|        q|    end|end|\n"},
        {"refused staged text",
         R"(put a.omb 'x\n\377'; git add .; put a.omb 'x'; status format --staged 2>&1 | grep -v '^ ')",
         "a.omb:2:1: error: this is not UTF-8: the byte 0xFF can't stand here\n3\n"},
    };
    expectAll(cases);
}

TEST_F(Changes, StagedServesEveryKindOfCommit) {
    // Behind the commit HEAD, index and work tree are formatted, and the file that wasn't named is as it was.
    const std::string begin =
        "put b.omb 'b\\n'; save; hook --staged; put a.omb 'if a\\nx\\n'; put b.omb ' b\\n'\n";
    const std::string end = "; git show HEAD:a.omb; git status --short; cat b.omb";
    const std::string formatted = "if a\n    x\n";
    const Case cases[] = {
        {"commit", "git add a.omb; git commit -qm 2", formatted + " M b.omb\n b\n"},
        {"commit -a", "git commit -qam 2", formatted + "b\n"},
        {"commit FILE", "git add b.omb; git commit -qm 2 a.omb", formatted + "M  b.omb\n b\n"},
        {"commit in another work tree",
         "git worktree add -q ../w; cp a.omb ../w; git -C ../w commit -qam 2; git reset -q --hard; git merge "
         "-q w; rm -rf ../w",
         formatted + "b\n"},
    };
    for (const Case& test : cases) {
        const std::string script = begin + test.script + end;
        expect({test.name, script.c_str(), test.out});
    }
}

TEST_F(Changes, HooksOfThePreCommitFrameworkFormat) {
    expect({"",
            R"(save; put .ombrel-format-ignore 'b.omb\n'; put b.omb ' b\n'
            sed -n 's/^  entry: ombrel-format //p' ")" OMBREL_SOURCE_DIR
            R"(/.pre-commit-hooks.yaml" > ../entries
            while read -r words; do
                put a.omb 'if a\nx\nif b\nq\nend\n'; format $words a.omb b.omb; show a.omb; show b.omb
            done < ../entries)",
            "if a|    x|    if b|        q|    end|\n b|\nif a|    x|if b|q|end|\n b|\n"});
}

TEST_F(Changes, ErrorsSayWhatIsWrong) {
    const Case cases[] = {
        {"no git", R"(PATH=/nowhere; status format --staged)",
         "ombrel-format: error: git isn't installed, and what changed is known to nobody else\n2\n"},
        {"no repository",
         R"(cd ..; GIT_CEILING_DIRECTORIES=$PWD/.. status format --since HEAD 2>&1 | cut -c -74)",
         "ombrel-format: error: here is no work tree of a git repository: fatal: not\n2\n"},
        {"no such revision",
         R"(save; status format --since HAED; status format --since=-x; status format --since HEAD:a.omb)",
         "ombrel-format: error: --since HAED: git knows no such revision\n2\n"
         "ombrel-format: error: --since -x: git knows no such revision\n2\n"
         "ombrel-format: error: --since HEAD:a.omb: git knows no such revision\n2\n"},
        {"paths",
         R"(save; status format --staged nix; status format --staged .. 2>&1 | sed 's/repository .*/repository/')",
         "ombrel-format: error: nix: there is no such file or folder\n2\n"
         "ombrel-format: error: ..: this is outside of the repository\n2\n"},
        {"options", R"(for o in '--since A --staged' '--whole-files' '--staged --lines 1:1 a' '--staged -' \
                "--since="; do format $o 2>&1 | sed -n '1s/.*error: //p'; done)",
         "--since looks at the work tree, --staged at the index: use one or the other\n"
         "--whole-files goes with --since or --staged\n"
         "--lines doesn't go with --since and --staged, which find the lines by themselves\n"
         "--since and --staged go with files and folders: neither with standard input nor with --files-from\n"
         "--since needs a value\n"},
        {"the tree engine", R"(save; put a.omb 'c;\n'; git add a.omb; status format --staged --engine tree)",
         "a.omb: error: the tree engine lays out whole files: --lines doesn't go with it, and --since and "
         "--staged "
         "need --whole-files\n2\n"},
    };
    expectAll(cases);
}

/// Goes to a folder, and back at the end.
class Visit {
public:
    explicit Visit(const std::filesystem::path& folder) : before(std::filesystem::current_path()) {
        std::filesystem::current_path(folder);
    }
    Visit(const Visit&) = delete;
    Visit& operator=(const Visit&) = delete;
    ~Visit() { std::filesystem::current_path(before); }

private:
    std::filesystem::path before;
};

TEST_F(Changes, WhatWasStagedMeanwhileStays) {
    expect({"", "git add .; git rev-parse :a.omb | tr -d '\\n' > ../id; put a.omb 'new\\n'; git add .", ""});
    const Visit visit(folder.getPath() / "r");
    const Git git;
    DiskFileSystem disk;
    StagedFiles staged(git, {{"a.omb", "a.omb", folder.read("id"), {}}}, disk);
    const std::string text = staged.read("a.omb", 1000);
    EXPECT_EQ(text, "if a\np\nif b\nq\nend\nend\n");
    EXPECT_THROW(staged.read("a.omb", 3), FileError);
    EXPECT_THROW(staged.replace("a.omb", text, "formatted"), FileError);
    EXPECT_EQ(git.run({"cat-file", "blob", ":a.omb"}), "new\n");
    EXPECT_EQ(folder.read("r/a.omb"), "new\n");
}

TEST_F(Changes, TheTreeEngineTouchesOnlyWorkTreesThatAreTheSame) {
    expect({"",
            "put b.omb 'b;c'; put c.omb 'b;c'; git add .; git rev-parse :b.omb | tr -d '\\n' > ../id; put "
            "c.omb 'b;c;d'",
            ""});
    const Visit visit(folder.getPath() / "r");
    const Git git;
    DiskFileSystem disk;
    const std::string id = folder.read("id");
    StagedFiles staged(git, {{"b.omb", "b.omb", id, {}}, {"c.omb", "c.omb", id, {}}}, disk);
    staged.replace("b.omb", "b;c", "b;\nc");
    staged.replace("c.omb", "b;c", "b;\nc");
    EXPECT_EQ(git.run({"cat-file", "blob", ":b.omb"}) + git.run({"cat-file", "blob", ":c.omb"}),
              "b;\ncb;\nc");
    EXPECT_EQ(folder.read("r/b.omb") + folder.read("r/c.omb"), "b;\ncb;c;d");
    ASSERT_EQ(staged.getNotes().size(), 1U);
    EXPECT_EQ(staged.getNotes()[0].path, "c.omb");
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
    const std::string much(5'000'000, 'x');
    const auto echo = runProcess({"sh", "-c", "tee /dev/fd/2; exit $X"}, environment, much);
    EXPECT_EQ(echo.status, 5);
    EXPECT_TRUE(echo.out == much && echo.err == much);
    EXPECT_EQ(runProcess({"true"}, environment, much).status, 0); // nobody reads it
    EXPECT_EQ(runProcess({"cat"}, environment, "").out, "");      // it doesn't wait for ours
    EXPECT_EQ(runProcess({"sh", "-c", "kill -9 $$"}, environment, much).status, 137);
    EXPECT_THROW(runProcess({"no-such-program"}, environment, ""), std::system_error);
}

} // namespace
