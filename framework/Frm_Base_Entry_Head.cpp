#include "framework/Frm_Base_Entry_Head.h"

#include <QAction>
#include <QLabel>
#include <QSplitter>
#include <QToolBar>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "framework/Frm_Base_Entry_Body.h"
#include "framework/GridExport.h"
#include "framework/SizeMatrix.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

TFrm_Base_Entry_Head::TFrm_Base_Entry_Head(QWidget* Owner) : TFrm_Base_Panel(Owner) {
    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    AdoQry_Detail = new TClientDataSet(this);
    AdoQry_Detail->setObjectName("AdoQry_Detail");

    auto* splitter = new QSplitter(Qt::Vertical, this);
    splitter->setObjectName("Splitter");
    DBGridEh = new TDBGridEh(splitter, "DBGridEh");
    DBGridEh->SetReadOnly(true);
    DBGridEh->setSelectionBehavior(QAbstractItemView::SelectRows);
    DBGridEh->SetDataSet(AdoQry_Main);
    DBGridEh_Detail = new TDBGridEh(splitter, "DBGridEh_Detail");
    DBGridEh_Detail->SetReadOnly(true);
    DBGridEh_Detail->SetDataSet(AdoQry_Detail);
    splitter->addWidget(DBGridEh);
    splitter->addWidget(DBGridEh_Detail);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    MainLayout()->addWidget(splitter, 1);

    Act_Start = AddAction("Act_Start", tr("开始"), {}, [this] { Act_FilterExecute(Act_Start); });
    Act_Add = AddAction("Act_Add", tr("新增"), QKeySequence(Qt::Key_Insert), [this] { Act_AddExecute(Act_Add); });
    Act_CopyAdd = AddAction("Act_CopyAdd", tr("复制新增"), QKeySequence(Qt::CTRL | Qt::Key_Insert),
                            [this] { Act_CopyAddExecute(Act_CopyAdd); });
    Act_Edit = AddAction("Act_Edit", tr("修改"), QKeySequence(Qt::CTRL | Qt::Key_E), [this] { Act_EditExecute(Act_Edit); });
    Act_Delete = AddAction("Act_Delete", tr("删除"), QKeySequence(Qt::CTRL | Qt::Key_Delete),
                           [this] { Act_DeleteExecute(Act_Delete); });
    Act_View = AddAction("Act_View", tr("查看"), QKeySequence(Qt::CTRL | Qt::Key_W), [this] { Act_ViewExecute(Act_View); });
    Act_Filter = AddAction("Act_Filter", tr("过滤"), QKeySequence(Qt::Key_F3), [this] { Act_FilterExecute(Act_Filter); });
    Act_Refresh = AddAction("Act_Refresh", tr("刷新"), QKeySequence(Qt::Key_F5), [this] { Act_RefreshExecute(Act_Refresh); });
    Act_Print = AddAction("Act_Print", tr("打印"), QKeySequence(Qt::CTRL | Qt::Key_P), [this] { Act_PrintExecute(Act_Print); });
    Act_Preview = AddAction("Act_Preview", tr("预览"), {}, [this] { Act_PreviewExecute(Act_Preview); });
    Act_Export = AddAction("Act_Export", tr("导出"), {}, [this] { Act_ExportExecute(Act_Export); });
    Act_Quit = AddAction("Act_Quit", tr("退出"), QKeySequence(Qt::Key_Escape), [this] { Act_QuitExecute(Act_Quit); });
    for (QAction* a : {Act_Add, Act_CopyAdd, Act_Edit, Act_Delete, Act_View, Act_Filter, Act_Refresh, Act_Print,
                       Act_Preview, Act_Export, Act_Quit})
        ToolBar->addAction(a);

    AdoQry_Main->AfterScroll = [this](TDataSet*) { RefreshDetail(); };
    AdoQry_Detail->AfterScroll = [this](TDataSet*) { updateDetailSizeTitles(); };
    DBGridEh->OnGetCellParams = [this](TColumnEh* c, TCellParams& p) { DBGridEhGetCellParams(DBGridEh, c, p); };
    DBGridEh->OnDblClick = [this] { Act_EditExecute(Act_Edit); };
    resize(900, 600);
}

