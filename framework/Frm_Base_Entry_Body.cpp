#include "framework/Frm_Base_Entry_Body.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QToolBar>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"
#include "framework/GridExport.h"
#include "framework/LinkForms.h"
#include "framework/SizeMatrix.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"

namespace {
using qx::sizes::quantityField;
}  // namespace

Tfrm_Base_Entry_Body::Tfrm_Base_Entry_Body(QWidget* Owner) : TFrm_Base_Panel(Owner) {
    Lab_Condition->hide();
    Panel_Head = new TFormPanel(this, "Panel_Head", 3);
    MainLayout()->addWidget(Panel_Head);
    AdoQry_Main = new TClientDataSet(this);
    AdoQry_Main->setObjectName("AdoQry_Main");
    AdoQry_Work = new TClientDataSet(this);
    AdoQry_Work->setObjectName("AdoQry_Work");
    DBGridEh = new TDBGridEh(this, "DBGridEh");
    DBGridEh->AutoColumns = false;
    DBGridEh->SetDataSet(AdoQry_Main);
    MainLayout()->addWidget(DBGridEh, 1);
    StyleLink = new TQX_LINK_K(this);
    ColorLink = new TQX_LINK_COL(this);

    Act_Save = AddAction("Act_Save", tr("保存"), QKeySequence(Qt::Key_F2), [this] { Act_SaveExecute(Act_Save); });
    Act_AddLine = AddAction("Act_AddLine", tr("增行"), QKeySequence(Qt::CTRL | Qt::Key_Insert),
                            [this] { Act_AddLineExecute(Act_AddLine); });
    Act_DeleteLine = AddAction("Act_DeleteLine", tr("删行"), QKeySequence(Qt::CTRL | Qt::Key_Delete),
                               [this] { Act_DeleteLineExecute(Act_DeleteLine); });
    Act_Print = AddAction("Act_Print", tr("打印"), QKeySequence(Qt::CTRL | Qt::Key_P), [this] { Act_PrintExecute(Act_Print); });
    Act_Export = AddAction("Act_Export", tr("导出"), {}, [this] { Act_ExportExecute(Act_Export); });
    Act_Quit = AddAction("Act_Quit", tr("退出"), QKeySequence(Qt::Key_Escape), [this] { Act_QuitExecute(Act_Quit); });
    Act_Save->setShortcuts({QKeySequence(Qt::Key_F2), QKeySequence(Qt::CTRL | Qt::Key_S)});
    for (QAction* a : {Act_Save, Act_AddLine, Act_DeleteLine, Act_Print, Act_Export, Act_Quit}) ToolBar->addAction(a);

    DBGridEh->installEventFilter(this);
    DBGridEh->CanEditCell = [this](int row, TColumnEh* column) {
        // A size position the line's size group does not name takes no quantity.
        if (const int position = qx::sizes::positionOf(column->FieldName); position >= 0)
            return !lineHasStyle(row) || qx::sizes::positionInUse(lineSizeNames(row), position);
        // Columns tagged 1 keep what an order gave the line (its NOID names the order).
        if (column->Tag != 1) return true;
        const int source = AdoQry_Main->FieldIndex("NOID");
        return source < 0 || AdoQry_Main->CellValue(row, source).toString().trimmed().isEmpty();
    };
    DBGridEh->OnAdvance = [this](bool backwards) { moveToNextCell(backwards); };
    DBGridEh->OnKeyDown = [this](QKeyEvent* event, bool& handled) {
        // Down on the last line starts a new one (when this one has its style).
        if (event->key() != Qt::Key_Down || ReadOnlyMode || !AdoQry_Main->Active() || AdoQry_Main->IsEmpty()) return;
        if (AdoQry_Main->CurrentRow() != AdoQry_Main->RecordCount() - 1) return;
        TField* style = AdoQry_Main->FindField(StyleField);
        if (!style || style->AsString().trimmed().isEmpty()) return;
        handled = true;
        Act_AddLineExecute(Act_AddLine);
    };
    DBGridEh->OnGetCellParams = [this](TColumnEh* c, TCellParams& p) { DBGridEhColorLine(c, p); };
    DBGridEh->OnTitleClick = [this](TColumnEh*) { ColumnClick(); };
    DBGridEh->OnCellButtonClick = [this](TColumnEh* c) {
        bool handled = false;
        if (c->FieldName.compare(StyleField, Qt::CaseInsensitive) == 0) {
            WL_IDBTNClick(DBGridEh, handled);
        } else if (c->FieldName.compare("COL_NAME", Qt::CaseInsensitive) == 0 ||
                   c->FieldName.compare("COL_ID", Qt::CaseInsensitive) == 0) {
            const QString style = AdoQry_Main->FindField(StyleField) ? AdoQry_Main->FieldByName(StyleField)->AsString() : "";
            if (style.isEmpty()) return;
            ColorLink->SetStyle(style);
            ColorLink->Show();
        } else if (c->FieldName.compare("DW_NAME", Qt::CaseInsensitive) == 0) {
            showdw(DBGridEh, handled);
        }
    };
    AdoQry_Main->BeforePost = [this](TDataSet* ds) { AdoQry_MainBeforePost(ds); };
    connect(AdoQry_Main, &TClientDataSet::dataEdited, this, [this] { Modified = true; });
    StyleLink->OnPicked = [this](const QString& code, const QString&) {
        qx::guard([&] {
            if (AdoQry_Main->State() == dsBrowse) {
                if (AdoQry_Main->IsEmpty()) AdoQry_Main->Append();
                else AdoQry_Main->Edit();
            }
            AdoQry_Main->FieldByName(StyleField)->SetText(code);
        });
    };
    setupRatioAndScan();
    ColorLink->OnPicked = [this](const QString& code, const QString& name) {
        qx::guard([&] { setLineColor(code, name); });
        // Picked: the quantities come next.
        if (isVisible())
            QMetaObject::invokeMethod(this, [this] { DBGridEh->EditField(firstSizeField()); }, Qt::QueuedConnection);
    };
    resize(1000, 640);
}

