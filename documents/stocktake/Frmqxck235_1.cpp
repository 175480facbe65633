#include "documents/stocktake/Frmqxck235_1.h"

#include "documents/stocktake/CountSheet.h"

using namespace qx::documents;

TQXCK235_1* QXCK235_1 = nullptr;

const DocumentKind& TQXCK235_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k = countSheetKind({"盘点录入", "d8300", "录入单号", "录入单号"});
        // A new sheet is counting (state 0); no ";" before the first line's insert.
        k.insertHead =
            "INSERT INTO d8300(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('{number}','0','{warehouse}',"
            "'{BDATE}','{STRPARAM1}','{G_UserId}','{NOTE}')";
        k.updateHead =
            "UPDATE d8300 SET EDATE=GETDATE(),T=0,d8301noid=null,CK_ID ='{warehouse}',BDATE='{BDATE}',"
            "STRPARAM1='{STRPARAM1}',NOTE='{NOTE}',USER_ID='{G_UserId}' WHERE NOID='{number}';";
        k.savedListValues = {{"d8301noid", ""}, {"t_name", "盘点中"}};
        return k;
    }();
    return kind;
}

TQXCK235_1::TQXCK235_1(QWidget* Owner) : TDocumentEntry(Owner, Description()) {
    setObjectName("QXCK235_1");
    STRPARAM1 = Panel_Head->findChild<QLineEdit*>("STRPARAM1");
    FormCreate();
}
