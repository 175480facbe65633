#include "documents/sales/Frmqxck212.h"

#include "documents/common/DocumentCommon.h"
#include "documents/sales/Frmqxck212_1.h"
#include "documents/sales/Frmqxck212f.h"

using namespace qx::documents;

TQXCK212* QXCK212 = nullptr;

const DocumentListKind& TQXCK212::Description() {
    static const DocumentListKind kind{
        "销售退货",
        "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT",
        "dj,sj",
        "money,smoney",
        "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8202A.S0, D8202A.S1, "
        "D8202A.S2, D8202A.S3, D8202A.S4,D8202A.S5, D8202A.S6, D8202A.S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,"
        "D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8202A.S9,D8202A.S8, D8202A.SJ,  "
        "D8202A.SMONEY,D8202A.NOTE FROM D1801 INNER JOIN D8202A ON D1801.WL_ID = D8202A.WL_ID INNER JOIN D1800 ON "
        "D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN D1005 ON D1801.COL_ID = "
        "D1005.COL_ID WHERE (D8202A.NOID =%s)",
        "delete from d8202 Where NOID=%S",
        counterpartyListColumns({"客户代号", "客户简称", "出货代号", "送货方式"}, false),
    };
    return kind;
}

AnsiString TQXCK212::HeadQuery() {
    return " SELECT d8202.noid,D1102.kh_gys_id,D1102.kg_name,d1007.ck_id, d1007.ck_name,d8202.bdate,d8202.edate,"
           "d1011.send_id, d1011.send_name,sys_user.user_id,sys_user.user_name, d1101.yw_id,d1101.yw_name,d8202.note, "
           "D1010.JY_ID, D1010.JY_NAME,d8202.t,d8202.sk,d8202.sdate FROM d8202 INNER JOIN D1102 ON d8202.kh_gys_id = "
           "D1102.kh_gys_id INNER JOIN sys_user ON d8202.user_id = sys_user.user_id INNER JOIN d1007 ON d8202.ck_id = "
           "d1007.ck_id INNER JOIN d1011 ON d8202.send_id = d1011.send_id INNER JOIN d1101 ON d8202.yw_id = "
           "d1101.yw_id   INNER JOIN " +
           warehouseRightsJoin("d1007") + "  D1010 ON D8202.JY_ID = D1010.JY_ID ";
}

TQXCK212::TQXCK212(QWidget* Owner) : TDocumentList(Owner, Description()) {
    setObjectName("QXCK212");
    FormCreate();
}

TDocumentEntry* TQXCK212::CreateEntry() { return QXCK212_1 = new TQXCK212_1(this); }
TFrm_Sys_Filter* TQXCK212::CreateFilter() { return QXCK212F = new TQXCK212F(this); }
TQXCK212_1* TQXCK212::entry() const { return static_cast<TQXCK212_1*>(Entry); }
TQXCK212F* TQXCK212::filter() const { return static_cast<TQXCK212F*>(Filter); }
