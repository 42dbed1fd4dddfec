#include <gtest/gtest.h>

#include <functional>

#include "kxexception/KxError.h"
#include "kxexception/TKxTable.h"

#include "../rastrix/RastrixTestUtil.h"

using rastrixtest::codeOf;

TEST(KxTable, CellsFormatsAndText) {
  TKxTable t;
  t.addColumn("Name", TKxTable::eString, 4);
  t.addColumn("N", TKxTable::eInt, 5, TKxTable::eRight);
  t.addColumn("X", TKxTable::eDouble, 7, TKxTable::eCenter, "%t3");
  t.addColumn("Y", TKxTable::eDouble, 6, TKxTable::eLeft, "%.2lf");
  t.addColumn("B", TKxTable::eBool, 1);
  t.addColumn("Bad", TKxTable::eDouble, 4, TKxTable::eLeft, "%s%n");  // not a number form: "%g"
  EXPECT_EQ(t.lineSize(), 5u + 4 + 8 + 8 + 1 + 8);
  EXPECT_EQ(t.item(3).offset, 17u);
  const std::size_t l = t.appendLine();
  t.vSetString(l, 0, "abcdef");  // cut to its length
  t.vSetInt(l, 1, -42);
  t.vSetDouble(l, 2, 3.14159);
  t.vSetDouble(l, 3, 2.5);
  t.vSetBool(l, 4, true);
  t.vSetDouble(l, 5, 0.25);
  EXPECT_EQ(t.sGetString(l, 0), "abcd");
  EXPECT_EQ(vTable2String(t), "Name\tN\tX\tY\tB\tBad\r\nabcd\t-42\t3.14\t2.50\t1\t0.25\r\n");
  EXPECT_EQ(TKxTableFrame(&t).sText(),
            "Name     N    X    Y      B Bad \r\n"
            "abcd   -42  3.14   2.50   1 0.25\r\n");
  EXPECT_EQ(t.iFindColumn("Y"), 3);
  EXPECT_EQ(t.iFindColumn("Z"), -1);
  // Wrong line, column, type; columns only while there are no lines.
  EXPECT_EQ(codeOf([&] { t.vSetInt(1, 1, 0); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { t.vSetInt(0, 6, 0); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { t.vSetInt(0, 2, 0); }), 0x5100000UL);
  EXPECT_EQ(codeOf([&] { t.addColumn("late", TKxTable::eInt, 3); }), 0x5100000UL);
  t.vClearLines();
  t.addColumn("late", TKxTable::eInt, 3);
  EXPECT_EQ(t.columns(), 7u);
  EXPECT_EQ(vTableToGrid(t).size(), 1u);
}
