#include "support/TemporaryFolder.h"

#include "config/FormattingFactoryConfig.h"
#include "config/FormattingSection.h"

#include "options/FileOptions.h"
#include "options/OptionsFile.h"
#include "options/OptionsSchema.h"
#include "options/StarterFile.h"
#include "text/TextEncoding.h"

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

/// Each line says who takes its text: both readers, neither, or only the library, which ignores what is
/// outside of its section, and keys that it doesn't know. The schema says what the reader of options files
/// says.
TEST(OptionsSchema, SaysTheSameAsTheReaders) {
    std::istringstream table(readFile(OMBREL_SOURCE_DIR "/tests/golden/options_verdicts.txt"));
    std::vector<std::string> takers;
    std::vector<std::string> texts;
    for (std::string taker, text; table >> taker >> std::ws && std::getline(table, text);) {
        takers.push_back(taker);
        texts.push_back(text);
    }
    const std::vector<bool> verdicts = validate(texts);
    ASSERT_EQ(verdicts.size(), texts.size());
    for (std::size_t i = 0; i < texts.size(); ++i) {
        EXPECT_EQ(verdicts[i], takers[i] == "both") << texts[i];
        EXPECT_EQ(readOptionsFile(texts[i]).problems.empty(), takers[i] == "both") << texts[i];
        EXPECT_EQ(readByLibrary(texts[i])->getIssues().empty(), takers[i] != "neither") << texts[i];
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
    EXPECT_TRUE(loud.overrides.size() == 1 && loud.extensions.size() == 1 && !loud.isRoot);
    ASSERT_EQ(loud.settings.size(), getOptions().size());
    OptionValues values;
    for (const Setting& setting : loud.settings) {
        EXPECT_EQ(getJson(setting.value),
                  getJson(parseValue(*setting.option, setting.option->factory).value()));
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
        return std::tuple(
            options.getEnabled(), options.getTrimUnnecessaryWhitespace(), options.getFunctionIndentStyle(),
            options.getIndentCaseBlocks(), options.getIndentBlankLines(), options.getIndentCharacter(),
            options.getIndentWidth(), options.getLineBreakingEnabled(), options.getColumnLimit(),
            options.getLineBreakBehavior(kind), options.getSeparatorPlacement(kind));
    };
    EXPECT_TRUE(config->getIssues().empty());
    EXPECT_TRUE(config->getIndentationEnabled()); // the one default that differs from the library's
    EXPECT_TRUE(getAnswers(*config) == getAnswers(factory));
}

} // namespace
