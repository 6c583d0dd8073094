#include "config/FormattingSection.h"
#include "support/ConfigText.h"
#include "support/MemoryConfigManager.h"

#include <ca/config/ConfigManager.h>
#include <ca/config/ConfigSource.h>
#include <ca/config/getIssueSeverity.h>
#include <ca/utils/JsonReader.h>

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <set>
#include <sstream>
#include <thread>

using ca::config::Config;
using ca::config::JsonConfigSource;
using ca::formatting::FormattingConfig;
using Kind = FormattingConfig::ContainerKind;
using Path = fl::filesystem::path;
using Issues = std::unordered_set<ca::config::ConfigIssue>;

namespace {

std::shared_ptr<Config> makeLayers(std::optional<Path> path, const std::u16string& text,
                                   std::map<std::u16string, std::u16string> files = {}) {
    const auto manager = std::make_shared<MemoryConfigManager>(std::move(files));
    return std::make_shared<Config>(std::make_shared<JsonConfigSource>(std::move(path), text, manager));
}

/// Issues as "file:line:column words", sorted; the file of the text itself is left out.
std::string show(const Issues& issues) {
    std::set<std::string> lines;
    for (const ca::config::ConfigIssue& issue : issues) {
        const std::string file =
            issue.path && issue.path->string() != u"top" ? showText(issue.path->string()) + ':' : "";
        lines.insert(file + showIssue(issue.start->line, issue.start->column, *issue.message));
    }
    std::string text;
    for (const std::string& line : lines) {
        text += line;
    }
    return text;
}

/// The numbers of a per-construct option, a digit for each kind in their order.
template <class Value>
std::string showTable(const FormattingConfig& config, Value (FormattingConfig::*getter)(Kind) const) {
    std::string digits;
    for (int kind = 0; kind < static_cast<int>(Kind::None); ++kind) {
        digits += std::to_string(static_cast<int>((config.*getter)(static_cast<Kind>(kind))));
    }
    return digits;
}

/// The options that differ from the factory's, a blank behind each.
std::string show(const FormattingConfig& config) {
    std::ostringstream stream;
    const auto write = [&](const char* name, auto value, auto factoryValue) {
        if (value != factoryValue) {
            stream << name << '=' << value << ' ';
        }
    };
    write("enabled", config.getEnabled(), false);
    write("trim", config.getTrimUnnecessaryWhitespace(), false);
    write("indentation", config.getIndentationEnabled(), false);
    write("style", static_cast<int>(config.getFunctionIndentStyle()), 2);
    write("case", config.getIndentCaseBlocks(), true);
    write("blank", config.getIndentBlankLines(), false);
    write("character", static_cast<int>(config.getIndentCharacter()), 0);
    write("width", config.getIndentWidth(), 4U);
    write("breaking", config.getLineBreakingEnabled(), false);
    write("limit", config.getColumnLimit(), 80U);
    write("behavior", showTable(config, &FormattingConfig::getLineBreakBehavior), std::string(18, '2'));
    write("placement", showTable(config, &FormattingConfig::getSeparatorPlacement), std::string(18, '0'));
    return stream.str();
}

struct Row {
    std::u16string section;
    const char* options;
    const char* issues;
};

/// Issues are those of the section, which stands on a line of its own.
template <std::size_t count>
void check(const Row (&rows)[count]) {
    for (const Row& row : rows) {
        const auto config = makeLayers(std::nullopt, u"{\"formatting\":\n" + row.section + u"\n}");
        EXPECT_EQ(show(config->getSourceIssues()), "") << showText(row.section);
        const auto options = config->get<FormattingConfig>();
        EXPECT_EQ(show(*options), row.options) << showText(row.section);
        EXPECT_EQ(show(options->getIssues()), row.issues) << showText(row.section);
    }
}

} // namespace

