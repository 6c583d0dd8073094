#include "format/SafetyCheck.h"

#include <gtest/gtest.h>

namespace {

struct Row {
    const char16_t* before;
    const char16_t* after;
    unsigned line; // 0: safe
    unsigned column;
};

TEST(SafetyCheck, AllowsWhitespaceAtEdgesOnly) {
    const Row rows[] = {
        {u"", u"", 0, 0},
        {u"a b \n\t\n c", u"\ta b\n\nc  ", 0, 0},
        {u"a\r\nb\rc", u" a\r\n b\r c", 0, 0},
        {u"  a b\n", u"a  b\n", 1, 5}, // whitespace inside
        {u"a\nb", u"a\nc", 2, 1},      // other text
        {u"a\n  bc", u"a\n  b", 2, 4}, // lost text
        {u"a\r\nb", u"a\nb", 1, 2},    // another line end
        {u"a\n", u"a", 1, 2},          // a lost line end
        {u"a", u"a\nb", 1, 2},         // a line too many
        {u"a\u00A0\n", u"a\n", 1, 2},  // a no-break space is no whitespace
    };
    for (const Row& row : rows) {
        const auto checked = ombrel::checkOnlyEdgesChanged(row.before, row.after);
        ASSERT_EQ(checked.has_value(), row.line == 0);
        if (!checked) {
            const ombrel::Problem& problem = checked.error().front();
            EXPECT_EQ(problem.code, ombrel::Code::UnsafeResult);
            EXPECT_EQ(problem.line, row.line);
            EXPECT_EQ(problem.column, row.column);
        }
    }
}

} // namespace
