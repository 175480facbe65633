// System initialisation: the goods import in five steps (read, preview, upload, validate,
// generate), customers, suppliers and members, and clearing the documents.
#include <QTemporaryDir>

#include "SetupFixture.h"
#include "framework/Screenshot.h"
#include "frame/Dispatch.h"
#include "setup/Frmqxcks01.h"
#include "setup/Frmqxcks01_1.h"
#include "setup/ImportPreview.h"

namespace qx::test {
namespace {

using namespace qx::setup;

class InitialisationTest : public SetupTest {
protected:
    void SetUp() override {
        SetupTest::SetUp();
        previous = setFilePicker([this](const QString&, const QString&, bool save) {
            return save ? saveTarget : nextFile;
        });
        qx::ui::setModalHandler([this](TFrm_Base* dialog) {
            if (auto* preview = dynamic_cast<TImportPreview*>(dialog)) {
                lastPreview.clear();
                for (int r = 0; r < preview->ProblemsGrid->rowCount(); ++r)
                    lastPreview << preview->ProblemsGrid->item(r, 0)->text() + "|" +
                                       preview->ProblemsGrid->item(r, 1)->text() + "|" +
                                       preview->ProblemsGrid->item(r, 2)->text();
                previewSummary = preview->Lab_Summary->text();
                if (previewAnswer == Answer::Import) preview->btn_ok->click();
                else if (previewAnswer == Answer::SkipBad) preview->btn_skip->click();
                else preview->btn_cancel->click();
                return preview->ModalResult();
            }
            if (auto* confirm = dynamic_cast<TQXCKS01_1*>(dialog)) {
                if (!keepStyleColours) confirm->StyleColours->setChecked(false);
                lists = confirm->AdoQry_Class->RecordCount();
                generation = confirm->GenerationBatch();
                confirm->btn_ok->click();
                return confirm->ModalResult();
            }
            return int(mrCancel);
        });
        screen = std::make_unique<TQXCKS01>(nullptr);
        screen->InitForm(Trecord{});
    }
    void TearDown() override {
        screen.reset();
        setFilePicker(previous);
        SetupTest::TearDown();
    }

    // Steps 2 to 5 on a file.
    void importGoods(const QString& file) {
        nextFile = file;
        screen->btn_step[1]->click();
        screen->btn_step[2]->click();
        screen->btn_step[3]->click();
        screen->btn_step[4]->click();
    }
    int staged() { return count("SELECT COUNT(*) FROM d1801imp"); }
    // The master data, SKUs and stock as text (one database compared with another).
    QStringList content() {
        QStringList all;
        for (const char* sql :
             {"SELECT CLASS_ID, CLASS_NAME, PYM FROM d1004 ORDER BY CLASS_ID",
              "SELECT PP_ID, PP_NAME FROM d1009 ORDER BY PP_ID",
              "SELECT COL_ID, COL_NAME, S FROM d1005 ORDER BY COL_ID",
              "SELECT M_ID, M_NAME FROM d1006 ORDER BY M_ID", "SELECT CK_ID, CK_NAME FROM d1007 ORDER BY CK_ID",
              "SELECT K_ID, PP_ID, M_ID, CLASS_ID, WL_NAME, DW_NAME, KC, DJ, CGJ, PFJ, PP, CL, MONEY, TMI, CHECK_KC, "
              "PP_KID, COL_GROUP, DYEAR, JJ, VIPF FROM d1800 ORDER BY K_ID",
              "SELECT WL_ID, K_ID, COL_ID FROM d1801 ORDER BY WL_ID", "SELECT K_ID, COL_ID FROM d1804 ORDER BY K_ID, COL_ID",
              "SELECT WL_ID, CK_ID, K0, K1, K2, K3, K4, KC, B0, B1, B2, B3, B4, BEGIN_SL, BEGIN_MONEY FROM d1802 ORDER BY "
              "WL_ID, CK_ID"})
            all << dump(sql);
        return all;
    }

