#pragma once
// The stock distribution: one row per style, one column per warehouse (the cross-tab
// procedure's pivot of stock per style and warehouse), a total; zero cells drawn blank.
#include "framework/Frm_Base_Qry.h"

class TQXCK256F;

class TQXCK256 : public TFrm_Base_Qry {
    Q_OBJECT
public:
    explicit TQXCK256(QWidget* Owner);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void Act_LocateExecute(QObject* Sender) override;
    void Act_RefreshExecute(QObject* Sender) override;
    void AdoQry_MainAfterOpen(TDataSet* DataSet);
    void Drawzert(TColumnEh* Column, TCellParams& Params);
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;

    // The row source of the dialog's choices, and the procedure call around it.
    QString InnerSql() const;
    QString BuildSql() const;

    QLabel* Lab_Head;  // "物料资料："
    TQXCK256F* Filter = nullptr;
};

extern TQXCK256* QXCK256;
