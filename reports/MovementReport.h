#pragma once
// What the movement classification (252), summary (253) and detail (254) reports share: their
// condition dialog (date range, warehouse, article with its check against the barcodes,
// grouping, "only articles that moved") building the stock movement procedure call, and the
// report form that runs it.
#include <QCheckBox>
#include <QLineEdit>
#include <QRadioButton>

#include "framework/Frm_Base.h"
#include "framework/Frm_Base_Qry.h"

class QToolButton;

class TFrm_MovementFilter : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    // detail: the statement begins "EXEC SYS_ZM @param=1,"; kindColumns: the dialog offers
    // "只显示有业务的类别(栏目)" (the classification report).
    TFrm_MovementFilter(QWidget* Owner, const QString& name, const QString& caption, bool detail, bool kindColumns);

    void InitForm() override;
    void FormCreate();
    void btn_okClick(QObject* Sender) override;
    void BDATEChange(QObject* Sender);
    void wl_idExit(QObject* Sender);
    void btn_datesetClick(QObject* Sender);
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    bool FormCloseQuery() override;
    // The article check: true when the article is empty or known; otherwise the message, the
    // focus back on the article, false.
    bool CheckArticle();

    QString SqlText;          // the procedure call of the last OK
    bool HideEmptyKinds = true;  // the state of showAllDate at the last OK

    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_dateset;
    TLinkEdit* CK_ID1;
    QLabel* CK_NAME;
    QLineEdit* wl_id;
    QLabel* wl_name;
    QLabel* Lab_Show;  // "报表显示:"
    QRadioButton* c0;
    QRadioButton* c1;
    QRadioButton* c2;
    QCheckBox* YS;
    QCheckBox* showAllDate = nullptr;
    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;

private:
    bool detail_;
};

class TFrm_MovementReport : public TFrm_Base_Qry {
    Q_OBJECT
public:
    // withCost: the statement gets ",@param2=" + the cost visibility
    TFrm_MovementReport(QWidget* Owner, const QString& name, const QString& caption, bool withCost);

    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    // After the rows are open (the classification hides empty kinds).
    virtual void AfterQuery() {}
    // Starts the report: base InitForm, the dialog, the query action.
    void Start(const Trecord& rec, TFrm_MovementFilter* dialog);
    QString BuildSql() const;

    TFrm_MovementFilter* Filter = nullptr;

protected:
    // The columns shared by the three reports: article, style, name, brand, colour, size.
    void AddArticleColumns();

private:
    bool withCost_;
};
