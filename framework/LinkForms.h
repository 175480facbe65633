#pragma once
// Pick lists behind TLinkEdit: a search box and a grid over one master table. Typing searches
// the code (prefix), the name (contains) and the pinyin initials (prefix, from the PYM column or
// GetPY of the name). Enter or a double click picks the current row: the code goes into the
// edit, the name into its label, and the list closes. The lists are non-modal tool windows.
//
// How screens use it
//   auto* kh = new TFrm_Sys_LINK_KH(this);
//   kh->init(KH_GYS_ID, "", true);        // suppliers; "d1102" as the text: customers
//   auto* ck = new TFrm_Sys_LINK_CK(this);
//   ck->init(AdoQry_Main, CK_ID, CK_ID, FuncNo, "", "");
//   (new TFrm_Sys_LINK_YW(this))->init(YW_ID);
//   if (kh->Visible()) kh->Close();
//
// Pick lists query through opensql. The list loads its rows when first shown or searched.
#include <QDialog>
#include <functional>

#include "framework/Export.h"
#include "framework/Types.h"

class QLineEdit;
class TLinkEdit;
class TClientDataSet;
class TDBGridEh;

class QX_FRAMEWORK_EXPORT TFrm_Sys_LINK : public QDialog {
    Q_OBJECT
public:
    TFrm_Sys_LINK(QWidget* owner, const QString& objectName, const QString& caption);

    // The table behind the list.
    void SetSource(const QString& table, const QString& codeField, const QString& nameField,
                   const QString& where = {}, const QString& pymField = "PYM");
    QString Table() const { return table_; }
    QString CodeField() const { return codeField_; }
    QString NameField() const { return nameField_; }

    void Attach(TLinkEdit* edit);  // the edit this list fills
    TLinkEdit* Edit() const { return edit_; }

    void Show();  // loads when needed, positions under the edit, shows; search text = edit text
    void Close() { close(); }
    bool Visible() const { return isVisible(); }
    void Reload();

    // Search text: rows shown are those matching it.
    void Search(const QString& text);
    // Picks the row with this code (or the current row when empty). False when not listed.
    bool Pick(const QString& code = {});
    // The name of a code, looked up in the table (null QString when the code does not exist).
    QString NameOf(const QString& code);

    // Called after a pick with the code and name (in addition to filling the edit).
    std::function<void(const QString& code, const QString& name)> OnPicked;

    TClientDataSet* DataSet() const { return shown_; }   // the rows shown (after the search)
    TClientDataSet* AllRows() const { return data_; }    // every row of the table
    TDBGridEh* Grid() const { return grid_; }
    QLineEdit* SearchEdit() const { return search_; }
    QString FuncNo = "0";

protected:
    virtual QString SelectSql() const;  // all rows of the table
    void keyPressEvent(QKeyEvent* event) override;
    void applyFilter();

    QString table_, codeField_, nameField_, where_, pymField_;
    TLinkEdit* edit_ = nullptr;
    TClientDataSet* data_;
    TClientDataSet* shown_;
    TDBGridEh* grid_;
    QLineEdit* search_;
    bool loaded_ = false;
};

// Warehouses (d1007). With warehouse rights enforced, only the user's warehouses.
class QX_FRAMEWORK_EXPORT TFrm_Sys_LINK_CK : public TFrm_Sys_LINK {
    Q_OBJECT
public:
    explicit TFrm_Sys_LINK_CK(QWidget* owner);
    // dataSet: the screen's line dataset (the warehouse of its lines follows a pick when it has
    // a CK_ID field); edit: the warehouse edit; nextControl: focused after a pick (may be edit).
    void init(TClientDataSet* dataSet, TLinkEdit* edit, QWidget* nextControl, AnsiString FuncNo,
              AnsiString = {}, AnsiString = {});

private:
    TClientDataSet* lines_ = nullptr;
    QWidget* next_ = nullptr;
};

// Suppliers (d1103) or customers (d1102).
class QX_FRAMEWORK_EXPORT TFrm_Sys_LINK_KH : public TFrm_Sys_LINK {
    Q_OBJECT
public:
    explicit TFrm_Sys_LINK_KH(QWidget* owner);
    // table: "" or "d1103" suppliers, "d1102" customers; checkOnExit: validate a typed code
    // when the edit is left.
    void init(TLinkEdit* edit, AnsiString table, bool checkOnExit);
};

// Salespeople / buyers (d1101).
class QX_FRAMEWORK_EXPORT TFrm_Sys_LINK_YW : public TFrm_Sys_LINK {
    Q_OBJECT
public:
    explicit TFrm_Sys_LINK_YW(QWidget* owner);
    void init(TLinkEdit* edit);
};

// Delivery / receipt methods (d1011).
class QX_FRAMEWORK_EXPORT TFrm_Sys_LINK_SE : public TFrm_Sys_LINK {
    Q_OBJECT
public:
    explicit TFrm_Sys_LINK_SE(QWidget* owner);
    void init(TLinkEdit* edit);
};

// Settlement methods (d1010).
class QX_FRAMEWORK_EXPORT TFrm_Sys_LINK_JY : public TFrm_Sys_LINK {
    Q_OBJECT
public:
    explicit TFrm_Sys_LINK_JY(QWidget* owner);
    // condition: offered methods only ("(jy_id<>'2')" keeps method 2 off returns).
    void init(TLinkEdit* edit, AnsiString condition = {});
};

// Styles (d1800: K_ID, WL_NAME).
class QX_FRAMEWORK_EXPORT TQX_LINK_K : public TFrm_Sys_LINK {
    Q_OBJECT
public:
    explicit TQX_LINK_K(QWidget* owner);
    void init(TLinkEdit* edit, AnsiString = {});
};

// Colours offered for one style (d1804 with d1005's names); used by line entry.
class QX_FRAMEWORK_EXPORT TQX_LINK_COL : public TFrm_Sys_LINK {
    Q_OBJECT
public:
    explicit TQX_LINK_COL(QWidget* owner);
    void SetStyle(const QString& styleCode);

protected:
    QString SelectSql() const override;

private:
    QString style_;
};
