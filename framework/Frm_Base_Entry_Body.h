#pragma once
// Tfrm_Base_Entry_Body / TFrm_Base_Entry_BodyC: the document entry screen. Head edits on
// Panel_Head (the screen adds them), the line grid DBGridEh over AdoQry_Main with the size
// matrix S0..S9 and STOT (kept as their sum), toolbar Act_Save (F2/Ctrl+S), Act_AddLine
// (Ctrl+Insert), Act_DeleteLine (Ctrl+Delete), Act_Print, Act_Export (the lines as XLSX, CSV or
// PDF), Act_Quit (Escape; an open cell editor is closed first).
//
// How screens use it
//   TQXCK201_1(QWidget* Owner) : TFrm_Base_Entry_BodyC(Owner) {
//       Edit1 = Panel_Head->AddEdit("Edit1", "进货单号", 12); ...
//       FormCreate();
//   }
//   void FormCreate() { TFrm_Base_Entry_BodyC::FormCreate(); WarehouseEdit = CK_ID;
//                       PartnerEdit = KH_GYS_ID; PriceLabel = "进货价"; AmountLabel = "金额";
//                       EntryFlag = true; ... }
//   void RefreshData() override { ...head...; TFrm_Base_Entry_BodyC::RefreshData(); }
//   bool AllCheck() override { TFrm_Base_Entry_BodyC::AllCheck(); ...; DISPINFO(...,5); Abort(); }
//   void SaveData() override { TFrm_Base_Entry_BodyC::SaveData(); ...; ExecSql(...); }
//   void SaveHeadData() override { TFrm_Base_Entry_BodyC::SaveHeadData(); MasterDataSet->...; }
//
// Opening (the list calls OpenEntry(mode, its dataset)): EditMode and MasterDataSet are set,
// the screen's RefreshData runs (the framework's part loads the lines: BodySql with "%s" filled
// with the quoted key of the master row in "Edit"/"CopyAdd", and with '' in "Add", so "Add"
// opens with no lines), the controls named in LockName (comma-separated, case-insensitive) are
// disabled, Modified is cleared and the screen is shown (a window, application-modal, no
// nested event loop). Entering the empty line grid starts the first line; Down on the last
// line (with a style) adds one.
// Line entry: the style cell (StyleField, K_ID) takes a typed style code (WL_IDSetText) or a
// pick from TQX_LINK_K (the cell's button or a double click, WL_IDBTNClick); then the colour is
// chosen among d1804's colours of the style (one colour is taken at once); WL_ID = K_ID + COL_ID
// when the dataset has the field; name, unit and size names come from d1800/d1006; the price
// from the style (InitSJ: CGJ into SJ; lines with ODJ get the tag price PFJ, ZK 100). Size
// titles follow the current line ("尺码|{M0..M9}"), size columns after G_CM are hidden. Enter
// and Tab move to the next editable cell (after the style straight to the first size, then the
// sizes in order, price, amount, note, then the next line). A double click elsewhere opens the
// order picker (lines of an order of the head's warehouse). Columns tagged 1 take no typing on
// a line taken from an order (a line whose NOID field names its order).
// Saving (Act_SaveExecute): post the pending line, drop untouched new lines, AllCheck (false or
// Abort stops; the framework's part refuses a line without style or colour), SaveData,
// SaveHeadData (the master row in append/edit state; posted after), emit saved(), close.
// Quitting with unsaved changes asks "单据已修改,是否保存?".
#include <QHash>
#include <QPointer>

#include "framework/Frm_Base.h"

class TDBGridEh;
class TQX_LINK_K;
class TQX_LINK_COL;
class QLineEdit;

class QX_FRAMEWORK_EXPORT Tfrm_Base_Entry_Body : public TFrm_Base_Panel {
    Q_OBJECT
public:
    explicit Tfrm_Base_Entry_Body(QWidget* Owner = nullptr);
    ~Tfrm_Base_Entry_Body() override;

