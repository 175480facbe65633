#include "documents/purchase/Frmqxck201.h"

#include "documents/common/DocumentCommon.h"
#include "documents/purchase/Frmqxck201_1.h"
#include "documents/purchase/Frmqxck201f.h"

using namespace qx::documents;

TQXCK201* QXCK201 = nullptr;

const DocumentListKind& TQXCK201::Description() {
    static const DocumentListKind kind{
        "采购进货",
        "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT",
        "dj,sj",
        "money,smoney",
        "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8101A.S0, D8101A.S1, "
        "D8101A.S2, D8101A.S3, D8101A.S4,D8101A.S5, D8101A.S6, D8101A.S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,"
        "D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8101A.S9,D8101A.S8, D8101A.DJ as "
        "sj,D8101A.money as smoney,D8101A.NOTE FROM D1801 INNER JOIN D8101A ON D1801.WL_ID = D8101A.WL_ID INNER JOIN "
        "D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN D1005 ON "
        "D1801.COL_ID = D1005.COL_ID WHERE (D8101A.NOID =%s)",
        "delete from d8101 Where NOID=%S",
        counterpartyListColumns({"供应商代号", "供应商简称", "进货代号", "进货方式"}, true),
    };
    return kind;
}

AnsiString TQXCK201::HeadQuery() {
    return " SELECT d8101.noid,d1103.kh_gys_id,d1103.kg_name,d1007.ck_id, d1007.ck_name,d8101.bdate,d8101.edate,"
           "d1011.send_id,d8101.SEND_NO, d1011.send_name,sys_user.user_id,sys_user.user_name, "
           "d1101.yw_id,d1101.yw_name,d8101.note, D1010.JY_ID, D1010.JY_NAME,d8101.t,d8101.sk,d8101.sdate FROM d8101 "
           "INNER JOIN d1103 ON d8101.kh_gys_id = d1103.kh_gys_id INNER JOIN sys_user ON d8101.user_id = "
           "sys_user.user_id INNER JOIN d1007 ON d8101.ck_id = d1007.ck_id INNER JOIN d1011 ON d8101.send_id = "
           "d1011.send_id INNER JOIN d1101 ON d8101.yw_id = d1101.yw_id  INNER JOIN " +
           warehouseRightsJoin("d1007") + "  D1010 ON D8101.JY_ID = D1010.JY_ID ";
}

TQXCK201::TQXCK201(QWidget* Owner) : TDocumentList(Owner, Description()) {
    setObjectName("QXCK201");
    FormCreate();
}

TDocumentEntry* TQXCK201::CreateEntry() { return QXCK201_1 = new TQXCK201_1(this); }
TFrm_Sys_Filter* TQXCK201::CreateFilter() { return QXCK201F = new TQXCK201F(this); }
TQXCK201_1* TQXCK201::entry() const { return static_cast<TQXCK201_1*>(Entry); }
TQXCK201F* TQXCK201::filter() const { return static_cast<TQXCK201F*>(Filter); }
