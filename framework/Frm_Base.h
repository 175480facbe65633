#pragma once
#include <QHash>
// The base screens: TFrm_Base -> TFrm_Base_Common -> TFrm_Base_Dialog -> TFrm_Base_Condition ->
// TFrm_Sys_Filter; TFrm_Base_Dialog -> TFrm_Base_Detail; TFrm_Base_Common -> TFrm_Base_Panel
// (toolbar screens; lists, reports and entry screens derive from it, see the other headers).
//
// How screens use it
//   class TQXCK201F : public TFrm_Sys_Filter {
//   public:
//       explicit TQXCK201F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
//           BDATE = Panel_Condition->AddDateEdit("BDATE", "开单日期"); ...
//           FormCreate();                    // every screen constructor ends with FormCreate()
//       }
//       void FormCreate() { TFrm_Sys_Filter::FormCreate(); SetDateEdits(BDATE, EDATE); ... }
//       void InitForm() override { TFrm_Sys_Filter::InitForm(); setdate04click(nullptr); }
//       void btn_okClick(QObject* Sender) override {
//           TFrm_Sys_Filter::btn_okClick(Sender);       // CheckAll, clears Condition/Description
//           Condition = "(D8101.BDATE>='" + SqlStr(BDATE->Text()) + "') ...";
//           Condition_t("=", "d1103.KH_gys_ID", KH_ID->text());
//           SetModalResult(mrOk);                        // confirmed: the owner runs its query
//       }
//   };
//
// Base behaviour lives in constructors (controls, actions) and in the virtual operations, in
// the order the module's screens know them. Handlers the framework wires to its own controls
// (btn_okClick, FormKeyDown, ...) are virtual too, so a screen's override is what runs. Every
// handler runs inside qx::guard (Abort is silent; database errors are reported).
// Screens are QDialogs: ShowModal() runs exec() (or the modal handler tests install), Release()
// deletes later. InitForm of non-modal screens hands them to the screen presenter (the host
// shows them as tabs; by default they are shown as windows) and frees them when closed.
#include <QAction>
#include <QDate>
#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QStringList>
#include <QTimer>
#include <functional>

#include "framework/Controls.h"
#include "framework/DBGridEh.h"
#include "framework/DataSet.h"
#include "framework/LinkForms.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/Export.h"
#include "framework/Types.h"
#include "framework/U_glo.h"

class QAction;
class QLabel;
class QPushButton;
class QToolBar;
class QToolButton;
class QVBoxLayout;

enum TModalResult { mrNone = 0, mrOk = 1, mrCancel = 2, mrAbort = 3, mrYes = 6, mrNo = 7 };

class TFrm_Base;
namespace qx::ui {
// Shows a non-modal screen (the host installs one that adds it as a tab).
using ScreenPresenter = std::function<void(TFrm_Base* screen)>;
QX_FRAMEWORK_EXPORT void setScreenPresenter(ScreenPresenter presenter);
QX_FRAMEWORK_EXPORT void presentScreen(TFrm_Base* screen);
// Replaces exec() of ShowModal (tests, script runner): the dialog is shown, the handler drives
// it and returns the modal result. nullptr restores exec().
using ModalHandler = std::function<int(TFrm_Base* dialog)>;
QX_FRAMEWORK_EXPORT ModalHandler setModalHandler(ModalHandler handler);
// "Today" for date presets and new documents; tests may fix it (invalid date = the real today).
QX_FRAMEWORK_EXPORT QDate today();
QX_FRAMEWORK_EXPORT void setToday(const QDate& date);
}  // namespace qx::ui

class QX_FRAMEWORK_EXPORT TFrm_Base : public QDialog {
    Q_OBJECT
public:
    explicit TFrm_Base(QWidget* Owner = nullptr);
    ~TFrm_Base() override;

    // The function code (set by the dispatcher) and as text, the first argument of every data
    // operation. A screen created with a screen as owner starts with the owner's.
    int Tag = 0;
    AnsiString FuncNo;

