#include "config/FormattingConfig.h"

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

} // namespace

/// The texts themselves are what golden files set options by.
TEST(FormattingConfig, WritesNothingForNumbersWithoutAText) {
    EXPECT_EQ(getText<Kind>(17), "Inheritance");
    EXPECT_EQ(getText<Kind>(18), "");
    EXPECT_EQ(getText<FormattingConfig::LineBreakBehavior>(3), "");
    EXPECT_EQ(getText<FormattingConfig::SeparatorPlacement>(2), "");
    for (const int number : {19, -1, 1 << 30}) {
        EXPECT_EQ(getText<Kind>(number) + getText<FormattingConfig::LineBreakBehavior>(number) +
                      getText<FormattingConfig::SeparatorPlacement>(number),
                  "");
    }
}

TEST(FormattingConfig, HashesAKindToItsSignExtendedNumber) {
    EXPECT_EQ(std::hash<Kind>()(Kind::None), 18U);
    EXPECT_EQ(std::hash<Kind>()(static_cast<Kind>(-2)), SIZE_MAX - 1);
}
