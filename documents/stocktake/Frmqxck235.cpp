#include "documents/stocktake/Frmqxck235.h"

#include <QToolBar>

#include "documents/common/DocumentCommon.h"
#include "documents/stocktake/CountSheet.h"
#include "documents/stocktake/Frmqxck235_1.h"
#include "documents/stocktake/Frmqxck235_2.h"
#include "documents/stocktake/Frmqxck235f.h"

using namespace qx::documents;

TQXCK235* QXCK235 = nullptr;

const DocumentListKind& TQXCK235::Description() {
    static const DocumentListKind kind{
        "盘点录入",
        "S0,S1,S2,S3,S4,S5,S6,S7,S8,S9,STOT",
        "dj",
        "money",
        countSheetLineQuery("d8300A"),
        "delete from d8300 Where (noid=%s)",
        countSheetListColumns({{"T_NAME", "状态", 60}, {"D8301NOID", "损益单号", 100}}),
    };
    return kind;
}

AnsiString TQXCK235::HeadQuery() {
    return " SELECT d8300.NOID, D1007.CK_ID, D1007.CK_NAME, d8300.BDATE, d8300.EDATE, d8300.STRPARAM1, "
           "SYS_USER.USER_ID, SYS_USER.USER_NAME,CASE D8300.T WHEN 0 THEN '盘点中' else '已汇总' end as T_NAME,"
           "D8300.D8301NOID, d8300.NOTE,d8300.t,d8300.sk,d8300.sdate FROM d8300 INNER JOIN  D1007 ON d8300.CK_ID = "
           "D1007.CK_ID INNER JOIN " +
           warehouseRightsJoin("d1007") + " SYS_USER ON d8300.USER_ID = SYS_USER.USER_ID";
}

TQXCK235::TQXCK235(QWidget* Owner) : TDocumentList(Owner, Description()) {
    setObjectName("QXCK235");
    Acti_tot = AddAction("Acti_tot", "汇总", QKeySequence(Qt::Key_F9), [this] { Acti_totExecute(Acti_tot); });
    Acti_tot->setToolTip("盘点录入数据汇总 (F9)");
    ToolBar->addAction(Acti_tot);
    FormCreate();
}

void TQXCK235::Acti_totExecute(QObject*) {
    if (AdoQry_Main->IsEmpty()) return;
    const AnsiString sheet = AdoQry_Main->FieldByName("NOID")->AsString();
    const AnsiString answer =
        ExecSql(FuncNo, sheet, qx::dataop::StocktakePermissionMode, "", 65535, false, true, false, true);
    if (answer != "Y") {
        DISPINFO(answer, 5);
        return;
    }
    auto* summary = new TQXCK235_2(this);
    handFunctionCode(summary, FuncNo);
    QXCK235_2 = summary;
    summary->InitA(AdoQry_Main);
    summary->ShowModal();
    QXCK235_2 = nullptr;
    delete summary;
    RefreshDetail();
}

TDocumentEntry* TQXCK235::CreateEntry() { return QXCK235_1 = new TQXCK235_1(this); }
TFrm_Sys_Filter* TQXCK235::CreateFilter() { return QXCK235F = new TQXCK235F(this); }
TQXCK235_1* TQXCK235::entry() const { return static_cast<TQXCK235_1*>(Entry); }
TQXCK235F* TQXCK235::filter() const { return static_cast<TQXCK235F*>(Filter); }
