#include "framework/Frm_Base.h"

#include <QAction>
#include <QCheckBox>
#include <QComboBox>
#include <QCloseEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QPushButton>
#include <QHash>
#include <QRegularExpression>
#include <QStyle>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "framework/LinkForms.h"
#include "framework/Settings.h"
#include "framework/SizeMatrix.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

// ---------------------------------------------------------------- presenter, modal handler, today

namespace qx::ui {
namespace {
ScreenPresenter& presenter() {
    static ScreenPresenter p;
    return p;
}
ModalHandler& modalHandler() {
    static ModalHandler h;
    return h;
}
QDate& fixedToday() {
    static QDate d;
    return d;
}
}  // namespace

void setScreenPresenter(ScreenPresenter p) { presenter() = std::move(p); }

void presentScreen(TFrm_Base* screen) {
    screen->EnsureObjectName();
    if (presenter()) presenter()(screen);
    else {
        screen->setWindowFlag(Qt::Window, true);
        screen->show();
        screen->raise();
    }
}

ModalHandler setModalHandler(ModalHandler handler) {
    ModalHandler previous = modalHandler();
    modalHandler() = std::move(handler);
    return previous;
}

QDate today() { return fixedToday().isValid() ? fixedToday() : QDate::currentDate(); }
void setToday(const QDate& date) { fixedToday() = date; }

}  // namespace qx::ui

// ---------------------------------------------------------------- TFrm_Base

TFrm_Base::TFrm_Base(QWidget* Owner) : QDialog(Owner) {
    setSizeGripEnabled(true);
    // Screens created by a screen (entry screens, filters, details) work for the same function.
    if (auto* owner = dynamic_cast<TFrm_Base*>(Owner)) {
        FuncNo = owner->FuncNo;
        Tag = owner->Tag;
    }
}

void TFrm_Base::EnsureObjectName() {
    // Named like the screen variable of its class: TQXCK201 -> "QXCK201".
    if (!objectName().isEmpty()) return;
    QString name = QString::fromLatin1(metaObject()->className());
    if (name.startsWith('T')) name.remove(0, 1);
    setObjectName(name);
}

TFrm_Base::~TFrm_Base() = default;

AnsiString TFrm_Base::Caption() const { return windowTitle(); }
void TFrm_Base::SetCaption(const AnsiString& caption) { setWindowTitle(caption); }

int TFrm_Base::ShowModal() {
    EnsureObjectName();
    modalResult_ = mrNone;
    if (qx::ui::modalHandler()) {
        show();
        const int handled = qx::ui::modalHandler()(this);
        if (modalResult_ == mrNone) modalResult_ = handled;
        hide();
        return modalResult_;
    }
    setWindowFlag(Qt::Window, true);
    setWindowModality(Qt::ApplicationModal);
    exec();
    if (modalResult_ == mrNone) modalResult_ = result() == QDialog::Accepted ? mrOk : mrCancel;
    return modalResult_;
}

void TFrm_Base::Release() { deleteLater(); }

void TFrm_Base::Close() { close(); }

void TFrm_Base::SetModalResult(int result) {
    modalResult_ = result;
    if (result == mrNone) return;
    done(result == mrOk ? QDialog::Accepted : QDialog::Rejected);
}

void TFrm_Base::Help() {}

void TFrm_Base::FormDestroy() {}

void TFrm_Base::keyPressEvent(QKeyEvent* event) {
    int key = event->key();
    qx::guard([&] { FormKeyDown(this, key, event->modifiers()); });
    if (key == 0) return;
    // Escape closes a dialog only while it runs modally; other screens quit through their actions.
    if (key == Qt::Key_Escape && !isModal()) return;
    QDialog::keyPressEvent(event);
}

void TFrm_Base::FormKeyDown(QObject*, int&, Qt::KeyboardModifiers) {}

void TFrm_Base::closeEvent(QCloseEvent* event) {
    bool mayClose = true;
    if (!qx::guard([&] { mayClose = FormCloseQuery(); })) mayClose = false;
    if (!mayClose) {
        event->ignore();
        return;
    }
    if (modalResult_ == mrNone) modalResult_ = mrCancel;
    QDialog::closeEvent(event);
}

// ---------------------------------------------------------------- TFrm_Base_Common

