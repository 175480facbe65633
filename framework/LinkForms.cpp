#include "framework/LinkForms.h"

#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QVBoxLayout>

#include "framework/Controls.h"
#include "framework/DBGridEh.h"
#include "framework/DataSet.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "framework/Zpy.h"

TFrm_Sys_LINK::TFrm_Sys_LINK(QWidget* owner, const QString& objectName, const QString& caption)
    : QDialog(owner, Qt::Tool) {
    setObjectName(objectName);
    setWindowTitle(caption);
    for (QWidget* w = owner; w; w = w->parentWidget())
        if (auto* screen = dynamic_cast<TFrm_Base*>(w); screen && !screen->FuncNo.isEmpty()) {
            FuncNo = screen->FuncNo;
            break;
        }
    data_ = new TClientDataSet(this);
    data_->setObjectName("AdoQry_Link");
    shown_ = new TClientDataSet(this);
    auto* layout = new QVBoxLayout(this);
    search_ = new QLineEdit(this);
    search_->setObjectName("Edit_Search");
    search_->setPlaceholderText(tr("代码 / 名称 / 拼音首字母"));
    layout->addWidget(search_);
    grid_ = new TDBGridEh(this, "DBGridEh");
    grid_->SetReadOnly(true);
    grid_->setSelectionBehavior(QAbstractItemView::SelectRows);
    grid_->SetDataSet(shown_);
    layout->addWidget(grid_);
    resize(420, 360);
    connect(search_, &QLineEdit::textChanged, this, [this](const QString& t) {
        qx::guard([&] { Search(t); });
    });
    grid_->OnDblClick = [this] { Pick(); };
}

void TFrm_Sys_LINK::SetSource(const QString& table, const QString& codeField, const QString& nameField,
                              const QString& where, const QString& pymField) {
    table_ = table;
    codeField_ = codeField;
    nameField_ = nameField;
    where_ = where;
    pymField_ = pymField;
    loaded_ = false;
}

void TFrm_Sys_LINK::Attach(TLinkEdit* edit) {
    edit_ = edit;
    if (edit) edit->SetLinkForm(this);
}

QString TFrm_Sys_LINK::SelectSql() const {
    QString sql = "SELECT * FROM " + table_;
    if (!where_.isEmpty()) sql += " WHERE " + where_;
    sql += " ORDER BY " + codeField_;
    return sql;
}

void TFrm_Sys_LINK::Reload() {
    opensql(data_, FuncNo, SelectSql(), 0, 0, {}, {}, false, "1");
    loaded_ = true;
    applyFilter();
}

void TFrm_Sys_LINK::applyFilter() {
    const QString text = search_->text().trimmed();
    shown_->ClearFields();
    shown_->AddField(codeField_, ftString, 0, tr("代码"));
    shown_->AddField(nameField_, ftString, 0, tr("名称"));
    shown_->AddField("PYM", ftString, 0, tr("拼音码"));
    shown_->CreateDataSet();
    shown_->DisableControls();
    TField* code = data_->FindField(codeField_);
    TField* name = data_->FindField(nameField_);
    TField* pym = pymField_.isEmpty() ? nullptr : data_->FindField(pymField_);
    if (code && name) {
        for (data_->First(); !data_->Eof(); data_->Next()) {
            const QString c = code->AsString().trimmed();
            const QString n = name->AsString().trimmed();
            QString p = pym ? pym->AsString().trimmed() : QString();
            if (p.isEmpty()) p = GetPY(n);
            const bool match = text.isEmpty() || c.startsWith(text, Qt::CaseInsensitive) ||
                               n.contains(text, Qt::CaseInsensitive) || p.startsWith(text, Qt::CaseInsensitive);
            if (!match) continue;
            shown_->Append();
            shown_->Fields(0)->SetAsString(c);
            shown_->Fields(1)->SetAsString(n);
            shown_->Fields(2)->SetAsString(p);
            shown_->Post();
        }
    }
    shown_->First();
    shown_->EnableControls();
}

void TFrm_Sys_LINK::Search(const QString& text) {
    if (search_->text() != text) search_->setText(text);  // textChanged runs us again
    if (!loaded_) Reload();
    else applyFilter();
}

void TFrm_Sys_LINK::Show() {
    if (!loaded_) Reload();
    const QString start = edit_ ? edit_->text().trimmed() : QString();
    search_->setText(start);
    applyFilter();
    if (shown_->IsEmpty() && !start.isEmpty()) {
        search_->setText(QString());
        applyFilter();
    }
    if (edit_ && edit_->isVisible()) move(edit_->mapToGlobal(QPoint(0, edit_->height())));
    show();
    raise();
    search_->setFocus();
}

bool TFrm_Sys_LINK::Pick(const QString& codeWanted) {
    if (!loaded_) Reload();
    if (!codeWanted.isEmpty()) {
        search_->blockSignals(true);
        search_->clear();
        search_->blockSignals(false);
        applyFilter();
        if (!shown_->Locate(codeField_, codeWanted.trimmed(), loCaseInsensitive)) return false;
    }
    if (shown_->IsEmpty()) return false;
    const QString code = shown_->Fields(0)->AsString();
    const QString name = shown_->Fields(1)->AsString();
    if (edit_) {
        edit_->setText(code);
        edit_->setModified(false);
        if (edit_->NameLabel()) edit_->NameLabel()->setText(name);
    }
    close();
    if (OnPicked) OnPicked(code, name);
    if (edit_ && edit_->isVisible()) edit_->setFocus();
    return true;
}

