#pragma once
// The filter dialog of a stock document list, built from its description: the document date
// range with its day count and period presets, the kind's lookups and edits, and the number
// range; OK builds the description shown above the list and the condition of the head query.
#include "documents/common/DocumentKind.h"
#include "framework/Frm_Base.h"

class QToolButton;

class TDocumentFilter : public TFrm_Sys_Filter {
    Q_OBJECT
public:
    TDocumentFilter(QWidget* Owner, const qx::documents::DocumentFilterKind& kind);

    void InitForm() override;
    void FormCreate();
    void FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) override;
    void btn_okClick(QObject* Sender) override;
    void KH_IDButtonClick(QObject* Sender);
    void EDATEChange(QObject* Sender);

    TDateEdit* BDATE;
    TDateEdit* EDATE;
    QLabel* titDATE;
    QToolButton* btn_Period;  // "时段选择"
    TLinkEdit* KH_ID = nullptr;
    QLabel* KG_NAME = nullptr;
    TLinkEdit* CK_ID = nullptr;
    QLabel* CK_NAME = nullptr;
    QLineEdit* ExtEdit1 = nullptr;
    QLineEdit* Edit1;
    QLineEdit* Edit2;

    TFrm_Sys_LINK_KH* PartnerLink = nullptr;
    TFrm_Sys_LINK_CK* WarehouseLink = nullptr;  // only when the user may read several warehouses

private:
    qx::documents::DocumentFilterKind kind_;
};