TEST(Configuration, TakesPlainOptionsOneByOne) {
    const Row rows[] = {
        {u"{}", "", ""},
        {u"{\"Enabled\": 1, \"indentwidth\": \"x\"}", "", ""},
        {u"[]", "", "2:1 expected an object, found an array\n"},
        {u"{\"enabled\": true, \"trimUnnecessaryWhitespace\": true, \"indentationEnabled\": true,"
         u" \"functionIndentStyle\": \"Classic\", \"indentCaseBlocks\": false, \"indentBlankLines\": true,"
         u" \"indentCharacter\": \"Tab\", \"indentWidth\": 0, \"lineBreakingEnabled\": true, "
         u"\"columnLimit\": 0}",
         "enabled=1 trim=1 indentation=1 style=0 case=0 blank=1 character=1 width=0 breaking=1 limit=0 ", ""},
        {u"{\"functionIndentStyle\": \"IndentNested\", \"indentCharacter\": \"Tab\"}", "style=1 character=1 ",
         ""},
        {u"{\"enabled\": 1, \"columnLimit\": 100}", "limit=100 ",
         "2:13 enabled: expected true or false, found 1\n"},
        {u"{\"trimUnnecessaryWhitespace\": null, \"indentCaseBlocks\": \"false\"}", "",
         "2:31 trimUnnecessaryWhitespace: expected true or false, found null\n"
         "2:57 indentCaseBlocks: expected true or false, found \"false\"\n"},
        {u"{\"functionIndentStyle\": \"indentAll\", \"indentCharacter\": \"\\t\"}", "",
         "2:25 invalid functionIndentStyle\n2:57 invalid indentCharacter\n"},
        {u"{\"functionIndentStyle\": \"\", \"indentCharacter\": {\"a\": 1}}", "",
         "2:25 functionIndentStyle: expected a string that is not empty, found \"\"\n"
         "2:48 indentCharacter: expected a string that is not empty, found an object\n"},
    };
    check(rows);
}

TEST(Configuration, TakesWholeNumbersHoweverTheyAreWritten) {
    const char* const words = "2:17 indentWidth: expected a whole number from 0 to 4294967295, found ";
    for (const auto& [number, width] :
         std::map<std::u16string, const char*>{{u"4294967295", "width=4294967295 "},
                                               {u"1e3", "width=1000 "},
                                               {u"7.0", "width=7 "},
                                               {u"70E-1", "width=7 "},
                                               {u"-0", "width=0 "}}) {
        check({Row{u"{\"indentWidth\": " + number + u"}", width, ""}});
    }
    for (const auto& [value, found] :
         std::map<std::u16string, const char*>{{u"-1", "-1"},
                                               {u"4294967296", "4294967296"},
                                               {u"4.5", "4.5"},
                                               {u"1e300", "1e+300"},
                                               {u"99999999999999999999", "1e+20"},
                                               {u"\"four\"", "\"four\""},
                                               {u"[]", "an array"}}) {
        check({Row{u"{\"indentWidth\": " + value + u"}", "", (words + std::string(found) + '\n').c_str()}});
    }
}

