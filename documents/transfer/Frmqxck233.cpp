#include "documents/transfer/Frmqxck233.h"

#include "documents/common/DocumentCommon.h"
#include "documents/transfer/Frmqxck233_1.h"
#include "documents/transfer/Frmqxck233f.h"
#include "documents/transfer/TransferList.h"

using namespace qx::documents;

TQXCK233* QXCK233 = nullptr;

AnsiString TQXCK233::HeadQuery() {
    return " SELECT d8303.noid,d8303.y,d8303.y_wc,d8303.y_NOTE,d8303.yname,d8303.ydate,d1007.ck_id,d1007.ck_name,"
           "d8303.bdate,d8303.edate, d8303.strparam1,sys_user.user_id,sys_user.user_name,d8303.note,D8303.t,D8303.sk,"
           "D8303.sdate, d8303.ck_id_in,d1007_1.ck_name AS ck_name_in, A.SL,A.SMON  FROM d8303 INNER JOIN(SELECT "
           "SUM(D8303A.S0 + D8303A.S1 + D8303A.S2 + D8303A.S3 + D8303A.S4 + D8303A.S5 + D8303A.S6 + D8303A.S7 + "
           "D8303A.S9 + D8303A.S8) AS SL,SUM(D8303A.SMONEY) AS SMON, D8303A.NOID as NO FROM D1801 INNER JOIN D8303A "
           "ON D1801.WL_ID = D8303A.WL_ID INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID "
           "= D1006.M_ID INNER JOIN D1005 ON D1801.COL_ID = D1005.COL_ID  GROUP BY D8303A.NOID) A ON D8303.NOID = "
           "A.NO INNER JOIN  d1007 ON d8303.ck_id = d1007.ck_id INNER JOIN sys_user ON d8303.user_id = "
           "sys_user.user_id INNER JOIN" +
           warehouseRightsJoin("d1007") + " d1007 d1007_1 ON d8303.ck_id_in = d1007_1.ck_id";
}

TQXCK233::TQXCK233(QWidget* Owner)
    : TDocumentList(Owner, qx::transfer::listKind("调拨单", qx::transfer::lineQuery(false))) {
    setObjectName("QXCK233");
    FormCreate();
}

void TQXCK233::GetData() {
    TDocumentList::GetData();
    qx::transfer::showReceiptsInLines(this);
}

void TQXCK233::DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) {
    TDocumentList::DBGridEhGetCellParams(Sender, Column, Params);
    qx::transfer::blankZeroDiscrepancy(AdoQry_Main, Column, Params);
}

TDocumentEntry* TQXCK233::CreateEntry() { return QXCK233_1 = new TQXCK233_1(this); }
TFrm_Sys_Filter* TQXCK233::CreateFilter() { return QXCK233F = new TQXCK233F(this); }
TQXCK233_1* TQXCK233::entry() const { return static_cast<TQXCK233_1*>(Entry); }
TQXCK233F* TQXCK233::filter() const { return static_cast<TQXCK233F*>(Filter); }