    AnsiString Caption() const;
    void SetCaption(const AnsiString& caption);

    int ShowModal();
    void Release();
    void Close();
    int ModalResult() const { return modalResult_; }
    void SetModalResult(int result);  // mrOk/mrCancel end a modal run

    virtual void Help();

    void FormDestroy();
    // Gives an unnamed screen the name of its class without the leading T ("QXCK201").
    void EnsureObjectName();
    // The framework's create step (screens call it last in their constructor, through their own
    // FormCreate that starts with the base's).
    void FormCreate() {}

protected:
    void keyPressEvent(QKeyEvent* event) override;
    // Handles a key before the dialog does; set Key = 0 to consume it.
    virtual void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift);
    void closeEvent(QCloseEvent* event) override;
    // Return false to keep the screen open (entry screens ask to save).
    virtual bool FormCloseQuery() { return true; }

    int modalResult_ = mrNone;
};

// What a document list hands to its entry screen: its statements, the field lists the entry's
// arithmetic and footers work on, and the free texts other document kinds may use.
struct TBodyParams {
    static constexpr int FreeTextCount = 8;
    AnsiString HeadSql;      // the list's head query
    AnsiString BodySql;      // the line query, "%s" for the quoted key
    AnsiString MoneyFields;  // "money,smoney"
    AnsiString PriceFields;  // "dj,sj"
    AnsiString QtyFields;    // "S0,...,S9,STOT"
    AnsiString StyleField;   // empty: the framework's "K_ID"
    AnsiString WlField;      // "wl_id"
    AnsiString KeyField;     // "NOID"
    AnsiString DeleteSql;    // "delete from d8101 Where NOID=%S"
    AnsiString FreeTexts[FreeTextCount];
};

// How the line grid of a document shows its lines: style, name, unit and colour, the sizes
// S0..S9 in position order with their total, the further quantity, price and amount fields of
// the configuration, the note. Titles and tags of single fields may be given by name.
struct TLineColumnConfig {
    AnsiString StyleField = "K_ID";
    AnsiString QtyFields, PriceFields, MoneyFields;
    AnsiString PriceLabel = "单价";   // the title of SJ
    AnsiString AmountLabel = "金额";  // the title of SMONEY
    QHash<QString, QString> Titles;   // upper-cased field name -> title ("吊牌|单价")
    QHash<QString, int> Tags;         // upper-cased field name -> column tag
    // The fields after the total, in this order, instead of the quantity, price and amount
    // fields of the configuration ("ODJ,OMONEY,ZK,SJ,SMONEY").
    AnsiString TrailingFields;
    bool UnitEditable = false;  // the line's unit (DW_NAME) takes typing
};

class QX_FRAMEWORK_EXPORT TFrm_Base_Common : public TFrm_Base {
    Q_OBJECT
public:
    explicit TFrm_Base_Common(QWidget* Owner = nullptr);

    // --- virtual operations, in this order
    virtual void Getsysinfo(AnsiString info);
    void Help() override;
    virtual void OpenSqlPage(TClientDataSet* ds, WideString FuncNo, WideString sql, const int,
                             const int, WideString, WideString);
    virtual void SetUserParam(AnsiString UserId, AnsiString UserName, AnsiString CkId,
                              AnsiString CkName, AnsiString CoName, AnsiString DbName);
    virtual void SetFormParam(AnsiString p1, AnsiString p2, AnsiString p3, AnsiString p4,
                              AnsiString p5, AnsiString p6);
    // What every screen opened from the menu does first: takes the user context and the
    // function code of the call, and shows itself as the host presents screens.
    void OpenScreen(const Trecord& rec);
    // The configuration a list hands to its entry screen (see TBodyParams).
    virtual void SetBodyParam(const TBodyParams& Params);

    // User parameters (SetUserParam) and form parameters (SetFormParam).
    AnsiString UserId, UserName, CkId, CkName, CoName, DbName;
    AnsiString FormParam[6];
    AnsiString SysInfo;

