#include "config/FormattingFactoryConfig.h"

#include <gtest/gtest.h>

#include <sstream>

using ca::formatting::FormattingConfig;
using Kind = FormattingConfig::ContainerKind;

namespace {

template <class Enumeration>
std::string getText(int number) {
    std::ostringstream stream;
    stream << static_cast<Enumeration>(number);
    return stream.str();
}

/// The texts of the first `count` numbers, each with a blank behind it.
template <class Enumeration>
std::string getTexts(int count) {
    std::string texts;
    for (int number = 0; number < count; ++number) {
        texts += getText<Enumeration>(number) + ' ';
    }
    return texts;
}

} // namespace

TEST(FormattingConfig, WritesTheNamesThatThereAreAndNothingElse) {
    EXPECT_EQ(getTexts<Kind>(18),
              "If While For Parfor Switch Case Try Spmd Exponent MultiplyDivide PlusMinus "
              "Comparison Logical Colon ParenthesisList BracketList BraceList "
              "Inheritance ");
    EXPECT_EQ(getTexts<FormattingConfig::LineBreakBehavior>(3),
              "SeparateLines AllowSingleLine AllowMultiplePerLine ");
    EXPECT_EQ(getTexts<FormattingConfig::SeparatorPlacement>(2), "StartOfLine EndOfLine ");
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
