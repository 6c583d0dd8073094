#include "config/FormattingFactoryConfig.h"
#include "config/FormattingSection.h"

#include <ombrel-format/options/FileOptions.h>
#include <ombrel-format/options/OptionsFile.h>
#include <ombrel-format/options/OptionsSchema.h>
#include <ombrel-format/options/StarterFile.h>
#include <ombrel-format/text/TextEncoding.h>

#include <ca/config/Config.h>

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <fstream>
#include <memory>
#include <regex>
#include <sstream>

#include <unistd.h>

namespace {

using namespace ombrel;
using ca::formatting::FormattingConfig;

const std::string schemaPath = OMBREL_SOURCE_DIR "/docs/ombrel-format.schema.json";

std::string readFile(const std::string& path) {
    std::ifstream stream(path);
    return (std::ostringstream() << stream.rdbuf()).str();
}

/// What an independent validator says about each text, one line each.
std::vector<bool> validate(const std::vector<std::string>& texts) {
    const std::string input = testing::TempDir() + "options-schema-test-" + std::to_string(::getpid());
    std::ofstream stream(input);
    for (const std::string& text : texts) {
        stream << text << '\n';
    }
    stream.close();
    const std::string command =
        "python3 '" OMBREL_SOURCE_DIR "/tests/schema/validate' '" + schemaPath + "' <'" + input + "'";
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> pipe(::popen(command.c_str(), "r"), ::pclose);
    std::vector<bool> verdicts;
    std::array<char, 64> line;
    while (std::fgets(line.data(), static_cast<int>(line.size()), pipe.get()) != nullptr) {
        verdicts.push_back(std::string(line.data()) == "valid\n");
    }
    std::remove(input.c_str());
    return verdicts;
}

std::shared_ptr<FormattingConfig> readByLibrary(const std::string& text) {
    const auto source =
        std::make_shared<ca::config::JsonConfigSource>(std::nullopt, decodeLossy(text), nullptr);
    return ca::config::Config(source).get<FormattingConfig>();
}

struct Case {
    const char* text;
    bool isGood;
    bool isGoodForLibrary; ///< which ignores what is outside of its section, and keys that it doesn't know
};

const Case cases[] = {
    {R"({})", true, true},
    {R"([])", false, true},
    {R"({"$schema": "x", "root": false, "extends": [], "overrides": [], "line": {}, "formatting": {}})", true,
     true},
    {R"({"$schema": 1})", false, true},
    {R"({"root": 0})", false, true},
    {R"({"Root": true})", false, true},
    {R"({"engine": "tree"})", true, true},
    {R"({"engine": "Tree"})", false, true},
    {R"({"engine": null})", false, true},
    {R"({"line": {"indentSize": 0, "tabSize": 64, "useTabs": true, "functionStyle": "mixed", "blankLines": "indent"}})",
     true, true},
    {R"({"line": {"indentSize": 64.0, "tabSize": 1e0}})", true, true},
    {R"({"line": {"indentSize": 65}})", false, true},
    {R"({"line": {"indentSize": -1}})", false, true},
    {R"({"line": {"indentSize": 2.5}})", false, true},
    {R"({"line": {"indentSize": "2"}})", false, true},
    {R"({"line": {"tabSize": 0}})", false, true},
    {R"({"line": {"useTabs": "true"}})", false, true},
    {R"({"line": {"functionStyle": ""}})", false, true},
    {R"({"line": {"columnLimit": 80}})", false, true},
    {R"({"line": []})", false, true},
    {R"({"formatting": {"enabled": true, "trimUnnecessaryWhitespace": true, "indentationEnabled": true,)"
     R"("functionIndentStyle": "IndentNested", "indentCaseBlocks": false, "indentBlankLines": true,)"
     R"("indentCharacter": "Tab", "indentWidth": 4294967295, "lineBreakingEnabled": true, "columnLimit": 0}})",
     true, true},
    {R"({"formatting": {"columnLimit": 4294967296}})", false, false},
    {R"({"formatting": {"columnLimit": -0.0}})", true, true},
    {R"({"formatting": {"indentWidth": null}})", false, false},
    {R"({"formatting": {"enabled": 1}})", false, false},
    {R"({"formatting": {"functionIndentStyle": "indentAll"}})", false, false},
    {R"({"formatting": {"indentCharacter": []}})", false, false},
    {R"({"formatting": {"columLimit": 80}})", false, true},
    {R"({"formatting": {"lineBreakBehavior": "SeparateLines", "separatorPlacement": "EndOfLine"}})", true,
     true},
    {R"({"formatting": {"lineBreakBehavior": "EndOfLine"}})", false, false},
    {R"({"formatting": {"lineBreakBehavior": {}}})", false, false},
    {R"({"formatting": {"lineBreakBehavior": {"Statements": "SeparateLines", "Expressions": "AllowSingleLine",)"
     R"("Lists": {"ParenthesisList": "SeparateLines", "BracketList": "SeparateLines", "BraceList": "SeparateLines"},)"
     R"("Inheritance": "SeparateLines"}}})",
     true, true},
    {R"({"formatting": {"separatorPlacement": {"Statements": {"If": "EndOfLine", "While": "EndOfLine",)"
     R"("ForParfor": {"For": "EndOfLine", "Parfor": "EndOfLine"}, "Switch": "EndOfLine", "Case": "EndOfLine",)"
     R"("Try": "EndOfLine", "Spmd": "EndOfLine"}, "Expressions": {"Exponent": "EndOfLine",)"
     R"("MultiplyDivide": "EndOfLine", "PlusMinus": "EndOfLine", "Comparison": "EndOfLine", "Logical": "EndOfLine",)"
     R"("Colon": "EndOfLine"}, "Lists": "EndOfLine", "Inheritance": "StartOfLine"}}})",
     true, true},
    {R"({"formatting": {"lineBreakBehavior": {"Statements": "SeparateLines", "Expressions": "AllowSingleLine",)"
     R"("Lists": "SeparateLines"}}})",
     false, false},
    {R"({"formatting": {"lineBreakBehavior": {"Statements": "SeparateLines", "Expressions": "AllowSingleLine",)"
     R"("Lists": "SeparateLines", "Inheritance": {}, "If": "SeparateLines"}}})",
     false, false},
    {R"({"extends": "a.json", "overrides": [{"files": "*.omb", "engine": "line"},)"
     R"({"files": ["a", "b/**"], "line": {"indentSize": 1}, "formatting": {"columnLimit": 1}}]})",
     true, true},
    {R"({"extends": ""})", false, true},
    {R"({"extends": ["a", 3]})", false, true},
    {R"({"overrides": {}})", false, true},
    {R"({"overrides": [{"line": {}}]})", false, true},
    {R"({"overrides": [{"files": []}]})", false, true},
    {R"({"overrides": [{"files": [""]}]})", false, true},
    {R"({"overrides": [{"files": "a", "root": true}]})", false, true},
    {R"({"overrides": [{"files": "a", "line": {"indentSize": 99}}]})", false, true},
};

TEST(OptionsSchema, SaysTheSameAsTheReaders) {
    std::vector<std::string> texts;
    for (const Case& row : cases) {
        texts.emplace_back(row.text);
    }
    const std::vector<bool> verdicts = validate(texts);
    ASSERT_EQ(verdicts.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(verdicts[i], cases[i].isGood) << texts[i];
        EXPECT_EQ(readOptionsFile(texts[i]).problems.empty(), cases[i].isGood) << texts[i];
        EXPECT_EQ(readByLibrary(texts[i])->getIssues().empty(), cases[i].isGoodForLibrary) << texts[i];
    }
}

TEST(OptionsSchema, IsTheOneInTheDocuments) {
    EXPECT_TRUE(readFile(schemaPath) == makeOptionsSchema())
        << "ombrel-format --schema > docs/ombrel-format.schema.json";
}

TEST(StarterFile, ShowsEveryOptionWithItsDefault) {
    const std::string starter = makeStarterFile();
    const OptionsFile quiet = readOptionsFile(starter);
    EXPECT_TRUE(quiet.problems.empty() && quiet.settings.empty());

    const OptionsFile loud = readOptionsFile(std::regex_replace(starter, std::regex("// \""), "\""));
    EXPECT_TRUE(loud.problems.empty());
    ASSERT_EQ(loud.settings.size(), getOptions().size());
    OptionValues values;
    for (const Setting& setting : loud.settings) {
        EXPECT_EQ(getJson(setting.value),
                  getJson(std::get<0>(parseValue(*setting.option, setting.option->factory))));
        values.set(*setting.option, setting.value);
    }

    const LineOptions line = makeFileOptions(values).line;
    const LineOptions factoryLine;
    EXPECT_EQ(std::tuple(line.indentSize, line.tabSize, line.useTabs, line.functionStyle, line.blankLines),
              std::tuple(factoryLine.indentSize, factoryLine.tabSize, factoryLine.useTabs,
                         factoryLine.functionStyle, factoryLine.blankLines));

    const auto config = readByLibrary(encodeLossy(makeFileOptions(values).formattingJson));
    const ca::formatting::FormattingFactoryConfig factory(std::shared_ptr<ca::config::FactoryConfigSource>{});
    const auto getAnswers = [](const FormattingConfig& options) {
        const auto kind = FormattingConfig::ContainerKind::Inheritance;
        return std::tuple(options.getEnabled(), options.getTrimUnnecessaryWhitespace(),
                          options.getIndentationEnabled(), options.getFunctionIndentStyle(),
                          options.getIndentCaseBlocks(), options.getIndentBlankLines(),
                          options.getIndentCharacter(), options.getIndentWidth(),
                          options.getLineBreakingEnabled(), options.getColumnLimit(),
                          options.getLineBreakBehavior(kind), options.getSeparatorPlacement(kind));
    };
    EXPECT_TRUE(config->getIssues().empty());
    EXPECT_TRUE(getAnswers(*config) == getAnswers(factory));
}

} // namespace
