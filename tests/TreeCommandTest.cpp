#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>
#include <utility>

// The program with the tree engine, and the stages that need options, as a user calls them.

namespace {

const std::string mark = "\xEF\xBB\xBF";
const std::string refusal = "y = [1; 2];\n";
const std::string refused =
    "a.omb:1:9: error: the formatter would put this number literal into the matrix row before it; "
    "nothing was written\n  y = [1; 2];\n          ^\n";

struct Row {
    const char* what;
    std::string input; ///< of the file a.omb
    const char* script;
    int status;
    std::string out;
    std::string err;
    std::string after = {}; ///< what the file holds then; nothing: it is still the same file
};

const std::string bad = "{\"formatting\": {\"indentWidth\": 1, \"indentWidth\": -1,\n"
                        " \"functionIndentStyle\": \"all\"}}";

class TreeCommand : public testing::Test {
protected:
    TreeCommand() {
        disk.write("o.json",
                   R"({"engine": "tree", "formatting": {"indentationEnabled": true, "indentWidth": 2}})");
        disk.write("sub/.ombrel-format.json",
                   R"({"extends": "../o.json", "formatting": {"indentWidth": 3}})");
        disk.write("bad.json", bad);
    }

    void expect(const Row& row) const {
        SCOPED_TRACE(row.what);
        disk.write("a.omb", row.input);
        const auto inode = disk.getStatus("a.omb").st_ino;
        EXPECT_EQ(
            disk.shell(
                "tree() { format --engine tree \"$@\"; }; trim=formatting.trimUnnecessaryWhitespace=true;"
                "indent=formatting.indentationEnabled=true; { " +
                std::string(row.script) + "; } > out 2> err"),
            row.status);
        EXPECT_EQ(disk.read("out"), row.out);
        EXPECT_EQ(disk.read("err"), row.err);
        EXPECT_EQ(disk.read("a.omb"), row.after.empty() ? row.input : row.after);
        EXPECT_EQ(disk.getStatus("a.omb").st_ino == inode, row.after.empty());
    }

