// Size ratios: "1:2:2:1*12" into quantities per size position, and the clear refusals.
#include <gtest/gtest.h>

#include "framework/SizeRatio.h"

namespace {

using qx::sizes::parseRatio;

const QStringList kFiveSizes{"S", "M", "L", "XL", "2XL", "", "", "", "", ""};

TEST(SizeRatio, ARatioTimesPacksGivesEachSize) {
    const auto r = parseRatio("1:2:2:1*12", kFiveSizes);
    ASSERT_TRUE(r.ok()) << r.error.toStdString();
    EXPECT_EQ(r.quantities, (QVector<int>{12, 24, 24, 12}));
}

TEST(SizeRatio, WithoutPacksItIsOnePackAndBlanksAndWideColonsAreFine) {
    EXPECT_EQ(parseRatio("1:2:2:1", kFiveSizes).quantities, (QVector<int>{1, 2, 2, 1}));
    EXPECT_EQ(parseRatio(" 0：1：3 × 2 ", kFiveSizes).quantities, (QVector<int>{0, 2, 6}));
    EXPECT_EQ(parseRatio("3x4", kFiveSizes).quantities, (QVector<int>{12}));
}

TEST(SizeRatio, TextIsARatioWhenItHasASeparator) {
    EXPECT_TRUE(qx::sizes::looksLikeRatio("1:2"));
    EXPECT_TRUE(qx::sizes::looksLikeRatio("3*4"));
    EXPECT_FALSE(qx::sizes::looksLikeRatio("12"));
}

TEST(SizeRatio, LettersAreRefusedNamingThePart) {
    const auto r = parseRatio("1:a:2*3", kFiveSizes);
    ASSERT_FALSE(r.ok());
    EXPECT_TRUE(r.quantities.isEmpty());
    EXPECT_EQ(r.error, "配比 '1:a:2*3' 中的 'a' 不是有效的数量(应为0或正整数)!");
    EXPECT_FALSE(parseRatio("1:2*x", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio("-1:2", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio("1.5:2", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio("1:2'); DROP TABLE d1802;--", kFiveSizes).ok());
}

TEST(SizeRatio, ZeroPacksAreRefused) {
    const auto r = parseRatio("1:2:2:1*0", kFiveSizes);
    ASSERT_FALSE(r.ok());
    EXPECT_EQ(r.error, "配比 '1:2:2:1*0' 的箱数 '0' 必须是大于0的整数!");
    EXPECT_FALSE(parseRatio("1:2*", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio("1:2*3*4", kFiveSizes).ok());
}

TEST(SizeRatio, ARatioLongerThanTheSizeGroupIsRefused) {
    const auto r = parseRatio("1:1:1:1:1:1*2", kFiveSizes);
    ASSERT_FALSE(r.ok());
    EXPECT_EQ(r.error, "配比 '1:1:1:1:1:1*2' 有 6 个尺码,而该款的尺码组只有 5 个尺码!");
}

TEST(SizeRatio, APositionTheGroupLeavesUnnamedTakesNothing) {
    const QStringList gap{"S", "", "L", "", "", "", "", "", "", ""};
    EXPECT_FALSE(parseRatio("1:1:1", gap).ok());
    EXPECT_EQ(parseRatio("1:0:1*2", gap).quantities, (QVector<int>{2, 0, 2}));
}

TEST(SizeRatio, AllZeroEmptyAndHugeRatiosAreRefused) {
    EXPECT_FALSE(parseRatio("0:0*5", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio("", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio(":", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio("999999999*999999999", kFiveSizes).ok());
    EXPECT_FALSE(parseRatio(QString(10000, '1') + "*2", kFiveSizes).ok());
}

}  // namespace
