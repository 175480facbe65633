#include "documents/sales/Frmqxck211.h"

#include "documents/common/DocumentCommon.h"
#include "documents/sales/Frmqxck211_1.h"
#include "documents/sales/Frmqxck211f.h"

using namespace qx::documents;

TQXCK211* QXCK211 = nullptr;

const DocumentListKind& TQXCK211::Description() {
    static const DocumentListKind kind = [] {
        QList<ListColumn> columns = counterpartyListColumns({"客户代号", "客户简称", "出货代号", "送货方式"}, false);
        columns.append({"TOLMONEY", "本单销售总额", 100, true, true});
        return DocumentListKind{
            "销售开单",
            "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT,ZK",
            "dj,sj,ODJ",
            "money,smoney,OMONEY",
            "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8201A.S0, D8201A.S1, "
            "D8201A.S2, D8201A.S3, D8201A.S4,D8201A.S5, D8201A.S6, D8201A.S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,"
            "D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8201A.S9,D8201A.S8, D8201A.ODJ, "
            "D8201A.OMONEY,D8201A.ZK,D8201A.SJ,D8201A.SMONEY,D8201A.NOTE FROM D1801 INNER JOIN D8201A ON D1801.WL_ID = "
            "D8201A.WL_ID INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER "
            "JOIN D1005 ON D1801.COL_ID = D1005.COL_ID WHERE (D8201A.NOID =%s)",
            "delete from d8201 Where NOID=%S",
            columns,
        };
    }();
    return kind;
}

AnsiString TQXCK211::HeadQuery() {
    return "SELECT d8201.noid,d1102.kh_gys_id,d1102.kg_name,d1007.ck_id, d1007.ck_name,d8201.bdate,d8201.edate,"
           "d1011.send_id, d1011.send_name,sys_user.user_id,sys_user.user_name, d1101.yw_id,d1101.yw_name,d8201.note, "
           "D1010.JY_ID, D1010.JY_NAME,D8201.TOLMONEY,d8201.t,d8201.sk,d8201.sdate FROM d8201 INNER JOIN d1102 ON "
           "d8201.kh_gys_id = d1102.kh_gys_id INNER JOIN sys_user ON d8201.user_id = sys_user.user_id INNER JOIN d1007 "
           "ON d8201.ck_id = d1007.ck_id INNER JOIN d1011 ON d8201.send_id = d1011.send_id INNER JOIN d1101 ON "
           "d8201.yw_id = d1101.yw_id   INNER JOIN " +
           warehouseRightsJoin("d1007") + "  D1010 ON D8201.JY_ID = D1010.JY_ID ";
}

TQXCK211::TQXCK211(QWidget* Owner) : TDocumentList(Owner, Description()) {
    setObjectName("QXCK211");
    FormCreate();
}

TDocumentEntry* TQXCK211::CreateEntry() { return QXCK211_1 = new TQXCK211_1(this); }
TFrm_Sys_Filter* TQXCK211::CreateFilter() { return QXCK211F = new TQXCK211F(this); }
TQXCK211_1* TQXCK211::entry() const { return static_cast<TQXCK211_1*>(Entry); }
TQXCK211F* TQXCK211::filter() const { return static_cast<TQXCK211F*>(Filter); }
