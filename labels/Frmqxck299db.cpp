#include "labels/Frmqxck299db.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "labels/LabelList.h"
#include "labels/TagSource.h"

TQXCK299DB* QXCK299DB = nullptr;

AnsiString TQXCK299DB::ReceiptQuery() {
    AnsiString sql =
        "SELECT top 5 d8101.noid,d1103.kh_gys_id,d1103.kg_name,d1007.ck_id, d1007.ck_name,d8101.bdate,d8101.edate,"
        "d1011.send_id,d8101.SEND_NO, d1011.send_name,sys_user.user_id,sys_user.user_name, "
        "d1101.yw_id,d1101.yw_name,d8101.note, D1010.JY_ID, D1010.JY_NAME,d8101.t,d8101.sk,d8101.sdate FROM d8101 "
        "INNER JOIN d1103 ON d8101.kh_gys_id = d1103.kh_gys_id INNER JOIN sys_user ON d8101.user_id = "
        "sys_user.user_id INNER JOIN d1007 ON d8101.ck_id = d1007.ck_id INNER JOIN d1011 ON d8101.send_id = "
        "d1011.send_id INNER JOIN d1101 ON d8101.yw_id = d1101.yw_id  INNER JOIN ";
    if (G_CHKCK)
        sql += " sys_USER_CK ON d1007.CK_ID = sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='" + SqlStr(G_UserId) +
               "') INNER JOIN ";
    return sql + "  D1010 ON D8101.JY_ID = D1010.JY_ID ";
}

TQXCK299DB::TQXCK299DB(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK299DB");
    SetCaption("从进货单制作吊牌标签");
    Edit1 = Panel_Condition->AddEdit("Edit1", "进货单号", 12);
    btn_ref = new QPushButton("查找", Panel_Condition);
    btn_ref->setObjectName("btn_ref");
    Panel_Condition->AddControl(btn_ref, QString());

    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    AdoQry_Body = new TClientDataSet(this);
    AdoQry_Body->setObjectName("AdoQry_Body");
    DBGridEh1 = TDBGridEh::CreateBrowseGrid(this, AdoQry_Main);
    DBGridEh1->setObjectName("DBGridEh1");
    for (const auto& [field, title, width] :
         {std::tuple{"noid", "单号", 110}, {"kg_name", "供应商", 110}, {"ck_name", "仓库", 90}, {"bdate", "开单日期", 90},
          {"SEND_NO", "送货单号", 110}, {"yw_name", "业务员", 70}, {"user_name", "开单", 70}, {"note", "备注", 150}}) {
        TColumnEh* column = DBGridEh1->AddColumn(field, title, width);
        if (QString(field) == "bdate") column->DisplayFormat = "yyyy-mm-dd";
    }
    DBGridEh1->ColumnsChanged();
    DBGridEh2 = new TDBGridEh(this, "DBGridEh2");
    DBGridEh2->SetDataSet(AdoQry_Body);
    DBGridEh2->SetMultiSelect(true);
    const int index = MainLayout()->indexOf(Panel_Condition) + 1;
    MainLayout()->insertWidget(index, DBGridEh1, 1);
    MainLayout()->insertWidget(index + 1, DBGridEh2, 2);

    auto* buttons = new QHBoxLayout;
    BTN_1 = qx::labels::AddTagButton(this, "BTN_1", "生成标签", qx::labels::MakeTags);
    BTN_2 = qx::labels::AddTagButton(this, "BTN_2", "生成并关闭", qx::labels::MakeTagsAndClose);
    BTN_3 = qx::labels::AddTagButton(this, "BTN_3", "按款号制作", qx::labels::SwitchSource);
    btn_Delete = new QPushButton("删除", this);
    btn_Delete->setObjectName("btn_Delete");
    for (QPushButton* b : {BTN_1, BTN_2, BTN_3, btn_Delete}) buttons->addWidget(b);
    buttons->addStretch(1);
    MainLayout()->insertLayout(index + 2, buttons);
    btn_ok->hide();  // F2 makes the tags and closes, as BTN_2
    btn_cancel->setText("关闭");

    gtime = CreateSizeTitleTimer([this] { gtimeTimer(gtime); });
    resize(900, 620);
    FormCreate();
}