// --- virtual operations

void Tfrm_Base_Entry_Body::DBGridEhColorLine(TColumnEh*, TCellParams&) {}

void Tfrm_Base_Entry_Body::DW_IDSetText(TField* Sender, const AnsiString& Text) { Sender->SetAsString(Text.trimmed()); }

void Tfrm_Base_Entry_Body::WL_IDSetText(TField* Sender, const AnsiString& Text) {
    const QString code = Text.trimmed();
    TClientDataSet* ds = Sender->DataSet();
    if (code.isEmpty()) {
        Sender->Clear();
        return;
    }
    if (code.compare(Sender->AsString(), Qt::CaseInsensitive) == 0 && ds->FindField("COL_ID") &&
        !ds->FieldByName("COL_ID")->AsString().isEmpty())
        return;  // the same style again: keep the line
    opensql(AdoQry_Work, FuncNo,
            "SELECT d1800.K_ID, d1800.WL_NAME, d1800.DW_NAME, d1800.CGJ, d1800.PFJ, d1800.M_ID, d1006.M0, d1006.M1, "
            "d1006.M2, d1006.M3, d1006.M4, d1006.M5, d1006.M6, d1006.M7, d1006.M8, d1006.M9 FROM d1800 LEFT OUTER "
            "JOIN d1006 ON d1800.M_ID = d1006.M_ID WHERE d1800.K_ID=" +
                QuotedStr(code),
            0, 0, {}, {}, false, "1");
    if (AdoQry_Work->IsEmpty()) {
        DISPINFO(tr("款号 ") + code + tr(" 不存在!"), 5);
        Abort();
    }
    const QString styleCode = AdoQry_Work->FieldByName("K_ID")->AsString().trimmed();
    Sender->SetAsString(styleCode);
    for (const char* name : {"WL_NAME", "DW_NAME"})
        if (TField* f = ds->FindField(name)) f->SetAsString(AdoQry_Work->FieldByName(name)->AsString());
    QStringList sizes;
    for (int i = 0; i < qx::sizes::Count; ++i) {
        const QString m = qx::sizes::nameField(i);
        sizes << AdoQry_Work->FieldByName(m)->AsString();
        if (TField* f = ds->FindField(m)) f->SetAsString(sizes.last());
    }
    styleSizes_.insert(styleCode.toUpper(), sizes);
    for (const char* name : {"COL_ID", "COL_NAME"})
        if (TField* f = ds->FindField(name)) f->Clear();
    if (!WlField.isEmpty())
        if (TField* f = ds->FindField(WlField)) f->SetAsString(styleCode);
    stylePrice_ = AdoQry_Work->FieldByName("CGJ")->AsFloat();
    styleTagPrice_ = AdoQry_Work->FieldByName("PFJ")->AsFloat();
    InitSJ(true);
    updateSizeTitles();

    // The colour: among those offered for the style; one colour is taken at once.
    opensql(AdoQry_Work, FuncNo,
            "SELECT d1804.COL_ID, d1005.COL_NAME FROM d1804 INNER JOIN d1005 ON d1804.COL_ID = d1005.COL_ID WHERE "
            "d1804.K_ID=" +
                QuotedStr(styleCode) + " ORDER BY d1804.COL_ID",
            0, 0, {}, {}, false, "1");
    if (AdoQry_Work->RecordCount() == 1) {
        setLineColor(AdoQry_Work->FieldByName("COL_ID")->AsString(), AdoQry_Work->FieldByName("COL_NAME")->AsString());
        return;
    }
    ColorLink->SetStyle(AdoQry_Work->IsEmpty() ? QString() : styleCode);
    colorRow_ = ds->CurrentRow();
    if (isVisible()) ColorLink->Show();
}

void Tfrm_Base_Entry_Body::WL_IDBTNClick(QObject*, bool& Handled) {
    Handled = true;
    StyleLink->Show();
}

void Tfrm_Base_Entry_Body::showdw(QObject*, bool& Handled) { Handled = false; }

void Tfrm_Base_Entry_Body::AdoQry_MainBeforePost(TDataSet* ds) {
    // Numbers left empty are 0, so every value the save writes is a number (a line not started
    // yet stays untouched).
    TField* style = ds->FindField(StyleField);
    if (!style || !style->AsString().trimmed().isEmpty())
        for (const QString& name : SplitFields(QtyFields) + SplitFields(PriceFields) + SplitFields(MoneyFields))
            if (TField* f = ds->FindField(name); f && f->IsNull()) f->SetAsInteger(0);
    if (TField* stot = ds->FindField("STOT")) {
        const double sum = qx::sizes::currentLineTotal(ds);
        if (stot->AsFloat() != sum) stot->SetAsFloat(sum);
    }
    if (!WlField.isEmpty())
        if (TField* wl = ds->FindField(WlField); wl && ds->FindField(StyleField) && ds->FindField("COL_ID")) {
            const QString sku = ds->FieldByName(StyleField)->AsString() + ds->FieldByName("COL_ID")->AsString();
            if (wl->AsString() != sku) wl->SetAsString(sku);
        }
}

