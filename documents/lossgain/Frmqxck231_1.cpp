#include "documents/lossgain/Frmqxck231_1.h"

#include <QVBoxLayout>

#include "documents/stocktake/CountSheet.h"

using namespace qx::documents;

TQXCK231_1* QXCK231_1 = nullptr;

const DocumentKind& TQXCK231_1::Description() {
    static const DocumentKind kind = [] {
        // The number check speaks of a transfer number: the wording the sheet has always had.
        DocumentKind k = countSheetKind({"损溢单", "d8301", "损溢单号", "调拔单号"});
        // No ";" after the head insert: the first line's insert follows it directly.
        k.insertHead =
            "INSERT INTO d8301(NOID,T,CK_ID,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('{number}','{G_SKSTR}',"
            "'{warehouse}','{BDATE}','{STRPARAM1}','{G_UserId}','{NOTE}')";
        k.updateHead =
            "UPDATE d8301 SET EDATE=GETDATE(),CK_ID ='{warehouse}',BDATE='{BDATE}',STRPARAM1='{STRPARAM1}',"
            "NOTE='{NOTE}',USER_ID='{G_UserId}' WHERE NOID='{number}';";
        return k;
    }();
    return kind;
}

TQXCK231_1::TQXCK231_1(QWidget* Owner) : TDocumentEntry(Owner, Description()) {
    setObjectName("QXCK231_1");
    STRPARAM1 = Panel_Head->findChild<QLineEdit*>("STRPARAM1");
    Lab_Hint = new QLabel("系统提示：盘盈请用正数表示，盘亏请用负数表示。无盈亏的数据无须录入。 ", this);
    Lab_Hint->setObjectName("Lab_Hint");
    Lab_Hint->setStyleSheet("color: #b00000;");
    MainLayout()->insertWidget(MainLayout()->indexOf(DBGridEh), Lab_Hint);
    FormCreate();
}
