#pragma once
// The movement detail: per article its opening, one line per movement with the running
// balance, and per-size lines in blue; Tab jumps to the next article.
#include "reports/Frmqxck254f.h"

class TQXCK254 : public TFrm_MovementReport {
    Q_OBJECT
public:
    explicit TQXCK254(QWidget* Owner);
    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void AfterQuery() override;
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;
    void DBGridEhKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift);
};

extern TQXCK254* QXCK254;