bool Tfrm_Base_Entry_Body::AllCheck() {
    AdoQry_Main->CheckBrowseMode();
    TField* style = AdoQry_Main->FindField(StyleField);
    TField* color = AdoQry_Main->FindField("COL_ID");
    if (!style) return true;
    for (int r = 0; r < AdoQry_Main->RecordCount(); ++r) {
        TClientDataSet::RowScope scope(AdoQry_Main, r);
        if (style->AsString().trimmed().isEmpty() || (color && color->AsString().trimmed().isEmpty())) {
            DISPINFO(tr("第") + QString::number(r + 1) + tr("行没有输入款号或颜色!"), 5);
            AdoQry_Main->SetRecNo(r + 1);
            return false;
        }
    }
    return true;
}

void Tfrm_Base_Entry_Body::ColumnClick() {}

void Tfrm_Base_Entry_Body::RefreshData() {
    QString key;
    if (EditMode != "Add" && MasterDataSet && MasterDataSet->Active() && !MasterDataSet->IsEmpty() &&
        MasterDataSet->FindField(KeyField))
        key = MasterDataSet->FieldByName(KeyField)->AsString();
    if (!BodySql.isEmpty()) {
        QString sql = BodySql;
        sql.replace("%s", QuotedStr(key));
        ScopedDisableControls frozen(AdoQry_Main);
        opensql(AdoQry_Main, FuncNo, sql, 0, 0, {}, {}, false, "1");
        prepareLines();
    } else if (!AdoQry_Main->Active()) {
        AdoQry_Main->CreateDataSet();
    }
    attachSetters();
    if (!columnsBuilt_) {
        BuildLineColumns();
        columnsBuilt_ = true;
    }
    AdoQry_Main->First();
    updateSizeTitles();
}

void Tfrm_Base_Entry_Body::SaveData() {
    // Every line's SKU code is its style followed by its colour.
    if (WlField.isEmpty() || !AdoQry_Main->FindField(WlField) || !AdoQry_Main->FindField(StyleField) ||
        !AdoQry_Main->FindField("COL_ID"))
        return;
    for (int r = 0; r < AdoQry_Main->RecordCount(); ++r) {
        TClientDataSet::RowScope scope(AdoQry_Main, r);
        AdoQry_Main->SetCellValue(r, AdoQry_Main->FieldIndex(WlField),
                                  AdoQry_Main->FieldByName(StyleField)->AsString() +
                                      AdoQry_Main->FieldByName("COL_ID")->AsString());
    }
}

void Tfrm_Base_Entry_Body::SaveHeadData() {
    if (!MasterDataSet) return;
    if (!MasterDataSet->Active()) MasterDataSet->Open();
    if (IsAdd()) MasterDataSet->Append();
    else MasterDataSet->Edit();
}

void Tfrm_Base_Entry_Body::InitForm(AnsiString Mode, TClientDataSet* Master, bool ShowPrice, bool ShowAmount,
                                    bool ReadOnly, int FrozenCols) {
    EditMode = Mode;
    MasterDataSet = Master;
    ReadOnlyMode = ReadOnly;
    closingAfterSave_ = false;
    styleSizes_.clear();
    if (ColorLink->isVisible()) ColorLink->close();
    if (StyleLink->isVisible()) StyleLink->close();
    RefreshData();
    for (const QString& f : SplitFields(PriceFields))
        if (TColumnEh* c = DBGridEh->ColumnByField(f)) c->Visible = ShowPrice && c->Visible;
    for (const QString& f : SplitFields(MoneyFields))
        if (TColumnEh* c = DBGridEh->ColumnByField(f)) c->Visible = ShowAmount && c->Visible;
    DBGridEh->ColumnsChanged();
    DBGridEh->SetReadOnly(ReadOnly);
    DBGridEh->SetFrozenCols(FrozenCols);
    Act_Save->setEnabled(!ReadOnly);
    Act_AddLine->setEnabled(!ReadOnly);
    Act_DeleteLine->setEnabled(!ReadOnly);
    applyLocks();
    if (auto* w = qobject_cast<QLineEdit*>(WarehouseEdit)) CurCkId = w->text();
    for (QWidget* w : Panel_Head->findChildren<QWidget*>()) WatchChanges(w);
    Modified = false;
}

void Tfrm_Base_Entry_Body::InitSJ(bool FromStyle) {
    if (!FromStyle) return;
    TClientDataSet* ds = AdoQry_Main;
    if (TField* tag = ds->FindField("ODJ")) {
        // Lines sold at the tag price: ODJ is the style's tag price, the discount ZK a percentage
        // (100 = no discount), the price SJ the tag price until a discount or a hand changes it.
        tag->SetAsFloat(styleTagPrice_);
        if (TField* zk = ds->FindField("ZK"); zk && zk->IsNull()) zk->SetAsFloat(100);
        if (TField* sj = ds->FindField("SJ"); sj && sj->IsNull()) sj->SetAsFloat(styleTagPrice_);
        return;
    }
    // Lines bought at the purchase price: into SJ where the lines have it, else the last price
    // field of the configuration.
    TField* price = ds->FindField("SJ");
    const QStringList prices = SplitFields(PriceFields);
    for (auto it = prices.rbegin(); it != prices.rend() && !price; ++it) price = ds->FindField(*it);
    if (price && price->IsNull()) price->SetAsFloat(stylePrice_);
}