void TFrm_Base_Entry_Head::InitForm(const Trecord& rec) {
    OpenScreen(rec);
}

Tfrm_Base_Entry_Body* TFrm_Base_Entry_Head::entry() {
    if (!EntryForm) EntryForm = findChild<Tfrm_Base_Entry_Body*>(QString(), Qt::FindDirectChildrenOnly);
    if (EntryForm && !EntryForm->property("qx_list_connected").toBool()) {
        EntryForm->setProperty("qx_list_connected", true);
        connect(EntryForm, &Tfrm_Base_Entry_Body::saved, this, [this] { RefreshDetail(); });
    }
    return EntryForm;
}

TFrm_Sys_Filter* TFrm_Base_Entry_Head::filter() {
    if (!FilterForm) FilterForm = findChild<TFrm_Sys_Filter*>(QString(), Qt::FindDirectChildrenOnly);
    return FilterForm;
}

TBodyParams TFrm_Base_Entry_Head::BodyParams() const {
    TBodyParams params;
    params.HeadSql = HeadSql;
    params.BodySql = BodySql;
    params.MoneyFields = MoneyFields;
    params.PriceFields = PriceFields;
    params.QtyFields = QtyFields;
    params.StyleField = StyleField;
    params.WlField = WlField;
    params.KeyField = KeyField;
    params.DeleteSql = DeleteSql;
    return params;
}

AnsiString TFrm_Base_Entry_Head::HeadStatement() const {
    return Condition.trimmed().isEmpty() ? HeadSql : HeadSql + " WHERE " + Condition;
}

void TFrm_Base_Entry_Head::GetData() {
    const QString keep = (!KeyField.isEmpty() && !AdoQry_Main->IsEmpty() && AdoQry_Main->FindField(KeyField))
                             ? AdoQry_Main->FieldByName(KeyField)->AsString()
                             : QString();
    {
        ScopedDisableControls frozen(AdoQry_Main);
        opensql(AdoQry_Main, FuncNo, HeadStatement(), 0, 0, {}, {}, false, "1");
        if (!keep.isEmpty()) AdoQry_Main->Locate(KeyField, keep);
    }
    RefreshDetail();
}

void TFrm_Base_Entry_Head::RefreshDetail() {
    if (BodySql.isEmpty() || KeyField.isEmpty() || !AdoQry_Main->Active()) return;
    if (AdoQry_Main->IsEmpty() || !AdoQry_Main->FindField(KeyField)) {
        if (AdoQry_Detail->Active()) AdoQry_Detail->EmptyDataSet();
        return;
    }
    const QString key = AdoQry_Main->FieldByName(KeyField)->AsString();
    QString sql = BodySql;
    sql.replace("%s", QuotedStr(key));
    opensql(AdoQry_Detail, FuncNo, sql, 0, 0, {}, {}, false, "1");
    // The line total, as entry screens show it.
    if (!AdoQry_Detail->FindField("STOT") && AdoQry_Detail->FindField("S0")) {
        AdoQry_Detail->OnCalcFields = [](TDataSet* ds) {
            ds->FieldByName("STOT")->SetAsFloat(qx::sizes::currentLineTotal(ds));
        };
        AdoQry_Detail->AddField("STOT", ftInteger, 0, tr("合计"), fkCalculated);
    }
    // The lines look as the entry screen shows them: sizes in position order, one caption per
    // field. Built once: every head's lines come from the same query.
    if (!detailColumnsBuilt_ && AdoQry_Detail->FindField("S0")) {
        TLineColumnConfig config;
        if (Tfrm_Base_Entry_Body* e = entry()) config = e->lineColumnConfig();
        config.StyleField = StyleField;
        config.QtyFields = QtyFields;
        config.PriceFields = PriceFields;
        config.MoneyFields = MoneyFields;
        BuildDocumentLineColumns(DBGridEh_Detail, AdoQry_Detail, config);
        detailColumnsBuilt_ = true;
    }
    updateDetailSizeTitles();
}

