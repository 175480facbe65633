#pragma once
// Goods in transit: transfers that have left their warehouse (effective, T = 1) but whose
// arrival is not confirmed yet (Y <> 1). Their sent quantities are on neither warehouse's
// shelf. The view V_QX_ZT (frame/tables/views.sql) gives them line by line; the statements
// here read only that view and the two documents' own tables.
//
// Per transfer, grouped by warehouse pair (what the arrival-check list's "在途" shows):
//   number, date, out/in warehouse and names, S0..S9 and STOT, days on the road until `today`.
// Per SKU (what a stock query shows beside the stock): for each receiving warehouse and SKU
//   the quantities on their way to it, Q0..Q9 and QTY, and from which warehouse.
#include <QDate>
#include <QString>

#include "framework/Frm_Base.h"

class TDBGridEh;

namespace qx::transfer {

// The transfers in transit, one row per transfer, ordered by out warehouse, in warehouse,
// date and number. With warehouse rights enforced (G_CHKCK) only transfers from or to one of
// the user's warehouses.
QString inTransitTransfersQuery(const QDate& today);
// The quantities in transit per receiving warehouse, sending warehouse and SKU.
QString inTransitBySkuQuery();

}  // namespace qx::transfer

// The goods in transit, opened from the arrival-check list: the transfers on the road by
// warehouse pair, and below them the totals per SKU.
class TQXCK234_2 : public TFrm_Base_Panel {
    Q_OBJECT
public:
    explicit TQXCK234_2(QWidget* Owner);
    // Runs both statements again.
    void RefreshData();
    void Act_RefreshExecute(QObject* Sender) { RefreshData(); }

    TClientDataSet* AdoQry_Transfers;
    TClientDataSet* AdoQry_Sku;
    TDBGridEh* DBGridEh;
    TDBGridEh* DBGridEh_Sku;
    QAction* Act_Refresh;
    QAction* Act_Quit;
};