    enum class Answer { Import, SkipBad, Cancel } previewAnswer = Answer::Import;
    QString nextFile, saveTarget;
    QStringList lastPreview;
    QString previewSummary;
    bool keepStyleColours = true;
    int lists = 0;
    QString generation;
    FilePicker previous;
    std::unique_ptr<TQXCKS01> screen;
};

TEST_F(InitialisationTest, TheSampleGoesThroughTheFiveStepsWithTheirMessages) {
    importGoods(templateFile("sample_goods.xlsx"));
    EXPECT_EQ(sink->texts(),
              (QStringList{"资料上传完毕!共上传记录8笔!请进行下一步数据验证!", "资料验证完毕,资料符合导入格式,请进行下一步!",
                           "系统已成功导入资料!尺码组 仅导入名称,请自行补齐相应的尺码!\n\r部分参数可能会因为重新初始而"
                           "更改,请重新登录进销存系统!",
                           "系统已同步款号颜色组资料!"}));
    EXPECT_TRUE(opened("SELECT COUNT(B) AS B FROM D1801IMP GROUP BY B HAVING (COUNT(B) > 1)"));
    for (const Call& c : execs()) EXPECT_EQ(arguments(c), "901||B");
    EXPECT_EQ(dump("SELECT CLASS_ID, CLASS_NAME FROM d1004 ORDER BY CLASS_ID"),
              (QStringList{"01|裤装", "02|配饰", "03|裙装", "04|上衣"}));  // names in pinyin order
    EXPECT_EQ(dump("SELECT CK_ID, CK_NAME FROM d1007 ORDER BY CK_ID"), (QStringList{"01|东门店", "02|总仓"}));
    EXPECT_EQ(dump("SELECT USER_ID, CK_ID, W FROM sys_user_ck ORDER BY CK_ID"), (QStringList{"U1|01|1", "U1|02|1"}));
    EXPECT_EQ(scalar("SELECT CK_END_DATE FROM sys_co"), "2026-03-01 00:00:00");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1801 WHERE WL_ID='ZZZZZ'"), 1);
    // one style per code, filled from its rows, with its barcode rule
    EXPECT_EQ(dump("SELECT K_ID, WL_NAME, PP, TMI, CHECK_KC, PFJ, CGJ FROM d1800 ORDER BY K_ID"),
              (QStringList{"S2601|圆领T恤|朴素|2|0|99|40", "S2602|牛仔裤|朴素|3|0|259|90", "S2603|羊毛衫|暖阳|0|1|399|130",
                           "S2604|连衣裙|暖阳|2|0|499|160", "S2605|丝巾|朴素|1|0|59|18"}));
    // opening stock: K = B, money = cost x quantity; the style's totals and cost price
    EXPECT_EQ(dump("SELECT d1802.WL_ID, d1007.CK_NAME, K0, K1, K2, K3, KC, B0, B1, B2, B3, BEGIN_SL, BEGIN_MONEY FROM d1802 "
                   "INNER JOIN d1007 ON d1802.CK_ID = d1007.CK_ID WHERE d1802.WL_ID LIKE 'S2601%' ORDER BY 1, 2"),
              (QStringList{"S260101|东门店|2|2|2|2|8|2|2|2|2|8|280", "S260101|总仓|5|10|10|5|30|5|10|10|5|30|1050",
                           "S260102|总仓|3|6|6|3|18|3|6|6|3|18|630"}));
    EXPECT_EQ(dump("SELECT KC, MONEY, DJ FROM d1800 WHERE K_ID='S2601'"), QStringList{"56|1960|35"});
    EXPECT_EQ(scalar("SELECT COL_GROUP FROM d1800 WHERE K_ID='S2601'"), "白色,黑色");
    EXPECT_EQ(scalar("SELECT COL_GROUP FROM d1800 WHERE K_ID='S2605'"), "花色");
    EXPECT_EQ(scalar("SELECT COL_ID FROM d1005 WHERE COL_NAME='花色'"), "06");  // no code in the sheet: a free one
}

TEST_F(InitialisationTest, AStyleWithoutOpeningQuantityKeepsItsStyleAndColourButGetsNoSkuOrStock) {
    importGoods(templateFile("sample_goods.xlsx"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1800 WHERE K_ID='S2604'"), 1);
    EXPECT_EQ(dump("SELECT COL_ID FROM d1804 WHERE K_ID='S2604'"), QStringList{"05"});
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1801 WHERE K_ID='S2604'"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1802 WHERE WL_ID LIKE 'S2604%'"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1801imp WHERE B='S2604'"), 0);  // dropped after its style was made
}

TEST_F(InitialisationTest, TheSampleGivesTheSameDatabaseFromXlsxXlsAndCsv) {
    importGoods(templateFile("sample_goods.xlsx"));
    const QStringList fromXlsx = content();
    ASSERT_GT(fromXlsx.size(), 30);
    importGoods(templateFile("sample_goods.xls"));
    EXPECT_EQ(content(), fromXlsx);
    importGoods(templateFile("sample_goods.csv"));
    EXPECT_EQ(content(), fromXlsx);
}

TEST_F(InitialisationTest, ImportingTheSameSheetAgainDuplicatesNothing) {
    importGoods(templateFile("sample_goods.xlsx"));
    const QStringList once = content();
    importGoods(templateFile("sample_goods.xlsx"));
    EXPECT_EQ(content(), once);
    EXPECT_EQ(count("SELECT COUNT(*) FROM sys_user_ck"), 2);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1801 WHERE WL_ID='ZZZZZ'"), 1);
}

TEST_F(InitialisationTest, TheUploadWritesEmptyCellsAsNullNumbersBareAndTextQuoted) {
    nextFile = templateFile("sample_goods.xlsx");
    screen->btn_step[1]->click();
    screen->btn_step[2]->click();
    EXPECT_GOLDEN(execs().at(0).sql, "upload_sample.sql");
    EXPECT_EQ(staged(), 8);
    EXPECT_EQ(dump("SELECT B, col_id, H, J, T, x, check_kc FROM d1801imp WHERE B='S2603' AND H='灰色'"),
              QStringList{"S2603|04|灰色|1|120.5|0|1"});
}

TEST_F(InitialisationTest, TheGenerationBatchIsExactlyTheWipeTheListsAndTheRebuild) {
    importGoods(templateFile("sample_goods.xlsx"));
    EXPECT_GOLDEN(generation, "generation_sample.sql");
    EXPECT_EQ(lists, 4);
}

TEST_F(InitialisationTest, WithoutTheStyleColourOptionNoColourGroupsAreRecorded) {
    keepStyleColours = false;
    importGoods(templateFile("sample_goods.xlsx"));
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1804"), 0);
    EXPECT_FALSE(generation.contains("insert into d1804"));
    EXPECT_EQ(sink->texts().back(), "系统已同步款号颜色组资料!");
}

TEST_F(InitialisationTest, BarcodeRuleFiveMeansRuleTwoAndAnUnknownCodeKeepsFive) {
    // rows staged directly (the preview refuses unknown codes before they get here)
    const auto stage = [this](const QString& style, const QString& rule) {
        execMaintenance("insert into d1801imp (A, B, C, G, H, I, J, x) values ('总仓','" + style + "','名','上衣','红色','服装','1'," +
                        (rule.isNull() ? QString("NULL") : "'" + rule + "'") + ")");
    };
    stage("R5", "5");
    stage("R7", "7");
    stage("R2", "2");
    stage("R0", "0");
    stage("RN", QString());
    screen->btn_step[4]->click();
    EXPECT_EQ(dump("SELECT K_ID, TMI FROM d1800 ORDER BY K_ID"),
              (QStringList{"R0|0", "R2|5", "R5|2", "R7|5", "RN|2"}));
}

TEST_F(InitialisationTest, NothingIsWipedWithoutUploadedRows) {
    screen->btn_step[4]->click();
    EXPECT_EQ(sink->texts(), QStringList{"没有已上传的商品资料,请先运行第2步 准备上传 和第3步 上传!"});
    EXPECT_TRUE(execs().empty());
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1800"), 4);
}

TEST_F(InitialisationTest, AFileNameThatIsNoFileIsReportedAndNothingIsRead) {
    screen->FileName[0]->setText("/tmp/no such's \"file\".xlsx");
    screen->btn_step[1]->click();
    EXPECT_EQ(sink->texts(), QStringList{"文件 /tmp/no such's \"file\".xlsx 不存在!"});
    screen->FileName[1]->setText(sheetFile("not_a_sheet.xlsx"));
    screen->btn_import[0]->click();
    EXPECT_EQ(sink->texts().size(), 2);
    EXPECT_TRUE(execs().empty());
}

TEST_F(InitialisationTest, UploadWithoutScanningSaysToRunStepTwo) {
    screen->btn_step[2]->click();
    EXPECT_EQ(sink->texts(), QStringList{"无资料上传,请先运行第2步 准备上传"});
    EXPECT_TRUE(execs().empty());
}

TEST_F(InitialisationTest, ValidationPassesWhateverTheStagedRowsHold) {
    execMaintenance("insert into d1801imp (B) values ('DUP')");
    execMaintenance("insert into d1801imp (B) values ('DUP')");
    screen->btn_step[3]->click();
    EXPECT_EQ(sink->texts(), QStringList{"资料验证完毕,资料符合导入格式,请进行下一步!"});
}

TEST_F(InitialisationTest, HostileSheetsGiveAClearMessageAndWriteNothing) {
    execMaintenance("insert into d1801imp (B) values ('KEEP')");
    const struct {
        const char* file;
        QString message;
    } cases[] = {
        {"truncated.xlsx", "文件 truncated.xlsx 不是有效的 Excel (.xlsx) 文件,或文件已损坏,无法读取!"},
        {"truncated.xls", "文件 truncated.xls 不是有效的 Excel 97-2003 (.xls) 文件,或文件已损坏,无法读取!"},
        {"not_a_sheet.xlsx", "文件 not_a_sheet.xlsx 不是有效的 Excel (.xlsx) 文件,或文件已损坏,无法读取!"},
        {"not_a_sheet.xls", "文件 not_a_sheet.xls 不是有效的 Excel 97-2003 (.xls) 文件,或文件已损坏,无法读取!"},
        {"merged.xlsx", "表格中有合并单元格(A2:A3),请取消合并,每行每列各填一个值后再导入!"},
        {"formula.xlsx", "表格中有公式(单元格 N2),请复制后[选择性粘贴]为数值再导入!"},
    };
    for (const auto& c : cases) {
        sink->clear();
        nextFile = sheetFile(c.file);
        screen->btn_step[1]->click();
        EXPECT_EQ(sink->texts(), QStringList{c.message}) << c.file;
        screen->btn_step[2]->click();  // nothing was scanned
        EXPECT_EQ(sink->texts().value(1), "无资料上传,请先运行第2步 准备上传") << c.file;
    }
    EXPECT_TRUE(execs().empty());
    EXPECT_EQ(dump("SELECT B FROM d1801imp"), QStringList{"KEEP"});
}

TEST_F(InitialisationTest, BadRowsAreNamedAndNothingIsUploadedUntilTheUserSkipsThem) {
    previewAnswer = Answer::Cancel;
    for (const char* file : {"letters_in_quantity.xlsx", "long_cell.xlsx", "bad_rows.xlsx"}) {
        nextFile = sheetFile(file);
        screen->btn_step[1]->click();
        screen->btn_step[2]->click();
    }
    EXPECT_EQ(lastPreview, (QStringList{"2|款号|款号不能为空", "4|颜色|仓库+款号+颜色(SKU) 与第 3 行重复",
                                        "5|条码规则|未知的条码规则「7」(只能为空或 0、1、3、5)"}));
    EXPECT_TRUE(previewSummary.contains("其中 3 行有错误"));
    EXPECT_TRUE(execs().empty());
    previewAnswer = Answer::Import;  // "导入" stays disabled while there are bad rows
    screen->btn_step[1]->click();
    screen->btn_step[2]->click();
    EXPECT_TRUE(execs().empty());
    previewAnswer = Answer::SkipBad;
    screen->btn_step[1]->click();
    screen->btn_step[2]->click();
    EXPECT_EQ(dump("SELECT B FROM d1801imp ORDER BY B"), (QStringList{"B01", "B03"}));
    EXPECT_EQ(sink->texts().back(), "资料上传完毕!共上传记录2笔!请进行下一步数据验证!");
}

TEST_F(InitialisationTest, QuotesChineseAndEmptyRowsImportAsTyped) {
    importGoods(sheetFile("quotes_chinese.xlsx"));
    EXPECT_EQ(scalar("SELECT WL_NAME FROM d1800 WHERE K_ID='Q''01'"), "O'Neil \"特别\"版; DROP TABLE d1800");
    EXPECT_EQ(scalar("SELECT COL_NAME FROM d1005"), "白'色");
    EXPECT_EQ(scalar("SELECT PP FROM d1800"), "朴'素");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1802 WHERE WL_ID LIKE 'Q''01%'"), 1);
    importGoods(sheetFile("empty_rows.xlsx"));
    EXPECT_EQ(dump("SELECT K_ID FROM d1800 ORDER BY K_ID"), (QStringList{"E01", "E02"}));
}

TEST_F(InitialisationTest, ClearingKeepingOpeningStockPutsTheOpeningQuantitiesBack) {
    importGoods(templateFile("sample_goods.xlsx"));
    const QStringList opening = dump("SELECT WL_ID, CK_ID, K0, K1, K2, K3, K4, KC FROM d1802 ORDER BY WL_ID, CK_ID");
    // a purchase receipt into the head warehouse, effective: stock moves
    const QString store = scalar("SELECT CK_ID FROM d1007 WHERE CK_NAME='总仓'");
    exec("INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,send_no,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES "
         "('1','201260300001','G01','" + store + "','2026-03-18','1','','01','1','U1','','400');");
    exec("INSERT INTO D8101A  VALUES ('201260300001','S260101','S2601','01','" + store +
         "','1','2','3','4','0','0','0','0','0','0','40','400','');");
    EXPECT_EQ(scalar("SELECT K0 FROM d1802 WHERE WL_ID='S260101' AND CK_ID='" + store + "'"), "6");
    screen->KeepOpening->setChecked(true);
    screen->btn_clear->click();
    EXPECT_EQ(sink->texts().back(), "单据已全部清除!");
    EXPECT_EQ(execs().back().sql, clearDocumentsBatch(true));
    EXPECT_EQ(dump("SELECT WL_ID, CK_ID, K0, K1, K2, K3, K4, KC FROM d1802 ORDER BY WL_ID, CK_ID"), opening);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8101"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8101a"), 0);
    // DJ was set to 0 and then divided by: the cost prices are left empty, the clearing succeeds
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1800 WHERE DJ IS NULL"), 4);
}

TEST_F(InitialisationTest, ClearingEverythingRemovesSkusAndStockToo) {
    importGoods(templateFile("sample_goods.xlsx"));
    screen->ClearAll->setChecked(true);
    screen->btn_clear->click();
    EXPECT_EQ(sink->texts().back(), "单据已全部清除!");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1802"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1801"), 0);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1800"), 5);
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1800 WHERE KC <> 0 OR MONEY <> 0"), 0);
}

