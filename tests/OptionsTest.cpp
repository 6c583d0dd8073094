#include "support/TemporaryFolder.h"

#include <ombrel-format/Run.h>
#include <ombrel-format/options/OptionsFile.h>
#include <ombrel-format/options/OptionsResolver.h>
#include <ombrel-format/text/TextEncoding.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <map>
#include <optional>
#include <regex>
#include <sstream>
#include <variant>

namespace {

using namespace ombrel;

using Texts = std::map<std::string, std::string>;
using Words = std::vector<std::string>;

class CountingFileSystem : public DiskFileSystem {
public:
    bool isFile(const std::string& path) override {
        ++lookUps[path];
        return DiskFileSystem::isFile(path);
    }

    std::map<std::string, int> lookUps;
};

struct Outcome {
    int status;
    std::string out;
    std::string err;
};

/// Each test has the current folder for itself.
class OptionsTest : public testing::Test {
protected:
    OptionsTest() : before(std::filesystem::current_path()) { clear(); }
    ~OptionsTest() override { std::filesystem::current_path(before); }

    void clear() {
        folder.emplace();
        std::filesystem::current_path(folder->getPath());
    }

    void write(const Texts& texts) {
        for (const auto& [name, text] : texts) {
            folder->write(name, text);
        }
    }

