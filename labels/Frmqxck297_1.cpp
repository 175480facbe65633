#include "labels/Frmqxck297_1.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QVBoxLayout>

#include "framework/DBGridEh.h"

TQXCK297_1* QXCK297_1 = nullptr;

TQXCK297_1::TQXCK297_1(QWidget* Owner) : TFrm_Base_Detail(Owner) {
    setObjectName("QXCK297_1");
    SetCaption("监管码发出");
    CK_ID = Panel_Condition->AddLinkEdit("CK_ID", "发入仓库", 4, "CK_NAME");
    CK_NAME = CK_ID->NameLabel();
    DBGridEh->hide();
    Label1 = new QLabel("请在下面编辑框录入发入仓库的监管码:", this);
    Label1->setObjectName("Label1");
    Memo1 = new QPlainTextEdit(this);
    Memo1->setObjectName("Memo1");
    Memo1->setLineWrapMode(QPlainTextEdit::NoWrap);
    const int at = MainLayout()->indexOf(Panel_Condition) + 1;
    MainLayout()->insertWidget(at, Label1);
    MainLayout()->insertWidget(at + 1, Memo1, 1);
    resize(460, 420);
    FormCreate();
}

void TQXCK297_1::FormCreate() {
    TFrm_Base_Detail::FormCreate();
    WarehouseLink = new TFrm_Sys_LINK_CK(this);
    WarehouseLink->init(AdoQry_Main, CK_ID, CK_ID, FuncNo, "", "");
}

void TQXCK297_1::RefreshData() { TFrm_Base_Detail::RefreshData(); }

QStringList TQXCK297_1::MemoLines(const QString& text) {
    if (text.isEmpty()) return {};
    QString t = text;
    t.replace("\r\n", "\n");
    QStringList lines = t.split('\n');
    if (lines.last().isEmpty()) lines.removeLast();
    return lines;
}

// One update per line, exactly as typed, each confirmed on its own.
void TQXCK297_1::SaveData() {
    const QString warehouse = CK_ID->text();
    for (const QString& line : MemoLines(Memo1->toPlainText())) {
        const QString sql = "update d1805 set date2=getdate(),ck_id='" + SqlStr(warehouse) + "' where jgm='" +
                            SqlStr(line) + "'";
        ExecSql(FuncNo, KeyValue, warehouse, sql, 65535, false, true, false, true);
        DISPINFO("操作成功执行!", 5);
    }
}

void TQXCK297_1::btn_okClick(QObject* Sender) {
    TFrm_Base_Detail::btn_okClick(Sender);
    SaveData();
    SetModalResult(mrOk);
}
