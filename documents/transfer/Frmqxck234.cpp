#include "documents/transfer/Frmqxck234.h"

#include <QToolBar>

#include "documents/common/DocumentCommon.h"
#include "documents/transfer/Frmqxck234_1.h"
#include "documents/transfer/Frmqxck234f.h"
#include "documents/transfer/InTransit.h"
#include "documents/transfer/TransferList.h"
#include "framework/DBGridEh.h"

using namespace qx::documents;

TQXCK234* QXCK234 = nullptr;

AnsiString TQXCK234::HeadQuery() {
    return " SELECT d8303.noid,d8303.y,d8303.yname,d8303.ydate,d8303.Y_WC,d8303.y_NOTE,d1007.ck_id,d1007.ck_name,"
           "d8303.bdate,d8303.edate, d8303.strparam1,sys_user.user_id,sys_user.user_name,d8303.note,CONVERT(tinyint,"
           "D8303.y) AS T,D8303.sk,D8303.sdate, d8303.ck_id_in,d1007_1.ck_name AS ck_name_in FROM d8303 INNER JOIN "
           "d1007 d1007_1 ON d8303.ck_id_in = d1007_1.ck_id INNER JOIN d1007 ON d8303.ck_id = d1007.ck_id INNER JOIN" +
           warehouseRightsJoin("d1007_1") + " sys_user ON d8303.user_id = sys_user.user_id";
}

AnsiString TQXCK234::ListCondition(const AnsiString& filterCondition) {
    const QString base = "(D8303.T = 1)";
    return filterCondition.trimmed().isEmpty() ? base : base + " and " + filterCondition;
}

TQXCK234::TQXCK234(QWidget* Owner) : TDocumentList(Owner, [] {
    DocumentListKind kind = qx::transfer::listKind("调拨到货点收", qx::transfer::lineQuery(true));
    for (ListColumn& c : kind.columns)  // amounts are the sender's business
        if (c.field == "SL" || c.field == "SMON") c.shown = false;
    return kind;
}()) {
    setObjectName("QXCK234");
    // The receiver counts existing transfers in: he neither writes nor removes one here.
    for (QAction* a : {Act_Add, Act_CopyAdd, Act_Delete}) {
        a->setVisible(false);
        a->setEnabled(false);
    }
    Act_InTransit = AddAction("Act_InTransit", "在途", QKeySequence(), [this] { Act_InTransitExecute(Act_InTransit); });
    Act_InTransit->setToolTip("已发出但尚未确认到货的调拨单，按调出仓和调入仓列出，并按商品合计在途数量");
    ToolBar->insertAction(Act_Refresh, Act_InTransit);
    FormCreate();
}

void TQXCK234::GetData() {
    const AnsiString given = Condition;
    Condition = ListCondition(given);
    qx::guard([this] { TDocumentList::GetData(); });
    Condition = given;
    qx::transfer::showReceiptsInLines(this);
}

void TQXCK234::DBGridEhGetCellParams(QObject*, TColumnEh* Column, TCellParams& Params) {
    // Not yet received: red 128, green 255, blue 255.
    const int received = AdoQry_Main->FieldIndex("y");
    if (received >= 0 && Params.Row >= 0 && Params.Row < AdoQry_Main->RecordCount() &&
        AdoQry_Main->CellValue(Params.Row, received).toInt() == 0)
        Params.Background = QColor(128, 255, 255);
    qx::transfer::blankZeroDiscrepancy(AdoQry_Main, Column, Params);
}

void TQXCK234::Act_InTransitExecute(QObject*) {
    if (!InTransit) {
        InTransit = new TQXCK234_2(this);
        handFunctionCode(InTransit, FuncNo);
    }
    InTransit->RefreshData();
    qx::ui::presentScreen(InTransit);
}

TDocumentEntry* TQXCK234::CreateEntry() { return QXCK234_1 = new TQXCK234_1(this); }
TFrm_Sys_Filter* TQXCK234::CreateFilter() { return QXCK234F = new TQXCK234F(this); }
TQXCK234_1* TQXCK234::entry() const { return static_cast<TQXCK234_1*>(Entry); }
TQXCK234F* TQXCK234::filter() const { return static_cast<TQXCK234F*>(Filter); }
