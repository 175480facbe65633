#pragma once
// Hang tags from a purchase receipt: the five newest receipts (or one found by its number), the
// lines of the current one with the received quantities as counts, which may be changed before
// the tags are made.
#include <QTimer>

#include "framework/Frm_Base.h"

class TQXCK299DB : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    explicit TQXCK299DB(QWidget* Owner);
    ~TQXCK299DB() override;

    void FormCreate();
    void InitForm() override;
    void InitA(TClientDataSet* list);
    void AdoQry_MainAfterScroll(TDataSet* DataSet);
    void btn_refClick(QObject* Sender);
    void BTN_1Click(QObject* Sender);
    void gtimeTimer(QObject* Sender);
    void Act_DeleteExecute(QObject* Sender);
    void btn_okClick(QObject* Sender) override;

    // The receipt statement (with the warehouse-rights join as the signed-in user has it).
    static AnsiString ReceiptQuery();

    QLineEdit* Edit1;          // receipt number to find
    QPushButton* btn_ref;      // "查找"
    TClientDataSet* AdoQry_Main;  // receipts
    TClientDataSet* AdoQry_Body;  // lines of the current receipt (the tag counts)
    TDBGridEh* DBGridEh1;
    TDBGridEh* DBGridEh2;
    QPushButton* BTN_1;  // make tags (tag 1)
    QPushButton* BTN_2;  // make tags and close (tag 2)
    QPushButton* BTN_3;  // switch to making tags by style (tag 3)
    QPushButton* btn_Delete;
    QAction* Act_Delete;
    QTimer* gtime;

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    TClientDataSet* list_ = nullptr;
};

extern TQXCK299DB* QXCK299DB;
