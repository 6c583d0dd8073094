#include "config/FormattingFactoryConfig.h"

#include <gtest/gtest.h>

#include <sstream>

using ca::formatting::FormattingConfig;
using ca::formatting::FormattingFactoryConfig;
using Kind = FormattingConfig::ContainerKind;

namespace {

template <class Enumeration>
std::string getText(int number) {
    std::ostringstream stream;
    stream << static_cast<Enumeration>(number);
    return stream.str();
}

} // namespace

TEST(FormattingConfig, WritesTheNamesThatThereAreAndNothingElse) {
    EXPECT_EQ(getText<Kind>(0), "If");
    EXPECT_EQ(getText<Kind>(13), "Colon");
    EXPECT_EQ(getText<Kind>(17), "Inheritance");
    EXPECT_EQ(getText<FormattingConfig::LineBreakBehavior>(2), "AllowMultiplePerLine");
    EXPECT_EQ(getText<FormattingConfig::SeparatorPlacement>(1), "EndOfLine");
    for (const int number : {18, 19, -1, 1 << 30}) {
        EXPECT_EQ(getText<Kind>(number), "");
        EXPECT_EQ(getText<FormattingConfig::LineBreakBehavior>(number), "");
        EXPECT_EQ(getText<FormattingConfig::SeparatorPlacement>(number), "");
    }
    EXPECT_EQ(getText<FormattingConfig::LineBreakBehavior>(3), "");
    EXPECT_EQ(getText<FormattingConfig::SeparatorPlacement>(2), "");
}

TEST(FormattingConfig, HashesAKindToItsSignExtendedNumber) {
    EXPECT_EQ(std::hash<Kind>()(Kind::None), 18U);
    EXPECT_EQ(std::hash<Kind>()(static_cast<Kind>(-2)), SIZE_MAX - 1);
}

TEST(FormattingConfig, IsSwitchedOffByTheFactoryWhateverTheSource) {
    const FormattingFactoryConfig configs[] = {
        FormattingFactoryConfig(std::shared_ptr<ca::config::FactoryConfigSource>()),
        FormattingFactoryConfig(std::shared_ptr<ca::config::LegacyConfigSource>()),
        FormattingFactoryConfig(std::shared_ptr<ca::config::PreferenceConfigSource>())};
    for (const FormattingConfig& config : configs) {
        EXPECT_FALSE(config.getEnabled() || config.getTrimUnnecessaryWhitespace() ||
                     config.getIndentationEnabled() || config.getLineBreakingEnabled());
        EXPECT_TRUE(config.getIssues().empty());
        EXPECT_EQ(config.getLineBreakBehavior(Kind::None),
                  FormattingConfig::LineBreakBehavior::AllowMultiplePerLine);
        EXPECT_EQ(config.getSeparatorPlacement(Kind::If), FormattingConfig::SeparatorPlacement::StartOfLine);
    }
}
