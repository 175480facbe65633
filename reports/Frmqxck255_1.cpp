#include "reports/Frmqxck255_1.h"

#include <QPushButton>
#include <QToolButton>

#include "documents/common/DocumentCommon.h"
#include "framework/ProgressDialog.h"
#include "reports/ReportCommon.h"

TQXCK255_1* QXCK255_1 = nullptr;

TQXCK255_1::TQXCK255_1(QWidget* Owner) : TFrm_Base_Detail(Owner) {
    setObjectName("QXCK255_1");
    SetCaption("进销存明细表");
    Lab_Name = new QLabel(Panel_Condition);
    Lab_Name->setObjectName("Lab_Name");
    Panel_Condition->AddControl(Lab_Name, QString(), 3);
    Panel_Condition->NewRow();
    BDATE = Panel_Condition->AddDateEdit("BDATE", "日期");
    EDATE = Panel_Condition->AddDateEdit("EDATE", "至");
    titDATE = CreateDayCountLabel(Panel_Condition);
    Panel_Condition->AddControl(titDATE, QString());
    btn_dateset = CreateDatePresetButton(Panel_Condition);
    btn_dateset->setObjectName("btn_dateset");
    btn_dateset->setText("时段选择");
    Panel_Condition->AddControl(btn_dateset, QString());
    Panel_Condition->NewRow();
    Lab_Note = new QLabel("操作提示：日期变更后请【刷新】一次，请尽量缩小日期范围以减少数据库服务器的运算。", Panel_Condition);
    Lab_Note->setObjectName("Lab_Note");
    Panel_Condition->AddControl(Lab_Note, QString(), 3);
    btn_ok->setText("刷新");
    FormCreate();
}

void TQXCK255_1::FormCreate() {
    TFrm_Base_Detail::FormCreate();
    SetDateEdits(BDATE, EDATE);
    const QDate today = qx::ui::today();
    EDATE->SetDate(today);
    BDATE->SetDate(today.addDays(-30));
    titDATE->setText("(30天)");
    for (TDateEdit* date : {BDATE, EDATE})
        qx::connectGuarded(date, &QDateEdit::dateChanged, this, [this, date] { datecan(date); });
    DBGridEh->AutoColumns = false;
    DBGridEh->SetReadOnly(true);
    DBGridEh->SortOnTitleClick = true;
    DBGridEh->ClearColumns();
    DBGridEh->AddColumn("CK_ID", "仓库代号")->Visible = false;
    DBGridEh->AddColumn("CK_NAME", "仓库");
    DBGridEh->AddColumn("wl_id", "条码", 110);
    DBGridEh->AddColumn("dw_name", "尺码", 50);
    DBGridEh->AddColumn("BDATE", "日期", 60)->DisplayFormat = "mm-dd";
    DBGridEh->AddColumn("TYPE_NAME", "单据类型");
    DBGridEh->AddColumn("NOID", "单号", 110);
    DBGridEh->AddColumn("in1", "进", 50);
    DBGridEh->AddColumn("ou1", "出", 50);
    DBGridEh->AddColumn("jc", "存", 50)->DisplayFormat = "0";
    DBGridEh->AddColumn("wl_gg", "现库存", 60);
    DBGridEh->ColumnsChanged();
    // per-size lines (their size in the size column, the current stock of that size beside)
    DBGridEh->OnGetCellParams = [this](TColumnEh*, TCellParams& p) {
        if (AdoQry_Main->Active() && !AdoQry_Main->IsEmpty() && AdoQry_Main->FindField("mytype") &&
            AdoQry_Main->FieldByName("mytype")->AsInteger() == 100)
            p.FontColor = Qt::blue;
    };
}

void TQXCK255_1::datecan(QObject*) { qx::documents::updateDayCount(BDATE, EDATE, titDATE); }

QString TQXCK255_1::BuildSql() const {
    QString sql = "EXEC SYS_ZM @param=1,@BDATE='" + SqlStr(BDATE->Text()) + "',@EDATE='" + qx::reports::nextDay(EDATE->Date()) + "'";
    if (!MasterDataSet) return sql;
    const QString warehouse = MasterDataSet->FindField("CK_ID") ? MasterDataSet->FieldByName("CK_ID")->AsString() : QString();
    if (warehouse.toUpper() != "ZZ") sql += ",@ck_id1='" + SqlStr(warehouse) + "'";
    // The stock query's rows name style and colour; the balance check's rows the SKU itself.
    const QString sku = MasterDataSet->FindField("COL_ID")
                            ? MasterDataSet->FieldByName("K_ID")->AsString() + MasterDataSet->FieldByName("COL_ID")->AsString()
                            : MasterDataSet->FieldByName("WL_ID")->AsString();
    if (!sku.trimmed().isEmpty()) sql += ",@wl_id='" + SqlStr(sku) + "'";
    if (G_CHKCK) sql += ",@CheckCk=1,@userid='" + SqlStr(G_UserId) + "'";
    sql += ",@param2=" + boltos(ShowCost);
    return sql;
}

void TQXCK255_1::InitForm(AnsiString Key, TClientDataSet* Master) {
    KeyValue = Key;
    MasterDataSet = Master;
    if (!Master || !Master->Active() || Master->IsEmpty()) return;
    Lab_Name->setText(Master->FieldByName("wl_name")->AsString() + " / " + Master->FieldByName("COL_name")->AsString());
    CheckDate(BDATE);
    CheckDate(EDATE);
    if (BDATE->Date() > EDATE->Date()) {
        DISPINFO("<开始日期> 不能大于 <结束日期>!", 5);
        BDATE->setFocus();
        return;
    }
    TProgressRun::Run(this, "正在查询进销存明细…", [this] { opensql(AdoQry_Main, FuncNo, BuildSql(), 0, 0, {}, {}, false, "1"); });
    // per-size lines show the current stock of their size, from the master row
    AdoQry_Main->DisableControls();
    AdoQry_Main->First();
    while (!AdoQry_Main->Eof()) {
        AdoQry_Main->Edit();
        if (AdoQry_Main->FieldByName("mytype")->AsInteger() != 100) {
            AdoQry_Main->FieldByName("wl_gg")->SetAsString("");
        } else {
            const int index = AdoQry_Main->FieldByName("M_INDEX")->AsInteger();
            TField* size = Master->FindField("S" + QString::number(index));
            AdoQry_Main->FieldByName("wl_gg")->SetAsString(size ? size->AsString() : QString());
        }
        AdoQry_Main->Post();
        AdoQry_Main->Next();
    }
    AdoQry_Main->First();
    AdoQry_Main->EnableControls();
}

void TQXCK255_1::btn_okClick(QObject*) { InitForm(KeyValue, MasterDataSet); }
void TQXCK255_1::btn_CancelClick(QObject*) { Close(); }
void TQXCK255_1::RefreshData() {}
void TQXCK255_1::SaveData() {}
