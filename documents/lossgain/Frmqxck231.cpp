#include "documents/lossgain/Frmqxck231.h"

#include "documents/common/DocumentCommon.h"
#include "documents/lossgain/Frmqxck231_1.h"
#include "documents/lossgain/Frmqxck231f.h"
#include "documents/stocktake/CountSheet.h"

using namespace qx::documents;

TQXCK231* QXCK231 = nullptr;

const DocumentListKind& TQXCK231::Description() {
    static const DocumentListKind kind{
        "损溢单",
        "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT",
        "dj",
        "money",
        countSheetLineQuery("d8301A"),
        "delete from d8301 Where (noid=%s)",
        countSheetListColumns(),
    };
    return kind;
}

AnsiString TQXCK231::HeadQuery() {
    return " SELECT D8301.NOID, D1007.CK_ID, D1007.CK_NAME, D8301.BDATE, D8301.EDATE,  D8301.STRPARAM1, "
           "SYS_USER.USER_ID, SYS_USER.USER_NAME, D8301.NOTE,D8301.t,D8301.sk,D8301.sdate FROM D8301 INNER JOIN  "
           "D1007 ON D8301.CK_ID = D1007.CK_ID INNER JOIN " +
           warehouseRightsJoin("d1007") + " SYS_USER ON D8301.USER_ID = SYS_USER.USER_ID";
}

TQXCK231::TQXCK231(QWidget* Owner) : TDocumentList(Owner, Description()) {
    setObjectName("QXCK231");
    FormCreate();
}

TDocumentEntry* TQXCK231::CreateEntry() { return QXCK231_1 = new TQXCK231_1(this); }
TFrm_Sys_Filter* TQXCK231::CreateFilter() { return QXCK231F = new TQXCK231F(this); }
TQXCK231_1* TQXCK231::entry() const { return static_cast<TQXCK231_1*>(Entry); }
TQXCK231F* TQXCK231::filter() const { return static_cast<TQXCK231F*>(Filter); }
