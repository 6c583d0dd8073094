#include "config/FormattingSection.h"
#include "support/ConfigText.h"
#include "support/GoldenSuite.h"
#include "support/MemoryConfigManager.h"
#include "support/TemporaryFolder.h"

#include <ca/config/ConfigManager.h>
#include <ca/config/ConfigSource.h>
#include <ca/config/getIssueSeverity.h>

#include <filesystem>
#include <numeric>
#include <regex>
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

std::shared_ptr<Config> makeLayers(const std::u16string& text,
                                   std::map<std::u16string, std::u16string> files) {
    const auto manager = std::make_shared<MemoryConfigManager>(std::move(files));
    return std::make_shared<Config>(std::make_shared<JsonConfigSource>(Path(u"top"), text, manager));
}

std::string show(const std::optional<ca::config::ConfigPosition>& position) {
    return position ? std::to_string(position->line) + ':' + std::to_string(position->column) : "?";
}

/// A line for each issue, sorted: "file:1:2-1:5 error: words".
std::string show(const Issues& issues) {
    std::set<std::string> lines;
    for (const ca::config::ConfigIssue& issue : issues) {
        const bool isWarning = issue.severity == ca::config::Severity::Warning;
        lines.insert(showText(issue.path.value().string()) + ':' + show(issue.start) + '-' + show(issue.end) +
                     (isWarning ? " warning: " : " error: ") + showMessage(*issue.message) + '\n');
    }
    return std::accumulate(lines.begin(), lines.end(), std::string());
}