    // --- checks (report, focus the control and Abort on failure)
    void CheckBlank(QObject* edit);  // "{caption}不能为空!"
    void CheckDate(QObject* dateEdit);  // a valid "YYYY-MM-DD" date

    // --- date presets of filter dialogs, applied to the date edits handed over here:
    // 01 today, 02 yesterday, 03 this week (Monday to today), 04 this month (1st to today),
    // 05 last month, 06 this quarter (to today), 07 this year (to today), 08 last year.
    void SetDateEdits(TDateEdit* from, TDateEdit* to);
    TDateEdit* DateFrom() const { return dateFrom_; }
    TDateEdit* DateTo() const { return dateTo_; }
    void setdate01click(QObject* Sender);
    void setdate02click(QObject* Sender);
    void setdate03click(QObject* Sender);
    void setdate04click(QObject* Sender);
    void setdate05click(QObject* Sender);
    void setdate06click(QObject* Sender);
    void setdate07click(QObject* Sender);
    void setdate08click(QObject* Sender);
    // The range of preset n (1..8) relative to a day.
    static std::pair<QDate, QDate> PresetRange(int preset, const QDate& today);
    // A "时段选择" button whose menu applies the presets.
    QToolButton* CreateDatePresetButton(QWidget* parent);
    // The day-count label "titDATE" beside a date range, "(30天)" until the dates change.
    QLabel* CreateDayCountLabel(QWidget* parent);
    // The 500 ms timer "gtime" that sets the size columns' titles after scrolling; its handler runs
    // guarded. Stopped until the screen starts it.
    QTimer* CreateSizeTitleTimer(std::function<void()> onTick);

    // An action with a stable objectName, caption and shortcut whose handler runs guarded.
    QAction* AddAction(const QString& name, const QString& caption, const QKeySequence& shortcut,
                       std::function<void()> handler);

private:
    void applyPreset(int preset);
    TDateEdit* dateFrom_ = nullptr;
    TDateEdit* dateTo_ = nullptr;
};

class QX_FRAMEWORK_EXPORT TFrm_Base_Dialog : public TFrm_Base_Common {
    Q_OBJECT
public:
    explicit TFrm_Base_Dialog(QWidget* Owner = nullptr);

    // --- virtual operations, in this order
    virtual bool CheckAll();  // true: the dialog may be confirmed
    // Appends " AND ({column} {op} '{value}')" (value through the quoting helper) to Condition;
    // an empty (trimmed) value adds nothing.
    virtual void Condition_t(AnsiString op, AnsiString column, AnsiString value);

    void FormCreate() { TFrm_Base::FormCreate(); }
    // The framework's OK: CheckAll (abort when false), then Condition and Description are cleared
    // for the screen to build. Screens override and call it first.
    virtual void btn_okClick(QObject* Sender);
    virtual void btn_cancelClick(QObject* Sender);

    AnsiString Condition;    // SQL condition without WHERE
    AnsiString Description;  // shown above the owner's grid
    // Names of controls whose values the dialog keeps between runs of the program, in the
    // company's INI file (section = the dialog's name): restored by RestoreProps (filters do it
    // in InitForm), saved when the dialog is confirmed.
    QStringList StoredProps;
    void RestoreProps();
    void SaveProps();

    QVBoxLayout* MainLayout() const { return main_; }
    TFormPanel* Panel_Condition;  // the dialog's controls
    QPushButton* btn_ok;
    QPushButton* btn_cancel;

private:
    QVBoxLayout* main_;
};

class QX_FRAMEWORK_EXPORT TFrm_Base_Condition : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TFrm_Base_Condition(QWidget* Owner = nullptr);
    virtual void GetData();  // fills the dialog's lists (empty by default)
};