// --- opening, locks, changes

void Tfrm_Base_Entry_Body::OpenEntry(const AnsiString& mode, TClientDataSet* master, bool readOnly) {
    InitForm(mode, master, true, true, readOnly, 0);
    SetCaption(Caption());
    EnsureObjectName();
    setWindowFlag(Qt::Window, true);
    setWindowModality(Qt::ApplicationModal);
    show();
    raise();
    activateWindow();
}

void Tfrm_Base_Entry_Body::applyLocks() {
    for (QWidget* w : locked_)
        if (w) w->setEnabled(true);
    locked_.clear();
    for (const QString& name : SplitFields(LockName)) {
        for (QWidget* w : findChildren<QWidget*>()) {
            if (w->objectName().compare(name, Qt::CaseInsensitive) != 0) continue;
            w->setEnabled(false);
            locked_ << w;
        }
    }
}

void Tfrm_Base_Entry_Body::WatchChanges(QWidget* control) {
    if (!control || control->property("qx_watched").toBool()) return;
    control->setProperty("qx_watched", true);
    auto changed = [this] { Modified = true; };
    if (auto* e = qobject_cast<QLineEdit*>(control)) connect(e, &QLineEdit::textEdited, this, changed);
    else if (auto* d = qobject_cast<QDateEdit*>(control))
        connect(d, &QDateEdit::dateChanged, this, [this, d] {
            if (d->hasFocus()) Modified = true;
        });
    else if (auto* c = qobject_cast<QComboBox*>(control)) connect(c, &QComboBox::activated, this, changed);
    else if (auto* b = qobject_cast<QCheckBox*>(control)) connect(b, &QCheckBox::clicked, this, changed);
}

void Tfrm_Base_Entry_Body::CheckDateCk(QObject* dateEdit) {
    CheckDate(dateEdit);
    const QString date = ControlText(dateEdit).trimmed().left(10);
    opensql(AdoQry_Work, FuncNo, "SELECT CK_END_DATE FROM sys_co", 0, 0, {}, {}, false, "1");
    if (AdoQry_Work->IsEmpty() || AdoQry_Work->Fields(0)->IsNull()) return;
    const QString open = AdoQry_Work->Fields(0)->AsDateTime().toString("yyyy-MM-dd");
    if (!open.isEmpty() && date < open) {
        DISPINFO(tr("单据日期不能早于本期开始日期") + open + "!", 5);
        if (auto* w = qobject_cast<QWidget*>(dateEdit); w && w->isVisible()) w->setFocus();
        Abort();
    }
}

bool Tfrm_Base_Entry_Body::HasChanges() const { return Modified || AdoQry_Main->Modified(); }

// --- lines

void Tfrm_Base_Entry_Body::prepareLines() {
    if (!LineSourceField.isEmpty() && !AdoQry_Main->FindField(LineSourceField)) {
        TField* source = AdoQry_Main->AddField(LineSourceField, ftString, 12, tr("来源单号"));
        source->Visible = false;
    }
    if (!AdoQry_Main->FindField("STOT") && AdoQry_Main->FindField("S0")) {
        AdoQry_Main->AddField("STOT", ftInteger, 0, tr("合计"));
    }
    if (TField* stot = AdoQry_Main->FindField("STOT")) {
        stot->ReadOnly = false;  // what is typed there is a ratio (EnterRatio); the sum is kept
        for (int r = 0; r < AdoQry_Main->RecordCount(); ++r)
            AdoQry_Main->SetCellValue(r, stot->Index(), qlonglong(qx::sizes::lineTotal(AdoQry_Main, r)));
    }
    if (!WlField.isEmpty() && !AdoQry_Main->FindField(WlField) && AdoQry_Main->FindField(StyleField) &&
        AdoQry_Main->FindField("COL_ID")) {
        TField* wl = AdoQry_Main->AddField(WlField.toUpper(), ftString, 20, tr("商品编号"));
        wl->Visible = false;
        const int k = AdoQry_Main->FieldIndex(StyleField), c = AdoQry_Main->FieldIndex("COL_ID");
        for (int r = 0; r < AdoQry_Main->RecordCount(); ++r)
            AdoQry_Main->SetCellValue(r, wl->Index(),
                                      AdoQry_Main->CellValue(r, k).toString() + AdoQry_Main->CellValue(r, c).toString());
    }
}

void Tfrm_Base_Entry_Body::attachSetters() {
    const QStringList numeric = SplitFields(QtyFields) + SplitFields(PriceFields) + SplitFields(MoneyFields);
    for (const QString& name : numeric)
        if (TField* f = AdoQry_Main->FindField(name)) f->OnSetText = [this](TField* s, const AnsiString& t) { lineValueTyped(s, t); };
    if (TField* f = AdoQry_Main->FindField(StyleField))
        f->OnSetText = [this](TField* s, const AnsiString& t) { WL_IDSetText(s, t); };
    if (TField* f = AdoQry_Main->FindField("DW_NAME"))
        f->OnSetText = [this](TField* s, const AnsiString& t) { DW_IDSetText(s, t); };
    for (const char* name : {"COL_ID", "COL_NAME"})
        if (TField* f = AdoQry_Main->FindField(name))
            f->OnSetText = [this](TField*, const AnsiString& t) { EnterColor(t); };
}