    // --- virtual operations, in this order
    virtual void DBGridEhColorLine(TColumnEh* Column, TCellParams& Params);
    virtual void DW_IDSetText(TField* Sender, const AnsiString& Text);
    virtual void WL_IDSetText(TField* Sender, const AnsiString& Text);
    virtual void WL_IDBTNClick(QObject* Sender, bool& Handled);
    virtual void showdw(QObject* Sender, bool& Handled);
    virtual void AdoQry_MainBeforePost(TDataSet* DataSet);
    virtual bool AllCheck();
    virtual void ColumnClick();
    virtual void RefreshData();
    virtual void SaveData();
    virtual void SaveHeadData();
    virtual void InitForm(AnsiString Mode, TClientDataSet* Master, bool ShowPrice, bool ShowAmount,
                          bool ReadOnly, int FrozenCols);
    virtual void InitSJ(bool FromStyle);

    // --- handlers
    virtual void Act_SaveExecute(QObject* Sender);
    virtual void Act_QuitExecute(QObject* Sender);
    virtual void Act_AddLineExecute(QObject* Sender);
    virtual void Act_DeleteLineExecute(QObject* Sender);
    virtual void Act_PrintExecute(QObject* Sender);
    virtual void Act_ExportExecute(QObject* Sender);
    void FormCreate() { TFrm_Base::FormCreate(); }

    // Opens the screen for a mode on the list's dataset (see above).
    void OpenEntry(const AnsiString& mode, TClientDataSet* master, bool readOnly = false);
    bool IsAdd() const { return EditMode == "Add" || EditMode == "CopyAdd"; }

    AnsiString EditMode;  // "Add", "CopyAdd", "Edit"
    TClientDataSet* MasterDataSet = nullptr;
    AnsiString LockName;   // controls disabled in this opening ("EDIT1,ck_id")
    bool Modified = false; // unsaved changes (head edits or lines)
    bool ReadOnlyMode = false;

    QWidget* WarehouseEdit = nullptr;  // the head's warehouse edit
    QWidget* PartnerEdit = nullptr;    // the head's supplier/customer edit
    AnsiString CurCkId;                // the warehouse used for line lookups
    AnsiString PriceLabel = "单价";
    AnsiString AmountLabel = "金额";
    bool EntryFlag = false;
    TClientDataSet* BarcodeDataSet = nullptr;  // the screen's "tm" dataset
    QHash<QString, QString> LineTitles;  // line column titles by upper-cased field ("吊牌|单价")
    QHash<QString, int> LineTags;        // line column tags by upper-cased field
    AnsiString LineTrailingFields;       // line columns after the total, in order (see TLineColumnConfig)
    bool LineUnitEditable = false;       // a line's unit may be changed (DW_IDSetText, showdw)
    // A line field naming the document a line was taken from ("NOID"), added empty to lines
    // that do not bring it; the order picker fills it.
    AnsiString LineSourceField;

    TFormPanel* Panel_Head;
    TClientDataSet* AdoQry_Main;
    TDBGridEh* DBGridEh;
    TClientDataSet* AdoQry_Work;  // the framework's lookups
    TQX_LINK_K* StyleLink;
    TQX_LINK_COL* ColorLink;

    QAction* Act_Save;
    QAction* Act_Quit;
    QAction* Act_AddLine;
    QAction* Act_DeleteLine;
    QAction* Act_Print;
    QAction* Act_Export;

    // Line entry, callable from scripts and tests: sets the style (as if typed) and the colour
    // of the current line; quantities by size position.
    void EnterStyle(const AnsiString& styleCode);
    void EnterColor(const AnsiString& colorCode);
    // Size names of a style's size group (M0..M9 of d1006).
    QStringList StyleSizeNames(const AnsiString& styleCode);
    // Marks the screen changed when the user edits the control (every control of Panel_Head is
    // watched when the screen opens; call it for controls placed elsewhere).
    void WatchChanges(QWidget* control);
    // The document date: a valid "YYYY-MM-DD" not before the open period (sys_co.CK_END_DATE);
    // reports, focuses and aborts otherwise.
    void CheckDateCk(QObject* dateEdit);
    // Unsaved changes: Modified, or a line being edited.
    bool HasChanges() const;
    // The save without closing: post, drop lines without a style, AllCheck, SaveData,
    // SaveHeadData, post the list row, saved(). False when a check stopped it.
    bool SaveDocument();
    // Size titles of the line grid from the current line (or its style's size group).
    void updateSizeTitles();
    // How the line grid shows lines; the list shows its lines grid the same way.
    TLineColumnConfig lineColumnConfig() const;
    // A line value was typed and stored (STOT already follows the sizes): the place for a
    // document's price arithmetic. Text setters are suspended while it runs, so what it writes
    // runs no setter.
    virtual void LineValueChanged(TField* Sender);

