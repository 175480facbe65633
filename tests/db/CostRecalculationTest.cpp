// SYS_CBKS, the full cost recalculation: hand-computed cases of the moving weighted average per
// style, written as data (the documents in date order, then what the lines, the style and the
// negative-stock notice must hold afterwards).
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <tuple>
#include <vector>

#include "DbTestSupport.h"
#include "db/Progress.h"

namespace qx::dbtest {
namespace {

// One document of one line. Kinds: R purchase receipt, P purchase return, S sale, B sale
// return, G loss/gain (qty signed), T transfer ZC -> MD1 that arrives the same day.
struct Doc {
    char kind;
    std::string noid, date, sku;
    long long qty;
    double price = 0;
    std::string warehouse = "ZC";
};

std::string styleOf(const std::string& sku) { return sku.substr(0, 2); }
std::string colourOf(const std::string& sku) { return sku.substr(2); }

std::string q(const std::string& v) { return "'" + v + "'"; }
std::string num(double v) { return std::to_string(v); }

std::string sql(const Doc& d) {
    const std::string k = styleOf(d.sku), c = colourOf(d.sku), n = std::to_string(d.qty), ck = d.warehouse;
    const std::string sizes = n + ",0,0,0,0,0,0,0,0,0";
    auto head = [&](const std::string& table) {
        return "INSERT INTO " + table + " (T,NOID,KH_GYS_ID,CK_ID,BDATE,USER_ID,NOTE) VALUES (1," + q(d.noid) + ",'G1'," + q(ck) + "," +
               q(d.date) + ",'admin','');";
    };
    switch (d.kind) {
    case 'R':
        return head("D8101") + "INSERT INTO D8101A VALUES (" + q(d.noid) + "," + q(d.sku) + "," + q(k) + "," + q(c) + "," + q(ck) + "," +
               sizes + "," + num(d.price) + "," + num(d.price * static_cast<double>(d.qty)) + ",'');";
    case 'P':
        return head("D8102") + "INSERT INTO D8102A VALUES (" + q(d.noid) + "," + q(d.sku) + "," + q(k) + "," + q(c) + "," + q(ck) + "," +
               sizes + ",0,0,15," + num(15.0 * static_cast<double>(d.qty)) + ",'');";
    case 'S':
    case 'B':
        return head(d.kind == 'S' ? "D8201" : "D8202") + "INSERT INTO " + (d.kind == 'S' ? "D8201A" : "D8202A") +
               " (NOID,WL_ID,K_ID,COL_ID,CK_ID,S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,SJ,SMONEY,DJ,MONEY) VALUES (" + q(d.noid) + "," + q(d.sku) +
               "," + q(k) + "," + q(c) + "," + q(ck) + "," + sizes + ",99," + num(99.0 * static_cast<double>(d.qty)) + ",1,1);";
    case 'G':
        return "INSERT INTO d8301 (NOID,T,CK_ID,BDATE,USER_ID) VALUES (" + q(d.noid) + ",1," + q(ck) + "," + q(d.date) +
               ",'admin');INSERT INTO d8301A VALUES (" + q(d.noid) + "," + q(d.sku) + "," + q(k) + "," + q(c) + "," + q(ck) + "," +
               sizes + "," + num(d.price) + "," + num(d.price * static_cast<double>(d.qty)) + ",'');";
    case 'T':
        return "INSERT INTO D8303 (NOID,T,CK_ID,CK_ID_IN,BDATE,USER_ID,Y,YDATE) VALUES (" + q(d.noid) + ",1," + q(ck) +
               ",'MD1'," + q(d.date) + ",'admin',1," + q(d.date) + ");INSERT INTO D8303A (NOID,WL_ID,K_ID,COL_ID,CK_ID,CK_ID_IN,S0,Y0,DJ,MONEY) VALUES (" +
               q(d.noid) + "," + q(d.sku) + "," + q(k) + "," + q(c) + "," + q(ck) + ",'MD1'," + n + "," + n + ",1,1);";
    }
    return {};
}

// What one line must hold afterwards: its table, number, DJ and MONEY.
struct LineCost {
    std::string table, noid;
    double dj, money;
};

// One row of the negative-stock notice: number, kind text, running quantity and value.
struct NoticeRow {
    std::string noid, kind;
    double jc, jcMoney;
};

struct CostCase {
    std::string name;
    double purchasePrice;  // the style's CGJ
    std::vector<Doc> docs;
    std::vector<LineCost> lines;
    double styleDj, styleMoney;
    std::vector<NoticeRow> notice;
};

void PrintTo(const CostCase& c, std::ostream* out) { *out << c.name; }

const std::vector<CostCase>& costCases() {
    static const std::vector<CostCase> cases = {
        {"ReceiptsAtTheirPriceThenASaleAtTheAverage", 0,
         {{'R', "R1", "2026-05-01", "K101", 10, 20}, {'R', "R2", "2026-05-02", "K101", 10, 30}, {'S', "S1", "2026-05-03", "K101", 5}},
         {{"D8201A", "S1", 25, 125}}, 25, 375, {}},
        {"ASaleBeforeAnyReceiptIsOneNoticeRowWithBalanceMinusFive", 18,
         {{'S', "S1", "2026-05-01", "K101", 5}, {'R', "R1", "2026-05-02", "K101", 10, 20}},
         {{"D8201A", "S1", 18, 90}}, 20, 100, {{"S1", "销售开单", -5, -90}}},
        {"APurchaseReturnAndATransferKeepTheAverage", 0,
         {{'R', "R1", "2026-05-01", "K101", 10, 20},
          {'R', "R2", "2026-05-02", "K101", 10, 30},
          {'P', "P1", "2026-05-03", "K101", 4},
          {'T', "T1", "2026-05-04", "K101", 6},
          {'S', "S1", "2026-05-05", "K101", 5, 0, "MD1"}},
         {{"D8102A", "P1", 25, 100}, {"D8303A", "T1", 25, 150}, {"D8201A", "S1", 25, 125}}, 25, 275, {}},
        {"AllColoursAndWarehousesOfAStyleShareOneAverage", 0,
         {{'R', "R1", "2026-05-01", "K101", 10, 20, "ZC"}, {'R', "R2", "2026-05-01", "K102", 10, 30, "MD1"},
          {'S', "S1", "2026-05-02", "K101", 4, 0, "MD2"}},
         {{"D8201A", "S1", 25, 100}}, 25, 400, {}},
        {"ReceiptsOfTheSameDayComeBeforeItsIssues", 0,
         {{'S', "S1", "2026-05-01", "K101", 5}, {'R', "R1", "2026-05-01", "K101", 10, 20}},
         {{"D8201A", "S1", 20, 100}}, 20, 100, {}},
        {"AReceiptOfZeroPriceComesInAtTheRunningAverage", 0,
         {{'R', "R1", "2026-05-01", "K101", 10, 20}, {'R', "R2", "2026-05-02", "K101", 10, 0}, {'S', "S1", "2026-05-03", "K101", 5}},
         {{"D8201A", "S1", 20, 100}}, 20, 300, {}},
        {"AReceiptOfZeroPriceIntoEmptyStockComesInAtThePurchasePrice", 15,
         {{'R', "R1", "2026-05-01", "K101", 10, 0}, {'S', "S1", "2026-05-03", "K101", 5}},
         {{"D8201A", "S1", 15, 75}}, 15, 75, {}},
        {"StockThroughZeroSettlesTheShortfallAtTheNextReceiptsPrice", 0,
         {{'R', "R1", "2026-05-01", "K101", 10, 20},
          {'S', "S1", "2026-05-02", "K101", 10},
          {'S', "S2", "2026-05-03", "K101", 2},
          {'R', "R2", "2026-05-04", "K101", 5, 30},
          {'S', "S3", "2026-05-05", "K101", 1}},
         {{"D8201A", "S1", 20, 200}, {"D8201A", "S2", 20, 40}, {"D8201A", "S3", 30, 30}}, 30, 60, {{"S2", "销售开单", -2, -40}}},
        {"ASalesReturnComesBackAtTheRunningAverage", 0,
         {{'R', "R1", "2026-05-01", "K101", 10, 20}, {'R', "R2", "2026-05-02", "K101", 10, 30}, {'B', "B1", "2026-05-03", "K101", 2}},
         {{"D8202A", "B1", 25, 50}}, 25, 550, {}},
        {"AGainAtItsPriceMovesTheAverageALossLeavesAtIt", 0,
         {{'R', "R1", "2026-05-01", "K101", 10, 20}, {'G', "G1", "2026-05-02", "K101", 10, 30}, {'G', "G2", "2026-05-03", "K101", -4, 99}},
         {{"d8301A", "G1", 30, 300}, {"d8301A", "G2", 25, -100}}, 25, 400, {}},
    };
    return cases;
}

// Each hand-computed case on each engine.
class CostRecalculation : public ::testing::TestWithParam<std::tuple<CostCase, std::string>> {
protected:
    Shop shop{std::get<1>(GetParam())};
    db::Database& db = *shop.db;
    void SetUp() override { QX_REQUIRE_ENGINE(shop); }
};

double real(const db::Value& v) {
    if (auto* d = std::get_if<double>(&v)) return *d;
    if (auto* i = std::get_if<std::int64_t>(&v)) return static_cast<double>(*i);
    if (auto* s = std::get_if<std::string>(&v)) return std::stod(*s);
    return NAN;
}

TEST_P(CostRecalculation, ValuesTheStyleByTheMovingWeightedAverage) {
    const CostCase& c = std::get<0>(GetParam());
    db.execute("UPDATE d1800 SET CGJ=" + num(c.purchasePrice) + " WHERE K_ID='K1'");
    for (const Doc& d : c.docs) db.execute(sql(d));
    const auto result = db.open("EXEC SYS_CBKS");

    for (const LineCost& l : c.lines) {
        const auto row = db.open("SELECT DJ, MONEY FROM " + l.table + " WHERE NOID='" + l.noid + "'");
        ASSERT_EQ(row.rows.size(), 1u) << l.noid;
        EXPECT_DOUBLE_EQ(real(row.rows[0][0]), l.dj) << l.noid << " cost price";
        EXPECT_DOUBLE_EQ(real(row.rows[0][1]), l.money) << l.noid << " cost amount";
    }
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT DJ FROM d1800 WHERE K_ID='K1'")), c.styleDj);
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT MONEY FROM d1800 WHERE K_ID='K1'")), c.styleMoney);

    const auto& negative = c.notice;
    ASSERT_EQ(result.rows.size(), negative.size());
    for (std::size_t i = 0; i < negative.size(); ++i) {
        EXPECT_EQ(text(result.rows[i][0]), "K1");
        EXPECT_EQ(text(result.rows[i][1]), "款一");
        EXPECT_EQ(text(result.rows[i][2]), negative[i].noid);
        EXPECT_EQ(text(result.rows[i][5]), negative[i].kind);
        EXPECT_DOUBLE_EQ(real(result.rows[i][10]), negative[i].jc);
        EXPECT_DOUBLE_EQ(real(result.rows[i][11]), negative[i].jcMoney);
    }
}

std::string caseName(const ::testing::TestParamInfo<std::tuple<CostCase, std::string>>& info) {
    return std::get<0>(info.param).name + "_" + std::get<1>(info.param);
}

INSTANTIATE_TEST_SUITE_P(HandComputed, CostRecalculation, ::testing::Combine(::testing::ValuesIn(costCases()), ::testing::ValuesIn(engines())),
                         caseName);

class CostRecalculationRun : public ::testing::TestWithParam<std::string> {
protected:
    Shop shop{GetParam()};
    db::Database& db = *shop.db;
    void SetUp() override { QX_REQUIRE_ENGINE(shop); }
    void seedThreeDocuments() {
        for (const Doc& d : {Doc{'R', "R1", "2026-05-01", "K101", 10, 20}, Doc{'R', "R2", "2026-05-02", "K101", 10, 30},
                             Doc{'S', "S1", "2026-05-03", "K101", 5}})
            db.execute(sql(d));
    }
};

TEST_P(CostRecalculationRun, ReturnsTheNoticeColumnsInTheirOrder) {
    const auto result = db.open("EXEC SYS_CBKS");
    std::vector<std::string> names;
    for (const auto& column : result.columns) names.push_back(column.name);
    EXPECT_EQ(names, (std::vector<std::string>{"K_ID", "WL_NAME", "noid", "BDATE", "mytype", "C", "in1", "in_mon", "ou1", "ou_mon",
                                               "jc", "jc_mon"}));
    EXPECT_EQ(result.columns[3].type, db::FieldType::DateTime);
    EXPECT_TRUE(result.rows.empty());
}

TEST_P(CostRecalculationRun, ANoticeRowCarriesTheMovementItWentNegativeAt) {
    db.execute(sql({'S', "S1", "2026-05-01 09:30:00", "K101", 5}));
    const auto result = db.open("EXEC SYS_CBKS");
    ASSERT_EQ(result.rows.size(), 1u);
    const auto& row = result.rows[0];
    EXPECT_EQ(text(row[3]).substr(0, 10), "2026-05-01");
    EXPECT_EQ(integer(row[4]), 2) << "mytype of a sale";
    EXPECT_DOUBLE_EQ(real(row[6]), 0);
    EXPECT_DOUBLE_EQ(real(row[8]), 5) << "ou1";
    EXPECT_DOUBLE_EQ(real(row[10]), -5) << "jc";
}

TEST_P(CostRecalculationRun, WritesCostsIntoClosedMonthsWithoutMovingStock) {
    seedThreeDocuments();
    db.execute("UPDATE sys_co SET CK_END_DATE='2026-06-01'");
    const auto before = stock(db, "K101", "ZC");
    EXPECT_NO_THROW(db.open("EXEC SYS_CBKS"));
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT DJ FROM D8201A WHERE NOID='S1'")), 25);
    EXPECT_EQ(stock(db, "K101", "ZC"), before) << "rewriting cost columns posts nothing";
    EXPECT_EQ(count(db, "V_CHECKKC"), 0);
}

TEST_P(CostRecalculationRun, RunningItAgainChangesNothing) {
    seedThreeDocuments();
    db.open("EXEC SYS_CBKS");
    const auto first = db.open("SELECT NOID, DJ, MONEY FROM D8201A UNION ALL SELECT K_ID, DJ, MONEY FROM d1800");
    db.open("EXEC SYS_CBKS");
    const auto second = db.open("SELECT NOID, DJ, MONEY FROM D8201A UNION ALL SELECT K_ID, DJ, MONEY FROM d1800");
    EXPECT_EQ(first.rows, second.rows);
}

TEST_P(CostRecalculationRun, ACancelledRunLeavesNothingWritten) {
    seedThreeDocuments();
    const double styleBefore = real(scalar(db, "SELECT DJ FROM d1800 WHERE K_ID='K1'"));
    {
        db::ProgressScope cancel([] { return false; });
        try {
            db.open("EXEC SYS_CBKS");
            ADD_FAILURE() << "a cancelled run must fail";
        } catch (const db::Error& e) {
            EXPECT_STREQ(e.what(), db::kCancelledMessage);
        }
    }
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT DJ FROM D8201A WHERE NOID='S1'")), 1) << "the sale keeps its old cost";
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT DJ FROM d1800 WHERE K_ID='K1'")), styleBefore);
}

TEST_P(CostRecalculationRun, OpeningStockCountsAtItsValueBeforeEveryMovement) {
    db.execute("INSERT INTO d1802 (WL_ID, CK_ID, B0, K0, BEGIN_MONEY) VALUES ('K101','ZC',10,10,150)", {true});
    db.execute(sql({'S', "S1", "2026-05-03", "K101", 5}));
    db.open("EXEC SYS_CBKS");
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT DJ FROM D8201A WHERE NOID='S1'")), 15);
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT MONEY FROM d1800 WHERE K_ID='K1'")), 75);
}

TEST_P(CostRecalculationRun, UnapprovedDocumentsAreNotValued) {
    seedThreeDocuments();
    db.execute(sql({'R', "R3", "2026-05-02", "K101", 10, 90}));
    db.execute("UPDATE D8101 SET T=0 WHERE NOID='R3'");
    db.open("EXEC SYS_CBKS");
    EXPECT_DOUBLE_EQ(real(scalar(db, "SELECT DJ FROM D8201A WHERE NOID='S1'")), 25);
}

INSTANTIATE_TEST_SUITE_P(Engines, CostRecalculationRun, ::testing::ValuesIn(engines()), engineTestName);

// On a server the lines are written back by the row they were read from: until the run commits,
// another terminal's document waits instead of changing what is being valued.
TEST(CostRecalculationOnAServer, AnotherTerminalsDocumentWaitsUntilTheRunCommits) {
    QX_REQUIRE_POSTGRES(server);
    const std::string uri = server->freshDatabase();
    db::PostgresDatabase first(uri);
    first.createShop();
    seedSmallShop(first);
    first.execute(sql({'R', "R1", "2026-05-01", "K101", 10, 20}));
    db::PostgresDatabase second(uri);
    second.runNative("SET lock_timeout = '300ms'");
    first.runNative("BEGIN");
    first.runWithinTransaction("EXEC SYS_CBKS");
    try {
        second.execute(sql({'S', "S1", "2026-05-03", "K101", 5}));
        ADD_FAILURE() << "a sale was saved while the recalculation was running";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find("lock"), std::string::npos) << e.what();
    }
    first.runNative("COMMIT");
    EXPECT_NO_THROW(second.execute(sql({'S', "S1", "2026-05-03", "K101", 5})));
    EXPECT_EQ(count(second, "D8201A", "NOID='S1'"), 1);
}

}  // namespace
}  // namespace qx::dbtest