/// The same as "file:1:2 words".
std::string showStarts(const Issues& issues) {
    static const std::regex end("-[0-9:?]+ (error|warning):");
    return std::regex_replace(show(issues), end, "");
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

/// The options that differ from the factory's, each with a space before it.
std::string show(const FormattingConfig& config) {
    std::ostringstream stream;
    const auto write = [&](const char* name, auto value, auto factoryValue) {
        if (value != factoryValue) {
            stream << ' ' << name << '=' << value;
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

/// The parts of a text between lines that begin with a mark.
std::vector<std::u16string> split(const std::u16string& text, const std::u16string& mark) {
    std::vector<std::u16string> parts;
    std::size_t start = 0;
    for (std::size_t at = text.find(mark); at != text.npos; at = text.find(mark, start)) {
        parts.push_back(text.substr(start, at - start));
        start = at + mark.size();
    }
    parts.push_back(text.substr(start));
    return parts;
}

/// A case has one or more texts with a line `---` between them, each perhaps followed by files that it
/// extends, with a line `=== name` before each. Shown are the options, the faults of the text and its files,
/// and those of its section.
std::u16string produceOptions(const std::u16string& input, const GoldenOptions&) {
    std::string shown;
    for (const std::u16string& part : split(input, u"---\n")) {
        std::vector<std::u16string> texts = split(part, u"=== ");
        std::map<std::u16string, std::u16string> files;
        for (std::size_t i = 1; i < texts.size(); ++i) {
            files[texts[i].substr(0, texts[i].find(u'\n'))] = texts[i].substr(texts[i].find(u'\n') + 1);
        }
        const auto config = makeLayers(texts.front(), files);
        const auto options = config->get<FormattingConfig>();
        const std::string section = show(options->getIssues());
        shown += "=" + show(*options) + "\n" + show(config->getSourceIssues()) +
                 (section.empty() ? "" : "in the section:\n" + section);
    }
    return std::u16string(shown.begin(), shown.end());
}

class ConfigCase : public testing::TestWithParam<GoldenCase> {};

TEST_P(ConfigCase, GivesOptionsAndIssues) {
    expectGolden(GetParam(), GetParam().results.front(), produceOptions);
}

INSTANTIATE_TEST_SUITE_P(Golden, ConfigCase, testing::ValuesIn(loadGoldenCases("config", produceOptions)),
                         getGoldenName);

/// Gives access to a private member: an explicit instantiation may name it.
template <auto member>
struct Access {
    friend void replaceSource(Config& config, std::shared_ptr<ca::config::ConfigSource> source) {
        config.*member = std::move(source);
    }
};
template struct Access<&Config::source>;
void replaceSource(Config& config, std::shared_ptr<ca::config::ConfigSource> source);

} // namespace

TEST(Configuration, LimitsAChainToThirtyTwoLayers) {
    std::map<std::u16string, std::u16string> files;
    for (char16_t i = 1; i <= 100; ++i) {
        files[std::u16string(1, u'\u1000' + i)] =
            u"{\"extends\": \"" + std::u16string(1, u'\u1001' + i) + u"\"}";
    }
    const auto deep = makeLayers(u"{\"extends\": \"\u1001\"}", files);
    EXPECT_EQ(showStarts(deep->getSourceIssues()), showText(std::u16string(1, u'\u1000' + 31)) +
                                                       ":1:13 extends: more than 32 files in one chain\n");
    EXPECT_EQ(show(*deep->get<FormattingConfig>()), "");
    std::u16string many;
    for (int i = 0; i < 33; ++i) {
        many += u"\"\u1001\",";
    }
    EXPECT_EQ(showStarts(makeLayers(u"{\"extends\": [" + many + u"]}", files)->getSourceIssues()),
              "top:1:13 extends: more than 32 files in one chain\n");
}

TEST(Configuration, MakesASectionByTheClassOfItsSource) {
    class OtherSource : public ca::config::ConfigSource {};
    const std::shared_ptr<ca::config::ConfigSource> sources[] = {
        std::make_shared<ca::config::FactoryConfigSource>(),
        std::make_shared<ca::config::LegacyConfigSource>(),
        std::make_shared<ca::config::PreferenceConfigSource>()};
    for (const auto& source : sources) {
        const auto options = Config(source).get<FormattingConfig>();
        EXPECT_EQ(show(*options), "");
        EXPECT_TRUE(options->getIssues().empty());
        EXPECT_EQ(options->getLineBreakBehavior(Kind::None),
                  FormattingConfig::LineBreakBehavior::AllowMultiplePerLine);
        EXPECT_EQ(options->getSeparatorPlacement(Kind::None),
                  FormattingConfig::SeparatorPlacement::StartOfLine);
    }
    for (const bool hasSource : {false, true}) {
        Config config(hasSource ? std::make_shared<OtherSource>() : nullptr);
        EXPECT_TRUE(config.getSourceIssues().empty());
        EXPECT_EQ(config.get<FormattingConfig>(), nullptr);
        replaceSource(config, sources[0]);
        EXPECT_EQ(config.get<FormattingConfig>(), nullptr) << "an empty section is made once, as any other";
    }
    EXPECT_EQ(ca::formatting::getFormattingSectionKey(), ca::astapi::StringId(u"Formatting"));
}

namespace {

/// Counts how often it is asked for its base, which is once for each section made from it, and
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

class ConfigManagerTest : public testing::Test {
protected:
    void write(const std::string& name, const std::string& bytes) const { disk.write(name, bytes); }

    /// The issues of a file in the folder that extends what it is told, with the folder's name cut out.
    std::string getIssues(const std::u16string& extends) const {
        const Path top((folder / "top").u16string());
        const JsonConfigSource source(top, u"{\"extends\": " + extends + u"}", manager);
        std::string text = showStarts(source.getIssues());
        for (auto i = text.find(folder.string()); i != std::string::npos; i = text.find(folder.string())) {
            text.erase(i, folder.string().size() + 1);
        }
        return text;
    }

    const TemporaryFolder disk;
    const fs::path folder = disk.getPath();
    std::shared_ptr<ca::config::ConfigManager> manager = std::make_shared<ca::config::ConfigManager>();
};

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

TEST_F(ConfigManagerTest, RecognizesAFileUnderEachOfItsNames) {
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
    fs::remove(folder / "base");
    EXPECT_EQ(getIssues(u"\"base\""), "base:1:2 expected the name of a field in double quotes\n");
}
