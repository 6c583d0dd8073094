#include <ombrel-format/Run.h>

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <sstream>
#include <variant>

namespace {

using namespace ombrel;

class MemoryFileSystem : public FileSystem {
public:
    std::string read(const std::string& path, std::uint64_t limit) override {
        const auto found = files.find(path);
        if (found == files.end()) {
            throw FileError(FileError::Kind::Unreadable, "can't open it");
        }
        if (found->second.size() > limit) {
            throw FileError(FileError::Kind::TooLarge, "too large");
        }
        return found->second;
    }

    void replace(const std::string& path, const std::string& before, const std::string& after) override {
        if (isFull) {
            throw FileError(FileError::Kind::Unwritable, "the disk is full");
        }
        EXPECT_EQ(files[path], before);
        files[path] = after;
        ++replaced;
    }

    void write(const std::string& path, const std::string& bytes) override {
        replace(path, files[path], bytes);
    }

    std::map<std::string, std::string> files;
    bool isFull = false;
    std::atomic<int> replaced = 0;
};

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

class CommandLine : public testing::Test {
protected:
    Outcome call(std::vector<const char*> words, const std::string& input = {}) {
        words.insert(words.begin(), "ombrel-format");
        const auto parsed = parseArguments(static_cast<int>(words.size()), words.data());
        if (const auto* exit = std::get_if<EarlyExit>(&parsed)) {
            return {static_cast<int>(exit->status), {}, exit->text};
        }
        std::istringstream in(input);
        std::ostringstream out;
        std::ostringstream err;
        Console console{in, out, err};
        const ExitStatus status = run(std::get<Arguments>(parsed), console, disk);
        return {static_cast<int>(status), out.str(), err.str()};
    }

    void expectUsageError(std::vector<const char*> words, const std::string& message) {
        const Outcome outcome = call(std::move(words));
        EXPECT_EQ(outcome.status, 2) << message;
        EXPECT_EQ(outcome.out, "");
        EXPECT_NE(outcome.err.find(message), std::string::npos) << outcome.err;
    }

    MemoryFileSystem disk;
};

const std::string ugly = "if a\nx=1;\nend\n";
const std::string tidy = "if a\n    x=1;\nend\n";

TEST_F(CommandLine, PrintsStandardInputAndFilesInOrder) {
    disk.files = {{"a", ugly}, {"b", "  y\n"}};
    EXPECT_EQ(call({}, ugly).out, tidy);
    EXPECT_EQ(call({"a", "-", "b"}, "  z").out, tidy + "zy\n");
    EXPECT_EQ(call({"--", "-v"}).status, 2); // a file of that name, which isn't there
    disk.files["[a,b]"] = disk.files["-v"] = "  z";
    EXPECT_EQ(call({"[a,b]", "--", "-v"}).out, "zz");
}

TEST_F(CommandLine, KeepsByteOrderMarkLineEndsAndMissingLastLineEnd) {
    const std::string mark = "\xEF\xBB\xBF";
    EXPECT_EQ(call({}, mark + "if a\r\nx='\xC3\xA4\xF0\x9F\x98\x80';\rend \n  y").out,
              mark + "if a\r\n    x='\xC3\xA4\xF0\x9F\x98\x80';\rend\ny");
    EXPECT_EQ(call({}, mark).out, mark);
    EXPECT_EQ(call({}, "").out, "");
}

TEST_F(CommandLine, RefusesWhatOnlyLooksLikeAnOption) {
    disk.files = {{"a", ugly}};
    expectUsageError({"-i7", "a"}, "unknown option -7");
    expectUsageError({"--check=no", "a"}, "--check takes no value");
    expectUsageError({"--stdin-filename=", "a"}, "--stdin-filename needs a value");
    EXPECT_EQ(disk.files["a"], ugly);
    EXPECT_EQ(call({"no\x1b[31m\nb:1:1: error: c"}).err.find_first_of("\x1b\n"),
              call({"no\x1b[31m\nb:1:1: error: c"}).err.size() - 1);
}

TEST_F(CommandLine, WritesOnlyChangedFiles) {
    disk.files = {{"a", ugly}, {"b", tidy}};
    const Outcome outcome = call({"-i", "-v", "a", "b"});
    EXPECT_EQ(outcome.status, 0);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "a: formatted\nb: unchanged\n1 of 2 files formatted\n");
    EXPECT_EQ(disk.files["a"], tidy);
    EXPECT_EQ(disk.replaced, 1);
}

