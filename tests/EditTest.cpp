#include "text/Edit.h"
#include "text/Diff.h"
#include "text/LineEdgeEditor.h"
#include "text/TextEncoding.h"

#include <gtest/gtest.h>

#include <stdexcept>
#include <vector>

namespace {

using namespace ombrel;

Edits makeEdits(std::u16string_view text, const std::vector<Edit>& edits) {
    LineEdgeEditor editor(text);
    for (const Edit& edit : edits) {
        editor.add(edit);
    }
    return editor.take();
}

TEST(Edit, AppliesToTextAndToBytes) {
    struct Row {
        std::u16string before;
        std::vector<Edit> edits;
        std::u16string after;
    };
    const Row rows[] = {
        {u"", {}, u""},
        {u" é", {{0, 1, u"\t"}}, u"\té"},
        {u"é漢🙂a \n b", {{5, 1, u""}, {7, 1, u"  "}, {9, 0, u" "}}, u"é漢🙂a\n  b "},
        {u"a🙂\r\nb", {{0, 0, u" "}, {3, 0, u" "}, {5, 0, u"\t"}}, u" a🙂 \r\n\tb"},
    };
    for (const Row& row : rows) {
        const Edits edits = makeEdits(row.before, row.edits);
        EXPECT_EQ(applyEdits(row.before, edits), row.after);
        for (const bool hasMark : {false, true}) {
            EXPECT_EQ(applyEdits(encode({row.before, hasMark}), edits), encode({row.after, hasMark}));
        }
    }
}

TEST(Edit, OfLinesChangesWhitespaceAtTheirEdgesOnly) {
    const std::u16string_view text = u" a  b \r\n\r \nc";
    const std::vector<Edit> wrong[] = {
        {{2, 2, u""}},                // between words
        {{1, 1, u""}},                // code
        {{0, 1, u"x"}},               // by code
        {{6, 1, u""}},                // a line end
        {{7, 0, u" "}},               // in a line end
        {{9, 1, u""}},                // makes CRLF of two line ends
        {{0, 1, u""}, {0, 1, u""}},   // twice
        {{5, 1, u""}, {0, 1, u"  "}}, // in another order
    };
    for (const auto& edits : wrong) {
        EXPECT_THROW(makeEdits(text, edits), std::logic_error) << edits.front().offset;
    }
}

TEST(Edit, IsShownAsADiff) {
    struct Row {
        const char16_t* before;
        std::vector<Edit> edits;
        const char* diff;
    };
    const Row rows[] = {
        {u"a", {}, ""},
        {u"a",
         {{0, 0, u" "}, {1, 0, u" "}},
         "@@ -1,1 +1,1 @@\n-a\n\\ No newline at end of file\n+ a \n\\ No newline at end of file\n"},
        {u"é\r\nb\nc\n", {{3, 0, u" "}, {5, 0, u" "}}, "@@ -1,3 +1,3 @@\n é\r\n-b\n-c\n+ b\n+ c\n"},
        {u"1\n2\n3\n4\n5\n6\n7\n8\n9",
         {{0, 0, u" "}, {14, 0, u" "}},
         "@@ -1,9 +1,9 @@\n-1\n+ 1\n 2\n 3\n 4\n 5\n 6\n 7\n-8\n+ 8\n 9\n\\ No newline at end of file\n"},
        {u"1\n2\n3\n4\n5\n6\n7\n8\n9\n",
         {{0, 0, u" "}, {16, 0, u" "}},
         "@@ -1,4 +1,4 @@\n-1\n+ 1\n 2\n 3\n 4\n@@ -6,4 +6,4 @@\n 6\n 7\n 8\n-9\n+ 9\n"},
    };
    for (const Row& row : rows) {
        const std::string header = *row.diff == '\0' ? "" : "--- x\n+++ x\n";
        EXPECT_EQ(makeDiff("x", encode({row.before, false}), makeEdits(row.before, row.edits), Color::Off),
                  header + row.diff);
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
