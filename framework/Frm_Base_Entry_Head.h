#pragma once
// TFrm_Base_Entry_Head: the document list. A toolbar (Act_Add, Act_CopyAdd, Act_Edit,
// Act_Delete, Act_View, Act_Filter, Act_Refresh, Act_Print, Act_Preview, Act_Export, Act_Quit),
// the head grid (DBGridEh over AdoQry_Main) and below it the lines of the current head
// (DBGridEh_Detail over AdoQry_Detail, BodySql with "%s" filled with the quoted key).
//
// How screens use it
//   void TQXCK201::InitForm(const Trecord& rec) {
//       TFrm_Base_Entry_Head::InitForm(rec);           // user context, FuncNo, shown
//       QtyFields = "S0,...,STOT"; PriceFields = "dj,sj"; MoneyFields = "money,smoney";
//       KeyField = "NOID"; WlField = "wl_id"; HeadSql = "..."; BodySql = "... =%s)";
//       DeleteSql = "delete from d8101 Where NOID=%S";
//       QXCK201_1 = new TQXCK201_1(this);
//       QXCK201_1->SetBodyParam(BodyParams());   // the texts above, packed
//       QXCK201F = new TQXCK201F(this); QXCK201F->InitForm();
//       Act_Start->trigger();   // filter first, then the head query with its condition
//   }
//
// The entry screen and the filter are found among the list's children (the first
// Tfrm_Base_Entry_Body and TFrm_Sys_Filter) unless EntryForm / FilterForm are set.
// Filter: when confirmed, Condition = the filter's Condition, Lab_Condition shows its
// Description, and GetData runs HeadSql + " WHERE " + Condition (HeadSql alone when empty).
// Delete: asks "确定要删除单据{key}吗?" and runs DeleteSql with %s and %S replaced by the quoted key
// through ExecSql(FuncNo, key, "Delete", ...), then drops the row.
// Add / CopyAdd / Edit / View open the entry screen in that mode (View: "Edit", read-only).
#include "framework/Frm_Base.h"

class TDBGridEh;
class Tfrm_Base_Entry_Body;

class QX_FRAMEWORK_EXPORT TFrm_Base_Entry_Head : public TFrm_Base_Panel {
    Q_OBJECT
public:
    explicit TFrm_Base_Entry_Head(QWidget* Owner = nullptr);
    ~TFrm_Base_Entry_Head() override;

    // --- virtual operations, in this order
    virtual void GetData();  // runs the head query with the condition
    virtual void InitForm(const Trecord& rec);

    void FormCreate() { TFrm_Base::FormCreate(); }

    // --- handlers of the toolbar (virtual: a screen's override is what the action runs)
    virtual void Act_AddExecute(QObject* Sender);
    virtual void Act_CopyAddExecute(QObject* Sender);
    virtual void Act_EditExecute(QObject* Sender);
    virtual void Act_DeleteExecute(QObject* Sender);
    virtual void Act_ViewExecute(QObject* Sender);
    virtual void Act_FilterExecute(QObject* Sender);
    virtual void Act_RefreshExecute(QObject* Sender);
    virtual void Act_PrintExecute(QObject* Sender);
    virtual void Act_PreviewExecute(QObject* Sender);
    virtual void Act_ExportExecute(QObject* Sender);
    virtual void Act_QuitExecute(QObject* Sender);
    // Cell colours of the head grid (the screen's DBGridEhGetCellParams).
    virtual void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params);

    // Loads the lines of the current head into AdoQry_Detail.
    void RefreshDetail();
    // Opens the entry screen for a mode ("Add", "CopyAdd", "Edit").
    void OpenEntry(const AnsiString& mode, bool readOnly = false);
    // The delete statement for a key: %s and %S replaced by the quoted key.
    AnsiString DeleteStatement(const AnsiString& key) const;
    // The statement GetData runs.
    AnsiString HeadStatement() const;
    // The list's configuration texts as its entry screen takes them.
    TBodyParams BodyParams() const;

    AnsiString Condition;  // from the filter; empty lists everything
    Tfrm_Base_Entry_Body* EntryForm = nullptr;
    TFrm_Sys_Filter* FilterForm = nullptr;

    TClientDataSet* AdoQry_Main;
    TClientDataSet* AdoQry_Detail;
    TDBGridEh* DBGridEh;
    TDBGridEh* DBGridEh_Detail;

    QAction* Act_Start;  // start-up: the filter, then the head query
    QAction* Act_Add;
    QAction* Act_CopyAdd;
    QAction* Act_Edit;
    QAction* Act_Delete;
    QAction* Act_View;
    QAction* Act_Filter;
    QAction* Act_Refresh;
    QAction* Act_Print;
    QAction* Act_Preview;
    QAction* Act_Export;
    QAction* Act_Quit;

protected:
    Tfrm_Base_Entry_Body* entry();
    TFrm_Sys_Filter* filter();
    // Size titles of the lines grid follow the current line (M0..M9 of the line query).
    void updateDetailSizeTitles();
    bool detailColumnsBuilt_ = false;
};
