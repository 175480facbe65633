#pragma once
// The base screens' test bench: a small purchase-receipt shop answered by a fake database, a
// demo filter, list and entry built on the framework's base screens, and the fixture that
// installs the data operations, a fixed today and the scripted message sink around each test.
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QFile>
#include <QKeyEvent>
#include <QLabel>
#include <QTemporaryDir>
#include <QTest>

#include "framework/Frm_Base_Entry_Body.h"
#include "framework/Frm_Base_Entry_Head.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/Screenshot.h"
#include "framework/Settings.h"
#include "tests/framework/FakeDatabase.h"
#include "tests/support/RecordedCalls.h"
#include "tests/support/ScreenTestEnvironment.h"

namespace qx::test::framework_screens {

using qx::dataop::Call;
using qx::db::Value;
using qx::test::table;

inline std::string s(const char* t) { return t; }
inline Value n(std::int64_t v) { return v; }

inline const char* const kHeadSql =
    " SELECT d8101.noid,d1103.kh_gys_id,d1103.kg_name,d8101.bdate,d8101.t FROM d8101 INNER JOIN d1103 ON "
    "d8101.kh_gys_id = d1103.kh_gys_id ";
inline const char* const kBodySql =
    "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8101A.S0, D8101A.S1, "
    "D8101A.S2, D1006.M0, D1006.M1, D1006.M2, D8101A.DJ as sj,D8101A.money as smoney,D8101A.NOTE FROM D8101A "
    "WHERE (D8101A.NOID =%s)";

inline std::vector<std::string> lineColumns() {
    return {"K_ID", "COL_ID", "COL_NAME", "WL_NAME", "DW_NAME", "S0", "S1", "S2", "M0", "M1", "M2", "sj", "smoney", "NOTE"};
}

// A small shop: two receipts, lines of D001, styles K01 (two colours) and K02 (one colour).
inline std::shared_ptr<qx::test::FakeDatabase> shop() {
    auto db = std::make_shared<qx::test::FakeDatabase>();
    db->answer("FROM d8101 INNER JOIN d1103",
               table({"noid", "kh_gys_id", "kg_name", "bdate", "t"},
                     {{s("D001"), s("G01"), s("华美制衣"), s("2026-03-02 00:00:00"), n(1)},
                      {s("D002"), s("G02"), s("O'Neil Ltd"), s("2026-03-05 00:00:00"), n(0)}}));
    db->answer("D8101A.NOID ='D001'",
               table(lineColumns(), {{s("K01"), s("01"), s("红色"), s("衬衫"), s("件"), n(3), n(2), n(0), s("S"), s("M"),
                                      s("L"), 10.0, 50.0, s("")},
                                     {s("K02"), s("03"), s("蓝色"), s("裤子"), s("条"), n(0), n(1), n(1), s("28"), s("29"),
                                      s("30"), 20.0, 40.0, s("")}}));
    db->answer("D8101A.NOID =", table(lineColumns(), {}));
    db->answer("WHERE d1800.K_ID='K01'",
               table({"K_ID", "WL_NAME", "DW_NAME", "CGJ", "PFJ", "M_ID", "M0", "M1", "M2", "M3", "M4", "M5", "M6", "M7",
                      "M8", "M9"},
                     {{s("K01"), s("衬衫"), s("件"), 10.0, 99.0, s("01"), s("S"), s("M"), s("L"), s("XL"), {}, {}, {}, {}, {}, {}}}));
    db->answer("WHERE d1800.K_ID='K02'",
               table({"K_ID", "WL_NAME", "DW_NAME", "CGJ", "PFJ", "M_ID", "M0", "M1", "M2", "M3", "M4", "M5", "M6", "M7",
                      "M8", "M9"},
                     {{s("K02"), s("裤子"), s("条"), 20.0, 159.0, s("02"), s("28"), s("29"), s("30"), {}, {}, {}, {}, {}, {}, {}}}));
    db->answer("LEFT OUTER JOIN d1006", table({"K_ID"}, {}));  // any other style: unknown
    db->answer("d1804.K_ID='K01' AND (d1804.COL_ID='02'", table({"COL_ID", "COL_NAME"}, {{s("02"), s("黑色")}}));
    db->answer("d1804.K_ID='K01' AND", table({"COL_ID", "COL_NAME"}, {}));
    db->answer("d1804.K_ID='K01' ORDER BY", table({"COL_ID", "COL_NAME"}, {{s("01"), s("红色")}, {s("02"), s("黑色")}}));
    db->answer("d1804.K_ID='K02' ORDER BY", table({"COL_ID", "COL_NAME"}, {{s("03"), s("蓝色")}}));
    db->answer("FROM d1007", table({"CK_ID", "CK_NAME", "PYM"}, {{s("01"), s("总仓"), {}}, {s("02"), s("东门店"), s("DMD")}}));
    db->answer("FROM d1800 WHERE", table({"K_ID", "WL_NAME"}, {}));
    db->answer("FROM d1800", table({"K_ID", "WL_NAME", "PYM"}, {{s("K01"), s("衬衫"), s("CS")}, {s("K02"), s("裤子"), {}}}));
    return db;
}

class DemoFilter : public TFrm_Sys_Filter {
public:
    explicit DemoFilter(QWidget* owner) : TFrm_Sys_Filter(owner) {
        BDATE = Panel_Condition->AddDateEdit("BDATE", "开单日期");
        EDATE = Panel_Condition->AddDateEdit("EDATE", "至：");
        KH_ID = Panel_Condition->AddLinkEdit("KH_ID", "供 应 商", 10, "KG_NAME");
        FormCreate();
    }
    void FormCreate() {
        TFrm_Sys_Filter::FormCreate();
        SetDateEdits(BDATE, EDATE);
    }
    void InitForm() override {
        TFrm_Sys_Filter::InitForm();
        setdate04click(nullptr);
    }
    void btn_okClick(QObject* sender) override {
        TFrm_Sys_Filter::btn_okClick(sender);
        CheckDate(BDATE);
        CheckDate(EDATE);
        Description = " ●开单日期:" + BDATE->Date().toString("MM-dd") + " 至 " + EDATE->Date().toString("MM-dd");
        Condition = "(D8101.BDATE>='" + SqlStr(BDATE->Text()) + "') AND (D8101.BDATE<='" + SqlStr(EDATE->Text()) + "') ";
        Condition_t("=", "d1103.KH_gys_ID", KH_ID->text());
        SetModalResult(mrOk);
    }
    TDateEdit* BDATE;
    TDateEdit* EDATE;
    TLinkEdit* KH_ID;
};

class DemoEntry : public TFrm_Base_Entry_BodyC {
public:
    explicit DemoEntry(QWidget* owner) : TFrm_Base_Entry_BodyC(owner) {
        Edit1 = Panel_Head->AddEdit("Edit1", "进货单号", 12);
        CK_ID = Panel_Head->AddLinkEdit("CK_ID", "仓    库", 4, "CK_NAME");
        NOTE = Panel_Head->AddEdit("NOTE", "备    注", 100);
        FormCreate();
    }
    void FormCreate() {
        TFrm_Base_Entry_BodyC::FormCreate();
        WarehouseEdit = CK_ID;
        PriceLabel = "进货价";
        AmountLabel = "金额";
        EntryFlag = true;
        SetCaption("采购进货");
    }
    void RefreshData() override {
        calls << "RefreshData:" + EditMode;
        if (EditMode == "Edit") {
            Edit1->setText(MasterDataSet->FieldByName("noid")->AsString());
            LockName = "EDIT1";
        } else {
            Edit1->setText(GetNOID(FuncNo, "", 0));
            LockName = "";
        }
        TFrm_Base_Entry_BodyC::RefreshData();
    }
    bool AllCheck() override {
        calls << "AllCheck";
        if (!TFrm_Base_Entry_BodyC::AllCheck()) return false;
        if (refuse) {
            DISPINFO("数量请用正数", 5);
            Abort();
        }
        return true;
    }
    void SaveData() override {
        calls << "SaveData";
        TFrm_Base_Entry_BodyC::SaveData();
        QString batch;
        for (int r = 0; r < AdoQry_Main->RecordCount(); ++r) {
            AdoQry_Main->SetRecNo(r + 1);
            batch += "INSERT INTO D8101A  VALUES ('" + SqlStr(Edit1->text()) + "','" +
                     SqlStr(AdoQry_Main->FieldByName("wl_id")->AsString()) + "','" +
                     AdoQry_Main->FieldByName("STOT")->AsString() + "');";
        }
        ExecSql(FuncNo, Edit1->text(), EditMode, batch, 65535, false, true, false, true);
    }
    void SaveHeadData() override {
        calls << "SaveHeadData";
        TFrm_Base_Entry_BodyC::SaveHeadData();
        MasterDataSet->FieldByName("noid")->SetAsString(Edit1->text());
        MasterDataSet->FieldByName("t")->SetAsInteger(0);
    }
    QLineEdit* Edit1;
    TLinkEdit* CK_ID;
    QLineEdit* NOTE;
    QStringList calls;
    bool refuse = false;
};

class DemoList : public TFrm_Base_Entry_Head {
public:
    explicit DemoList(QWidget* owner = nullptr) : TFrm_Base_Entry_Head(owner) {
        SetCaption("采购进货");
        FormCreate();
    }
    void InitForm(const Trecord& rec) override {
        TFrm_Base_Entry_Head::InitForm(rec);
        QtyFields = "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT";
        PriceFields = "dj,sj";
        MoneyFields = "money,smoney";
        KeyField = "NOID";
        WlField = "wl_id";
        HeadSql = kHeadSql;
        BodySql = kBodySql;
        DeleteSql = "delete from d8101 Where NOID=%S";
        Entry = new DemoEntry(this);
        Entry->SetBodyParam(BodyParams());
        Filter = new DemoFilter(this);
        Filter->InitForm();
        Act_Start->trigger();
    }
    DemoEntry* Entry = nullptr;
    DemoFilter* Filter = nullptr;
};

class FrameworkScreenTest : public ::testing::Test {
protected:
    void SetUp() override {
        db = shop();
        environment.install(db, &calls);
    }
    void TearDown() override { environment.restore(); }
    // The list, opened on code 201 with the filter confirmed (supplier as given).
    DemoList* openList(const QString& supplier = {}) {
        qx::ui::setModalHandler([supplier](TFrm_Base* dialog) {
            auto* filter = dynamic_cast<DemoFilter*>(dialog);
            if (!filter) return int(mrCancel);
            filter->KH_ID->setText(supplier);
            filter->btn_ok->click();
            return filter->ModalResult();
        });
        auto* list = new DemoList;
        list->resize(900, 560);
        Trecord rec;
        rec.UserId = "U1";
        rec.FuncCode = 201;
        list->InitForm(rec);
        return list;
    }
    std::vector<QString> statements(Call::Kind kind) const { return statementsOf(calls, kind); }
    qx::test::ScreenTestEnvironment environment;
    qx::ui::ScopedScriptedSink sink;
    std::shared_ptr<qx::test::FakeDatabase> db;
    std::vector<Call> calls;
};

}  // namespace qx::test::framework_screens