    TemporaryFolder disk;
};

TEST_F(TreeCommand, TakesOptionsAndInputsAsTheLineEngineDoes) {
    const std::string ugly = "if a\nx\nend\n";
    const std::string two = "if a\n  x\nend\n";
    const std::string diff = "--- a.omb\n+++ a.omb\n@@ -1,3 +1,3 @@\n if a\n-x\n+  x\n end\n";
    const Row rows[] = {
        {"an options file", ugly, "format --config o.json a.omb", 0, two, ""},
        {"one option over it", ugly, "tree --config o.json --set formatting.indentWidth=1 < a.omb", 0,
         "if a\n x\nend\n", ""},
        {"no options", ugly, "tree a.omb", 0, ugly, ""},
        {"a name for standard input", ugly, "format --stdin-filename sub/b.omb - < a.omb", 0,
         "if a\n   x\nend\n", ""},
        {"in place", ugly, "format -i --config o.json a.omb", 0, "", "", two},
        {"in place and unchanged", two, "format -i -v --config o.json a.omb", 0, "", "a.omb: unchanged\n"},
        {"a check", ugly, "format --check --config o.json a.omb", 1, "a.omb\n", ""},
        {"a check without findings", two, "format --check --config o.json a.omb", 0, "", ""},
        {"a diff", ugly, "format --diff --config o.json a.omb", 1, diff, ""},
        {"CRLF, a mark, no last line end", mark + "if a\r\nx\r\nend", "tree -i --set $indent a.omb", 0, "",
         "", mark + "if a\r\n    x\r\nend"},
        {"CR", "if a\rx\rend\r", "tree --set $indent a.omb", 0, "if a\r    x\rend\r", ""},
        {"mixed line ends", "if a\r\nx\nend\r\n", "tree -i --set $indent a.omb", 3, "",
         "a.omb:2:2: error: this line ends in LF and the first one in CRLF: the tree engine can't keep line "
         "ends that are mixed; --force gives all lines the first one's\n  x\n   ^\n"},
        {"mixed line ends by force", "if a\r\nx\nend\r\n", "tree -i --force --set $indent a.omb", 0, "", "",
         "if a\r\n    x\r\nend\r\n"},
        {"nothing", "", "tree --set $indent --set $trim a.omb", 0, "", ""},
    };
    for (const Row& row : rows) {
        expect(row);
    }
}

TEST_F(TreeCommand, SaysWhereItGivesUpAndWritesNothing) {
    const Row rows[] = {
        {"syntax errors", "x = );\n y = ];\n", "tree -i a.omb", 4, "",
         "a.omb:1:5: error: expected an expression before ')'\n  x = );\n      ^\n"
         "a.omb:2:6: error: expected an expression before ']'\n   y = ];\n       ^\n"},
        {"issues of an options file", "x\n", "format -i --config bad.json a.omb", 2, "",
         "bad.json:1:35: error: \"indentWidth\" is there twice, and only the last one counts\n  " +
             bad.substr(0, 52) + "\n" + std::string(36, ' ') +
             "^\n"
             "bad.json:1:50: error: expected a number from 0 to 4294967295\n  " +
             bad.substr(0, 52) + "\n" + std::string(51, ' ') +
             "^\n"
             "bad.json:2:25: error: expected Classic, IndentNested or IndentAll\n" +
             std::string(2, ' ') + bad.substr(53) + "\n" + std::string(26, ' ') + "^\n"},
        {"an issue of the command line", "x\n", "tree -i --set formatting.indentWidth=-1 a.omb", 2, "",
         "ombrel-format: error: --set formatting.indentWidth=-1: expected a number from 0 to 4294967295\nTry "
         "ombrel-format --help.\n"},
        {"another program", refusal, "tree -i --set $trim a.omb", 5, "", refused},
        {"another program, in a check", refusal, "tree --check --set $trim a.omb", 5, "", refused},
        {"another program, in a diff", refusal, "tree --diff --set $trim a.omb", 5, "", refused},
    };
    for (const Row& row : rows) {
        expect(row);
    }
}

TEST_F(TreeCommand, LeavesSuppressedLinesAlone) {
    const std::string off = "  % ombrel-format off\n";
    const std::string on = "% ombrel-format  on\n";
    const std::string rows2 = "m = [1   0\n     0  12];\n";
    const Row rows[] = {
        {"a matrix", "if  a\n" + off + rows2 + on + "x  = 1;\nend\n",
         "tree -i --set $trim --set $indent a.omb", 0, "", "",
         "if a\n" + off + rows2 + on + "    x=1;\nend\n"},
        {"the whole file", off + refusal, "tree -i --set $trim a.omb", 0, "", ""},
        {"to the end", "x  = 1;\n" + off + refusal, "tree -q -i --set $trim a.omb", 0, "", "",
         "x=1;\n" + off + refusal},
        {"the same matrix outside", off + on + rows2, "tree -q -i --set $trim a.omb", 5, "",
         "a.omb:4:6: error: the formatter would put this number literal into the matrix row before it; "
         "nothing was written\n       0  12];\n       ^\n"},
    };
    for (const Row& row : rows) {
        expect(row);
    }
}

/// With OMBREL_UPDATE_GOLDEN set, what is printed becomes what the file wants.
TEST_F(TreeCommand, DumpsOptionsAndWhatTheBridgeAnswers) {
    const std::filesystem::path golden = OMBREL_SOURCE_DIR "/tests/golden/ombrel-dump/options.json";
    const std::string program = "'" OMBREL_DUMP_PROGRAM "' ";
    if (std::getenv("OMBREL_UPDATE_GOLDEN") != nullptr) {
        EXPECT_EQ(disk.shell(program + "options bad.json > '" + golden.string() + "'"), 0);
    }
    EXPECT_EQ(disk.shell(program + "options bad.json > out && diff out '" + golden.string() + "'"), 0);

    disk.write("bad.omb", "x = (1;\n");
    const std::pair<const char*, const char*> answers[] = {
        {"--config o.json - < a.omb", "if a\n  % b\n  x ,y\nend\n"},
        {"a.omb", "if a\n% b\nx ,y\nend\n"},
        {"--config bad.json bad.omb",
         "Syntax errors:\n   expected ')' to close the '(' in column 5 before ';' line: 1 column: 7\n"},
        {"--config o.omb a.omb", "expected a value\n  line: 1\n  column: 1\n"},
    };
    disk.write("a.omb", "if a\r\n% b\r\nx ,y\r\nend\r\n");
    disk.write("o.omb", "x");
    for (const auto& [arguments, wanted] : answers) {
        EXPECT_EQ(disk.shell(program + "bridge " + arguments + " > out 2>&1"), 0) << arguments;
        EXPECT_EQ(disk.read("out"), wanted) << arguments;
    }
}

} // namespace
