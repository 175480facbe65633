#include "labels/Frmqxck297.h"

#include <QAction>
#include <QLabel>
#include <QToolBar>

#include "framework/DBGridEh.h"
#include "labels/Frmqxck297_1.h"
#include "labels/Frmqxck297f.h"

TQXCK297* QXCK297 = nullptr;

const char* const TQXCK297::ListQuery =
    "SELECT D1805.*, D702.VIPNAME, D1007.CK_NAME FROM D1805 LEFT OUTER JOIN D1007 ON D1805.CK_ID = D1007.CK_ID LEFT "
    "OUTER JOIN D702 ON D1805.VIPID = D702.VIPID";

const char* const TQXCK297::DeleteQuery = "delete from D1805 Where jgm=%S";

TQXCK297::TQXCK297(QWidget* Owner) : TFrm_Base_Outer(Owner) {
    setObjectName("QXCK297");
    SetCaption("监管码");
    Act_Add->setText("发出");
    ToolBar->removeAction(Act_Modify);
    Act_Filter = AddAction("Act_Filter", "过滤", QKeySequence(Qt::Key_F3), [this] { Act_FilterExecute(Act_Filter); });
    ToolBar->insertAction(Act_Add, Act_Filter);
    DBGridEh->OnDblClick = nullptr;  // nothing to modify: a code's data comes from elsewhere
    BuildColumns();
    FormCreate();
}

TQXCK297::~TQXCK297() {
    if (QXCK297 == this) QXCK297 = nullptr;
}

void TQXCK297::BuildColumns() {
    struct Column {
        const char* field;
        const char* title;
        int width;
        bool shown;
    };
    static const Column columns[] = {
        {"K_ID", "款号", 110, true},       {"JGM", "监管码", 160, true},     {"DATE1", "生成日期", 90, true},
        {"CK_ID", "仓库代号", 60, false},  {"CK_NAME", "存储位置", 110, true}, {"DATE2", "发出日期", 90, true},
        {"VIPID", "会员号", 100, true},    {"VIPNAME", "购买会员", 100, true}, {"DATE3", "销售日期", 90, true},
    };
    for (const Column& c : columns) {
        TColumnEh* column = DBGridEh->AddColumn(c.field, c.title, c.width);
        column->Visible = c.shown;
        if (QString(c.field).startsWith("DATE")) column->DisplayFormat = "yyyy-mm-dd";
    }
    DBGridEh->ColumnsChanged();
}

void TQXCK297::FormCreate() { TFrm_Base_Outer::FormCreate(); }

void TQXCK297::InitForm(const Trecord& rec) {
    TFrm_Base_Outer::InitForm(rec);
    HeadSql = ListQuery;
    KeyField = "jgm";
    DeleteSql = DeleteQuery;
    Filter = new TQXCK297F(this);
    Filter->InitForm();
    Dispatch = new TQXCK297_1(this);
    Act_FilterExecute(Act_Filter);
}

// The filter dialog; confirmed, the list runs again with its condition.
void TQXCK297::Act_FilterExecute(QObject*) {
    if (Filter->ShowModal() != mrOk) return;
    Condition = Filter->Condition;
    Lab_Condition->setText(Filter->Description);
    GetData();
}

// Stamps a batch of codes as sent to a warehouse.
void TQXCK297::Act_AddExecute(QObject*) {
    Dispatch->InitForm({}, AdoQry_Main);
    if (Dispatch->ShowModal() == mrOk) GetData();
}
