// The table of function codes: the host's numbering kept code for code.
#include <gtest/gtest.h>

#include <set>
#include <string>

#include "frame/Dispatch.h"

namespace {

using qx::frame::findFunction;
using qx::frame::Pattern;
using qx::frame::Precondition;

std::string screenOf(int code) {
    const auto* row = findFunction(code);
    return row ? row->screenClass : "";
}

TEST(FunctionTable, HoldsExactlyTheCodesOfTheMenu) {
    std::set<int> codes;
    for (const auto& row : qx::frame::functionTable()) codes.insert(row.code);
    EXPECT_EQ(codes, (std::set<int>{201, 202, 203, 204, 211, 212, 213, 214, 215, 217,
                                    218, 219, 235, 241, 242, 252, 253, 254, 255, 256,
                                    263, 273, 281, 282, 283, 297, 299, 704, 901, 932}));
    EXPECT_EQ(qx::frame::functionTable().size(), codes.size()) << "one row per code";
}

TEST(FunctionTable, NumberingDiffersFromTheScreenUnits) {
    EXPECT_EQ(screenOf(203), "TQXCK201M");
    EXPECT_EQ(screenOf(204), "TQXCK201G");
    EXPECT_EQ(screenOf(213), "TQXCK211M") << "213 is the sales detail report, not the orders";
    EXPECT_EQ(screenOf(214), "TQXCK211G");
    EXPECT_EQ(screenOf(215), "TQXCK213") << "215 opens the order screen";
    EXPECT_EQ(screenOf(217), "TQXCK233");
    EXPECT_EQ(screenOf(218), "TQXCK231");
    EXPECT_EQ(screenOf(219), "TQXCK234");
    EXPECT_EQ(screenOf(241), "TQXck341");
    EXPECT_EQ(screenOf(242), "TQXCK342");
    EXPECT_EQ(screenOf(704), "TQXCKS02A");
    EXPECT_EQ(screenOf(901), "Tqxsys_co");
    EXPECT_EQ(screenOf(932), "TQXCKS01");
    EXPECT_EQ(std::string(findFunction(213)->caption), "销售明细表");
    EXPECT_EQ(std::string(findFunction(215)->caption), "订单/补单");
}

TEST(FunctionTable, PatternsAndPreconditions) {
    for (const auto& row : qx::frame::functionTable()) {
        const bool modal = row.code == 242 || row.code == 901 || row.code == 932;
        const Pattern expected = modal             ? Pattern::ModalDialog
                                 : row.code == 704 ? Pattern::ListWithParams
                                                   : Pattern::Embedded;
        EXPECT_EQ(row.pattern, expected) << row.code;
        const Precondition pre = (row.code == 217 || row.code == 219)
                                     ? Precondition::SeveralWarehouses
                                 : row.code == 256 ? Precondition::SeveralWarehousesReadableByUser
                                                   : Precondition::None;
        EXPECT_EQ(row.precondition, pre) << row.code;
        EXPECT_EQ(std::string(row.base) == "TFrm_Base_Dialog", modal) << row.code;
    }
}

}  // namespace
