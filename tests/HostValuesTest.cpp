#include <ca/config/ConfigIssue.h>
#include <fl/i18n/facet.h>

#include <gtest/gtest.h>

#include <iomanip>
#include <sstream>
#include <thread>
#include <unordered_set>
#include <vector>

using ca::config::ConfigIssue;
using ca::config::ConfigPosition;
using ca::config::Severity;

namespace {

template <class... Values>
std::u16string write(const Values&... values) {
    std::basic_stringstream<char16_t> stream;
    stream.imbue(fl::i18n::facet::get_global_std_locale());
    (stream << ... << values);
    EXPECT_TRUE(stream.good());
    return stream.str();
}

ConfigIssue makeIssue(std::u16string text, std::uint32_t line) {
    const resource_core::BaseMsgID message{{std::move(text)}, "catalog", "key"};
    return ConfigIssue(std::make_shared<resource_core::BaseMsgID>(message), Severity::Error, std::nullopt,
                       ConfigPosition(line, 1), std::nullopt);
}

/// For the thread sanitizer: nothing is filled at the first use.
TEST(HostValues, NumbersCanBeWrittenOnSeveralThreadsAtOnce) {
    std::vector<std::jthread> threads;
    for (int i = 0; i < 8; ++i) {
        threads.emplace_back([] { EXPECT_EQ(write(1.5, u' ', true), u"1.5 1"); });
    }
}

} // namespace

TEST(Facet, WritesNumbersAndWhatFollowsThem) {
    EXPECT_EQ(write(u"_L", 12, u"_C", 1234567UL, u'!'), u"_L12_C1234567!");
    EXPECT_EQ(write(-5L, ' ', 1.5, " narrow ", true), u"-5 1.5 narrow 1");
    EXPECT_EQ(write(std::hex, std::showbase, 255, std::boolalpha, false), u"0xfffalse");
}

TEST(Facet, PadsCellsAndNumbersWithAnyCharacter) {
    EXPECT_EQ(write(std::setw(4), u"ab", std::setw(4), 7, std::left, std::setw(3), u"c", 1), u"  ab   7c  1");
    EXPECT_EQ(write(std::setfill(u'\u2014'), std::setw(3), 7, std::internal, std::setw(4), -1),
              u"\u2014\u20147-\u2014\u20141");
}

TEST(Facet, KnowsAsciiOnly) {
    const auto& facet = std::use_facet<std::ctype<char16_t>>(fl::i18n::facet::get_global_std_locale());
    EXPECT_TRUE(facet.is(std::ctype_base::space, u'\n') && facet.is(std::ctype_base::alpha, u'x'));
    EXPECT_FALSE(facet.is(std::ctype_base::alpha, u'\u0178') || facet.is(std::ctype_base::space, u'\u0120'));
    EXPECT_EQ(facet.narrow(u'\u0141', '?'), '?');
    EXPECT_EQ(facet.toupper(u'z'), u'Z');
}

TEST(ConfigIssue, IsKeptOnceByContent) {
    std::unordered_set<ConfigIssue> issues = {makeIssue(u"a", 1), makeIssue(u"a", 1)};
    EXPECT_EQ(issues.size(), 1U);
    issues.insert({makeIssue(u"b", 1), makeIssue(u"a", 2)});
    issues.insert(ConfigIssue(nullptr, Severity::Error, std::nullopt, ConfigPosition(1, 1), std::nullopt));
    EXPECT_EQ(issues.size(), 4U);
}