void Tfrm_Base_Entry_Body::BuildLineColumns() {
    BuildDocumentLineColumns(DBGridEh, AdoQry_Main, lineColumnConfig());
    if (TColumnEh* total = DBGridEh->ColumnByField("STOT")) total->ReadOnly = false;  // takes a ratio
    DBGridEh->ButtonFields = QStringList{StyleField, "COL_NAME", "COL_ID"};
}

TLineColumnConfig Tfrm_Base_Entry_Body::lineColumnConfig() const {
    return {StyleField,  QtyFields,  PriceFields, MoneyFields,        PriceLabel,
            AmountLabel, LineTitles, LineTags,    LineTrailingFields, LineUnitEditable};
}

void Tfrm_Base_Entry_Body::lineValueTyped(TField* field, const AnsiString& text) {
    if (field->FieldName.compare("STOT", Qt::CaseInsensitive) == 0) {
        EnterRatio(text);  // the total is the sizes' sum: what is typed there is a ratio
        return;
    }
    SetFloatText(field, text);
    ScopedSetTextSuspension suspended(field->DataSet());
    LineValueChanged(field);
}

void Tfrm_Base_Entry_Body::LineValueChanged(TField*) {}

bool Tfrm_Base_Entry_Body::lineHasStyle(int row) const {
    const int style = AdoQry_Main->FieldIndex(StyleField);
    return style >= 0 && !AdoQry_Main->CellValue(row, style).toString().trimmed().isEmpty();
}

QStringList Tfrm_Base_Entry_Body::lineSizeNames(int row) {
    const QStringList fromLine = qx::sizes::namesOfRow(AdoQry_Main, row);
    for (const QString& name : fromLine)
        if (!name.trimmed().isEmpty()) return fromLine;
    const int style = AdoQry_Main->FieldIndex(StyleField);
    QStringList names;
    qx::guard([&] { names = StyleSizeNames(AdoQry_Main->CellValue(row, style).toString()); });
    return names;
}

QStringList Tfrm_Base_Entry_Body::StyleSizeNames(const AnsiString& styleCode) {
    const QString key = styleCode.trimmed().toUpper();
    if (key.isEmpty()) return {};
    auto it = styleSizes_.find(key);
    if (it != styleSizes_.end()) return it.value();
    opensql(AdoQry_Work, FuncNo,
            "SELECT d1006.M0, d1006.M1, d1006.M2, d1006.M3, d1006.M4, d1006.M5, d1006.M6, d1006.M7, d1006.M8, "
            "d1006.M9 FROM d1800 INNER JOIN d1006 ON d1800.M_ID = d1006.M_ID WHERE d1800.K_ID=" +
                QuotedStr(styleCode.trimmed()),
            0, 0, {}, {}, false, "1");
    QStringList names;
    if (!AdoQry_Work->IsEmpty())
        for (int i = 0; i < qx::sizes::Count; ++i) names << AdoQry_Work->FieldByName(qx::sizes::nameField(i))->AsString();
    styleSizes_.insert(key, names);
    return names;
}

void Tfrm_Base_Entry_Body::updateSizeTitles() {
    QStringList names;
    if (AdoQry_Main->Active() && !AdoQry_Main->IsEmpty() && lineHasStyle(AdoQry_Main->CurrentRow()))
        names = lineSizeNames(AdoQry_Main->CurrentRow());
    SetSizeTitles(DBGridEh, names);
}

void Tfrm_Base_Entry_Body::setLineColor(const QString& code, const QString& name) {
    if (colorRow_ >= 0 && colorRow_ < AdoQry_Main->RecordCount() && AdoQry_Main->CurrentRow() != colorRow_)
        AdoQry_Main->SetRecNo(colorRow_ + 1);
    colorRow_ = -1;
    if (AdoQry_Main->State() == dsBrowse) AdoQry_Main->Edit();
    if (TField* f = AdoQry_Main->FindField("COL_ID")) f->SetAsString(code.trimmed());
    if (TField* f = AdoQry_Main->FindField("COL_NAME")) f->SetAsString(name);
    if (!WlField.isEmpty())
        if (TField* f = AdoQry_Main->FindField(WlField); f && AdoQry_Main->FindField(StyleField))
            f->SetAsString(AdoQry_Main->FieldByName(StyleField)->AsString() + code.trimmed());
    Modified = true;
}

QString Tfrm_Base_Entry_Body::firstSizeField() const {
    for (int i = 0; i < qx::sizes::Count; ++i)
        if (TColumnEh* c = DBGridEh->ColumnByField(quantityField(i)); c && c->Visible) return c->FieldName;
    return StyleField;
}

void Tfrm_Base_Entry_Body::EnterStyle(const AnsiString& styleCode) {
    if (!AdoQry_Main->Active()) AdoQry_Main->CreateDataSet();
    if (AdoQry_Main->IsEmpty()) AdoQry_Main->Append();
    else if (AdoQry_Main->State() == dsBrowse) AdoQry_Main->Edit();
    AdoQry_Main->FieldByName(StyleField)->SetText(styleCode);
}