TFrm_Base_Common::TFrm_Base_Common(QWidget* Owner) : TFrm_Base(Owner) {}

void TFrm_Base_Common::Getsysinfo(AnsiString info) { SysInfo = info; }

void TFrm_Base_Common::Help() {}

void TFrm_Base_Common::OpenSqlPage(TClientDataSet* ds, WideString funcNo, WideString sql, const int a, const int b,
                                   WideString c, WideString d) {
    opensql(ds, funcNo, sql, a, b, c, d, false, "1");
}

void TFrm_Base_Common::SetUserParam(AnsiString userId, AnsiString userName, AnsiString ckId, AnsiString ckName,
                                    AnsiString coName, AnsiString dbName) {
    UserId = userId;
    UserName = userName;
    CkId = ckId;
    CkName = ckName;
    CoName = coName;
    DbName = dbName;
}

void TFrm_Base_Common::SetFormParam(AnsiString p1, AnsiString p2, AnsiString p3, AnsiString p4, AnsiString p5,
                                    AnsiString p6) {
    FormParam[0] = p1;
    FormParam[1] = p2;
    FormParam[2] = p3;
    FormParam[3] = p4;
    FormParam[4] = p5;
    FormParam[5] = p6;
}

void TFrm_Base_Common::SetBodyParam(const TBodyParams&) {}

void TFrm_Base_Common::OpenScreen(const Trecord& rec) {
    SetUserParam(rec.UserId, rec.UserName, rec.CkId, rec.CkName, rec.CoName, rec.DbName);
    FuncNo = QString::number(rec.FuncCode != 0 ? rec.FuncCode : Tag);
    setAttribute(Qt::WA_DeleteOnClose);
    qx::ui::presentScreen(this);
}

namespace {
// The caption of a control for messages: its "qx_caption", its buddy label, or its name.
QString captionOf(QObject* control) {
    const QString c = control->property("qx_caption").toString();
    if (!c.isEmpty()) return c.simplified();
    if (auto* w = qobject_cast<QWidget*>(control)) {
        if (w->parentWidget())
            for (QLabel* l : w->parentWidget()->findChildren<QLabel*>())
                if (l->buddy() == w) return l->text().simplified();
    }
    return control->objectName();
}
}  // namespace

void TFrm_Base_Common::CheckBlank(QObject* edit) {
    if (ControlText(edit).trimmed().isEmpty()) {
        DISPINFO(captionOf(edit) + "不能为空!", 5);
        if (auto* w = qobject_cast<QWidget*>(edit); w && w->isVisible() && w->isEnabled()) w->setFocus();
        Abort();
    }
}

void TFrm_Base_Common::CheckDate(QObject* dateEdit) {
    const QString text = ControlText(dateEdit).trimmed();
    const QDate d = QDate::fromString(text.left(10), "yyyy-MM-dd");
    if (!d.isValid()) {
        DISPINFO(captionOf(dateEdit) + "日期不正确!", 5);
        if (auto* w = qobject_cast<QWidget*>(dateEdit); w && w->isVisible() && w->isEnabled()) w->setFocus();
        Abort();
    }
}

void TFrm_Base_Common::SetDateEdits(TDateEdit* from, TDateEdit* to) {
    dateFrom_ = from;
    dateTo_ = to;
}

std::pair<QDate, QDate> TFrm_Base_Common::PresetRange(int preset, const QDate& t) {
    const QDate monthStart(t.year(), t.month(), 1);
    switch (preset) {
        case 1: return {t, t};
        case 2: return {t.addDays(-1), t.addDays(-1)};
        case 3: return {t.addDays(1 - t.dayOfWeek()), t};
        case 4: return {monthStart, t};
        case 5: return {monthStart.addMonths(-1), monthStart.addDays(-1)};
        case 6: return {QDate(t.year(), ((t.month() - 1) / 3) * 3 + 1, 1), t};
        case 7: return {QDate(t.year(), 1, 1), t};
        case 8: return {QDate(t.year() - 1, 1, 1), QDate(t.year() - 1, 12, 31)};
        default: return {t, t};
    }
}

void TFrm_Base_Common::applyPreset(int preset) {
    const auto [from, to] = PresetRange(preset, qx::ui::today());
    if (dateFrom_) dateFrom_->setDate(from);
    if (dateTo_) dateTo_->setDate(to);
}