TEST(Configuration, TakesAnOptionForAllConstructsWholeOrNotAtAll) {
    const std::u16string rest = u"\"Expressions\": \"AllowSingleLine\", \"Lists\": \"AllowMultiplePerLine\","
                                u" \"Inheritance\": \"SeparateLines\"}}";
    const Row rows[] = {
        {u"{\"lineBreakBehavior\": \"SeparateLines\", \"separatorPlacement\": \"EndOfLine\"}",
         "behavior=000000000000000000 placement=111111111111111111 ", ""},
        {u"{\"lineBreakBehavior\": {\"Statements\": \"SeparateLines\", " + rest,
         "behavior=000000001111112220 ", ""},
        {u"{\"lineBreakBehavior\": {\"Statements\": {\"If\": \"AllowSingleLine\", \"While\": "
         u"\"SeparateLines\","
         u" \"ForParfor\": {\"For\": \"AllowSingleLine\", \"Parfor\": \"SeparateLines\"}, \"Switch\": "
         u"\"SeparateLines\","
         u" \"Case\": \"SeparateLines\", \"Try\": \"SeparateLines\", \"Spmd\": \"AllowSingleLine\"}, " +
             rest,
         "behavior=101000011111112220 ", ""},
        {u"{\"lineBreakBehavior\": {\"If\": 1, \"Statements\": \"SeparateLines\", " + rest, "",
         "2:24 invalid field in GetHierarchicalOption: If\n"},
        {u"{\"lineBreakBehavior\": {\"Statements\": {\"For\": \"AllowSingleLine\"}, " + rest, "",
         "2:38 missing field: Case\n2:38 missing field: ForParfor\n2:38 missing field: If\n"
         "2:38 missing field: Spmd\n2:38 missing field: Switch\n2:38 missing field: Try\n2:38 missing field: "
         "While\n"
         "2:39 invalid field in GetHierarchicalOption: For\n"},
        {u"{\"lineBreakBehavior\": {\"Statements\": \"SeparateLines\", \"Lists\": \"None\", \"Inheritance\": "
         u"{},"
         u" \"Expressions\": {\"x\": 0}}}",
         "",
         "2:106 missing field: Colon\n2:106 missing field: Comparison\n2:106 missing field: Exponent\n"
         "2:106 missing field: Logical\n2:106 missing field: MultiplyDivide\n2:106 missing field: PlusMinus\n"
         "2:107 invalid field in GetHierarchicalOption: x\n"
         "2:64 invalid lineBreakBehavior\n"
         "2:87 lineBreakBehavior.Inheritance: expected a string that is not empty, found an object\n"},
        {u"{\"separatorPlacement\": {}}", "",
         "2:24 missing field: Expressions\n2:24 missing field: Inheritance\n2:24 missing field: Lists\n"
         "2:24 missing field: Statements\n"},
        {u"{\"separatorPlacement\": 1, \"lineBreakBehavior\": [\"SeparateLines\"]}", "",
         "2:24 non String/Object in GetHierarchicalOption\n2:48 non String/Object in "
         "GetHierarchicalOption\n"},
        {u"{\"separatorPlacement\": \"SeparateLines\", \"lineBreakBehavior\": \"\"}", "",
         "2:24 invalid separatorPlacement\n"
         "2:62 lineBreakBehavior: expected a string that is not empty, found \"\"\n"},
    };
    check(rows);
}

TEST(Configuration, LosesNoFaultOfThreeLayers) {
    const auto config = makeLayers(
        Path(u"top"),
        u"{\"extends\": \"a/one\", \"formatting\": {\"indentWidth\": -1, \"indentCaseBlocks\": false}}",
        {{u"a/one", u"{\"extends\": [\"../two\"], \"formatting\": {\"indentWidth\": 3, \"columnLimit\": 0.5,"
                    u" \"lineBreakBehavior\": {}}, \"x\": 1, \"x\": 1}"},
         {u"two", u"{\"extends\": 3,\n\"formatting\": {\"indentWidth\": 2, \"columnLimit\": 70,"
                  u" \"lineBreakBehavior\": \"SeparateLines\", \"enabled\": 0}}"}});
    EXPECT_EQ(show(*config->get<FormattingConfig>()), "case=0 width=3 limit=70 behavior=000000000000000000 ");
    EXPECT_EQ(show(config->get<FormattingConfig>()->getIssues()),
              "1:52 indentWidth: expected a whole number from 0 to 4294967295, found -1\n");
    EXPECT_EQ(show(config->getSourceIssues()),
              "a/one:1:112 \"x\" is there twice, and only the last one counts\n"
              "two:1:13 extends: expected a path or a list of paths, found 3\n");
    const auto& source = dynamic_cast<const JsonConfigSource&>(*config->getSource());
    EXPECT_EQ(show(source.getBaseConfig()->get<FormattingConfig>()->getIssues()),
              "a/one:1:73 columnLimit: expected a whole number from 0 to 4294967295, found 0.5\n"
              "a/one:1:99 missing field: Expressions\na/one:1:99 missing field: Inheritance\n"
              "a/one:1:99 missing field: Lists\na/one:1:99 missing field: Statements\n");
}