TEST_F(CommandLine, CheckNamesFilesThatWouldChange) {
    disk.files = {{"a", ugly}, {"b", tidy}};
    EXPECT_EQ(call({"--check", "b"}).status, 0);
    const Outcome outcome = call({"--check", "a", "b", "-", "--stdin-filename=c"}, ugly);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "a\nc\n");
    EXPECT_EQ(call({"--check", "-q", "a"}).out, "");
    EXPECT_EQ(disk.replaced, 0);
}

TEST_F(CommandLine, ShowsDiffs) {
    const Outcome outcome = call({"--diff", "--check", "--stdin-filename", "c"}, "if a\nx\nend\n  y");
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "--- c\n+++ c\n@@ -1,4 +1,4 @@\n if a\n-x\n+    x\n end\n-  y\n"
                           "\\ No newline at end of file\n+y\n\\ No newline at end of file\n");
    EXPECT_EQ(call({"--diff"}, tidy).out, "");
    EXPECT_NE(call({"--diff", "--color", "always"}, ugly).out.find("\033[32m+    x=1;\033[0m\n"),
              std::string::npos);
}

TEST_F(CommandLine, FormatsRangesInAscendingOrder) {
    const std::string text = "if a\nx\nif b\ny\nz\nend\nend\n";
    EXPECT_EQ(call({"--lines", "2:2"}, text).out, "if a\n    x\nif b\ny\nz\nend\nend\n");
    EXPECT_EQ(call({"--lines", "4:5", "--lines=2:2", "--lines", "5:5"}, text).out,
              "if a\n    x\nif b\n    y\n    z\nend\nend\n");
    EXPECT_EQ(call({"--lines", "7:999"}, "if a\nx\n\n\n\n\n end\n").out, "if a\nx\n\n\n\n\nend\n");
}

TEST_F(CommandLine, RefusesImpossibleRanges) {
    for (const char* range :
         {"5:3", "0:4", "a:b", "3", "3:", ":3", "1:2:3", "-1:2", "1:4294967296", " 1:2", ""}) {
        expectUsageError({"--lines", range}, "expected A:B");
    }
    const Outcome outcome = call({"--lines", "1:1", "--lines", "5:9"}, ugly);
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "<stdin>: error: the lines 5:9 begin behind the end: the text has 4 lines\n");
}

TEST_F(CommandLine, PassesEveryLineOption) {
    EXPECT_EQ(call({"--indent-size", "2"}, ugly).out, "if a\n  x=1;\nend\n");
    EXPECT_EQ(call({"--indent-size=0"}, tidy).out, ugly);
    EXPECT_EQ(call({"--use-tabs", "--indent-size", "6"}, ugly).out, "if a\n\t  x=1;\nend\n");
    EXPECT_EQ(call({"--tab-size=2", "--lines", "2:2"}, "\tif a\nx\n").out, "\tif a\n      x\n");
    const std::string nested = "function f\nx\nfunction g\ny\nend\nend\n";
    EXPECT_EQ(call({"--function-style", "classic"}, nested).out,
              "function f\nx\n    function g\n    y\n    end\nend\n");
    EXPECT_EQ(call({"--function-style", "mixed"}, nested).out,
              "function f\nx\n    function g\n        y\n    end\nend\n");
    EXPECT_EQ(call({"--blank-lines", "trim"}, "if a\n  \nend").out, "if a\n\nend");
    EXPECT_EQ(call({"--blank-lines", "ignore"}, "if a\n  \nend").out, "if a\n  \nend");
    EXPECT_EQ(call({"--blank-lines", "indent"}, "if a\n  \nend").out, "if a\n    \nend");
}