void TFrm_Base_Common::setdate01click(QObject*) { applyPreset(1); }
void TFrm_Base_Common::setdate02click(QObject*) { applyPreset(2); }
void TFrm_Base_Common::setdate03click(QObject*) { applyPreset(3); }
void TFrm_Base_Common::setdate04click(QObject*) { applyPreset(4); }
void TFrm_Base_Common::setdate05click(QObject*) { applyPreset(5); }
void TFrm_Base_Common::setdate06click(QObject*) { applyPreset(6); }
void TFrm_Base_Common::setdate07click(QObject*) { applyPreset(7); }
void TFrm_Base_Common::setdate08click(QObject*) { applyPreset(8); }

QToolButton* TFrm_Base_Common::CreateDatePresetButton(QWidget* parent) {
    auto* button = new QToolButton(parent);
    button->setObjectName("Btn_Date");
    button->setText(tr("时段选择"));
    button->setPopupMode(QToolButton::InstantPopup);
    auto* menu = new QMenu(button);
    const char* names[] = {"今天", "昨天", "本周", "本月", "上月", "本季度", "本年", "去年"};
    for (int i = 1; i <= 8; ++i) {
        QAction* a = menu->addAction(QString::fromUtf8(names[i - 1]));
        a->setObjectName(QString("setdate%1").arg(i, 2, 10, QChar('0')));
        connect(a, &QAction::triggered, this, [this, i] { applyPreset(i); });
    }
    button->setMenu(menu);
    return button;
}

QLabel* TFrm_Base_Common::CreateDayCountLabel(QWidget* parent) {
    auto* label = new QLabel("(30天)", parent);
    label->setObjectName("titDATE");
    return label;
}

QTimer* TFrm_Base_Common::CreateSizeTitleTimer(std::function<void()> onTick) {
    auto* timer = new QTimer(this);
    timer->setObjectName("gtime");
    timer->setInterval(500);
    connect(timer, &QTimer::timeout, this, [onTick = std::move(onTick)] { qx::guard(onTick); });
    return timer;
}

QAction* TFrm_Base_Common::AddAction(const QString& name, const QString& caption, const QKeySequence& shortcut,
                                     std::function<void()> handler) {
    auto* action = new QAction(caption, this);
    action->setObjectName(name);
    // The usual actions carry the style's usual pictures.
    static const QHash<QString, QStyle::StandardPixmap> icons = {
        {"Act_Add", QStyle::SP_FileIcon},           {"Act_CopyAdd", QStyle::SP_FileLinkIcon},
        {"Act_Edit", QStyle::SP_FileDialogDetailedView}, {"Act_Modify", QStyle::SP_FileDialogDetailedView},
        {"Act_Delete", QStyle::SP_TrashIcon},       {"Act_View", QStyle::SP_FileDialogInfoView},
        {"Act_Filter", QStyle::SP_FileDialogContentsView}, {"Act_Locate", QStyle::SP_FileDialogContentsView},
        {"Act_Refresh", QStyle::SP_BrowserReload},  {"Act_Print", QStyle::SP_DialogSaveButton},
        {"Act_Preview", QStyle::SP_FileDialogListView}, {"Act_Export", QStyle::SP_DriveFDIcon},
        {"Act_Save", QStyle::SP_DialogSaveButton},  {"Act_Quit", QStyle::SP_DialogCloseButton},
        {"Act_AddLine", QStyle::SP_ArrowDown},      {"Act_DeleteLine", QStyle::SP_DialogDiscardButton},
        {"Act_Order", QStyle::SP_ArrowUp},
    };
    if (auto it = icons.find(name); it != icons.end()) action->setIcon(style()->standardIcon(*it));
    if (!shortcut.isEmpty()) {
        action->setShortcut(shortcut);
        action->setShortcutContext(Qt::WidgetWithChildrenShortcut);
    }
    addAction(action);
    connect(action, &QAction::triggered, this, [handler] { qx::guard(handler); });
    return action;
}

// ---------------------------------------------------------------- TFrm_Base_Dialog

