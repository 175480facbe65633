#include "documents/orders/Frmqxck213.h"

#include "documents/common/DocumentCommon.h"
#include "documents/orders/Frmqxck213_1.h"
#include "documents/orders/Frmqxck213f.h"

using namespace qx::documents;

TQXCK213* QXCK213 = nullptr;

const DocumentListKind& TQXCK213::Description() {
    static const DocumentListKind kind{
        "订单/补单",
        "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT,ZK",
        "dj,sj",
        "money,smoney",
        // Lines join styles and colours directly: a line whose SKU row does not exist yet is
        // still shown. The order price comes back both as DJ/MONEY and as SJ/SMONEY.
        "SELECT D1800.K_ID, D1005.COL_ID, D1005.COL_NAME, D1800.WL_NAME,D1800.DW_NAME, D8203A.S0, D8203A.S1, "
        "D8203A.S2, D8203A.S3, D8203A.S4,D8203A.S5, D8203A.S6, D8203A.S7, D1006.M9, D1006.M8, D1006.M7, D1006.M6,"
        "D1006.M5, D1006.M4, D1006.M3, D1006.M2, D1006.M1, D1006.M0, D8203A.S9,D8203A.S8,  D8203A.DJ, "
        "D8203A.MONEY, D8203A.DJ AS SJ, D8203A.MONEY AS SMONEY,D8203A.NOTE FROM D1006 INNER JOIN D1800 ON "
        "D1006.M_ID = D1800.M_ID INNER JOIN D8203A ON D1800.K_ID = D8203A.K_ID INNER JOIN D1005 ON D8203A.COL_ID "
        "= D1005.COL_ID WHERE (D8203A.NOID =%s)",
        "delete from D8203 Where NOID=%S",
        {
            {"NOID", "单号", 100},
            {"CK_ID", "仓库号", 50, false},
            {"CK_NAME", "仓库", 90},
            {"BDATE", "开单日期", 90},
            {"EDATE", "最后更改", 90},
            {"USER_ID", "用户号", 60, false},
            {"USER_NAME", "开单", 70},
            {"NOTE", "备注", 200},
        },
    };
    return kind;
}

AnsiString TQXCK213::HeadQuery() {
    return " SELECT D8203.noid,d1007.ck_id, d1007.ck_name,D8203.bdate,D8203.edate, sys_user.user_id,"
           "sys_user.user_name, D8203.note FROM D8203 INNER JOIN d1007 ON D8203.ck_id = d1007.ck_id  INNER JOIN" +
           warehouseRightsJoin("d1007") + " sys_user ON D8203.user_id = sys_user.user_id  ";
}

TQXCK213::TQXCK213(QWidget* Owner) : TDocumentList(Owner, Description()) {
    setObjectName("QXCK213");
    FormCreate();
}

TDocumentEntry* TQXCK213::CreateEntry() { return QXCK213_1 = new TQXCK213_1(this); }
TFrm_Sys_Filter* TQXCK213::CreateFilter() { return QXCK213F = new TQXCK213F(this); }
TQXCK213_1* TQXCK213::entry() const { return static_cast<TQXCK213_1*>(Entry); }
TQXCK213F* TQXCK213::filter() const { return static_cast<TQXCK213F*>(Filter); }