TEST_F(InitialisationTest, TheClearBatchsTwoChoicesAreExact) {
    EXPECT_GOLDEN(clearDocumentsBatch(true), "clear_keep_opening.sql");
    EXPECT_GOLDEN(clearDocumentsBatch(false), "clear_all.sql");
}

TEST_F(InitialisationTest, CustomersImportIntoTheirTableWithBothAccountsA) {
    nextFile = sheetFile("customers.xlsx");
    screen->btn_import[0]->click();
    EXPECT_EQ(sink->texts(), QStringList{"共导入记录2笔,成功导入!"});
    EXPECT_GOLDEN(execs().back().sql, "customers_keep.sql");
    EXPECT_EQ(dump("SELECT KH_GYS_ID, KG_NAME, ADDR, BEGIN_MONEY, KM_IDA, KM_IDB FROM d1102 ORDER BY 1"),
              (QStringList{"K001|华联商场|深圳市'南山区'|1200.5|A|A", "K002|百货大楼||0|A|A"}));
    // again, keeping the data: the codes exist, nothing is written
    sink->clear();
    screen->btn_import[0]->click();
    EXPECT_EQ(sink->texts(), QStringList{"导入失败,请检查编号是否重复!"});
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1102"), 2);
    // clearing first replaces them
    sink->clear();
    screen->ClearFirst[0]->setChecked(true);
    screen->btn_import[0]->click();
    EXPECT_TRUE(execs().back().sql.startsWith("delete from d1102;insert into D1102 ("));
    EXPECT_EQ(sink->texts(), QStringList{"共导入记录2笔,成功导入!"});
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1102"), 2);
}