TFrm_Base_Dialog::TFrm_Base_Dialog(QWidget* Owner) : TFrm_Base_Common(Owner) {
    main_ = new QVBoxLayout(this);
    Panel_Condition = new TFormPanel(this, "Panel_Condition", 2);
    main_->addWidget(Panel_Condition);
    main_->addStretch();
    auto* buttons = new QHBoxLayout;
    buttons->addStretch();
    btn_ok = new QPushButton(tr("确定"), this);
    btn_ok->setObjectName("btn_ok");
    btn_ok->setDefault(true);
    btn_cancel = new QPushButton(tr("取消"), this);
    btn_cancel->setObjectName("btn_cancel");
    buttons->addWidget(btn_ok);
    buttons->addWidget(btn_cancel);
    main_->addLayout(buttons);
    connect(btn_ok, &QPushButton::clicked, this, [this] { qx::guard([this] { btn_okClick(btn_ok); }); });
    connect(btn_cancel, &QPushButton::clicked, this, [this] { qx::guard([this] { btn_cancelClick(btn_cancel); }); });
}

bool TFrm_Base_Dialog::CheckAll() { return true; }

void TFrm_Base_Dialog::Condition_t(AnsiString op, AnsiString column, AnsiString value) {
    const QString v = value.trimmed();
    if (v.isEmpty()) return;
    Condition += " AND (" + column + " " + op + " " + QuotedStr(v) + ")";
}

void TFrm_Base_Dialog::btn_okClick(QObject*) {
    if (!CheckAll()) Abort();
    Condition.clear();
    Description.clear();
    SaveProps();
}

void TFrm_Base_Dialog::RestoreProps() {
    EnsureObjectName();
    if (!StoredProps.isEmpty()) qx::settings::loadControls(this, StoredProps);
}

void TFrm_Base_Dialog::SaveProps() {
    EnsureObjectName();
    if (!StoredProps.isEmpty()) qx::settings::saveControls(this, StoredProps);
}

void TFrm_Base_Dialog::btn_cancelClick(QObject*) { SetModalResult(mrCancel); }

// ---------------------------------------------------------------- TFrm_Base_Condition / TFrm_Sys_Filter

TFrm_Base_Condition::TFrm_Base_Condition(QWidget* Owner) : TFrm_Base_Dialog(Owner) {}

void TFrm_Base_Condition::GetData() {}

TFrm_Sys_Filter::TFrm_Sys_Filter(QWidget* Owner) : TFrm_Base_Condition(Owner) {
    AdoQry_Work = new TClientDataSet(this);
    AdoQry_Work->setObjectName("AdoQry_Work");
    SetCaption(tr("条件"));
}

void TFrm_Sys_Filter::InitForm() {
    GetData();
    RestoreProps();
}

void TFrm_Sys_Filter::FormKeyDown(QObject*, int& Key, Qt::KeyboardModifiers) {
    switch (Key) {
        case Qt::Key_F2:
            Key = 0;
            btn_okClick(btn_ok);
            break;
        case Qt::Key_F3:
            // Clear the typed conditions (dates keep their range).
            Key = 0;
            for (QLineEdit* e : Panel_Condition->findChildren<QLineEdit*>())
                if (!qobject_cast<QAbstractSpinBox*>(e->parentWidget())) e->clear();
            for (QLabel* l : Panel_Condition->findChildren<QLabel*>())
                if (!l->buddy() && l->objectName().size() && !l->objectName().startsWith("Lab_") &&
                    l->parentWidget() != Panel_Condition)
                    l->clear();
            break;
        case Qt::Key_F4:
            if (auto* link = qobject_cast<TLinkEdit*>(focusWidget())) {
                Key = 0;
                link->ButtonClick();
            }
            break;
        case Qt::Key_Escape:
            Key = 0;
            SetModalResult(mrCancel);
            break;
        default: break;
    }
}

void TFrm_Sys_Filter::btn_okClick(QObject* Sender) { TFrm_Base_Dialog::btn_okClick(Sender); }

// ---------------------------------------------------------------- TFrm_Base_Detail

TFrm_Base_Detail::TFrm_Base_Detail(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    DBGridEh = TDBGridEh::CreateBrowseGrid(this, AdoQry_Main);
    DBGridEh->SetMultiSelect(true);
    MainLayout()->insertWidget(1, DBGridEh, 1);
}