void Tfrm_Base_Entry_Body::EnterColor(const AnsiString& colorText) {
    const QString text = colorText.trimmed();
    if (text.isEmpty()) return;
    const QString style = AdoQry_Main->FieldByName(StyleField)->AsString();
    if (style.isEmpty()) {
        DISPINFO(tr("请先输入款号!"), 5);
        Abort();
    }
    opensql(AdoQry_Work, FuncNo,
            "SELECT d1804.COL_ID, d1005.COL_NAME FROM d1804 INNER JOIN d1005 ON d1804.COL_ID = d1005.COL_ID WHERE "
            "d1804.K_ID=" +
                QuotedStr(style) + " AND (d1804.COL_ID=" + QuotedStr(text) + " OR d1005.COL_NAME=" + QuotedStr(text) + ")",
            0, 0, {}, {}, false, "1");
    if (AdoQry_Work->IsEmpty()) {
        DISPINFO(tr("款号 ") + style + tr(" 没有颜色 ") + text + "!", 5);
        Abort();
    }
    colorRow_ = -1;
    setLineColor(AdoQry_Work->FieldByName("COL_ID")->AsString(), AdoQry_Work->FieldByName("COL_NAME")->AsString());
}

void Tfrm_Base_Entry_Body::moveToNextCell(bool backwards) {
    QList<int> editable;  // columns that take typing, in visual order
    QHeaderView* header = DBGridEh->horizontalHeader();
    for (int v = 0; v < header->count(); ++v) {
        const int logical = header->logicalIndex(v);
        TColumnEh* c = DBGridEh->Columns(logical);
        if (DBGridEh->isColumnHidden(logical) || c->ReadOnly || !c->Field() || c->Field()->ReadOnly) continue;
        if (c->FieldName.compare("STOT", Qt::CaseInsensitive) == 0) continue;  // a ratio only when the clerk goes there
        editable << logical;
    }
    if (editable.isEmpty() || AdoQry_Main->IsEmpty()) return;
    const QModelIndex current = DBGridEh->currentIndex();
    int row = current.isValid() ? current.row() : AdoQry_Main->CurrentRow();
    int pos = editable.indexOf(current.column());
    // After the style: the colour list decides while it is open; with the colour known the
    // quantities come next.
    TColumnEh* here = current.isValid() ? DBGridEh->Columns(current.column()) : nullptr;
    if (!backwards && here && here->FieldName.compare(StyleField, Qt::CaseInsensitive) == 0) {
        if (ColorLink->isVisible()) return;
        TField* color = AdoQry_Main->FindField("COL_ID");
        TColumnEh* size = DBGridEh->ColumnByField(firstSizeField());
        if (color && !color->AsString().isEmpty() && size && editable.contains(size->Index()))
            pos = int(editable.indexOf(size->Index())) - 1;
    }
    if (backwards) {
        if (pos > 0) --pos;
        else if (row > 0) {
            --row;
            pos = int(editable.size()) - 1;
        } else {
            pos = 0;
        }
    } else if (pos < 0) {
        pos = 0;
    } else if (pos + 1 < editable.size()) {
        ++pos;
    } else {
        // Past the last cell: the next line's style, or a new line.
        AdoQry_Main->CheckBrowseMode();
        if (row + 1 >= AdoQry_Main->RecordCount()) {
            if (ReadOnlyMode) return;
            AdoQry_Main->Append();
        }
        ++row;
        pos = 0;
    }
    const QModelIndex target = DBGridEh->model()->index(row, editable[pos]);
    DBGridEh->setCurrentIndex(target);
    DBGridEh->setFocus();
    if (!ReadOnlyMode) DBGridEh->edit(target);
}

// --- handlers

bool Tfrm_Base_Entry_Body::SaveDocument() {
    if (ReadOnlyMode) return false;
    DBGridEh->CommitEdit();
    AdoQry_Main->CheckBrowseMode();
    // Lines left untouched (no style, no quantity, no note) are not lines; a line with
    // quantities but no style stays and is refused by AllCheck, so nothing typed is lost.
    if (TField* style = AdoQry_Main->FindField(StyleField)) {
        for (int r = AdoQry_Main->RecordCount() - 1; r >= 0; --r) {
            if (!AdoQry_Main->CellValue(r, style->Index()).toString().trimmed().isEmpty()) continue;
            bool typed = false;
            for (int i = 0; i < qx::sizes::Count && !typed; ++i)
                if (const int index = AdoQry_Main->FieldIndex(quantityField(i)); index >= 0)
                    typed = AdoQry_Main->CellValue(r, index).toDouble() != 0;
            if (const int note = AdoQry_Main->FieldIndex("NOTE"); note >= 0)
                typed = typed || !AdoQry_Main->CellValue(r, note).toString().trimmed().isEmpty();
            if (typed) continue;
            AdoQry_Main->SetRecNo(r + 1);
            AdoQry_Main->Delete();
        }
    }
    if (!AllCheck()) return false;
    {
        ScopedDisableControls frozen(AdoQry_Main);
        SaveData();
    }
    // The document is saved now: a failure to show it in the list is reported, not a failed save.
    const bool shown = qx::guard([this] {
        SaveHeadData();
        if (MasterDataSet && (MasterDataSet->State() == dsEdit || MasterDataSet->State() == dsInsert))
            MasterDataSet->Post();
    });
    if (!shown && MasterDataSet) MasterDataSet->Cancel();
    Modified = false;
    emit saved();
    return true;
}

