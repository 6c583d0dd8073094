#include "tree/DebugTable.h"

#include <gtest/gtest.h>

using ca::formatting::DebugTable;

namespace {

DebugTable makeTable(std::initializer_list<DebugTable::Row> rows) {
    DebugTable table;
    for (const auto& row : rows) {
        table.appendRow(row);
    }
    return table;
}

} // namespace

TEST(DebugTable, DrawsABracketAroundItsRows) {
    DebugTable table = makeTable({{u"a"}, {u"bb"}, {u"c"}});
    table.addBracket(u"X");
    EXPECT_EQ(table.toString(), u"   a  -+ X\n"
                                u"  bb   |  \n"
                                u"   c  -+  \n");
}

TEST(DebugTable, HasNoMiddleRowInABracketOfTwoAndALabelAloneForOne) {
    DebugTable two = makeTable({{u"a"}, {u"b"}});
    two.addBracket(u"Two");
    EXPECT_EQ(two.toString(), u"  a  -+ Two\n"
                              u"  b  -+    \n");
    DebugTable one = makeTable({{u"a"}});
    one.addBracket(u"One");
    EXPECT_EQ(one.toString(), u"  a  ] One\n");
    DebugTable none;
    none.addBracket(u"None");
    EXPECT_EQ(none.toString(), u"");
}

TEST(DebugTable, PadsShallowRowsUpToTheBracketsOfTheirAncestors) {
    DebugTable table = makeTable({{u"a", u"1"}});
    DebugTable inner = makeTable({{u"b", u"22"}, {u"c"}});
    inner.addBracket(u"I");
    table.appendRows(inner);
    table.addBracket(u"O");
    EXPECT_EQ(table.toString(), u"  a   1        -+ O\n"
                                u"  b  22  -+ I   |  \n"
                                u"  c      -+    -+  \n");
}