TEST(Configuration, LaysLaterEntriesOverEarlierOnes) {
    const auto width = [](int value) {
        return u"\"formatting\": {\"indentWidth\": " +
               std::u16string(1, static_cast<char16_t>(u'0' + value)) + u"}}";
    };
    const std::map<std::u16string, std::u16string> files = {
        {u"a", u"{\"extends\": \"shared\", " + width(1)},
        {u"b", u"{\"extends\": \"shared\", \"formatting\": {\"enabled\": true}}"},
        {u"shared", u"{" + width(5)},
        {u"ring", u"{\"extends\": [\"b\", \"loop\"]}"},
        {u"loop", u"{\"extends\": \"ring\", " + width(7)},
        {u"bad", u"{"}};
    std::u16string again; // far more than 32 layers if a file had a place each time
    for (int i = 0; i < 16; ++i) {
        again += u"\"a\", \"b\",";
    }
    const std::tuple<std::u16string, const char*, const char*> rows[] = {
        {u"[" + again + u"]", "enabled=1 width=5 ", ""},
        {u"[\"b\", \"a\"]", "enabled=1 width=1 ", ""},
        {u"[\"a\", \"b\"]", "enabled=1 width=5 ", ""}, // what b extends lies over a
        {u"[\"a\", \"./x/../a\"]", "width=1 ", ""},
        {u"\"ring\"", "enabled=1 width=7 ", "loop:1:13 extends: \"ring\" extends this file in turn\n"},
        {u"\"top\"", "", "1:13 extends: \"top\" extends this file in turn\n"},
        {u"[\"a\", \"gone\"]", "width=1 ", "1:19 extends: can't read \"gone\": there is no such file\n"},
        {u"[\"a\", [], \"bad\"]", "width=1 ",
         "1:19 extends: expected a path or a list of paths, found an array\n"
         "bad:1:2 expected the name of a field in double quotes\n"},
        {u"[]", "", ""},
    };
    for (const auto& [extends, options, issues] : rows) {
        const auto config = makeLayers(Path(u"top"), u"{\"extends\": " + extends + u"}", files);
        EXPECT_EQ(show(*config->get<FormattingConfig>()), options) << showText(extends);
        EXPECT_EQ(show(config->getSourceIssues()), issues) << showText(extends);
    }
    EXPECT_EQ(show(makeLayers(std::nullopt, u"{\"extends\": \"a\"}", files)->getSourceIssues()),
              "1:13 extends: paths count from the file that they stand in, and this text is in none\n");
}

TEST(Configuration, EndsAChainAtThirtyTwoLayers) {
    std::map<std::u16string, std::u16string> files;
    for (char16_t i = 1; i <= 100; ++i) {
        files[std::u16string(1, u'\u1000' + i)] =
            u"{\"extends\": \"" + std::u16string(1, u'\u1001' + i) + u"\"}";
    }
    const auto deep = makeLayers(Path(u"top"), u"{\"extends\": \"\u1001\"}", files);
    EXPECT_EQ(show(deep->getSourceIssues()), showText(std::u16string(1, u'\u1000' + 31)) +
                                                 ":1:13 extends: more than 32 files in one chain\n");
    EXPECT_EQ(show(*deep->get<FormattingConfig>()), "");
    std::u16string many;
    for (int i = 0; i < 33; ++i) {
        many += u"\"\u1001\",";
    }
    EXPECT_EQ(show(makeLayers(Path(u"top"), u"{\"extends\": [" + many + u"]}", files)->getSourceIssues()),
              "1:13 extends: more than 32 files in one chain\n");
}