void Tfrm_Base_Entry_Body::Act_SaveExecute(QObject*) {
    if (!SaveDocument()) return;
    closingAfterSave_ = true;
    close();
}

void Tfrm_Base_Entry_Body::Act_QuitExecute(QObject*) {
    if (DBGridEh->Editing()) {
        DBGridEh->CancelEdit();
        return;
    }
    close();
}

void Tfrm_Base_Entry_Body::Act_AddLineExecute(QObject*) {
    if (ReadOnlyMode) return;
    if (!AdoQry_Main->Active()) AdoQry_Main->CreateDataSet();
    AdoQry_Main->CheckBrowseMode();
    AdoQry_Main->Append();
    if (isVisible()) DBGridEh->EditField(StyleField);
}

void Tfrm_Base_Entry_Body::Act_DeleteLineExecute(QObject*) {
    if (ReadOnlyMode || !AdoQry_Main->Active() || AdoQry_Main->IsEmpty()) return;
    DBGridEh->CancelEdit();
    AdoQry_Main->Delete();
    Modified = true;
}

void Tfrm_Base_Entry_Body::Act_PrintExecute(QObject*) { qx::grid::printWithDialog(DBGridEh, Caption()); }
void Tfrm_Base_Entry_Body::Act_ExportExecute(QObject*) { qx::grid::exportWithDialog(DBGridEh, Caption()); }

bool Tfrm_Base_Entry_Body::FormCloseQuery() {
    if (closingAfterSave_ || ReadOnlyMode) return true;
    for (TFrm_Sys_LINK* link : findChildren<TFrm_Sys_LINK*>())
        if (link->isVisible()) link->close();
    if (!HasChanges()) return true;
    if (DISPINFO(tr("单据已修改,是否保存?"), 2) == "y") return SaveDocument();
    AdoQry_Main->Cancel();
    Modified = false;
    return true;
}

void Tfrm_Base_Entry_Body::FormKeyDown(QObject*, int& Key, Qt::KeyboardModifiers) {
    if (Key == Qt::Key_Escape) {
        Key = 0;
        Act_QuitExecute(this);
    }
}

bool Tfrm_Base_Entry_Body::eventFilter(QObject* watched, QEvent* event) {
    // Entering an empty line grid starts the first line.
    if (watched == DBGridEh && event->type() == QEvent::FocusIn && !ReadOnlyMode && AdoQry_Main->Active() &&
        AdoQry_Main->IsEmpty() && isVisible()) {
        qx::guard([this] { AdoQry_Main->Append(); });
        QMetaObject::invokeMethod(this, [this] { DBGridEh->EditField(StyleField); }, Qt::QueuedConnection);
    }
    return TFrm_Base_Panel::eventFilter(watched, event);
}

// ---------------------------------------------------------------- TFrm_Base_Entry_BodyC

TFrm_Sys_PickOrder::TFrm_Sys_PickOrder(QWidget* Owner) : TFrm_Base_Dialog(Owner) {
    setObjectName("Frm_Sys_PickOrder");
    SetCaption(tr("选择订单"));
    AdoQry_Orders = new TClientDataSet(this);
    AdoQry_Lines = new TClientDataSet(this);
    DBGridEh_Orders = new TDBGridEh(this, "DBGridEh_Orders");
    DBGridEh_Orders->SetReadOnly(true);
    DBGridEh_Orders->setSelectionBehavior(QAbstractItemView::SelectRows);
    DBGridEh_Orders->SetDataSet(AdoQry_Orders);
    DBGridEh_Lines = new TDBGridEh(this, "DBGridEh_Lines");
    DBGridEh_Lines->SetReadOnly(true);
    DBGridEh_Lines->SetDataSet(AdoQry_Lines);
    MainLayout()->insertWidget(1, DBGridEh_Orders, 2);
    MainLayout()->insertWidget(2, DBGridEh_Lines, 1);
    AdoQry_Orders->AfterScroll = [this](TDataSet*) {
        qx::guard([this] {
            if (AdoQry_Orders->IsEmpty()) return;
            opensql(AdoQry_Lines, FuncNo,
                    "SELECT D8203A.K_ID, D8203A.COL_ID, D8203A.S0, D8203A.S1, D8203A.S2, D8203A.S3, D8203A.S4, "
                    "D8203A.S5, D8203A.S6, D8203A.S7, D8203A.S8, D8203A.S9, D8203A.DJ FROM D8203A WHERE D8203A.NOID=" +
                        QuotedStr(AdoQry_Orders->FieldByName("NOID")->AsString()),
                    0, 0, {}, {}, false, "1");
        });
    };
    DBGridEh_Orders->OnDblClick = [this] { btn_okClick(DBGridEh_Orders); };
    resize(640, 480);
}

void TFrm_Sys_PickOrder::InitForm(const AnsiString& warehouse) {
    chosen_.clear();
    opensql(AdoQry_Orders, FuncNo,
            "SELECT D8203.NOID, D8203.BDATE, D8203.NOTE FROM D8203 WHERE D8203.CK_ID=" + QuotedStr(warehouse.trimmed()) +
                " ORDER BY D8203.BDATE DESC, D8203.NOID DESC",
            0, 0, {}, {}, false, "1");
}

void TFrm_Sys_PickOrder::btn_okClick(QObject* Sender) {
    TFrm_Base_Dialog::btn_okClick(Sender);
    if (AdoQry_Orders->IsEmpty()) {
        DISPINFO(tr("没有可选的订单!"), 5);
        Abort();
    }
    chosen_ = AdoQry_Orders->FieldByName("NOID")->AsString();
    SetModalResult(mrOk);
}