void TFrm_Base_Detail::RefreshData() {}
void TFrm_Base_Detail::SaveData() {}

void TFrm_Base_Detail::InitForm(AnsiString Key, TClientDataSet* Master) {
    KeyValue = Key;
    MasterDataSet = Master;
    RefreshData();
}

// ---------------------------------------------------------------- TFrm_Sys_SortOrder

TFrm_Sys_SortOrder::TFrm_Sys_SortOrder(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    SetCaption(tr("排序"));
    Cmb_Field = Panel_Condition->AddComboBox("Cmb_Field", tr("排序字段"));
    Chk_Desc = Panel_Condition->AddCheckBox("Chk_Desc", tr("降序"));
}

void TFrm_Sys_SortOrder::InitForm(TDBGridEh* grid, AnsiString fields) {
    grid_ = grid;
    Cmb_Field->clear();
    const QStringList wanted = TFrm_Base_Panel::SplitFields(fields);
    for (int i = 0; i < grid->ColumnCount(); ++i) {
        TColumnEh* c = grid->Columns(i);
        if (!c->Visible || !c->Field()) continue;
        if (!wanted.isEmpty() && !wanted.contains(c->FieldName, Qt::CaseInsensitive)) continue;
        Cmb_Field->addItem(c->Title.replace('|', ' '), c->FieldName);
    }
}

void TFrm_Sys_SortOrder::btn_okClick(QObject* Sender) {
    TFrm_Base_Dialog::btn_okClick(Sender);
    if (!grid_ || !grid_->DataSet() || Cmb_Field->currentIndex() < 0) Abort();
    grid_->DataSet()->SortBy(Cmb_Field->currentData().toString(), !Chk_Desc->isChecked());
    SetModalResult(mrOk);
}

// ---------------------------------------------------------------- TFrm_Base_Panel

TFrm_Base_Panel::TFrm_Base_Panel(QWidget* Owner) : TFrm_Base_Common(Owner) {
    main_ = new QVBoxLayout(this);
    main_->setContentsMargins(2, 2, 2, 2);
    ToolBar = new QToolBar(this);
    ToolBar->setObjectName("ToolBar");
    ToolBar->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    main_->addWidget(ToolBar);
    Lab_Condition = new QLabel(this);
    Lab_Condition->setObjectName("Lab_Condition");
    main_->addWidget(Lab_Condition);
}

void TFrm_Base_Panel::Getsysinfo(AnsiString info) { TFrm_Base_Common::Getsysinfo(info); }

AnsiString TFrm_Base_Panel::ConditionText() const {
    return Lab_Condition->isHidden() ? QString() : Lab_Condition->text().trimmed();
}

void TFrm_Base_Panel::SetBodyParam(const TBodyParams& params) {
    HeadSql = params.HeadSql;
    BodySql = params.BodySql;
    MoneyFields = params.MoneyFields;
    PriceFields = params.PriceFields;
    QtyFields = params.QtyFields;
    if (!params.StyleField.trimmed().isEmpty()) StyleField = params.StyleField;
    WlField = params.WlField;
    KeyField = params.KeyField;
    DeleteSql = params.DeleteSql;
    for (int i = 0; i < TBodyParams::FreeTextCount; ++i) BodyText[i] = params.FreeTexts[i];
}

QStringList TFrm_Base_Panel::SplitFields(const AnsiString& list) {
    QStringList out;
    for (const QString& part : list.split(',', Qt::SkipEmptyParts))
        if (!part.trimmed().isEmpty()) out << part.trimmed();
    return out;
}

bool TFrm_Base_Panel::IsSizeField(const QString& name) const { return qx::sizes::isQuantityField(name.trimmed()); }

void TFrm_Base_Panel::SetFloatText(TField* Sender, const AnsiString& Text) {
    const QString t = Text.trimmed();
    if (t.isEmpty()) {
        Sender->SetAsInteger(0);  // an emptied number cell is 0
    } else {
        bool ok = false;
        t.toDouble(&ok);
        if (!ok) {
            DISPINFO("'" + Text + "' 不是有效的数值!", 5);
            Abort();
        }
        Sender->SetAsString(t);
    }
    // STOT follows the size quantities.
    if (IsSizeField(Sender->FieldName))
        if (TField* stot = Sender->DataSet()->FindField("STOT")) stot->SetAsFloat(qx::sizes::currentLineTotal(Sender->DataSet()));
}

