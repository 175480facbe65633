#include "period/Frmqxck342_1.h"

#include <QVBoxLayout>

#include "framework/ProgressDialog.h"
#include "period/PeriodCommon.h"

TQXCK342_1* QXCK342_1 = nullptr;

const char* const TQXCK342_1::RepairBatch =
    "update d1802 set k0=t.c0,k1=t.c1, k2=t.c2,k3=t.c3,k4=t.c4,k5=t.c5,k6=t.c6,k7=t.c7,k8=t.c8,k9=t.c9 from V_CHECKKC t "
    "where d1802.wl_id=t.wl_id and d1802.ck_id=t.ck_id; UPDATE  d1800 SET KC=T.K FROM ( SELECT D1801.K_ID,SUM(D1802.K0 + "
    "D1802.K1 + D1802.K2 + D1802.K3 + D1802.K4 + D1802.K5 + D1802.K6 + D1802.K7 + D1802.K8 + D1802.K9) AS k FROM D1802 "
    "INNER JOIN D1801 ON D1802.WL_ID = D1801.WL_ID  GROUP BY D1801.K_ID) t WHERE D1800.K_ID=T.K_ID AND D1800.KC<>T.K ";

namespace {
constexpr int kSizes = 10;
}

TQXCK342_1::TQXCK342_1(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("QXCK342_1");
    SetCaption("库存数量帐目平衡检查");
    Label1 = new QLabel("系统提示：系统列出帐目不平衡商品的（库存数量）信息，双击表格列出该款商品最近【进销存明细】", this);
    Label1->setObjectName("Label1");
    Label1->setWordWrap(true);
    Label2 = new QLabel("【重算后的库存】 如有负数的库存，且该商品不允许为负库存，进行【修正】时，将产生【库存不足支持本次出库业务】", this);
    Label2->setObjectName("Label2");
    Label2->setWordWrap(true);
    DBGridEh = new TDBGridEh(this);
    DBGridEh->AutoColumns = false;
    DBGridEh->SetReadOnly(true);
    MainLayout()->insertWidget(0, Label1);
    MainLayout()->insertWidget(1, DBGridEh, 1);
    MainLayout()->insertWidget(2, Label2);
    btn_ok->setText("修正(F2)");
    btn_cancel->setText("关闭");
    BuildColumns();
    resize(1000, 560);
    FormCreate();
}

TQXCK342_1::~TQXCK342_1() {
    DBGridEh->ClearHooks();
    if (AdoQry_Tmp) AdoQry_Tmp->AfterScroll = nullptr;  // the month-end close keeps its dataset
}

void TQXCK342_1::BuildColumns() {
    DBGridEh->AddColumn("ck_id", "仓库号", 50)->Visible = false;
    DBGridEh->AddColumn("ck_name", "仓库", 80);
    DBGridEh->AddColumn("wl_id", "商品编号", 100);
    DBGridEh->AddColumn("k_id", "款号", 90);
    DBGridEh->AddColumn("wl_name", "品名", 110);
    DBGridEh->AddColumn("COL_NAME", "颜色", 60);
    for (int i = 0; i < kSizes; ++i) DBGridEh->AddColumn("C" + QString::number(i), "重算后的库存|" + QString::number(i), 45);
    for (int i = 0; i < kSizes; ++i) DBGridEh->AddColumn("K" + QString::number(i), "帐面库存|" + QString::number(i), 45);
    for (int i = 0; i < kSizes; ++i) DBGridEh->AddColumn("m" + QString::number(i), "m" + QString::number(i), 40)->Visible = false;
    DBGridEh->SetFrozenCols(6);
    DBGridEh->ColumnsChanged();
}

void TQXCK342_1::FormCreate() {
    TFrm_Base_Dialog::FormCreate();
    DBGridEh->OnDblClick = [this] { qx::guard([this] { DBGridEhDblClick(DBGridEh); }); };
}

void TQXCK342_1::InitForm(TClientDataSet* DataSet) {
    AdoQry_Tmp = DataSet;
    // Only the sizes that differ keep their pair.
    for (int row = 0; row < AdoQry_Tmp->RecordCount(); ++row) {
        for (int i = 0; i < kSizes; ++i) {
            const int c = AdoQry_Tmp->FieldIndex("C" + QString::number(i));
            const int k = AdoQry_Tmp->FieldIndex("K" + QString::number(i));
            if (c < 0 || k < 0) continue;
            if (AdoQry_Tmp->CellValue(row, c).toDouble() == AdoQry_Tmp->CellValue(row, k).toDouble()) {
                AdoQry_Tmp->SetCellValue(row, c, 0);
                AdoQry_Tmp->SetCellValue(row, k, 0);
            }
        }
    }
    AdoQry_Tmp->AfterScroll = [this](TDataSet* ds) { qx::guard([&] { AdoQry_TmpAfterScroll(ds); }); };
    DBGridEh->SetDataSet(AdoQry_Tmp);
    for (int i = G_CM + 1; i < kSizes; ++i) {
        DBGridEh->ColumnByField("C" + QString::number(i))->Visible = false;
        DBGridEh->ColumnByField("K" + QString::number(i))->Visible = false;
    }
    AdoQry_Tmp->First();
    AdoQry_TmpAfterScroll(AdoQry_Tmp);
}

void TQXCK342_1::AdoQry_TmpAfterScroll(TDataSet*) {
    if (!AdoQry_Tmp || AdoQry_Tmp->IsEmpty()) return;
    for (int i = 0; i < kSizes; ++i) {
        const QString size = qx::period::sizeTitle(AdoQry_Tmp, "m", i);
        DBGridEh->ColumnByField("C" + QString::number(i))->Title = "重算后库存|" + size;
        DBGridEh->ColumnByField("K" + QString::number(i))->Title = "帐面库存|" + size;
    }
    DBGridEh->ColumnsChanged();
}

void TQXCK342_1::DBGridEhDblClick(QObject*) {
    const auto& factory = qx::period::stockMovementDetailFactory();
    if (!factory || !AdoQry_Tmp || AdoQry_Tmp->IsEmpty()) return;
    TFrm_Base_Detail* detail = factory(this);
    detail->InitForm("ReadOnly", AdoQry_Tmp);
    detail->ShowModal();
    detail->Release();
}

void TQXCK342_1::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_F2) {
        Key = 0;
        btn_ok->click();
        return;
    }
    TFrm_Base_Dialog::FormKeyDown(Sender, Key, Shift);
}

void TQXCK342_1::btn_okClick(QObject*) {
    AnsiString result;
    try {
        TProgressRun::Run(this, "修正", [&] {
            result = ExecSql("342", "342", "E", RepairBatch, 65535, false, true, false, true);
        });
    } catch (const EDatabaseError&) {
        result.clear();
        DISPINFO("执行修复错误!数据量太大或网络因素都会造成修复错误，请尝试重新修复或在服务器上执行修复!", 5);
        throw;  // and the framework says why
    }
    if (result == "Y") {
        DISPINFO("修复完成，窗口将自动关闭!", 5);
        SetModalResult(mrOk);  // the window closes
    } else {
        DISPINFO("执行修复错误!数据量太大或网络因素都会造成修复错误，请尝试重新修复或在服务器上执行修复!", 5);
    }
}