TEST(Configuration, MakesASectionByTheClassOfItsSource) {
    class OtherSource : public ca::config::ConfigSource {};
    EXPECT_EQ(Config(nullptr).get<FormattingConfig>(), nullptr);
    EXPECT_TRUE(Config(nullptr).getSourceIssues().empty());
    EXPECT_EQ(Config(std::make_shared<OtherSource>()).get<FormattingConfig>(), nullptr);
    const std::shared_ptr<ca::config::ConfigSource> sources[] = {
        std::make_shared<ca::config::FactoryConfigSource>(),
        std::make_shared<ca::config::LegacyConfigSource>(),
        std::make_shared<ca::config::PreferenceConfigSource>(),
        std::make_shared<JsonConfigSource>(std::nullopt, u"nonsense", nullptr)};
    for (const auto& source : sources) {
        const Config config(source);
        EXPECT_EQ(show(*config.get<FormattingConfig>()), "");
        EXPECT_EQ(config.get<FormattingConfig>(), config.get<FormattingConfig>());
    }
}

namespace {

/// Counts how often it is asked for what lies underneath, which is once for each section made from it, and
/// fails as often as told.
class CountingSource : public JsonConfigSource {
public:
    explicit CountingSource(int failures)
        : JsonConfigSource(std::nullopt, u"{\"formatting\": {\"indentWidth\": 9}}", nullptr),
          failures(failures) {}

    std::shared_ptr<Config> getBaseConfig() const override {
        if (++count <= failures) {
            throw std::bad_alloc();
        }
        return JsonConfigSource::getBaseConfig();
    }

    mutable int count = 0;

private:
    int failures;
};

} // namespace

TEST(Configuration, MakesASectionOnceForEightThreads) {
    for (int round = 0; round < 50; ++round) {
        const auto source = std::make_shared<CountingSource>(0);
        const Config config(source);
        std::vector<std::shared_ptr<FormattingConfig>> sections(8);
        {
            std::vector<std::jthread> threads;
            for (auto& section : sections) {
                threads.emplace_back([&] { section = config.get<FormattingConfig>(); });
            }
        }
        EXPECT_EQ(source->count, 1);
        EXPECT_EQ(sections, std::vector(8, sections.front()));
        EXPECT_EQ(sections.front()->getIndentWidth(), 9U);
    }
}

TEST(Configuration, TriesAgainAfterAnException) {
    const auto source = std::make_shared<CountingSource>(2);
    const Config config(source);
    EXPECT_THROW(config.get<FormattingConfig>(), std::bad_alloc);
    EXPECT_THROW(config.get<FormattingConfig>(), std::bad_alloc);
    EXPECT_EQ(config.get<FormattingConfig>()->getIndentWidth(), 9U);
    EXPECT_EQ(source->count, 3);
}

namespace {

namespace fs = std::filesystem;

/// A folder that is there as long as the test.
class ConfigManagerTest : public testing::Test {
protected:
    ConfigManagerTest() {
        std::string name = fs::temp_directory_path() / "ombrel-config-XXXXXX";
        folder = fs::canonical(mkdtemp(name.data()));
    }
    ~ConfigManagerTest() override { fs::remove_all(folder); }

    void write(const std::string& name, const std::string& bytes) const {
        std::ofstream(folder / name, std::ios::binary) << bytes;
    }

    /// The issues of a file in the folder that extends what it is told, with the folder's name cut out.
    std::string getIssues(const std::u16string& extends) const {
        const Path top((folder / "top").u16string());
        const JsonConfigSource source(top, u"{\"extends\": " + extends + u"}", manager);
        std::string text = show(source.getIssues());
        for (auto i = text.find(folder.string()); i != std::string::npos; i = text.find(folder.string())) {
            text.erase(i, folder.string().size() + 1);
        }
        return text;
    }