TEST_F(CommandLine, CheckSyntaxPrintsEverySyntaxErrorAndNothingElse) {
    disk.files = {{"bad", "\xEF\xBB\xBFx = ;\nif a\n\ty = (1;\nend\n"}, {"ugly", ugly}};
    const std::string errors = "bad:1:5: error: expected an expression before ';'\n  x = ;\n      ^\n"
                               "bad:3:8: error: expected ')' to close the '(' in column 6 before ';'\n"
                               "  \ty = (1;\n  \t      ^\n";
    const Outcome outcome = call({"--check-syntax", "-v", "bad", "ugly", "-", "--stdin-filename=c"}, "end");
    EXPECT_EQ(outcome.status, 4);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err.substr(0, errors.size()), errors);
    EXPECT_EQ(outcome.err.find("c:1:1: error: ", errors.size()), errors.size());
    EXPECT_EQ(disk.replaced, 0);

    const Outcome fine = call({"--check-syntax", "-v", "--engine", "tree", "ugly", "-"}, "");
    EXPECT_EQ(fine.status, 0);
    EXPECT_EQ(fine.out + fine.err, "0 of 2 files don't parse\n");

    const Outcome unreadable = call({"--check-syntax", "none", "bad"});
    EXPECT_EQ(unreadable.status, 4);
    EXPECT_EQ(unreadable.err,
              "none: error: can't open it\n" + errors + "1 of 2 files doesn't parse, 1 failed\n");
    EXPECT_EQ(call({"--check-syntax"}, "\xFF").status, 3);

    for (const char* other : {"-i", "--diff", "--check", "--lines=1:1"}) {
        expectUsageError({"--check-syntax", other, "bad"}, "--check-syntax formats nothing");
    }
}

TEST_F(CommandLine, ExplainsUsageErrors) {
    disk.files = {{"a", ugly}, {"b", ugly}};
    expectUsageError({"--chekc"}, "unknown option --chekc; did you mean --check?");
    expectUsageError({"--zzzzzzzz=1"}, "unknown option --zzzzzzzz");
    expectUsageError({"--tab-size", "0"}, "--tab-size 0: expected a number from 1 to 64");
    expectUsageError({"--tab-size", "65"}, "from 1 to 64");
    expectUsageError({"--indent-size", "-1"}, "from 0 to 64");
    expectUsageError({"--indent-size", "0x4"}, "from 0 to 64");
    expectUsageError({"--indent-size"}, "--indent-size");
    expectUsageError({"--function-style", "clasic"}, "did you mean classic?");
    expectUsageError({"-i"}, "standard input");
    expectUsageError({"-i", "--check", "a"}, "--in-place");
    expectUsageError({"-", "-"}, "only once");
    expectUsageError({"--lines", "1:2", "a", "b"}, "one file");
    expectUsageError({"none"}, "none: error: can't open it");
}

TEST_F(CommandLine, RefusesInvalidUtf8WithItsPlace) {
    struct Row {
        std::string bytes;
        std::string place;
    };
    const Row rows[] = {
        {"\xFF", "1:1"},
        {"\xEF\xBB\xBF\xFF", "1:1"},                      // a byte-order mark is no character of the text
        {"a\r\n\xC3\xA4\xF0\x9F\x98\x80\xC0\xAF", "2:4"}, // an overlong form, behind three 16-bit characters
        {"a\rb\n\xED\xA0\x80", "3:1"},                    // half a surrogate pair
        {"ab\xE2\x82", "1:3"},                            // cut off by the end
        {std::string("\0\xF5", 2), "1:2"},
    };
    for (const Row& row : rows) {
        const Outcome outcome = call({}, row.bytes);
        EXPECT_EQ(outcome.status, 3);
        EXPECT_EQ(outcome.out, "");
        EXPECT_EQ(outcome.err.find("<stdin>:" + row.place + ": error: this is not UTF-8"), 0U) << outcome.err;
    }
    EXPECT_EQ(call({}, "a\n\tb\x1B\xFFz\n").err,
              "<stdin>:2:4: error: this is not UTF-8: the byte 0xFF can't stand "
              "here\n  \tb\\u001B\xEF\xBF\xBDz\n  \t       ^\n");
}

TEST_F(CommandLine, LargestStatusWinsAndOtherFilesGoOn) {
    disk.files = {{"a", ugly}, {"bad", "\xFF"}};
    const Outcome outcome = call({"--check", "bad", "none", "a"});
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "a\n");
    disk.isFull = true;
    const Outcome full = call({"-i", "bad", "a"});
    EXPECT_EQ(full.status, 6);
    EXPECT_NE(full.err.find("a: error: the disk is full\n"), std::string::npos);
    EXPECT_EQ(disk.files["a"], ugly);
}

TEST_F(CommandLine, RefusesRunawayIndentation) {
    std::string deep;
    for (int level = 0; level < 1'563; ++level) {
        deep += "if a, ";
    }
    EXPECT_EQ(call({}, deep + "\nx\n").status, 0);
    const Outcome outcome = call({"--indent-size", "64"}, deep + "\nx\n");
    EXPECT_EQ(outcome.status, 3);
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err.find("<stdin>:2:1: error: this line would be indented by 100032 columns"), 0U);
}

} // namespace