TEST_F(InitialisationTest, SuppliersAndMembersGoToTheirOwnTables) {
    nextFile = sheetFile("customers.xlsx");
    screen->ClearFirst[1]->setChecked(true);
    screen->btn_import[1]->click();
    EXPECT_TRUE(execs().back().sql.startsWith("delete  from d1103;insert into D1103 ("));
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1103"), 2);
    nextFile = sheetFile("members.xlsx");
    screen->ClearFirst[2]->setChecked(true);
    screen->btn_import[2]->click();
    EXPECT_EQ(execs().back().sql,
              "delete from D702;insert into D702 (VIPID,VIPNAME,PYM,VIPTEL,VIPFAX,VIPADD,VIPEMAIL,VIPNUM,BDATE,EDATE,"
              "BIRDATE,VIPGRARD,VIPZK,VIPF,VIPF_b,VIPM,VIPNOTE,T) values ('V0001','张小姐','ZXJ','13800000000','','','',"
              "'','2026-01-01','2027-01-01','1990-05-06','金卡','95','100','0','2000','','1');");
    EXPECT_EQ(dump("SELECT VIPID, VIPNAME, VIPZK, BIRDATE FROM d702"),
              QStringList{"V0001|张小姐|95|1990-05-06 00:00:00"});
}

TEST_F(InitialisationTest, AGoodsSheetIsNotACustomerSheet) {
    previewAnswer = Answer::Cancel;
    nextFile = templateFile("sample_goods.xlsx");
    screen->btn_import[0]->click();
    EXPECT_FALSE(lastPreview.isEmpty());  // columns after the 18th, dates that are not dates
    EXPECT_TRUE(execs().empty());
}

