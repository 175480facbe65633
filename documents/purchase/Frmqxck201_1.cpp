#include "documents/purchase/Frmqxck201_1.h"

#include "documents/common/DocumentCommon.h"
#include "documents/common/StatementTemplate.h"

using namespace qx::documents;

TQXCK201_1* QXCK201_1 = nullptr;

const DocumentKind& TQXCK201_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k;
        k.caption = "采购进货";
        k.headTable = "d8101";
        k.numberCheckCaption = "出货单号";
        k.editLocks = "EDIT1";  // the number of a saved receipt stays
        k.partnerChecksOnExit = true;
        k.head = {
            {"Edit1", "进货单号", HeadRole::Number, 12},
            {"KH_GYS_ID", "供 应 商", HeadRole::Partner, 10, "KG_NAME", LookupList::Partner},
            {"BDATE", "开单日期", HeadRole::Date},
            {"CK_ID", "仓    库", HeadRole::Warehouse, 4, "CK_NAME", LookupList::Warehouse},
            {"SEND_ID", "送货方式", HeadRole::Lookup, 2, "SEND_NAME", LookupList::Delivery},
            {"send_no", "送货单号", HeadRole::Text, 30},
            {"YW_ID", "采 购 员", HeadRole::Lookup, 4, "YW_NAME", LookupList::Salesperson},
            {"JY_ID", "结算方式", HeadRole::Lookup, 2, "JY_NAME", LookupList::Settlement},
            {"NOTE", "备    注", HeadRole::Text, 100},
            {"EDATE", "更改日期", HeadRole::Changed},
            {"USER_NAME", "开单", HeadRole::Maker},
        };
        k.priceLabel = "进货价";
        k.amountLabel = "金额";
        k.insertHead =
            "INSERT INTO D8101(T,NOID,KH_GYS_ID,CK_ID, BDATE, SEND_ID,send_no,YW_ID,JY_ID, USER_ID, NOTE,TOLMONEY) VALUES "
            "('{G_SKSTR}','{number}','{KH_GYS_ID}','{warehouse}','{BDATE}','{SEND_ID}','{send_no}','{YW_ID}','{JY_ID}',"
            "'{G_UserId}','{NOTE}','{total}');";
        k.updateHead =
            "UPDATE D8101 SET EDATE=GETDATE(), KH_GYS_ID='{KH_GYS_ID}',CK_ID='{warehouse}',BDATE='{BDATE}',"
            "SEND_ID='{SEND_ID}',send_no='{send_no}',YW_ID='{YW_ID}',JY_ID='{JY_ID}',USER_ID='{G_UserId}',"
            "NOTE='{NOTE}',TOLMONEY='{total}' WHERE noid='{number}';";
        k.deleteLines = "delete from  d8101A WHERE NOID='{number}';";
        k.insertLine =
            "INSERT INTO D8101A  VALUES ('{number}','{K_ID}{COL_ID}','{K_ID}','{COL_ID}','{warehouse}','{s0}','{s1}',"
            "'{s2}','{s3}','{s4}','{s5}','{s6}','{s7}','{s8}','{s9}','{SJ}','{Smoney}','{NOTE}');";
        k.afterLines = {
            skuCompletion("D8101A"),
            " INSERT INTO D1802 (WL_ID, CK_ID,CHECK_KC) SELECT D8101A.WL_ID, D8101.CK_ID, D1800.CHECK_KC FROM D8101A "
            "INNER JOIN D8101 ON D8101A.NOID = D8101.NOID INNER JOIN D1800 ON D8101A.K_ID = D1800.K_ID LEFT OUTER "
            "JOIN D1802 ON D8101A.WL_ID = D1802.WL_ID AND D8101.CK_ID = D1802.CK_ID WHERE (D8101A.NOID ='{number}') "
            "AND (D1802.WL_ID IS NULL);",
            "insert into d1809 (WL_ID, M_INDEX, K_ID, TM) SELECT V1809.WL_ID, V1809.mindex, V1809.K_ID, V1809.tm FROM "
            "V1809 LEFT OUTER JOIN D1809 ON V1809.WL_ID = D1809.WL_ID AND V1809.mindex = D1809.M_INDEX WHERE "
            "(V1809.NOID ='{number}') AND (D1809.WL_ID IS NULL);",
        };
        return k;
    }();
    return kind;
}

TQXCK201_1::TQXCK201_1(QWidget* Owner) : TDocumentEntry(Owner, Description()) {
    setObjectName("QXCK201_1");
    FormCreate();
}

void TQXCK201_1::FormCreate() {
    tm = new TClientDataSet(this);
    tm->setObjectName("tm");
    tm->AddField("wl_id", ftString, 21);
    tm->AddField("TM", ftString, 30);
    tm->AddField("M_INDEX", ftString, 1);
    tm->CreateDataSet();
    BarcodeDataSet = tm;
    TDocumentEntry::FormCreate();
}

// Barcodes kept per size: a receipt being edited brings those of its SKUs.
void TQXCK201_1::RefreshOwnData() {
    if (GKH4_2 && EditMode == "Edit") {
        opensql(tm, FuncNo,
                "SELECT D1809.WL_ID, D1809.M_INDEX, D1809.TM FROM D8101A INNER JOIN D1809 ON D8101A.WL_ID = "
                "D1809.WL_ID INNER JOIN D1800 ON D1809.K_ID = D1800.K_ID WHERE (D1800.TMI = 1) and noid='" +
                    SqlStr(Edit1->text()) + "';",
                0, 0, {}, {}, false, "1");
    } else if (tm->Active()) {
        tm->EmptyDataSet();  // the barcodes of the receipt opened before are not this one's
    }
}

void TQXCK201_1::AppendOwnStatements(QString& batch) {
    if (!GKH4_2 || !tm->Active() || tm->IsEmpty()) return;
    for (int row = 0; row < tm->RecordCount(); ++row)
        batch += fillTemplate("UPDATE D1809 SET TM='{tm}' WHERE WL_ID='{wl_ID}' AND M_INDEX='{m_index}';",
                              [this, row](const QString& name, QString& value) {
                                  value = lineText(tm, row, name);
                                  return true;
                              });
}