void TFrm_Base_Entry_Head::updateDetailSizeTitles() {
    if (!AdoQry_Detail->FindField(qx::sizes::nameField(0))) {
        HideSizeColumnsAfterCM(DBGridEh_Detail);
        return;
    }
    SetSizeTitles(DBGridEh_Detail,
                  AdoQry_Detail->IsEmpty() ? QStringList() : qx::sizes::namesOfRow(AdoQry_Detail, AdoQry_Detail->CurrentRow()));
}

AnsiString TFrm_Base_Entry_Head::DeleteStatement(const AnsiString& key) const {
    QString sql = DeleteSql;
    sql.replace("%s", QuotedStr(key));
    sql.replace("%S", QuotedStr(key));
    return sql;
}

void TFrm_Base_Entry_Head::OpenEntry(const AnsiString& mode, bool readOnly) {
    Tfrm_Base_Entry_Body* e = entry();
    if (!e) return;
    if (mode != "Add" && (AdoQry_Main->IsEmpty() || !AdoQry_Main->Active())) {
        DISPINFO(tr("请先选择一张单据!"), 5);
        return;
    }
    // The list receives the saved head: it needs its columns even when no query ran yet.
    if (AdoQry_Main->FieldCount() == 0 && !HeadSql.trimmed().isEmpty())
        opensql(AdoQry_Main, FuncNo, HeadSql + " WHERE 1=0", 0, 0, {}, {}, false, "1");
    e->OpenEntry(mode, AdoQry_Main, readOnly);
}

void TFrm_Base_Entry_Head::Act_AddExecute(QObject*) { OpenEntry("Add"); }
void TFrm_Base_Entry_Head::Act_CopyAddExecute(QObject*) { OpenEntry("CopyAdd"); }
void TFrm_Base_Entry_Head::Act_EditExecute(QObject*) { OpenEntry("Edit"); }
void TFrm_Base_Entry_Head::Act_ViewExecute(QObject*) { OpenEntry("Edit", true); }

void TFrm_Base_Entry_Head::Act_DeleteExecute(QObject*) {
    if (!AdoQry_Main->Active() || AdoQry_Main->IsEmpty()) {
        DISPINFO(tr("没有可删除的单据!"), 5);
        return;
    }
    const QString key = AdoQry_Main->FieldByName(KeyField)->AsString();
    if (DISPINFO(tr("确定要删除单据") + key + tr("吗?"), 2) != "y") return;
    ExecSql(FuncNo, key, "Delete", DeleteStatement(key), 65535, false, true, false, true);
    AdoQry_Main->Delete();
    RefreshDetail();
}

void TFrm_Base_Entry_Head::Act_FilterExecute(QObject*) {
    TFrm_Sys_Filter* f = filter();
    if (!f) {
        GetData();
        return;
    }
    if (f->ShowModal() != mrOk) return;
    Condition = f->Condition;
    Lab_Condition->setText(f->Description);
    GetData();
}

void TFrm_Base_Entry_Head::Act_RefreshExecute(QObject*) { GetData(); }
void TFrm_Base_Entry_Head::Act_PrintExecute(QObject*) { qx::grid::printWithDialog(DBGridEh, Caption(), {ConditionText()}); }
void TFrm_Base_Entry_Head::Act_PreviewExecute(QObject*) { qx::grid::preview(DBGridEh, Caption(), {ConditionText()}); }
void TFrm_Base_Entry_Head::Act_ExportExecute(QObject*) { qx::grid::exportWithDialog(DBGridEh, Caption(), {ConditionText()}); }
void TFrm_Base_Entry_Head::Act_QuitExecute(QObject*) { close(); }
void TFrm_Base_Entry_Head::DBGridEhGetCellParams(QObject*, TColumnEh*, TCellParams&) {}

TFrm_Base_Entry_Head::~TFrm_Base_Entry_Head() {
    // The hooks call into this screen, which is going: nothing may run them from here on.
    DBGridEh->ClearHooks();
    DBGridEh_Detail->ClearHooks();
    AdoQry_Main->AfterScroll = nullptr;
    AdoQry_Detail->AfterScroll = nullptr;
}
