#include "documents/transfer/Frmqxck233_1.h"

#include "documents/common/DocumentCommon.h"

using namespace qx::documents;

TQXCK233_1* QXCK233_1 = nullptr;

const DocumentKind& TQXCK233_1::Description() {
    static const DocumentKind kind = [] {
        DocumentKind k;
        k.caption = "调拨单";
        k.headTable = "D8303";
        k.numberCheckCaption = "调拨单号";
        k.editLocks = "EDIT1,CK_ID";  // neither the number nor the sending warehouse of a saved transfer changes
        k.head = TTransferEntry::transferHead();
        k.head.append({"Y_WC", "收货误差数量：", HeadRole::Shown});
        k.head.append({"Y_NOTE", "备注：", HeadRole::Shown});
        k.priceLabel = "吊牌";
        k.amountLabel = "金额";
        k.trailingFields = "SJ,SMONEY";
        k.arithmetic = PriceArithmetic::PriceAndAmount;
        k.copyAddStartsFresh = true;
        // The head insert ends without ";": the first line insert follows it directly.
        k.insertHead =
            "INSERT INTO D8303(NOID,T,CK_ID,CK_ID_IN,BDATE,STRPARAM1,USER_ID, NOTE)  VALUES ('{number}','{G_SKSTR}',"
            "'{warehouse}','{CK_ID_IN}','{BDATE}','{STRPARAM1}','{G_UserId}','{NOTE}')";
        k.updateHead =
            "UPDATE D8303 SET EDATE=GETDATE(),CK_ID ='{warehouse}',BDATE='{BDATE}',STRPARAM1='{STRPARAM1}',"
            "ck_id_in='{CK_ID_IN}',NOTE='{NOTE}',USER_ID='{G_UserId}' WHERE NOID='{number}';";
        k.deleteLines = "delete from  d8303A WHERE NOID='{number}';";
        // By position: cost 0 (filled below) and every received quantity 0.
        k.insertLine =
            "INSERT INTO D8303A  VALUES ('{number}','{K_ID}{COL_ID}','{K_ID}','{COL_ID}','{warehouse}','{CK_ID_IN}',"
            "'{s0}','{s1}','{s2}','{s3}','{s4}','{s5}','{s6}','{s7}','{s8}','{s9}',0,0,'{sj}','{smoney}','{NOTE}',"
            "0,0,0,0,0,0,0,0,0,0);";
        k.afterLines = {
            " INSERT INTO D1801 SELECT D8303A.WL_ID, D8303A.K_ID, D8303A.COL_ID FROM D8303A LEFT OUTER JOIN D1801 ON "
            "D8303A.WL_ID = D1801.WL_ID WHERE (D1801.WL_ID IS NULL) AND (D8303A.NOID='{number}');",
            // Every SKU of the transfer gets a stock row in both warehouses.
            " INSERT INTO D1802 (WL_ID, CK_ID,CHECK_KC) SELECT V_D8303A.WL_ID, V_D8303A.CK_ID, D1800.CHECK_KC FROM "
            "V_D8303A INNER JOIN D1800 ON V_D8303A.K_ID = D1800.K_ID  LEFT OUTER JOIN D1802 ON V_D8303A.CK_ID = "
            "D1802.CK_ID AND V_D8303A.WL_ID = D1802.WL_ID WHERE (v_D8303A.NOID ='{number}') AND (D1802.WL_ID IS NULL);",
            "UPDATE D8303A SET DJ=M.DJ,MONEY=(S0+S1+S2+S3+S4+S5+S6+S7+S8+S9)*M.DJ FROM D1800 M "
            "WHERE (D8303A.K_ID=M.K_ID) AND (D8303A.NOID='{number}');",
        };
        return k;
    }();
    return kind;
}

TQXCK233_1::TQXCK233_1(QWidget* Owner) : TTransferEntry(Owner, Description()) {
    setObjectName("QXCK233_1");
    Y_NOTE = Panel_Head->findChild<QLabel*>("Y_NOTE");
    FormCreate();
}

void TQXCK233_1::FormCreate() {
    TTransferEntry::FormCreate();
    FuncNo = "217";  // numbers and saves go under the transfer's function code
    createInWarehouseLink();
}

void TQXCK233_1::RefreshOwnData() {
    // A new transfer starts at the sending warehouse, unless the user may send from his own only.
    if (IsAdd()) FirstFocus = !G_CKCOUNT_W ? static_cast<QWidget*>(CK_ID) : CK_ID_IN;
}

void TQXCK233_1::CheckOwnHead() {
    CheckBlank(CK_ID);
    CheckBlank(CK_ID_IN);
    if (CK_ID->text().trimmed().toUpper() == CK_ID_IN->text().trimmed().toUpper()) {
        DISPINFO("调出仓和调入仓不能相同!", 5);
        CK_ID_IN->setFocus();
        Abort();
    }
    // A code typed with blanks around it is saved as the code (and still checked as typed).
    for (TLinkEdit* edit : {CK_ID, CK_ID_IN}) {
        if (edit->text() == edit->text().trimmed()) continue;
        const bool typed = edit->isModified();
        edit->setText(edit->text().trimmed());
        edit->setModified(typed);
    }
}

void TQXCK233_1::Act_QuitExecute(QObject* Sender) {
    if (closeFirstVisiblePickList({InWarehouseLink})) return;
    TTransferEntry::Act_QuitExecute(Sender);
}