TEST_F(InitialisationTest, TheFirstStepHandsOutACopyOfTheBlankTemplate) {
    QTemporaryDir out;
    qputenv("QXCK_TEMPLATE_DIR", (sourceDir() + "/setup/templates").toUtf8());
    saveTarget = out.filePath("my_goods.xlsx");
    screen->btn_step[0]->click();
    qunsetenv("QXCK_TEMPLATE_DIR");
    ASSERT_TRUE(QFile::exists(saveTarget));
    EXPECT_EQ(readSheet(saveTarget).size(), 1u);
    EXPECT_TRUE(sink->texts().isEmpty());
}

TEST_F(InitialisationTest, BatchesOfTheDialogRunAsMaintenance) {
    EXPECT_TRUE(qx::dataop::isMaintenanceBatch("901", "B"));
    EXPECT_FALSE(qx::dataop::isMaintenanceBatch("901", "E"));
    // a closed month does not stop the clearing
    exec("INSERT INTO D8101(T,NOID,CK_ID,BDATE) VALUES (1,'201260100001','01','2026-01-10')");
    exec("INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) VALUES ('201260100001','K0101','K01','01','01',2)");
    exec("UPDATE sys_co SET CK_END_DATE='2026-03-01'");
    screen->btn_clear->click();
    EXPECT_EQ(sink->texts(), QStringList{"单据已全部清除!"});
    EXPECT_EQ(count("SELECT COUNT(*) FROM d8101"), 0);
}

