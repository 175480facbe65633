// The framework on a real shop database (SQLite, created from the table definitions): data
// operations, typed fields, pick lists and line entry.
#include <gtest/gtest.h>

#include <QTemporaryDir>

#include "db/Database.h"
#include "framework/Frm_Base_Entry_Body.h"
#include "framework/U_dataop.h"

namespace {

class FrameworkOnSqlite : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        std::shared_ptr<qx::db::Database> db = qx::db::openSqlite(dir.filePath("shop.db").toStdString(), true);
        qx::dataop::setDatabase(db);
        ExecSql("901", "", "Add",
                "INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('01','总仓');"
                "INSERT INTO d1007 (CK_ID, CK_NAME, PYM) VALUES ('02','东门店','DMD');"
                "INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3) VALUES ('01','上衣','S','M','L','XL');"
                "INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('01','红色');"
                "INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('02','黑色');"
                "INSERT INTO d1800 (K_ID, M_ID, WL_NAME, DW_NAME, CGJ, PFJ) VALUES ('K01','01','衬衫','件',10,99);"
                "INSERT INTO d1804 (K_ID, COL_ID) VALUES ('K01','02');",
                65535, false, true, false, true);
    }
    void TearDown() override {
        qx::dataop::setDatabase(nullptr);
        ResetGlobals();
    }
    QTemporaryDir dir;
    qx::ui::ScopedScriptedSink sink;
};

TEST_F(FrameworkOnSqlite, QuotedValuesAreStoredAsTyped) {
    ExecSql("201", "", "Add",
            "INSERT INTO d1007 (CK_ID, CK_NAME) VALUES (" + QuotedStr("03") + "," + QuotedStr("O'Neil's") + ");",
            65535, false, true, false, true);
    TClientDataSet ds;
    opensql(&ds, "201", "SELECT CK_ID, CK_NAME FROM d1007 WHERE CK_ID=" + QuotedStr("03"), 0, 0, {}, {}, false, "1");
    ASSERT_EQ(ds.RecordCount(), 1);
    EXPECT_EQ(ds.FieldByName("ck_name")->AsString(), "O'Neil's");
}

TEST_F(FrameworkOnSqlite, ResultColumnsBecomeTypedFields) {
    TClientDataSet ds;
    opensql(&ds, "201", "SELECT K_ID, CGJ, WL_YS, BDATE FROM d1800", 0, 0, {}, {}, false, "1");
    EXPECT_EQ(ds.FieldNames(), QStringList({"K_ID", "CGJ", "WL_YS", "BDATE"}));
    EXPECT_DOUBLE_EQ(ds.FieldByName("CGJ")->AsFloat(), 10);
    EXPECT_EQ(ds.FieldByName("CGJ")->AsString(), "10");
    EXPECT_TRUE(ds.FieldByName("BDATE")->IsNull());
}

TEST_F(FrameworkOnSqlite, DatabaseErrorsPropagateAsDatabaseErrors) {
    TClientDataSet ds;
    EXPECT_THROW(opensql(&ds, "201", "SELECT * FROM d9999", 0, 0, {}, {}, false, "1"), EDatabaseError);
    EXPECT_THROW(ExecSql("201", "", "Add", "INSERT INTO d9999 VALUES (1);", 65535, false, true, false, true),
                 EDatabaseError);
}

TEST_F(FrameworkOnSqlite, DocumentNumbersAreNeverRepeated) {
    const QString first = GetNOID("201", "", 0);
    const QString second = GetNOID("201", "", 0);
    EXPECT_NE(first, second);
    EXPECT_LE(first.size(), 12);
}

TEST_F(FrameworkOnSqlite, PickListSearchesTheTable) {
    TLinkEdit edit;
    QLabel name;
    edit.SetNameLabel(&name);
    TFrm_Sys_LINK_CK link(nullptr);
    link.init(nullptr, &edit, &edit, "201");
    link.Search("zc");
    ASSERT_EQ(link.DataSet()->RecordCount(), 1);
    EXPECT_TRUE(link.Pick());
    EXPECT_EQ(edit.text(), "01");
    EXPECT_EQ(name.text(), "总仓");
    EXPECT_EQ(link.NameOf("02"), "东门店");
    EXPECT_TRUE(link.NameOf("99").isNull());
}

TEST_F(FrameworkOnSqlite, LineEntryFindsStyleColourAndSizes) {
    TFrm_Base_Entry_BodyC entry;
    entry.FuncNo = "201";
    TBodyParams params;
    params.BodySql = "SELECT D8101A.K_ID, D8101A.COL_ID, D1005.COL_NAME, D1800.WL_NAME, D1800.DW_NAME, "
                           "D8101A.S0, D8101A.S1, D8101A.S2, D8101A.S3, D8101A.DJ as sj, D8101A.money as smoney, "
                           "D8101A.NOTE FROM D8101A INNER JOIN D1800 ON D8101A.K_ID = D1800.K_ID INNER JOIN D1005 ON "
                           "D8101A.COL_ID = D1005.COL_ID WHERE (D8101A.NOID =%s)";
    params.MoneyFields = "money,smoney";
    params.PriceFields = "dj,sj";
    params.QtyFields = "S0,S1,S2,S3,STOT";
    params.WlField = "wl_id";
    params.KeyField = "NOID";
    entry.SetBodyParam(params);
    entry.InitForm("Add", nullptr, true, true, false, 0);
    entry.Act_AddLine->trigger();
    entry.EnterStyle("K01");
    TClientDataSet* lines = entry.AdoQry_Main;
    EXPECT_EQ(lines->FieldByName("WL_NAME")->AsString(), "衬衫");
    EXPECT_EQ(lines->FieldByName("COL_NAME")->AsString(), "黑色");  // the style's only colour
    EXPECT_EQ(lines->FieldByName("wl_id")->AsString(), "K0102");
    EXPECT_DOUBLE_EQ(lines->FieldByName("sj")->AsFloat(), 10);
    EXPECT_EQ(entry.DBGridEh->ColumnByField("S3")->Title, "尺码|XL");
    lines->FieldByName("S0")->SetText("3");
    lines->FieldByName("S3")->SetText("2");
    lines->Post();
    EXPECT_EQ(lines->FieldByName("STOT")->AsInteger(), 5);
    EXPECT_TRUE(sink->messages.empty()) << sink->texts().join("; ").toStdString();
}

}  // namespace