TQXCK299DB::~TQXCK299DB() {
    DBGridEh1->ClearHooks();
    DBGridEh2->ClearHooks();
    AdoQry_Main->AfterScroll = nullptr;
    if (QXCK299DB == this) QXCK299DB = nullptr;
}

void TQXCK299DB::FormCreate() {
    TFrm_Sys_Filter::FormCreate();
    qx::connectGuarded(btn_ref, &QPushButton::clicked, this, [this] { btn_refClick(btn_ref); });
    for (QPushButton* b : {BTN_1, BTN_2, BTN_3})
        qx::connectGuarded(b, &QPushButton::clicked, this, [this, b] { BTN_1Click(b); });
    Act_Delete = AddAction("Act_Delete", "删除", QKeySequence(Qt::CTRL | Qt::Key_Delete),
                           [this] { Act_DeleteExecute(Act_Delete); });
    addAction(Act_Delete);
    qx::connectGuarded(btn_Delete, &QPushButton::clicked, this, [this] { Act_DeleteExecute(btn_Delete); });
    AdoQry_Main->AfterScroll = [this](TDataSet* ds) { AdoQry_MainAfterScroll(ds); };
}

void TQXCK299DB::InitA(TClientDataSet* list) { list_ = list; }

// The five newest receipts.
void TQXCK299DB::InitForm() {
    TFrm_Sys_Filter::InitForm();
    // Loading the receipts scrolls to the first one, which loads its lines.
    opensql(AdoQry_Main, FuncNo, ReceiptQuery() + " order by d8101.noid desc ", 0, 0, {}, {}, false, "1");
}

void TQXCK299DB::btn_refClick(QObject*) {
    const QString number = Edit1->text();
    if (number.trimmed().isEmpty()) {
        InitForm();
        return;
    }
    opensql(AdoQry_Main, FuncNo,
            ReceiptQuery() + "where d8101.noid='" + SqlStr(number) + "'" + " order by d8101.noid desc ", 0, 0, {}, {},
            false, "1");
}

// The lines of the current receipt, with the received quantities as counts.
void TQXCK299DB::AdoQry_MainAfterScroll(TDataSet*) {
    const QString noid = AdoQry_Main->Active() && !AdoQry_Main->IsEmpty()
                             ? AdoQry_Main->FieldByName("noid")->AsString()
                             : QString();
    if (noid.isEmpty() && !AdoQry_Body->Active()) {
        // No receipt yet: the lines keep their columns from the first statement.
        opensql(AdoQry_Body, FuncNo, qx::labels::ReceiptLinesSql(noid), 0, 0, {}, {}, false, "1");
    } else if (noid.isEmpty()) {
        AdoQry_Body->EmptyDataSet();
    } else {
        opensql(AdoQry_Body, FuncNo, qx::labels::ReceiptLinesSql(noid), 0, 0, {}, {}, false, "1");
    }
    qx::labels::SetupSourceGrid(DBGridEh2, AdoQry_Body);
}

void TQXCK299DB::gtimeTimer(QObject*) { qx::labels::ShowSizeTitles(DBGridEh2, AdoQry_Body); }

void TQXCK299DB::BTN_1Click(QObject* Sender) {
    const int tag = qx::labels::ButtonTag(Sender);
    if (tag == qx::labels::SwitchSource) {
        SetModalResult(qx::labels::SwitchSource);
        return;
    }
    if (list_) qx::labels::AppendTags(AdoQry_Body, list_);
    if (tag == qx::labels::MakeTagsAndClose) SetModalResult(mrOk);
}

void TQXCK299DB::btn_okClick(QObject*) { BTN_1Click(BTN_2); }

void TQXCK299DB::Act_DeleteExecute(QObject*) {
    AdoQry_Body->CheckBrowseMode();
    if (!AdoQry_Body->Active() || AdoQry_Body->IsEmpty()) return;
    if (DISPINFO("是否删除所选记录", 2) != "y") return;
    QList<int> rows = DBGridEh2->SelectedRows();
    if (rows.isEmpty()) rows << AdoQry_Body->CurrentRow();
    qx::labels::DeleteRows(AdoQry_Body, DBGridEh2, rows);
}

void TQXCK299DB::showEvent(QShowEvent* event) {
    TFrm_Sys_Filter::showEvent(event);
    gtime->start();
}

void TQXCK299DB::hideEvent(QHideEvent* event) {
    gtime->stop();
    TFrm_Sys_Filter::hideEvent(event);
}