TEST_F(InitialisationTest, DivisionByZeroGivesNullOnlyInMaintenanceBatches) {
    EXPECT_THROW(exec("UPDATE d1800 SET DJ=PFJ/0"), qx::db::Error);
    execMaintenance("UPDATE d1800 SET DJ=PFJ/0");
    EXPECT_EQ(count("SELECT COUNT(*) FROM d1800 WHERE DJ IS NULL"), 4);
    EXPECT_THROW(exec("UPDATE d1800 SET DJ=PFJ/0"), qx::db::Error);  // the next batch is guarded again
}

TEST_F(InitialisationTest, OpensAsAModalDialogFromItsFunctionCode) {
    QString caption;
    qx::ui::setModalHandler([&](TFrm_Base* dialog) {
        caption = dialog->Caption();
        return int(mrCancel);
    });
    Trecord rec;
    rec.FuncCode = 932;
    qx::frame::dispatch(rec, nullptr);
    EXPECT_EQ(caption, "系统初始化");
}

TEST_F(InitialisationTest, PreviewScreenshot) {
    const ScanResult scan = scanSheet(goodsSheet(), readSheet(sheetFile("bad_rows.xlsx")));
    TImportPreview preview(nullptr, goodsSheet(), sheetFile("bad_rows.xlsx"), scan);
    preview.resize(1000, 520);
    EXPECT_FALSE(qx::saveScreenshot(&preview, "import_preview").isEmpty());
}

}  // namespace
}  // namespace qx::test