    Outcome call(const Words& words, const std::string& input = {}) {
        std::vector<const char*> argv = {"ombrel-format"};
        for (const std::string& word : words) {
            argv.push_back(word.c_str());
        }
        const auto parsed = parseArguments(static_cast<int>(argv.size()), argv.data());
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

    /// The line of --print-config that is about the option, with one blank between its columns.
    std::string explain(Words words, const std::string& option) {
        words.insert(words.begin(), "--print-config");
        const Outcome outcome = call(words);
        std::smatch match;
        if (!std::regex_search(outcome.out, match, std::regex("\n" + option + " +(.*)\n"))) {
            return outcome.err;
        }
        return std::regex_replace(match[1].str(), std::regex(" +"), " ");
    }

    CountingFileSystem disk;
    const std::filesystem::path before;
    std::optional<TemporaryFolder> folder;
};

std::string indent(int size) {
    return R"({"line": {"indentSize": )" + std::to_string(size) + "}}";
}

TEST_F(OptionsTest, LaysOneSourceOverTheOther) {
    const std::string name = ".ombrel-format.json";
    const std::string tabs = R"({"line": {"tabSize": 3}})";
    const std::string open = R"({"root": false, "line": {"tabSize": 3}})";
    const std::string overrides =
        "{\"overrides\": [\n"
        "{\"files\": \"*.omb\", \"line\": {\"indentSize\": 1}},\n"
        "{\"files\": [\"/gen\", \"t/**\", \"!t/x.omb\"], \"line\": {\"indentSize\": 2}}],\n"
        "\"line\": {\"indentSize\": 3}}";
    struct Row {
        Texts files;
        Words words;
        std::string expected; ///< of line.indentSize
    };
    const Row rows[] = {
        {{}, {"p/a.omb"}, "4 default"},
        {{{name, indent(2)}}, {"p/q/a.omb"}, "2 .ombrel-format.json:1"},
        {{{name, indent(2)}}, {}, "2 .ombrel-format.json:1"},
        {{{"p/" + name, indent(2)}}, {"p"}, "2 p/.ombrel-format.json:1"},
        {{{"p/" + name, indent(2)}}, {}, "4 default"},
        {{{"p/" + name, indent(2)}}, {"--stdin-filename=p/x"}, "2 p/.ombrel-format.json:1"},
        {{{name, indent(2)}, {"p/" + name, "\n" + indent(5)}}, {"p/a.omb"}, "5 p/.ombrel-format.json:2"},
        {{{name, indent(2)}, {"p/q/a.omb", ""}, {"r/a", ""}}, {"p/q/../../r/a"}, "2 .ombrel-format.json:1"},
        // The nearest file stands alone unless it says otherwise.
        {{{name, indent(2)}, {"p/" + name, tabs}}, {"p/a.omb"}, "4 default"},
        {{{name, indent(2)}, {"p/" + name, open}, {"p/q/" + name, open}},
         {"p/q/a"},
         "2 .ombrel-format.json:1"},
        {{{name, indent(2)}, {"p/" + name, tabs}, {"p/q/" + name, open}}, {"p/q/a"}, "4 default"},
        // What is extended lies underneath, the last uppermost, each with what it extends itself.
        {{{name, R"({"extends": "a/b.json"})"},
          {"a/b.json", R"({"extends": "c.json"})"},
          {"a/c.json", indent(6)}},
         {"a.omb"},
         "6 a/c.json:1"},
        {{{name, R"({"extends": ["b", "c"]})"}, {"b", indent(6)}, {"c", indent(7)}}, {"a.omb"}, "7 c:1"},
        {{{name, R"({"extends": ["b", "c"]})"},
          {"b", R"({"extends": "d"})"},
          {"c", R"({"extends": "d"})"},
          {"d", indent(7)}},
         {"a.omb"},
         "7 d:1"},
        {{{name, R"({"extends": "b", "line": {"indentSize": 8}})"}, {"b", indent(6)}},
         {"a.omb"},
         "8 .ombrel-format.json:1"},
        {{{name, R"({"extends": "b", "line": {"indentSize": 8}})"}, {"b", overrides}},
         {"a.omb"},
         "8 .ombrel-format.json:1"},
        // Overrides go by the path from their own file; of their patterns the last that matches decides.
        {{{name, overrides}}, {"a.txt"}, "3 .ombrel-format.json:4"},
        {{{name, overrides}}, {"s/t/a.omb"}, "1 .ombrel-format.json:2, an override"},
        {{{name, overrides}}, {"t/s/a.omb"}, "2 .ombrel-format.json:3, an override"},
        {{{name, overrides}}, {"t/x.omb"}, "1 .ombrel-format.json:2, an override"},
        {{{name, overrides}}, {"gen/s/a.txt"}, "2 .ombrel-format.json:3, an override"},
        {{{"t/" + name, overrides}}, {"t/s/a.omb"}, "1 t/.ombrel-format.json:2, an override"},
        {{{"u/b", overrides}, {"t/" + name, R"({"extends": "../u/b"})"}},
         {"t/a.omb"},
         "1 u/b:2, an override"},
        // .editorconfig lies beneath all of them.
        {{{".editorconfig", "root=true\n[*]\nindent_size = 6\n"}, {"p/" + name, tabs}},
         {"p/a.omb"},
         "6 .editorconfig:3"},
        {{{".editorconfig", "[*]\nindent_size = 6\n"}, {name, indent(2)}},
         {"p/a.omb"},
         "2 .ombrel-format.json:1"},
        {{{".editorconfig", "[*.x]\nindent_size=6\n"}, {"p/.editorconfig", "[*]\nindent_size=7\n"}},
         {"p/a.omb"},
         "7 .editorconfig"},
        {{{".editorconfig", "[*]\nindent_size = 65\n"}}, {"a.omb"}, "4 default"},
        {{{".editorconfig", "[*]\nindent_style = tab\n#\n[*]\ntab_width = 3"}},
         {"a.omb"},
         "3 .editorconfig:5"},
        // The command line wins, its last word most of all.
        {{{name, indent(2)}}, {"--indent-size=9", "a.omb"}, "9 --indent-size"},
        {{{name, indent(2)}}, {"--indent-size=9", "--set", "line.indentSize=0", "a.omb"}, "0 --set"},
        {{{name, indent(2)}},
         {"--set=line.indentSize=0", "--set=line.indentSize=1", "--indent-size", "9"},
         "9 --indent-size"},
        {{{name, indent(2)}, {"b", indent(5)}}, {"--config", "b", "p/a.omb"}, "5 b:1"},
        {{{name, indent(2)}, {".editorconfig", "[*]\nindent_size = 6\n"}},
         {"--no-config", "a.omb"},
         "4 default"},
    };
    for (const Row& row : rows) {
        clear();
        write(row.files);
        EXPECT_EQ(explain(row.words, "line.indentSize"), row.expected)
            << testing::PrintToString(row.files) << testing::PrintToString(row.words);
    }
}

TEST_F(OptionsTest, UnderstandsEditorConfig) {
    struct Row {
        const char* properties;
        const char* option;
        const char* value;
    };
    const Row rows[] = {
        {"indent_style = Tab", "line.useTabs", "true"},
        {"indent_style = space\nindent_size = 3", "formatting.indentCharacter", "\"Space\""},
        {"indent_style = space\nindent_size = 3", "formatting.indentWidth", "3"},
        {"indent_style = space\nindent_size = 3", "line.tabSize", "3"},
        // One level is as many tabs as fit into it.
        {"indent_style = tab\nindent_size = 8", "formatting.indentWidth", "1"},
        {"indent_style = tab\nindent_size = 8\ntab_width = 4", "formatting.indentWidth", "2"},
        {"indent_style = tab\nindent_size = 2\ntab_width = 8", "formatting.indentWidth", "1"},
        {"indent_style = tab", "formatting.indentCharacter", "\"Tab\""},
        {"max_line_length = 100", "formatting.columnLimit", "100"},
        {"max_line_length = off", "formatting.columnLimit", "80"},
    };
    for (const Row& row : rows) {
        write({{".editorconfig", std::string("root = true\n[*.omb]\n") + row.properties}});
        const std::string line = explain({"a.omb"}, row.option);
        EXPECT_EQ(line.substr(0, line.find(' ')), row.value) << row.properties << ": " << row.option;
    }
}

TEST_F(OptionsTest, NamesEveryFaultOfAFile) {
    struct Row {
        std::string text;
        std::vector<std::string> problems;
    };
    const std::string behaviors = "SeparateLines, AllowSingleLine or AllowMultiplePerLine";
    const Row rows[] = {
        {"// fine\n{\"line\": {\"tabSize\": 2,},} /* fine */", {}},
        {"\xEF\xBB\xBF{\"engin\": \"tree\"}", {"1:2: unknown option engin; did you mean engine?"}},
        {"{\n\"tabSize\": 2, \"line\": {\"tabsize\": 2, \"columnLimit\": 2, \"zzzzz\": 0}}",
         {"2:1: unknown option tabSize; its place is line.tabSize",
          "2:24: unknown option tabsize; did you mean tabSize?",
          "2:38: unknown option columnLimit; its place is formatting.columnLimit",
          "2:56: unknown option zzzzz"}},
        {R"({"line": {"tabSize": 0, "useTabs": "no", "functionStyle": "clasic"}, "engine": 1, "formatting": 2})",
         {"1:22: expected a number from 1 to 64", "1:36: expected true or false",
          "1:59: expected all, classic or mixed; did you mean classic?", "1:80: expected line or tree",
          "1:97: expected an object of options"}},
        {R"({"formatting": {"lineBreakBehavior": {"Statements": {"If": "x"}, "For": "", "Lists": 1}}})",
         {"1:38: this object has to name every part of its group: missing Expressions, Inheritance",
          "1:53: this object has to name every part of its group: missing While, ForParfor, Switch, Case, "
          "Try, Spmd",
          "1:60: expected " + behaviors, "1:66: unknown construct For; its place is Statements.ForParfor.For",
          "1:86: expected " + behaviors + ", or an object for the constructs one by one"}},
        {R"({"overrides": [{"file": "a"}, 1], "extends": [""], "root": "yes", "$schema": 1})",
         {"1:16: this override lacks \"files\"", "1:17: unknown option file; did you mean files?",
          "1:31: expected an object with \"files\" and options", "1:47: expected a path",
          "1:60: expected true or false", "1:78: expected a string"}},
        {"\xFF", {"1:1: this is not UTF-8: the byte 0xFF can't stand here"}},
    };
    for (const Row& row : rows) {
        write({{".ombrel-format.json", row.text}});
        CountingFileSystem files;
        const OptionsRequest request;
        std::vector<std::string> problems;
        for (const OptionsFault& fault : OptionsResolver(request, files).prepare({"a.omb"})) {
            for (const Problem& problem : fault.problems) {
                EXPECT_EQ(problem.status, ExitStatus::Usage);
                problems.push_back(std::to_string(problem.line) + ':' + std::to_string(problem.column) +
                                   ": " + problem.text);
            }
        }
        EXPECT_EQ(problems, row.problems) << row.text;
    }
}

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

TEST_F(OptionsTest, TouchesNoFileWhenOptionsAreWrong) {
    const std::string ugly = "if a\nx\nend\n";
    write({{"a.omb", ugly},
           {"p/b.omb", ugly},
           {"p/.ombrel-format.json", R"({"extends": "../base.json", "line": {"indentsize": 2}})"},
           {"q/b.omb", ugly},
           {"q/.ombrel-format.json", "{\"line\": 1"},
           {"r/b.omb", ugly},
           {"r/.ombrel-format.json", R"({"extends": "none"})"},
           {"base.json", R"({"extends": "p/.ombrel-format.json"})"},
           {"e/.editorconfig", "root=true\n[*\n"}});
    const Outcome outcome = call({"-i", "a.omb", "p/b.omb", "q/b.omb", "r/b.omb", "e/x.omb"});
    EXPECT_EQ(outcome.status, 2);
    EXPECT_EQ(outcome.out, "");
    for (const char* message :
         {"p/.ombrel-format.json:1:38: error: unknown option indentsize; did you mean indentSize?\n"
          "  {\"extends\": \"../base.json\", \"line\": {\"indentsize\": 2}}\n"
          "                                       ^\n",
          "base.json:1:13: error: this file would extend itself, directly or through others\n",
          "q/.ombrel-format.json:1:11: error: ", "r/.ombrel-format.json:1:13: error: there is no such file: ",
          "e/.editorconfig:2:1: error: expected a section"}) {
        EXPECT_NE(outcome.err.find(message), std::string::npos) << message << outcome.err;
    }
    EXPECT_EQ(folder->read("a.omb"), ugly);
    EXPECT_EQ(call({"a.omb"}).status, 0);
    EXPECT_EQ(call({"--no-config", "p/b.omb"}).status, 0);
    EXPECT_EQ(call({"--check-syntax", "p/b.omb"}).status, 0);
    EXPECT_EQ(call({"--config", "none", "a.omb"}).status, 2);
}

TEST_F(OptionsTest, FormatsEachFileByItsOwnOptions) {
    const std::string ugly = "if a\nx\nend\n";
    write({{"a.omb", ugly},
           {"p/b.omb", ugly},
           {"p/.ombrel-format.json", indent(1)},
           {"q/b.omb", ugly},
           {"q/.ombrel-format.json", R"({"engine": "tree"})"}});
    EXPECT_EQ(call({"a.omb", "p/b.omb"}).out, "if a\n    x\nend\nif a\n x\nend\n");
    EXPECT_EQ(call({"--stdin-filename", "p/c.omb"}, ugly).out, "if a\n x\nend\n");
    const Outcome withLines = call({"--lines=1:2", "q/b.omb"});
    EXPECT_EQ(withLines.status, 2);
    EXPECT_EQ(
        withLines.err,
        "q/b.omb: error: the tree engine lays out whole files: --lines doesn't go with it, and --since and "
        "--staged need --whole-files\n");
}

TEST_F(OptionsTest, LooksOnceIntoEachFolder) {
    write({{"p/.ombrel-format.json", R"({"extends": "../base.json"})"}, {"base.json", "{}"}});
    std::vector<std::string> paths;
    for (int i = 0; i < 100; ++i) {
        paths.push_back((i % 2 == 0 ? "p/q/" : "p/r/") + std::to_string(i) + ".omb");
    }
    const OptionsRequest request;
    OptionsResolver resolver(request, disk);
    EXPECT_TRUE(resolver.prepare(paths).empty());
    for (const std::string& path : paths) {
        resolver.resolve(path);
    }
    for (const auto& [path, count] : disk.lookUps) {
        EXPECT_EQ(count, 1) << path;
    }
    EXPECT_TRUE(disk.lookUps.contains(folder->getPath() / "p/.ombrel-format.json"));
    EXPECT_FALSE(
        disk.lookUps.contains(folder->getPath() / ".ombrel-format.json")); // p has one that stands alone

    disk.lookUps.clear();
    const OptionsRequest none{{}, true, {}};
    OptionsResolver indifferent(none, disk);
    EXPECT_TRUE(indifferent.prepare(paths).empty());
    EXPECT_EQ(indifferent.resolve("p/a.omb").line.indentSize, 4U);
    EXPECT_TRUE(disk.lookUps.empty());
}

TEST_F(OptionsTest, HandsTheTreeEngineOneText) {
    write({{"base.json",
            R"({"formatting": {"columnLimit": 90, "indentWidth": 2, "lineBreakBehavior": "SeparateLines"}})"},
           {".ombrel-format.json",
            "{\"extends\": \"base.json\", \"formatting\": {\"columnLimit\": 1e2, \"separatorPlacement\":\n"
            "{\"Statements\": \"EndOfLine\", \"Inheritance\": \"EndOfLine\", /* last */ \"Lists\": "
            "\"EndOfLine\",\n"
            "\"Expressions\": \"StartOfLine\"}},\n"
            "\"overrides\": [{\"files\": \"*.omb\", \"formatting\": {\"indentationEnabled\": true}}]}"}});
    const OptionsRequest request;
    OptionsResolver resolver(request, disk);
    resolver.prepare({"a.omb"});
    const FileOptions options = resolver.resolve("a.omb");
    EXPECT_EQ(encodeLossy(options.formattingJson),
              R"({"formatting": {"indentationEnabled": true, "indentWidth": 2, "columnLimit": 100, )"
              R"("lineBreakBehavior": "SeparateLines", "separatorPlacement": {"Statements": "EndOfLine", )"
              R"("Inheritance": "EndOfLine", "Lists": "EndOfLine", "Expressions": "StartOfLine"}}})");
    EXPECT_TRUE(options.indentationEnabled);
    EXPECT_FALSE(resolver.resolve("a.txt").indentationEnabled);
}

TEST_F(OptionsTest, RefusesWrongWordsOfTheCommandLine) {
    const std::map<std::string, std::string> messages = {
        {"line.indentSize", "expected KEY=VALUE"},
        {"line.indentsize=2", "unknown option line.indentsize; did you mean line.indentSize?"},
        {"line.indentSize=65", "expected a number from 0 to 64"},
        {"line.indentSize=", "expected a number"},
        {"formatting.columnLimit=4294967296", "expected a number from 0 to 4294967295"},
        {"formatting.enabled=1", "expected true or false"},
        {"engine=tre", "expected line or tree; did you mean tree?"},
        {"formatting.separatorPlacement={\"Lists\": \"EndOfLine\"}",
         "missing Statements, Expressions, Inheritance"},
        {"formatting.separatorPlacement={", "expected StartOfLine or EndOfLine"},
    };
    for (const auto& [assignment, message] : messages) {
        const Outcome outcome = call({"--set", assignment});
        EXPECT_EQ(outcome.status, 2);
        EXPECT_NE(outcome.err.find(message), std::string::npos) << outcome.err;
    }
    for (const Words& words : {Words{"--config=a", "--no-config"}, Words{"--init", "-i", "a"},
                               Words{"--print-config", "--check"}}) {
        EXPECT_EQ(call(words).status, 2);
    }
}

TEST_F(OptionsTest, WritesAStarterFileOnce) {
    EXPECT_EQ(call({"--init"}).status, 0);
    const std::string starter = folder->read(".ombrel-format.json");
    EXPECT_TRUE(readOptionsFile(starter).problems.empty());
    write({{".ombrel-format.json", "mine"}});
    const Outcome again = call({"--init"});
    EXPECT_EQ(again.status, 6);
    EXPECT_EQ(again.err, ".ombrel-format.json: error: can't make it: File exists\n");
    EXPECT_EQ(folder->read(".ombrel-format.json"), "mine");
}

} // namespace
