// Reading sheets (.xlsx through liborcus, .xls through FreeXL, .csv) and checking their rows.
#include <QTemporaryDir>

#include "SetupFixture.h"
#include "setup/ImportSheets.h"
#include "setup/SheetReader.h"

namespace qx::test {
namespace {

using namespace qx::setup;

QStringList texts(const SheetRows& rows) {
    QStringList out;
    for (const auto& row : rows) {
        QStringList cells;
        for (const Cell& c : row) cells << c.text;
        while (!cells.isEmpty() && cells.back().isEmpty()) cells.removeLast();
        out << cells.join('|');
    }
    while (!out.isEmpty() && out.back().isEmpty()) out.removeLast();
    return out;
}

QString errorOf(const QString& file) {
    try {
        readSheet(file);
    } catch (const SheetError& e) {
        return e.message();
    }
    return {};
}

TEST(SheetReader, TheSampleReadsTheSameFromXlsxXlsAndCsv) {
    const QStringList xlsx = texts(readSheet(templateFile("sample_goods.xlsx")));
    const QStringList xls = texts(readSheet(templateFile("sample_goods.xls")));
    const QStringList csv = texts(readSheet(templateFile("sample_goods.csv")));
    ASSERT_EQ(xlsx.size(), 9);
    EXPECT_EQ(xlsx, xls);
    EXPECT_EQ(xlsx, csv);
    EXPECT_EQ(xlsx[5].section('|', 0, 2), "总仓|S2603|羊毛衫");
    EXPECT_EQ(xlsx[5].section('|', 22, 22), "120.5");
}

TEST(SheetReader, NumbersComeAsNumberCellsFromWorkbooksAndAsTextFromCsv) {
    const SheetRows xlsx = readSheet(templateFile("sample_goods.xlsx"));
    EXPECT_TRUE(xlsx[1][12].numeric);
    EXPECT_FALSE(xlsx[1][1].numeric);
    const SheetRows csv = readSheet(templateFile("sample_goods.csv"));
    EXPECT_EQ(csv[1][12].text, "5");
}

TEST(SheetReader, TheTemplatesCarryTheColumnTitlesInSheetOrder) {
    const struct {
        const char* file;
        const SheetSpec& spec;
    } sheets[] = {{"imp_cl", goodsSheet()}, {"kh", customerSheet()}, {"gys", supplierSheet()}, {"vip", memberSheet()}};
    for (const auto& s : sheets)
        for (const char* ext : {".xlsx", ".xls", ".csv"}) {
            const QStringList rows = texts(readSheet(templateFile(QString(s.file) + ext)));
            ASSERT_EQ(rows.size(), 1) << s.file << ext;
            EXPECT_EQ(rows[0], titleLine(s.spec).replace(',', '|')) << s.file << ext;
        }
    EXPECT_EQ(goodsSheet().columns.size(), 29u);
}

TEST(SheetReader, CsvQuotesKeepCommasNewlinesAndQuotes) {
    QTemporaryDir dir;
    const QString file = dir.filePath("q.csv");
    QFile f(file);
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("\xEF\xBB\xBF" "a,\"b,c\",\"say \"\"hi\"\"\"\r\n\"line\nbreak\",,x\n");
    f.close();
    const SheetRows rows = readSheet(file);
    ASSERT_EQ(rows.size(), 2u);
    EXPECT_EQ(rows[0][0].text, "a");
    EXPECT_EQ(rows[0][1].text, "b,c");
    EXPECT_EQ(rows[0][2].text, "say \"hi\"");
    EXPECT_EQ(rows[1][0].text, "line\nbreak");
    EXPECT_EQ(rows[1][2].text, "x");
}

TEST(SheetReader, BrokenFilesAndUnsupportedContentGiveAClearMessage) {
    EXPECT_EQ(errorOf(sheetFile("truncated.xlsx")),
              "文件 truncated.xlsx 不是有效的 Excel (.xlsx) 文件,或文件已损坏,无法读取!");
    EXPECT_EQ(errorOf(sheetFile("truncated.xls")),
              "文件 truncated.xls 不是有效的 Excel 97-2003 (.xls) 文件,或文件已损坏,无法读取!");
    EXPECT_EQ(errorOf(sheetFile("not_a_sheet.xlsx")),
              "文件 not_a_sheet.xlsx 不是有效的 Excel (.xlsx) 文件,或文件已损坏,无法读取!");
    EXPECT_EQ(errorOf(sheetFile("not_a_sheet.xls")),
              "文件 not_a_sheet.xls 不是有效的 Excel 97-2003 (.xls) 文件,或文件已损坏,无法读取!");
    EXPECT_EQ(errorOf(sheetFile("merged.xlsx")), "表格中有合并单元格(A2:A3),请取消合并,每行每列各填一个值后再导入!");
    EXPECT_EQ(errorOf(sheetFile("formula.xlsx")), "表格中有公式(单元格 N2),请复制后[选择性粘贴]为数值再导入!");
    EXPECT_EQ(errorOf(sourceDir() + "/README.md"), "只能导入 Excel (.xlsx / .xls) 或 CSV (.csv) 文件!");
    EXPECT_TRUE(errorOf(sheetFile("missing.xlsx")).startsWith("文件 "));
    QTemporaryDir dir;
    QFile f(dir.filePath("open.csv"));
    ASSERT_TRUE(f.open(QIODevice::WriteOnly));
    f.write("a,\"never closed\n");
    f.close();
    EXPECT_EQ(errorOf(dir.filePath("open.csv")), "CSV 文件在引号内结束(文件不完整),请检查后再导入!");
    QFile g(dir.filePath("odd.csv"));
    ASSERT_TRUE(g.open(QIODevice::WriteOnly));
    g.write("\xFF\xFE\xFF,1\n");  // neither UTF-8 nor GB18030
    g.close();
    EXPECT_EQ(errorOf(dir.filePath("odd.csv")), "文件 odd.csv 的文字编码无法识别,请另存为[CSV UTF-8]后再导入!");
}

TEST(SheetReader, CsvInTheChineseSystemEncodingReadsToo) {
    QTemporaryDir dir;
    QFile g(dir.filePath("gbk.csv"));
    ASSERT_TRUE(g.open(QIODevice::WriteOnly));
    g.write("\xBA\xEC\xC9\xAB,1\n");  // "红色" in GB18030
    g.close();
    const SheetRows rows = readSheet(dir.filePath("gbk.csv"));
    ASSERT_EQ(rows.size(), 1u);
    EXPECT_EQ(rows[0][0].text, "红色");
    EXPECT_EQ(rows[0][1].text, "1");
}

TEST(SheetReader, CellNamesAreAsTheSpreadsheetShowsThem) {
    EXPECT_EQ(cellName(0, 0), "A1");
    EXPECT_EQ(cellName(9, 25), "Z10");
    EXPECT_EQ(cellName(0, 26), "AA1");
    EXPECT_EQ(cellName(1, 28), "AC2");
}

TEST(SheetScan, EveryBadRowIsNamedWithItsRowColumnAndReason) {
    const ScanResult scan = scanSheet(goodsSheet(), readSheet(sheetFile("bad_rows.xlsx")));
    ASSERT_EQ(scan.rows.size(), 5u);
    ASSERT_EQ(scan.problems.size(), 3u);
    EXPECT_EQ(scan.problems[0].sheetRow, 2);
    EXPECT_EQ(scan.problems[0].column, "款号");
    EXPECT_EQ(scan.problems[0].reason, "款号不能为空");
    EXPECT_EQ(scan.problems[1].sheetRow, 4);  // "b01" is "B01" in the same warehouse and colour
    EXPECT_EQ(scan.problems[1].column, "颜色");
    EXPECT_EQ(scan.problems[1].reason, "仓库+款号+颜色(SKU) 与第 3 行重复");
    EXPECT_EQ(scan.problems[2].sheetRow, 5);
    EXPECT_EQ(scan.problems[2].column, "条码规则");
    EXPECT_EQ(scan.problems[2].reason, "未知的条码规则「7」(只能为空或 0、1、3、5)");
    EXPECT_EQ(scan.goodRows(), 2);
    EXPECT_TRUE(acceptedRows(scan, false).empty());
    EXPECT_EQ(acceptedRows(scan, true), (std::vector<int>{1, 4}));
}

TEST(SheetScan, LettersInAQuantityAreABadRowInEveryFormat) {
    for (const char* file : {"letters_in_quantity.xlsx", "letters_in_quantity.xls", "letters_in_quantity.csv"}) {
        const ScanResult scan = scanSheet(goodsSheet(), readSheet(sheetFile(file)));
        ASSERT_EQ(scan.problems.size(), 1u) << file;
        EXPECT_EQ(scan.problems[0].sheetRow, 2);
        EXPECT_EQ(scan.problems[0].column, "尺码2");
        EXPECT_EQ(scan.problems[0].reason, "数量「abc」不是 0 或正整数");
    }
}

TEST(SheetScan, TextLongerThanItsColumnIsABadRow) {
    const ScanResult scan = scanSheet(goodsSheet(), readSheet(sheetFile("long_cell.xlsx")));
    ASSERT_EQ(scan.problems.size(), 1u);
    EXPECT_EQ(scan.problems[0].column, "品名");
    EXPECT_EQ(scan.problems[0].reason, "文字过长(10000 个字,最多 80 个字)");
}

TEST(SheetScan, EmptyRowsAreSkippedAndKeepTheSheetRowNumbers) {
    const ScanResult scan = scanSheet(goodsSheet(), readSheet(sheetFile("empty_rows.xlsx")));
    ASSERT_EQ(scan.rows.size(), 2u);
    EXPECT_TRUE(scan.problems.empty());
    EXPECT_EQ(scan.sheetRows, (std::vector<int>{2, 5}));
}

TEST(SheetScan, QuotesAndChineseArePlainText) {
    const ScanResult scan = scanSheet(goodsSheet(), readSheet(sheetFile("quotes_chinese.xlsx")));
    ASSERT_EQ(scan.rows.size(), 1u);
    EXPECT_TRUE(scan.problems.empty());
    EXPECT_EQ(scan.rows[0][2], "O'Neil \"特别\"版; DROP TABLE d1800");
}

TEST(SheetScan, NumbersAndDatesOfThePartnerSheetsAreChecked) {
    SheetRows rows(3);
    rows[1] = {Cell{"K1"}, Cell{"甲"}, {}, {}, {}, {}, {}, {}, {}, {}, {}, Cell{"2026/1/5"}, Cell{"46023", true},
               {}, {}, {}, {}, Cell{"12.5"}};
    rows[2] = {Cell{"K2"}, {}, {}, {}, {}, {}, {}, {}, {}, {}, {}, Cell{"昨天"}, {}, {}, {}, {}, {},
               Cell{"十元"}};
    const ScanResult scan = scanSheet(customerSheet(), rows);
    EXPECT_EQ(scan.rows[0][11], "2026-01-05");
    EXPECT_EQ(scan.rows[0][12], "2026-01-01");  // a date cell given as a day number
    ASSERT_EQ(scan.problems.size(), 2u);
    EXPECT_EQ(scan.problems[0].reason, "「昨天」不是日期(应为 YYYY-MM-DD)");
    EXPECT_EQ(scan.problems[1].reason, "「十元」不是数字");
}

}  // namespace
}  // namespace qx::test