// Filter dialogs of lists and reports: F2 = OK, F3 = clear the typed conditions, F4 = the pick
// list of the focused lookup edit, Escape = cancel.
class QX_FRAMEWORK_EXPORT TFrm_Sys_Filter : public TFrm_Base_Condition {
    Q_OBJECT
public:
    explicit TFrm_Sys_Filter(QWidget* Owner = nullptr);
    virtual void InitForm();
    void FormCreate() { TFrm_Base_Dialog::FormCreate(); }
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    void btn_okClick(QObject* Sender) override;
    bool Confirmed() const { return ModalResult() == mrOk; }
    // Work dataset for the dialog's own lookups.
    TClientDataSet* AdoQry_Work;
};

// Detail forms opened from other screens (drill-downs): a read-only grid over AdoQry_Main
// (multi-select, copy, sort by title click) between the condition panel and the buttons.
class QX_FRAMEWORK_EXPORT TFrm_Base_Detail : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TFrm_Base_Detail(QWidget* Owner = nullptr);
    // --- virtual operations, in this order
    virtual void RefreshData();
    virtual void SaveData();
    // Opens the detail for a text its opener passes (a key of the master row, or a mode such as
    // "ReadOnly") on the master dataset positioned on the chosen row.
    virtual void InitForm(AnsiString Key, TClientDataSet* Master);
    void FormCreate() { TFrm_Base_Dialog::FormCreate(); }

    AnsiString KeyValue;
    TClientDataSet* MasterDataSet = nullptr;
    TClientDataSet* AdoQry_Main;
    class TDBGridEh* DBGridEh;
};

// The sort dialog of report grids: pick a column and the direction; OK sorts the grid's rows.
class QX_FRAMEWORK_EXPORT TFrm_Sys_SortOrder : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    explicit TFrm_Sys_SortOrder(QWidget* Owner = nullptr);
    // fields: the sortable fields, comma-separated (empty: every visible column).
    void InitForm(class TDBGridEh* grid, AnsiString fields);
    void btn_okClick(QObject* Sender) override;
    class QComboBox* Cmb_Field;
    class QCheckBox* Chk_Desc;

private:
    class TDBGridEh* grid_ = nullptr;
};

// Screens with a toolbar and a main grid area.
class QX_FRAMEWORK_EXPORT TFrm_Base_Panel : public TFrm_Base_Common {
    Q_OBJECT
public:
    explicit TFrm_Base_Panel(QWidget* Owner = nullptr);

    void Getsysinfo(AnsiString info) override;
    void SetBodyParam(const TBodyParams& Params) override;
    // The text setter of numeric line fields: stores the typed number (refusing text that is not
    // one), and keeps STOT the sum of S0..S9 when a size quantity changes.
    virtual void SetFloatText(TField* Sender, const AnsiString& Text);

    // The configuration texts (SetBodyParam, or set directly by a list in its InitForm).
    AnsiString HeadSql, BodySql, DeleteSql, KeyField, WlField, StyleField = "K_ID";
    AnsiString MoneyFields, PriceFields, QtyFields;
    AnsiString BodyText[TBodyParams::FreeTextCount];

    QToolBar* ToolBar;
    QVBoxLayout* MainLayout() const { return main_; }
    QLabel* Lab_Condition;  // the description of the current condition
    // The condition line printed and exported under the title ("" while the label is hidden).
    AnsiString ConditionText() const;

    // The configured field lists split at commas (trimmed, empty parts dropped).
    static QStringList SplitFields(const AnsiString& list);
    bool IsSizeField(const QString& name) const;  // S0..S9
    // Sets the titles of the size columns S0..S9 of a grid from the size names ("尺码|{name}";
    // a position the size group leaves unnamed is titled blank) and hides the columns after G_CM.
    static void SetSizeTitles(class TDBGridEh* grid, const QStringList& sizeNames);
    static void HideSizeColumnsAfterCM(class TDBGridEh* grid);
    // Builds the columns of a document line grid (entry or list) from the lines' fields.
    static void BuildDocumentLineColumns(class TDBGridEh* grid, TClientDataSet* lines, const TLineColumnConfig& config);

private:
    QVBoxLayout* main_;
};
