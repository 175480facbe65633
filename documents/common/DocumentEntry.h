#pragma once
// The entry screen of a stock document, built from its kind's description: the head controls
// and their pick lists, opening in "Add" / "CopyAdd" / "Edit" (number, warehouse, locks, the
// head copied from the list row or cleared), the taken-number check, the line check, the price
// arithmetic, the save batch from the kind's statement templates, and the list row written
// back after a save. A kind's entry unit derives from it and adds only its own steps.
#include "documents/common/DocumentKind.h"
#include "framework/Frm_Base_Entry_Body.h"

class TDocumentEntry : public TFrm_Base_Entry_BodyC {
    Q_OBJECT
public:
    TDocumentEntry(QWidget* Owner, const qx::documents::DocumentKind& kind);

    void FormCreate();
    void RefreshData() override;
    void SaveData() override;
    void SaveHeadData() override;
    bool AllCheck() override;
    void LineValueChanged(TField* Sender) override;
    void Act_QuitExecute(QObject* Sender) override;
    void Edit1Exit(QObject* Sender);
    void KH_GYS_IDButtonClick(QObject* Sender);
    // The line data changed: once a line exists the warehouse is fixed (kinds that say so).
    virtual void DataSourceDataChange(QObject* Sender, TField* Field);

    // The batch SaveData runs, as built from the screen's head and lines.
    AnsiString BuildSaveBatch();
    // The total written into the head (TOLMONEY), as text.
    QString TotalText() const;
    const qx::documents::DocumentKind& Kind() const { return kind_; }

    // Head controls (those the kind does not have stay null).
    QLineEdit* Edit1 = nullptr;
    TLinkEdit* KH_GYS_ID = nullptr;
    QLabel* KG_NAME = nullptr;
    TDateEdit* BDATE = nullptr;
    TLinkEdit* CK_ID = nullptr;
    QLabel* CK_NAME = nullptr;
    TLinkEdit* SEND_ID = nullptr;
    QLabel* SEND_NAME = nullptr;
    QLineEdit* send_no = nullptr;
    TLinkEdit* YW_ID = nullptr;
    QLabel* YW_NAME = nullptr;
    TLinkEdit* JY_ID = nullptr;
    QLabel* JY_NAME = nullptr;
    QLineEdit* NOTE = nullptr;
    QLabel* EDATE = nullptr;
    QLabel* USER_NAME = nullptr;

    TClientDataSet* AdoQry_Check;  // is a typed number taken?

    TFrm_Sys_LINK_KH* PartnerLink = nullptr;
    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;
    TFrm_Sys_LINK_SE* DeliveryLink = nullptr;
    TFrm_Sys_LINK_JY* SettlementLink = nullptr;
    TFrm_Sys_LINK_YW* SalespersonLink = nullptr;

    QWidget* FirstFocus = nullptr;  // where the cursor starts in this opening

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    // A kind's own part of opening, after number and warehouse are set (barcodes of receipts).
    virtual void RefreshOwnData() {}
    // A kind's own head check, after the framework's and before the typed codes and the lines
    // are checked: reports, focuses and aborts (Abort) when the head is wrong.
    virtual void CheckOwnHead() {}
    // Refuses a save with an empty partner, warehouse or lookup: "请选择{caption}!".
    void refuseEmptyLookups();
    // A kind's own statements after the templates' (barcode updates of receipts).
    virtual void AppendOwnStatements(QString& batch) { Q_UNUSED(batch); }
    // The value of a placeholder of the templates; false when it names nothing.
    bool headValue(const QString& name, QString& value) const;
    bool lineValue(int row, const QString& name, QString& value) const;

private:
    void buildHead();
    void createPickLists();
    void copyHeadFromList();
    void clearHeadForNewDocument();
    void putHeadIntoListRow();
    QWidget* headControl(const QString& name) const;
    // "{discount}": the fractional part of ZK/10, times 10, with two places.
    static QString discountText(double zk);

    qx::documents::DocumentKind kind_;
};
