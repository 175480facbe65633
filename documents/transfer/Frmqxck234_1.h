#pragma once
// The arrival check: the receiving warehouse counts a transfer in. It writes only the receipt
// columns (D8303: Y, YDATE, YNAME, Y_NOTE, Y_WC; D8303A: Y0..Y9); everything the sender entered
// stays as it is, lines are neither added nor deleted and no price is recomputed.
#include <functional>

#include "documents/transfer/TransferEntry.h"

class TQXCK234_1 : public TTransferEntry {
    Q_OBJECT
public:
    explicit TQXCK234_1(QWidget* Owner);
    static const qx::documents::DocumentKind& Description();

    void FormCreate();
    void RefreshData() override;
    void SaveData() override;
    void SaveHeadData() override;
    void LineValueChanged(TField* Sender) override;  // no price arithmetic here
    void DataSourceDataChange(QObject* Sender, TField* Field) override;
    void DBGridEhDblClick1(QObject* Sender) override;  // no order picking
    void Act_SaveExecute(QObject* Sender) override;    // 确认
    void Act_QuitExecute(QObject* Sender) override;
    void Act_AddLineExecute(QObject* Sender) override;     // no lines are added here
    void Act_DeleteLineExecute(QObject* Sender) override;  // nor deleted
    void Act_OtherExecute(QObject* Sender);      // 全数收货
    void Act_CheckExecute(QObject* Sender);      // 全数清零
    void Act_SetColumnExecute(QObject* Sender);  // 放弃

    // The receipt batch as built from the screen.
    AnsiString BuildReceiptBatch();

    int ReceiptState = 0;  // the arrival state to be written: 1 received, 0 not (yet)
    QLineEdit* Y_NOTE = nullptr;
    QAction* Act_SetColumn;
    QAction* Act_Other;
    QAction* Act_Check;

protected:
    bool ReceiptTyped() const override { return true; }
    bool InWarehouseByRights() const override { return true; }
    void ReceiptChanged() override { DataSourceDataChange(AdoQry_Main, nullptr); }

private:
    double receivedFooter() const;
    // Every line's received quantity at each size position, from first line to last.
    void setEveryReceipt(const std::function<int(int position)>& received);
};

extern TQXCK234_1* QXCK234_1;