QString TFrm_Sys_LINK::NameOf(const QString& code) {
    TClientDataSet check;
    QString sql = "SELECT " + codeField_ + "," + nameField_ + " FROM " + table_ + " WHERE " + codeField_ + "=" +
                  QuotedStr(code.trimmed());
    if (!where_.isEmpty()) sql += " AND " + where_;
    opensql(&check, FuncNo, sql, 0, 0, {}, {}, false, "1");
    if (check.IsEmpty()) return QString();
    const QString name = check.Fields(1)->AsString();
    return name.isNull() ? QString("") : name;
}

void TFrm_Sys_LINK::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
        case Qt::Key_Return:
        case Qt::Key_Enter: qx::guard([this] { Pick(); }); return;
        case Qt::Key_Escape: close(); return;
        case Qt::Key_Down: shown_->Next(); return;
        case Qt::Key_Up: shown_->Prior(); return;
        default: QDialog::keyPressEvent(event);
    }
}

// ---------------------------------------------------------------- the lists

TFrm_Sys_LINK_CK::TFrm_Sys_LINK_CK(QWidget* owner) : TFrm_Sys_LINK(owner, "Frm_Sys_LINK_CK", tr("仓库")) {
    SetSource("d1007", "CK_ID", "CK_NAME");
}

void TFrm_Sys_LINK_CK::init(TClientDataSet* dataSet, TLinkEdit* edit, QWidget* nextControl, AnsiString funcNo,
                            AnsiString, AnsiString) {
    lines_ = dataSet;
    next_ = nextControl;
    if (!funcNo.isEmpty()) FuncNo = funcNo;
    // With warehouse rights enforced only the user's warehouses are offered.
    if (G_CHKCK)
        SetSource("d1007", "CK_ID", "CK_NAME",
                  "CK_ID IN (SELECT CK_ID FROM sys_USER_CK WHERE user_id=" + QuotedStr(G_UserId) + ")");
    Attach(edit);
    OnPicked = [this](const QString&, const QString&) {
        if (next_ && next_ != Edit() && next_->isVisible()) next_->setFocus();
    };
}

TFrm_Sys_LINK_KH::TFrm_Sys_LINK_KH(QWidget* owner) : TFrm_Sys_LINK(owner, "Frm_Sys_LINK_KH", tr("供应商")) {
    SetSource("d1103", "KH_GYS_ID", "KG_NAME");
}

void TFrm_Sys_LINK_KH::init(TLinkEdit* edit, AnsiString table, bool checkOnExit) {
    const bool customers = table.trimmed().compare("d1102", Qt::CaseInsensitive) == 0;
    SetSource(customers ? "d1102" : "d1103", "KH_GYS_ID", "KG_NAME");
    setWindowTitle(customers ? tr("客户") : tr("供应商"));
    Attach(edit);
    if (edit) edit->CheckOnExit = checkOnExit;
}

TFrm_Sys_LINK_YW::TFrm_Sys_LINK_YW(QWidget* owner) : TFrm_Sys_LINK(owner, "Frm_Sys_LINK_YW", tr("业务员")) {
    SetSource("d1101", "YW_ID", "YW_NAME");
}

void TFrm_Sys_LINK_YW::init(TLinkEdit* edit) {
    Attach(edit);
    if (edit) edit->CheckOnExit = true;
}

TFrm_Sys_LINK_SE::TFrm_Sys_LINK_SE(QWidget* owner) : TFrm_Sys_LINK(owner, "Frm_Sys_LINK_SE", tr("送货方式")) {
    SetSource("d1011", "SEND_ID", "SEND_NAME", {}, {});
}

void TFrm_Sys_LINK_SE::init(TLinkEdit* edit) {
    Attach(edit);
    if (edit) edit->CheckOnExit = true;
}

TFrm_Sys_LINK_JY::TFrm_Sys_LINK_JY(QWidget* owner) : TFrm_Sys_LINK(owner, "Frm_Sys_LINK_JY", tr("结算方式")) {
    SetSource("d1010", "JY_ID", "JY_NAME", {}, {});
}

void TFrm_Sys_LINK_JY::init(TLinkEdit* edit, AnsiString condition) {
    SetSource("d1010", "JY_ID", "JY_NAME", condition.trimmed(), {});
    Attach(edit);
    if (edit) edit->CheckOnExit = true;
}

TQX_LINK_K::TQX_LINK_K(QWidget* owner) : TFrm_Sys_LINK(owner, "QX_LINK_K", tr("款号")) {
    SetSource("d1800", "K_ID", "WL_NAME");
}

void TQX_LINK_K::init(TLinkEdit* edit, AnsiString) { Attach(edit); }

TQX_LINK_COL::TQX_LINK_COL(QWidget* owner) : TFrm_Sys_LINK(owner, "QX_LINK_COL", tr("颜色")) {
    SetSource("d1005", "COL_ID", "COL_NAME");
}

void TQX_LINK_COL::SetStyle(const QString& styleCode) {
    if (style_ != styleCode) loaded_ = false;
    style_ = styleCode;
    setWindowTitle(tr("颜色") + " - " + styleCode);
}

QString TQX_LINK_COL::SelectSql() const {
    return "SELECT d1804.COL_ID, d1005.COL_NAME, d1005.PYM FROM d1804 INNER JOIN d1005 ON d1804.COL_ID = "
           "d1005.COL_ID WHERE d1804.K_ID=" +
           QuotedStr(style_) + " ORDER BY d1804.COL_ID";
}
