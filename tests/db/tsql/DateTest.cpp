// Dates: ISO text storage, CONVERT styles, DATEPART/DATEADD/DATEDIFF, GETDATE.
#include "TsqlFixture.h"

namespace qx::tsql::testing {
namespace {

TEST_F(TsqlTest, ConvertDateStyles) {
    db.run("UPDATE d1800 SET BDATE='2024-03-07 15:04:05' WHERE K_ID='K1'");
    EXPECT_EQ(db.run("SELECT convert(char(10),BDATE,20), convert(char(6),BDATE,112), CONVERT(varchar(8), BDATE, 112), convert(varchar(19),BDATE,120) FROM d1800 WHERE K_ID='K1'"),
              "2024-03-07|202403|20240307|2024-03-07 15:04:05");
}

TEST_F(TsqlTest, ConvertGroupsByDay) {
    db.run("INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N1', '2024-03-07 10:00:00', 5)"
           " INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N2', '2024-03-07 18:00:00', 6)"
           " INSERT INTO D8101 (NOID, BDATE, TOLMONEY) VALUES ('N3', '2024-03-08', 1)");
    EXPECT_EQ(db.run("SELECT convert(char(10),BDATE,20) as 开单日期, SUM(TOLMONEY) FROM D8101 GROUP BY convert(char(10),BDATE,20) ORDER BY 1"),
              "2024-03-07|11\n2024-03-08|1");
}

TEST_F(TsqlTest, DatePartWithBareParts) {
    db.run("UPDATE d1800 SET BDATE='2024-03-07 15:04:05' WHERE K_ID='K1'");
    EXPECT_EQ(db.run("SELECT DATEPART([DAY],M.BDATE) AS D, DATEPART(day, M.BDATE), DATEPART(YEAR,M.BDATE), DATEPART(MONTH,M.BDATE), DATEPART(m, M.BDATE), DATEPART(hh, M.BDATE) FROM d1800 M WHERE M.K_ID='K1'"),
              "7|7|2024|3|3|15");
}

TEST_F(TsqlTest, WeekNumbersStartOnSunday) {
    EXPECT_EQ(db.run("SELECT DATEPART(WK,'2024-01-01'), DATEPART(WK,'2024-01-06'), DATEPART(WK,'2024-01-07'), DATEPART(WK,'2024-12-31'),"
                     " DATEPART(wk,'2023-01-01'), DATEPART(wk,'2023-01-07'), DATEPART(wk,'2023-01-08')"),
              "1|1|2|53|1|1|2");
}

TEST_F(TsqlTest, MonthArithmeticFromDateZero) {
    db.run("CREATE TABLE sys_co (CO varchar(40), CK_END_DATE datetime) INSERT INTO sys_co (CO, CK_END_DATE) VALUES ('x', '2024-12-15')");
    db.run("UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ");
    EXPECT_EQ(db.run("SELECT CK_END_DATE FROM sys_co"), "2025-01-01 00:00:00");
    db.run("UPDATE sys_CO  SET CK_END_DATE = (SELECT DATEADD(m, - 1, DATEADD(mm, DATEDIFF(mm, 0, (select CK_END_DATE from sys_CO)), 0))) ");
    EXPECT_EQ(db.run("SELECT CK_END_DATE FROM sys_co"), "2024-12-01 00:00:00");
}

TEST_F(TsqlTest, DateAddClampsToMonthEnd) {
    EXPECT_EQ(db.run("SELECT DATEADD(month, 1, '2024-01-31'), DATEADD(DAY, 1, '2024-02-28'), DATEADD(yy, 1, '2024-02-29'), DATEADD(wk, -1, '2024-01-03')"),
              "2024-02-29 00:00:00|2024-02-29 00:00:00|2025-02-28 00:00:00|2023-12-27 00:00:00");
}

TEST_F(TsqlTest, DateDiffCountsBoundaries) {
    EXPECT_EQ(db.run("SELECT DATEDIFF(yy,'2023-12-31','2024-01-01'), DATEDIFF(mm,'2024-01-31','2024-02-01'), DATEDIFF(dd,'2024-01-01 23:00','2024-01-02 01:00'),"
                     " DATEDIFF(wk,'2024-01-06','2024-01-07'), DATEDIFF(mm, 0, '2024-03-05')"),
              "1|1|1|1|1490");
}

TEST_F(TsqlTest, YearMonthDayFunctions) {
    EXPECT_EQ(db.run("select year(BDATE) as 年,month(BDATE) as 月, day(BDATE) from d1800 group by year(BDATE),month(BDATE),day(BDATE) order by 2"),
              "2024|1|5\n2024|2|10");
}

TEST_F(TsqlTest, GetDateIsLocalIsoText) {
    const std::string now = db.run("SELECT GETDATE()");
    ASSERT_EQ(now.size(), 19u);
    EXPECT_EQ(now[4], '-');
    EXPECT_EQ(now[10], ' ');
    sqlite3* db2 = db.handle();
    sqlite3_stmt* stmt;
    sqlite3_prepare_v2(db2, "SELECT strftime('%Y-%m-%d %H','now','localtime')", -1, &stmt, nullptr);
    sqlite3_step(stmt);
    const std::string hour = reinterpret_cast<const char*>(sqlite3_column_text(stmt, 0));
    sqlite3_finalize(stmt);
    EXPECT_EQ(now.substr(0, 13), hour);
    db.run("UPDATE D8101 SET EDATE=GETDATE()");
    EXPECT_EQ(db.run("SELECT CURRENT_TIMESTAMP").substr(0, 13), hour);
}

TEST_F(TsqlTest, DatesStoredAsIsoTextCompareWithDateOnlyText) {
    EXPECT_EQ(db.run("SELECT BDATE FROM d1800 WHERE K_ID='K1'"), "2024-01-05 00:00:00");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE (BDATE>='2024-01-05') AND (BDATE<='2024-02-10') ORDER BY K_ID"), "K1\nK2");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE BDATE<'2024-02-10'"), "K1");
    EXPECT_EQ(db.run("SELECT K_ID FROM d1800 WHERE BDATE BETWEEN '2024-01-01' AND '2024-01-05'"), "K1");
}

TEST_F(TsqlTest, EmptyTextIntoDateIsBaseDate) {
    db.run("UPDATE d1800 SET BDATE='' WHERE K_ID='K2'");
    EXPECT_EQ(db.run("SELECT BDATE FROM d1800 WHERE K_ID='K2'"), "1900-01-01 00:00:00");
}

TEST_F(TsqlTest, DateConversionsAndDayArithmetic) {
    EXPECT_EQ(db.run("SELECT CONVERT(datetime, '20240105'), CAST('2024-1-5 7:08' AS datetime), CONVERT(char(10), CONVERT(datetime, '2024/02/03'), 111)"),
              "2024-01-05 00:00:00|2024-01-05 07:08:00|2024/02/03");
    EXPECT_EQ(db.run("SELECT BDATE + 1, BDATE - 5, DATEADD(day, 1, BDATE) FROM d1800 WHERE K_ID='K1'"),
              "2024-01-06 00:00:00|2023-12-31 00:00:00|2024-01-06 00:00:00");
    EXPECT_EQ(db.run("SELECT DATEPART(dw, '2024-01-07'), DATEPART(dy, '2024-02-01'), DATEPART(qq, '2024-05-01'), DATEDIFF(day, BDATE, '2024-01-15') FROM d1800 WHERE K_ID='K1'"),
              "1|32|2|10");
}

}  // namespace
}  // namespace qx::tsql::testing