    fs::path folder;
    std::shared_ptr<ca::config::ConfigManager> manager = std::make_shared<ca::config::ConfigManager>();
};

TEST(Configuration, WarnsOfWhatIsSaidTwiceOnly) {
    using ca::config::Severity;
    const std::map<std::u16string, Severity> severities = {
        {u"{\"a\": 1, \"a\": 2}", Severity::Warning},
        {u"{\"extends\": 1}", Severity::Error},
        {u"{", Severity::Error},
    };
    for (const auto& [text, severity] : severities) {
        const Issues issues = makeLayers(Path(u"top"), text)->getSourceIssues();
        ASSERT_EQ(issues.size(), 1U) << showText(text);
        EXPECT_EQ(issues.begin()->severity, severity) << showText(text);
    }
    EXPECT_EQ(ca::config::getIssueSeverity(nullptr), Severity::Error);
}

} // namespace

TEST_F(ConfigManagerTest, ReadsRegularFilesInUtf8Only) {
    write("good", "\xEF\xBB\xBF{\"\xC3\xA9\": 1}");
    write("latin", "{\"\xE9\": 1}");
    write("large", "{}");
    fs::resize_file(folder / "large", ca::utils::maximalJsonSize + 1);
    fs::create_directory(folder / "folder");
    fs::create_symlink("/dev/zero", folder / "endless");
    fs::create_symlink("endless", folder / "link");
    fs::create_symlink("self", folder / "self");
    EXPECT_EQ(getIssues(u"[\"good\", \"folder/../good\", \"" + folder.u16string() + u"/good\"]"), "");
    for (const auto& [name, reason] :
         std::map<std::u16string, std::string>{{u"latin", "it is not UTF-8"},
                                               {u"large", "it is larger than 16 MB"},
                                               {u"folder", "it is no regular file"},
                                               {u"link", "it is no regular file"},
                                               {u"gone/x", "there is no such file"},
                                               {u"good/x", "there is no such file"},
                                               {u"self", "Too many levels of symbolic links"},
                                               {u"", "no file can have this name"}}) {
        EXPECT_EQ(getIssues(u'"' + name + u'"'),
                  "top:1:13 extends: can't read \"" + showText(name) + "\": " + reason + '\n');
    }
    EXPECT_EQ(getIssues(u"\"good\\u0000\""),
              "top:1:13 extends: can't read \"good\uFFFD\": no file can have this name\n");
}

TEST_F(ConfigManagerTest, KnowsAFileByAnyName) {
    fs::create_directory_symlink(".", folder / "here");
    fs::create_symlink("top", folder / "alias");
    write("top", "{}");
    EXPECT_EQ(getIssues(u"\"here/here/alias\""),
              "top:1:13 extends: \"here/here/alias\" extends this file in turn\n");
    write("loop", "{\"extends\": [\"here/loop\", \"alias\"]}");
    EXPECT_EQ(getIssues(u"\"loop\""), "loop:1:14 extends: \"here/loop\" extends this file in turn\n"
                                      "loop:1:27 extends: \"alias\" extends this file in turn\n");
    write("\u00FC b", "{\"extends\": \".//\u00FC b\"}");
    EXPECT_EQ(getIssues(u"\"\u00FC b\""),
              "\u00FC b:1:13 extends: \".//\u00FC b\" extends this file in turn\n");
}

TEST_F(ConfigManagerTest, ReadsAFileOnceAndAMissingOneAgain) {
    EXPECT_NE(getIssues(u"\"base\""), "");
    write("base", "{");
    EXPECT_EQ(getIssues(u"\"base\""), "base:1:2 expected the name of a field in double quotes\n");
    write("base", "{}");
    EXPECT_NE(getIssues(u"\"base\""), "");
    const Path path((folder / "base").u16string());
    EXPECT_EQ(manager->getDocument(path), manager->getDocument(path));
}