void TFrm_Base_Panel::SetSizeTitles(TDBGridEh* grid, const QStringList& sizeNames) {
    for (int i = 0; i < qx::sizes::Count; ++i) {
        TColumnEh* c = grid->ColumnByField(qx::sizes::quantityField(i));
        if (!c) continue;
        const QString name = i < sizeNames.size() ? sizeNames[i].trimmed() : QString();
        c->Title = QStringLiteral("尺码|") + name;
    }
    HideSizeColumnsAfterCM(grid);
}

void TFrm_Base_Panel::BuildDocumentLineColumns(TDBGridEh* grid, TClientDataSet* lines, const TLineColumnConfig& config) {
    grid->ClearColumns();
    auto add = [&](const QString& field, const QString& title, int width) -> TColumnEh* {
        TField* f = lines->FindField(field);
        if (!f || grid->ColumnByField(f->FieldName)) return nullptr;
        const QString key = f->FieldName.toUpper();
        TColumnEh* c = grid->AddColumn(f->FieldName, config.Titles.value(key, title), width);
        c->Tag = config.Tags.value(key, 0);
        return c;
    };
    auto rightAligned = [](TColumnEh* c) {
        if (c) c->Alignment = Qt::AlignRight | Qt::AlignVCenter;
        return c;
    };
    add(config.StyleField, tr("款号"), 90);
    if (TColumnEh* c = add("WL_NAME", tr("品名"), 120)) c->ReadOnly = true;
    if (TColumnEh* c = add("DW_NAME", tr("单位"), 44)) c->ReadOnly = !config.UnitEditable;
    if (!add("COL_NAME", tr("颜色"), 70)) add("COL_ID", tr("色号"), 50);
    for (const QString& size : qx::sizes::quantityFields())
        if (TColumnEh* c = rightAligned(add(size, QStringLiteral("尺码|") + size, 42))) c->Footer.ValueType = fvtSum;
    if (TColumnEh* c = rightAligned(add("STOT", tr("合计"), 50))) {
        c->Footer.ValueType = fvtSum;
        c->ReadOnly = true;
    }
    auto titleOf = [&](const QString& f) {
        if (f.compare("SJ", Qt::CaseInsensitive) == 0) return config.PriceLabel;
        if (f.compare("DJ", Qt::CaseInsensitive) == 0) return tr("成本价");
        if (f.compare("SMONEY", Qt::CaseInsensitive) == 0) return config.AmountLabel;
        if (f.compare("MONEY", Qt::CaseInsensitive) == 0) return tr("成本额");
        return f.toUpper();
    };
    const QStringList amounts = SplitFields(config.MoneyFields);
    auto addValue = [&](const QString& f) {
        TColumnEh* c = rightAligned(add(f, titleOf(f), 70));
        if (!c) return;
        if (amounts.contains(f, Qt::CaseInsensitive)) {
            c->Footer.ValueType = fvtSum;
            c->DisplayFormat = "0.00";
            c->Width = 80;
        } else if (SplitFields(config.QtyFields).contains(f, Qt::CaseInsensitive) &&
                   f.compare("ZK", Qt::CaseInsensitive) != 0) {
            c->Footer.ValueType = fvtSum;
        }
    };
    const QStringList trailing = SplitFields(config.TrailingFields);
    if (!trailing.isEmpty()) {
        for (const QString& f : trailing) addValue(f);
    } else {
        for (const QString& f : SplitFields(config.QtyFields))
            if (!qx::sizes::isQuantityField(f)) addValue(f);
        for (const QString& f : SplitFields(config.PriceFields) + amounts) addValue(f);
    }
    add("NOTE", tr("备注"), 150);
    grid->SetFooterRowVisible(true);
    HideSizeColumnsAfterCM(grid);
}

void TFrm_Base_Panel::HideSizeColumnsAfterCM(TDBGridEh* grid) {
    for (int i = 0; i < qx::sizes::Count; ++i)
        if (TColumnEh* c = grid->ColumnByField(qx::sizes::quantityField(i))) c->Visible = i <= G_CM;
    grid->ColumnsChanged();
}