    // Entry by size ratio (framework/SizeRatio.*): "1:2:2:1*12" typed into the line's total
    // cell, or built in the dialog of Act_Ratio ("配比", Ctrl+R), fills the current line's sizes.
    void EnterRatio(const AnsiString& text);
    virtual void Act_RatioExecute(QObject* Sender);
    QAction* Act_Ratio;
    // Scanning (framework/ScanEntry.*): the scan field above the lines; Enter there scans.
    void ScanCode(const AnsiString& code);
    QLineEdit* Edit_Scan;

signals:
    void saved();

protected:
    bool FormCloseQuery() override;
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Line grid columns built after the first load.
    virtual void BuildLineColumns();
    void attachSetters();
    void lineValueTyped(TField* field, const AnsiString& text);
    bool lineHasStyle(int row) const;
    // The size names of a line's size group: from the line itself, else from its style.
    QStringList lineSizeNames(int row);
    void moveToNextCell(bool backwards);
    void applyLocks();
    void setLineColor(const QString& code, const QString& name);
    // STOT (sum of sizes) and the SKU field added to freshly loaded lines.
    void prepareLines();
    QString firstSizeField() const;  // the first shown size column
    bool columnsBuilt_ = false;
    bool closingAfterSave_ = false;
    QHash<QString, QStringList> styleSizes_;  // size names per style, for this opening
    double stylePrice_ = 0;     // CGJ of the style just entered
    double styleTagPrice_ = 0;  // PFJ of the style just entered
    int colorRow_ = -1;         // the line waiting for its colour
    QList<QPointer<QWidget>> locked_;

private:
    void setupRatioAndScan();  // framework/ScanEntry.cpp
    void addScannedSize(const QString& style, const QString& colour, const QString& colourName, int position);
};

// Lines from an order (订单/补单, D8203) of the document's warehouse: the orders, newest first,
// with the lines of the current one below; OK takes the current order.
class QX_FRAMEWORK_EXPORT TFrm_Sys_PickOrder : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TFrm_Sys_PickOrder(QWidget* Owner = nullptr);
    void InitForm(const AnsiString& warehouse);
    void btn_okClick(QObject* Sender) override;
    AnsiString ChosenOrder() const { return chosen_; }
    TClientDataSet* AdoQry_Orders;
    TClientDataSet* AdoQry_Lines;
    TDBGridEh* DBGridEh_Orders;
    TDBGridEh* DBGridEh_Lines;

private:
    AnsiString chosen_;
};

class QX_FRAMEWORK_EXPORT TFrm_Base_Entry_BodyC : public Tfrm_Base_Entry_Body {
    Q_OBJECT
public:
    explicit TFrm_Base_Entry_BodyC(QWidget* Owner = nullptr);
    // --- virtual operations
    virtual void AdoQry_MainAfterScroll(TDataSet* DataSet);  // size titles of the current line

    void FormCreate() { Tfrm_Base_Entry_Body::FormCreate(); }
    void AdoQry_MainCalcFields(TDataSet* DataSet);
    // Double click in the line grid: on the style or colour the goods pick lists, elsewhere the
    // order picker (lines of an order of the head's warehouse). Virtual: screens refine it.
    virtual void DBGridEhDblClick1(QObject* Sender);
    // Appends the lines of an order: style, colour, names, sizes, quantities and prices (the
    // order's price as SJ; with tag prices ODJ = the style's tag price and ZK the percentage),
    // the line's NOID field (when it has one) naming the order.
    void PickOrderLines(const AnsiString& orderNo);
    TFrm_Sys_PickOrder* OrderPicker;
};
