#include "text/Edit.h"
#include "text/TextEncoding.h"

#include <gtest/gtest.h>

namespace {

using namespace ombrel;

TEST(Edit, AppliesToTextAndToBytes) {
    struct Row {
        std::u16string before;
        Edits edits;
        std::u16string after;
    };
    const Row rows[] = {
        {u"", {}, u""},
        {u"", {{0, 0, u"é"}}, u"é"},
        {u"abc", {{0, 1, u""}, {1, 0, u"x"}, {2, 1, u"yz"}}, u"xbyz"},
        {u"é漢🙂a\n",
         {{1, 0, u" "}, {2, 0, u"\t"}, {4, 1, u"🙂"}, {6, 0, u"b"}},
         u"é 漢\t🙂🙂\nb"},
        {u"é漢🙂a", {{0, 4, u""}}, u"a"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(applyEdits(row.before, row.edits), row.after);
        for (const bool hasMark : {false, true}) {
            EXPECT_EQ(applyEdits(encode({row.before, hasMark}), row.edits), encode({row.after, hasMark}));
        }
    }
}

TEST(Edit, IsInALine) {
    const std::u16string_view text = u"a\r\nb\rc\n";
    const std::uint32_t lines[] = {1, 1, 1, 2, 2, 3, 3, 4};
    for (std::size_t offset = 0; offset <= text.size(); ++offset) {
        EXPECT_EQ(findLine(text, offset), lines[offset]) << offset;
    }
}

} // namespace
