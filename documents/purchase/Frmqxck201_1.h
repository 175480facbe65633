#pragma once
// The purchase receipt entry screen: goods received from a supplier into one warehouse, one
// head (D8101) and its lines (D8101A), each line one SKU with a quantity per size position.
#include "framework/Frm_Base_Entry_Body.h"

class TQXCK201_1 : public TFrm_Base_Entry_BodyC {
    Q_OBJECT
public:
    explicit TQXCK201_1(QWidget* Owner);

    void FormCreate();
    void RefreshData() override;
    void SaveData() override;
    void SaveHeadData() override;
    bool AllCheck() override;
    void SetFloatText(TField* Sender, const AnsiString& Text) override;
    void Act_QuitExecute(QObject* Sender) override;
    void Edit1Exit(QObject* Sender);
    void KH_GYS_IDButtonClick(QObject* Sender);

    // The batch SaveData runs, as built from the screen's head and lines.
    AnsiString BuildSaveBatch();

    QLineEdit* Edit1;
    TLinkEdit* KH_GYS_ID;
    QLabel* KG_NAME;
    TDateEdit* BDATE;
    TLinkEdit* CK_ID;
    QLabel* CK_NAME;
    TLinkEdit* SEND_ID;
    QLabel* SEND_NAME;
    QLineEdit* send_no;
    TLinkEdit* YW_ID;
    QLabel* YW_NAME;
    TLinkEdit* JY_ID;
    QLabel* JY_NAME;
    QLineEdit* NOTE;
    QLabel* EDATE;
    QLabel* USER_NAME;  // the document's maker

    TClientDataSet* tm;             // barcodes of the document's SKUs (per size)
    TClientDataSet* AdoQry_Check;   // is a typed number taken?

    TFrm_Sys_LINK_KH* SupplierLink = nullptr;
    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;
    TFrm_Sys_LINK_SE* DeliveryLink = nullptr;
    TFrm_Sys_LINK_JY* SettlementLink = nullptr;
    TFrm_Sys_LINK_YW* BuyerLink = nullptr;

    QWidget* FirstFocus = nullptr;  // where the cursor starts in this opening

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    static QStringList floatFields();
    void copyHeadFromList();
    void clearHeadForNewReceipt();
};

extern TQXCK201_1* QXCK201_1;
