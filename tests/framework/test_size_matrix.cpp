// The size matrix: position and field names, line totals and which positions a group uses.
#include <gtest/gtest.h>

#include "framework/DataSet.h"
#include "framework/SizeMatrix.h"
#include "tests/framework/FakeDatabase.h"

namespace {

using qx::test::table;

TEST(SizeMatrix, FieldNamesByPosition) {
    EXPECT_EQ(qx::sizes::quantityField(0), "S0");
    EXPECT_EQ(qx::sizes::nameField(9), "M9");
    EXPECT_EQ(qx::sizes::quantityFields().size(), qx::sizes::Count);
    EXPECT_EQ(qx::sizes::quantityFieldsAndTotal().last(), "STOT");
}

TEST(SizeMatrix, OnlyS0ToS9AreQuantityFields) {
    EXPECT_EQ(qx::sizes::positionOf("s7"), 7);
    EXPECT_EQ(qx::sizes::positionOf("S9"), 9);
    for (const char* other : {"STOT", "S10", "SJ", "M0", "", "S", "0"}) EXPECT_EQ(qx::sizes::positionOf(other), -1) << other;
}

TEST(SizeMatrix, LineTotalsCountOnlyThePositionsTheLinesHave) {
    TClientDataSet lines;
    lines.LoadFromResult(table({"K_ID", "S0", "S1", "S8", "SJ"},
                               {{std::string("K01"), std::int64_t(3), std::int64_t(-1), std::int64_t(4), 99.0},
                                {std::string("K02"), qx::db::Value{}, std::int64_t(0), std::int64_t(0), 1.0}}));
    EXPECT_DOUBLE_EQ(qx::sizes::lineTotal(&lines, 0), 6);
    EXPECT_DOUBLE_EQ(qx::sizes::lineTotal(&lines, 1), 0);
    EXPECT_DOUBLE_EQ(qx::sizes::currentLineTotal(&lines), 6);  // the first row is current
}

TEST(SizeMatrix, APositionIsInUseWhenTheGroupNamesIt) {
    const QStringList names{"S", "M", " ", ""};
    EXPECT_TRUE(qx::sizes::positionInUse(names, 1));
    EXPECT_FALSE(qx::sizes::positionInUse(names, 2));  // a blank name is no name
    EXPECT_FALSE(qx::sizes::positionInUse(names, 3));
    EXPECT_FALSE(qx::sizes::positionInUse(names, 7));  // beyond the names given
    EXPECT_FALSE(qx::sizes::positionInUse(names, -1));
}

TEST(SizeMatrix, NamesOfARowComeFromItsSizeNameFields) {
    TClientDataSet lines;
    lines.LoadFromResult(table({"M0", "M1", "M2"}, {{std::string("28"), std::string("30"), std::string("")}}));
    const QStringList names = qx::sizes::namesOfRow(&lines, 0);
    ASSERT_EQ(names.size(), qx::sizes::Count);
    EXPECT_EQ(names[0], "28");
    EXPECT_EQ(names[1], "30");
    EXPECT_EQ(names[9], "");
}

}  // namespace
