#include "labels/Frmqxck299.h"

#include <QAction>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QToolBar>

#include "framework/DBGridEh.h"
#include "framework/Settings.h"
#include "labels/Frmqxck299db.h"
#include "labels/Frmqxck299f.h"
#include "labels/LabelList.h"
#include "labels/TagPrint.h"
#include "labels/TagSource.h"

TQXCK299* QXCK299 = nullptr;

QString TQXCK299::ListFile() { return qx::settings::programFile("CLTZ"); }
QString TQXCK299::SettingsFile() { return qx::settings::programFile("VARDO.DLL"); }

TQXCK299::TQXCK299(QWidget* Owner) : TFrm_Base_Qry(Owner) {
    setObjectName("QXCK299");
    SetCaption("吊牌标签制作");
    Act_Locate->setText("生成");
    // The filter action empties the list here.
    QObject::disconnect(Act_Filter, &QAction::triggered, nullptr, nullptr);
    qx::connectGuarded(Act_Filter, &QAction::triggered, this, [this] { Act_FilterExecute(Act_Filter); });
    Act_Delete = AddAction("Act_Delete", "删除", QKeySequence(Qt::CTRL | Qt::Key_Delete),
                           [this] { Act_DeleteExecute(Act_Delete); });
    ToolBar->insertAction(Act_Refresh, Act_Delete);
    ToolBar->removeAction(Act_Refresh);  // nothing to refresh: the list is not a query
    ToolBar->removeAction(Act_Order);
    Act_Print->setText("打印吊牌");
    Act_Preview->setText("预览吊牌");

    auto* note = new QWidget(this);
    auto* row = new QHBoxLayout(note);
    row->setContentsMargins(4, 0, 4, 0);
    Label2 = new QLabel("系统提示：系统仅在<本机>保留最近一次生成的标签，如无需保留请点击 ", note);
    Label2->setObjectName("Label2");
    Label2->setTextFormat(Qt::PlainText);
    Label1 = new QPushButton("清空表格暂存标签", note);
    Label1->setObjectName("Label1");
    Label1->setFlat(true);
    Label1->setCursor(Qt::PointingHandCursor);
    Label1->setStyleSheet("QPushButton { color: #1a5fb4; text-decoration: underline; border: none; padding: 0; }");
    row->addWidget(Label2);
    row->addWidget(Label1);
    row->addStretch(1);
    MainLayout()->insertWidget(MainLayout()->indexOf(DBGridEh), note);
    qx::connectGuarded(Label1, &QPushButton::clicked, this, [this] { Label1Click(Label1); });

    AdoQry_Main->BeforePost = [this](TDataSet* ds) { AdoQry_MainBeforePost(ds); };
    AdoQry_Main->AfterDelete = [this](TDataSet*) {
        if (!AdoQry_Main->ControlsDisabled()) ShowRowCount();
    };
    qx::labels::DefineLabelList(AdoQry_Main);
    DBGridEh->SetFooterRowVisible(true);
    FormCreate();
}

void TQXCK299::FormCreate() {
    TFrm_Base_Qry::FormCreate();
    tmbq = QSettings(SettingsFile(), QSettings::IniFormat).value("sys/tmbq", 0).toInt();
}

TQXCK299::~TQXCK299() {
    FormDestroy();
    if (QXCK299 == this) QXCK299 = nullptr;
}

void TQXCK299::FormDestroy() {
    qx::guard([this] {
        QSettings vardo(SettingsFile(), QSettings::IniFormat);
        vardo.setValue("sys/tmbq", tmbq);
        FormClose();
    });
}

void TQXCK299::InitForm(const Trecord& rec) {
    TFrm_Base_Qry::InitForm(rec);
    const auto loaded = qx::labels::LoadLabelFile(ListFile(), AdoQry_Main);
    listLoaded_ = true;
    ShowRowCount();
    FromReceipt = new TQXCK299DB(this);
    FromReceipt->InitA(AdoQry_Main);
    ByStyle = new TQXCK299F(this);
    ByStyle->InitA(AdoQry_Main);
    if (!loaded.ok) DISPINFO(loaded.problem + "，标签列表从空表开始。", 5);
}

// Shows the source dialog used last; its switch button opens the other one at once.
void TQXCK299::Act_LocateExecute(QObject*) {
    for (;;) {
        int result;
        if (tmbq == 1) {
            result = ByStyle->ShowModal();
        } else {
            FromReceipt->InitForm();
            result = FromReceipt->ShowModal();
        }
        if (result != qx::labels::SwitchSource) break;
        tmbq = tmbq == 1 ? 0 : 1;
    }
    ShowRowCount();
}

void TQXCK299::Act_FilterExecute(QObject*) {
    AdoQry_Main->EmptyDataSet();
    ShowRowCount();
}

void TQXCK299::Label1Click(QObject* Sender) { Act_FilterExecute(Sender); }

void TQXCK299::Act_DeleteExecute(QObject*) {
    AdoQry_Main->CheckBrowseMode();
    if (AdoQry_Main->IsEmpty()) return;
    QList<int> rows = DBGridEh->SelectedRows();
    if (rows.size() > 1) {
        if (DISPINFO("是否删除所选记录", 2) != "y") return;
        qx::labels::DeleteRows(AdoQry_Main, DBGridEh, rows);
    } else {
        AdoQry_Main->Delete();
    }
    ShowRowCount();
}

void TQXCK299::Act_PrintExecute(QObject*) { qx::labels::ShowTagPrintDialog(this, AdoQry_Main); }
void TQXCK299::Act_PreviewExecute(QObject*) { qx::labels::PreviewTags(this, AdoQry_Main); }

// Rows posted one by one show their count at once; bulk loads count once at their end.
void TQXCK299::AdoQry_MainBeforePost(TDataSet*) {
    if (!AdoQry_Main->ControlsDisabled()) ShowRowCount();
}

void TQXCK299::ShowRowCount() {
    if (TColumnEh* c = DBGridEh->ColumnByField("tm")) {
        c->Footer.ValueType = fvtStaticText;
        c->Footer.Value = "共" + QString::number(AdoQry_Main->RecordCount()) + "张";
        DBGridEh->ColumnsChanged();
    }
}

bool TQXCK299::FormCloseQuery() {
    FormClose();
    return true;
}

// Keeps the list on this machine for the next run.
void TQXCK299::FormClose() {
    if (!listLoaded_) return;  // never opened: nothing may overwrite what was kept
    qx::labels::SaveLabelFile(ListFile(), AdoQry_Main);
}
