#pragma once
// What the transfer entry and the arrival check share beyond every document: the two warehouse
// edits, the handler and the receipt fields of the head, and the received quantities Y0..Y9 of
// each line with their total YTOT, shown after the note under "收货填写", each receipt column
// shown exactly when the size column of the same position is.
#include "documents/common/DocumentEntry.h"

class TTransferEntry : public TDocumentEntry {
    Q_OBJECT
public:
    TTransferEntry(QWidget* Owner, const qx::documents::DocumentKind& kind);

    void RefreshData() override;
    // YTOT of the current line: Y0 + … + Y9.
    void AdoQry_MainCalcFields(TDataSet* DataSet);
    void btn_click(QObject* Sender) { KH_GYS_IDButtonClick(Sender); }
    void setcbj() {}

    // The received total of a line (Y0..Y9, an empty cell counting 0).
    int ReceivedTotal(int row) const;
    // The received quantity of a line at a size position as a batch writes it ("0" when empty).
    QString ReceivedText(int row, int position) const;

    TLinkEdit* CK_ID_IN = nullptr;
    QLabel* CK_NAME_IN = nullptr;
    QLineEdit* STRPARAM1 = nullptr;
    QLabel* Y_WC = nullptr;
    TFrm_Sys_LINK_CK* InWarehouseLink = nullptr;

    // "Y0".."Y9" and "YTOT".
    static QString receiptField(int position);
    // The size position of a receipt field ("Y3" → 3), -1 for any other field.
    static int receiptPosition(const QString& field);
    // The head of a transfer, from the number to the change date.
    static QList<qx::documents::HeadField> transferHead(const QString& inWarehouseCaption = "调入仓库");

protected:
    void BuildLineColumns() override;
    // Whether the receipt cells take typing on this screen (the receiver's, not the sender's).
    virtual bool ReceiptTyped() const { return false; }
    // The in-warehouse pick list offers every warehouse (false) or the user's only (true).
    virtual bool InWarehouseByRights() const { return false; }
    // A received quantity was typed into the current line.
    virtual void ReceiptChanged() {}
    void createInWarehouseLink();

private:
    void prepareReceiptFields();
    void receiptTyped(TField* field, const AnsiString& text);
};
