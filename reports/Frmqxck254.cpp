#include "reports/Frmqxck254.h"

#include <QAction>
#include <QKeyEvent>

TQXCK254* QXCK254 = nullptr;
TQXCK254F* QXCK254F = nullptr;

TQXCK254::TQXCK254(QWidget* Owner) : TFrm_MovementReport(Owner, "QXCK254", "进销存明细表", true) { FormCreate(); }

void TQXCK254::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    AddArticleColumns();
    DBGridEh->AddColumn("TYPE_NAME", "单据类型", 70);
    DBGridEh->AddColumn("CK_ID", "仓库代号", 50)->Visible = false;
    DBGridEh->AddColumn("CK_NAME", "仓库", 70);
    DBGridEh->AddColumn("BDATE", "开单日期", 80)->DisplayFormat = "yyyy-mm-dd";
    DBGridEh->AddColumn("NOID", "单号", 100);
    DBGridEh->AddColumn("in1", "进|数量", 50);
    DBGridEh->AddColumn("in_mon", "进|成本金额", 70);
    DBGridEh->AddColumn("ou1", "出|数量", 50);
    DBGridEh->AddColumn("ou_mon", "出|成本金额", 70);
    DBGridEh->AddColumn("jc", "存|数量", 50)->DisplayFormat = "0";
    DBGridEh->AddColumn("jc_mon", "存|成本金额", 70);
    DBGridEh->ColumnsChanged();
    DBGridEh->SortOnTitleClick = false;  // the order of the lines is the balance's
    DBGridEh->OnKeyDown = [this](QKeyEvent* e, bool& handled) {
        int key = e->key();
        DBGridEhKeyDown(DBGridEh, key, e->modifiers());
        handled = key == 0;
    };
}

void TQXCK254::InitForm(const Trecord& rec) {
    MoneyFields = "in_mon,jc_mon,ou_mon";
    CostFields = SplitFields(MoneyFields);
    SumFields = SplitFields("in1,in_mon,ou1,ou_mon,jc,jc_mon");
    QXCK254F = new TQXCK254F(this);
    Start(rec, QXCK254F);
}

void TQXCK254::AfterQuery() { Act_Export->setEnabled(true); }

void TQXCK254::DBGridEhGetCellParams(QObject*, TColumnEh* Column, TCellParams& Params) {
    // per-size lines: from the seventh column (TYPE_NAME) on, in blue
    if (Column->Index() >= 6 && AdoQry_Main->FindField("mytype") && AdoQry_Main->FieldByName("mytype")->AsInteger() == 100)
        Params.FontColor = Qt::blue;
}

void TQXCK254::DBGridEhKeyDown(QObject*, int& Key, Qt::KeyboardModifiers) {
    if (Key != Qt::Key_Tab || !AdoQry_Main->Active()) return;
    Key = 0;
    if (AdoQry_Main->Eof() || AdoQry_Main->RecNo() >= AdoQry_Main->RecordCount()) {
        AdoQry_Main->First();
        return;
    }
    AdoQry_Main->DisableControls();
    const QString article = AdoQry_Main->FieldByName("wl_id")->AsString();
    while (!AdoQry_Main->Eof() && AdoQry_Main->FieldByName("wl_id")->AsString() == article) AdoQry_Main->Next();
    AdoQry_Main->EnableControls();
}
