#include "diagnostics/Message.h"
#include "text/TextEncoding.h"

#include <gtest/gtest.h>

#include <sstream>

namespace {

using namespace ombrel;

TEST(Printable, EscapesWhatWouldForgeOrHideText) {
    EXPECT_EQ(getPrintableName("a\x1B[31m\r\n\tb"), "a\\u001B[31m\\r\\n\\tb");
    EXPECT_EQ(getPrintable(u"\u202Ex\u2028\u0085\uFEFF\U000E0067"),
              "\\u202Ex\\u2028\\u0085\\uFEFF\\U000E0067");
    EXPECT_EQ(getPrintable(std::u16string{u'a', 0xD83D}), "a\\uD83D");
    EXPECT_EQ(getPrintable(u"a\u0301 漢 👩\u200D👧"), "a\u0301 漢 👩\u200D👧");
    EXPECT_EQ(getPrintableName("\xFF"), "\uFFFD");
}

TEST(Printable, CaretStandsUnderItsCharacter) {
    struct Row {
        std::u16string line;
        std::uint32_t column; // of the x
        std::string padding;
    };
    const Row rows[] = {
        {u"x", 1, ""},
        {u"\ta\tx", 4, "\t \t"},
        {u"漢字x", 3, "    "},
        {u"ｱＡx", 3, "   "},               // half and full width
        {u"a\u0301\u20DDx", 4, " "},       // combining marks
        {u"😀👩\u200D👧x", 8, "      "},      // three emoji, one joiner
        {u"\u1112\u1161\u11ABx", 4, "  "}, // a syllable in three parts
        {u"\u001B\u202Ex", 3, "            "},
        {u"ax\u0301", 3, " "}, // a place inside of what is seen as one character
        {u"a😀", 3, " "},
        {u"ab", 3, "  "}, // directly after the line
    };
    for (const Row& row : rows) {
        const Excerpt excerpt = makeExcerpt(row.line, row.column);
        EXPECT_EQ(excerpt.padding, row.padding) << excerpt.text;
    }
    EXPECT_EQ(makeExcerpt(u"\u001B[1m\t漢", 1).text, "\\u001B[1m\t漢");
    EXPECT_EQ(makeExcerpt(u"a", 0).text + makeExcerpt(u"a", 3).text + makeExcerpt(u"", 1).text, "");
}

TEST(Printable, ShowsOnlyTheSurroundingsInALongLine) {
    std::u16string line;
    for (int i = 0; i < 1000; ++i) {
        line += u"e\u0301😀";
    }
    for (std::uint32_t column = 2001; column <= 2004; ++column) {
        const Excerpt excerpt = makeExcerpt(line, column);
        EXPECT_EQ(excerpt.text.find("\\u"), std::string::npos) << "half a character at " << column;
        EXPECT_TRUE(excerpt.text.starts_with('e') || excerpt.text.starts_with("😀")) << excerpt.text;
        EXPECT_LT(excerpt.text.size(), 400U);
        EXPECT_EQ(excerpt.padding.size(), 75U) << column; // 25 letters, 25 emoji
    }
}

TEST(Printable, MessagesHaveTheirLinesInAnyOrder) {
    std::vector<Problem> problems;
    for (const std::uint32_t line : {2U, 4U, 4U, 1U, 5U, 6U, 0U}) {
        problems.push_back({Code::RunawayIndentation, "wrong", line, 1});
    }
    std::string lines;
    for (const Message& message : makeMessages(problems, u"a\r\nb\rc\nd\n")) {
        lines += message.excerpt.text + ';';
    }
    EXPECT_EQ(lines, "b;d;d;a;;;;");
}

TEST(Printable, MessagesNamePlaceAndSeverity) {
    std::ostringstream out;
    printProblem(out, "a\n", {Code::RunawayIndentation, "wrong", 1, 2}, u"\tx", Color::Off);
    printProblem(out, "b", {Code::UselessSuppression, "odd"}, u"", Color::Off);
    printProblem(out, "c", {Code::UselessSuppression, "odd", 7, 1}, u"", Color::On);
    EXPECT_EQ(
        out.str(),
        "a\\n:1:2: error: wrong [runaway-indentation]\n  \tx\n  \t^\nb: warning: odd [useless-suppression]\n"
        "c:7:1: \033[1;35mwarning:\033[0m odd [useless-suppression]\n");
}

TEST(TextEncoding, KeepsACharacterWholeWhereTheTextIsCutIntoPieces) {
    constexpr std::size_t length = (1U << 24U) - 1;
    const auto decoded = ombrel::decode(std::string(length, 'x') + "\xC3\xA4");
    ASSERT_TRUE(decoded);
    EXPECT_EQ(decoded->text.back(), u'\u00E4');
    // Only text that isn't ASCII is encoded in pieces.
    const std::string bytes = ombrel::encode({std::u16string(length, u'\u00E4') + u"\U0001F642", false});
    EXPECT_EQ(bytes.size(), 2 * length + 4);
    EXPECT_TRUE(bytes.ends_with("\xC3\xA4\xF0\x9F\x99\x82"));
}

TEST(Printable, EscapesWhatIsHiddenInReportsAsJsonHasIt) {
    EXPECT_EQ(ombrel::escapeHidden("a\n\t\xC3\xA4\x1B\xC2\x9B\xE2\x80\xAE\xF3\xA0\x80\x81\xFF"),
              "a\n\t\xC3\xA4\\u001B\\u009B\\u202E\\uDB40\\uDC01\xFF");
}

} // namespace