TFrm_Base_Entry_BodyC::TFrm_Base_Entry_BodyC(QWidget* Owner) : Tfrm_Base_Entry_Body(Owner) {
    AdoQry_Main->AfterScroll = [this](TDataSet* ds) { AdoQry_MainAfterScroll(ds); };
    DBGridEh->OnDblClick = [this] { DBGridEhDblClick1(DBGridEh); };
    OrderPicker = new TFrm_Sys_PickOrder(this);
}

void TFrm_Base_Entry_BodyC::PickOrderLines(const AnsiString& orderNo) {
    QString sizes, names;
    for (int i = 0; i < qx::sizes::Count; ++i) {
        sizes += ", D8203A." + quantityField(i);
        names += ", D1006." + qx::sizes::nameField(i);
    }
    opensql(AdoQry_Work, FuncNo,
            "SELECT D8203A.K_ID, D8203A.COL_ID, D1005.COL_NAME, D1800.WL_NAME, D1800.DW_NAME" + sizes +
                ", D8203A.DJ, D1800.PFJ" + names +
                " FROM D8203A INNER JOIN D1800 ON D8203A.K_ID = D1800.K_ID INNER JOIN D1005 ON D8203A.COL_ID = "
                "D1005.COL_ID LEFT OUTER JOIN D1006 ON D1800.M_ID = D1006.M_ID WHERE D8203A.NOID=" +
                QuotedStr(orderNo),
            0, 0, {}, {}, false, "1");
    if (AdoQry_Work->IsEmpty()) {
        DISPINFO(tr("订单 ") + orderNo + tr(" 没有明细!"), 5);
        Abort();
    }
    TClientDataSet* lines = AdoQry_Main;
    TClientDataSet* order = AdoQry_Work;
    auto set = [lines](const QString& name, const QVariant& value) {
        if (TField* f = lines->FindField(name)) f->SetValue(value);
    };
    lines->CheckBrowseMode();
    ScopedDisableControls frozen(lines);
    try {
        for (order->First(); !order->Eof(); order->Next()) {
            lines->Append();
            const QString style = order->FieldByName("K_ID")->AsString().trimmed();
            const QString color = order->FieldByName("COL_ID")->AsString().trimmed();
            set(StyleField, style);
            set("COL_ID", color);
            if (!WlField.isEmpty()) set(WlField, style + color);
            for (const char* name : {"COL_NAME", "WL_NAME", "DW_NAME"}) set(name, order->FieldByName(name)->AsString());
            double total = 0;
            for (int i = 0; i < qx::sizes::Count; ++i) {
                const int q = order->FieldByName(quantityField(i))->AsInteger();
                total += q;
                set(quantityField(i), q);
                set(qx::sizes::nameField(i), order->FieldByName(qx::sizes::nameField(i))->AsString());
            }
            set("STOT", total);
            const double price = order->FieldByName("DJ")->AsFloat();
            const double tag = order->FieldByName("PFJ")->AsFloat();
            if (lines->FindField("ODJ")) {
                set("ODJ", tag);
                set("OMONEY", total * tag);
                set("ZK", tag != 0 ? price / tag * 100 : 100);
            }
            if (lines->FindField("SJ")) set("SJ", price);
            else if (!SplitFields(PriceFields).isEmpty()) set(SplitFields(PriceFields).last(), price);
            if (lines->FindField("SMONEY")) set("SMONEY", total * price);
            set("NOID", orderNo);
            lines->Post();
        }
    } catch (...) {
        lines->Cancel();
        throw;
    }
    Modified = true;
    updateSizeTitles();
}

void TFrm_Base_Entry_BodyC::AdoQry_MainAfterScroll(TDataSet*) {
    if (columnsBuilt_) updateSizeTitles();
}

void TFrm_Base_Entry_BodyC::AdoQry_MainCalcFields(TDataSet*) {}

void TFrm_Base_Entry_BodyC::DBGridEhDblClick1(QObject*) {
    if (ReadOnlyMode) return;
    TColumnEh* c = DBGridEh->CurrentColumn();
    if (c && (c->FieldName.compare(StyleField, Qt::CaseInsensitive) == 0 ||
              DBGridEh->ButtonFields.contains(c->FieldName, Qt::CaseInsensitive))) {
        DBGridEh->OnCellButtonClick(c);
        return;
    }
    const QString warehouse = ControlText(WarehouseEdit).trimmed();
    if (warehouse.isEmpty()) {
        DISPINFO(tr("请先选择仓库!"), 5);
        return;
    }
    OrderPicker->InitForm(warehouse);
    if (OrderPicker->ShowModal() != mrOk) return;
    PickOrderLines(OrderPicker->ChosenOrder());
}

Tfrm_Base_Entry_Body::~Tfrm_Base_Entry_Body() {
    // The hooks call into this screen, which is going: nothing may run them from here on.
    DBGridEh->ClearHooks();
    AdoQry_Main->AfterScroll = nullptr;
    AdoQry_Main->BeforePost = nullptr;
    for (int i = 0; i < AdoQry_Main->FieldCount(); ++i) AdoQry_Main->Fields(i)->OnSetText = nullptr;
    StyleLink->OnPicked = nullptr;
    ColorLink->OnPicked = nullptr;
}
