#include "setup/Frmqxcks02a.h"

#include "framework/DBGridEh.h"
#include "setup/Frmqxcks02.h"

TQXCKS02A* QXCKS02A = nullptr;

AnsiString TQXCKS02A::ListQuery() {
    if (G_CHKCK)
        return "SELECT d1007.ck_id,d1007.ck_name,CS_DATE, case when SYS_USER_CK.w=0 then 0 else 1 end as T, case "
               "when SYS_USER_CK.w=0 then '读' else '写' end as w from d1007  INNER JOIN sys_USER_CK ON d1007.CK_ID = "
               "sys_USER_CK.CK_ID AND (sys_USER_CK.user_id='" +
               SqlStr(G_UserId) + "') ";
    return "SELECT ck_id,ck_name,CS_DATE,1 as t,'写' as w from d1007";
}

TQXCKS02A::TQXCKS02A(QWidget* Owner) : TFrm_Base_Outer(Owner) {
    setObjectName("QXCKS02A");
    SetCaption("促销方案");
    Act_View = AddAction("Act_View", "查看", QKeySequence(Qt::Key_F6), [this] { Act_ViewExecute(Act_View); });
    Act_Add->setVisible(false);
    Act_Delete->setVisible(false);
    DBGridEh->OnDblClick = [this] { qx::guard([this] { Act_ModifyExecute(Act_Modify); }); };
    FormCreate();
}

void TQXCKS02A::InitForm(const Trecord& rec) {
    TFrm_Base_Outer::InitForm(rec);
    KeyField = "ck_id";
    HeadSql = ListQuery();
    GetData();
    struct Column {
        const char* field;
        const char* title;
        int width;
        bool shown;
    };
    static const Column columns[] = {{"ck_id", "仓库号", 60, true},
                                     {"ck_name", "仓库名称", 140, true},
                                     {"CS_DATE", "方案更改时间", 150, true},
                                     {"t", "", 0, false},
                                     {"w", "权限", 50, true}};
    for (const Column& c : columns)
        if (TColumnEh* column = DBGridEh->ColumnByField(c.field)) {
            column->Title = c.title;
            column->Width = c.width;
            column->Visible = c.shown;
        }
    DBGridEh->ColumnsChanged();
}

void TQXCKS02A::openScheme(const AnsiString& mode) {
    if (!AdoQry_Main->Active() || AdoQry_Main->IsEmpty()) return;
    auto* editor = new TQXCKS02(this);
    editor->FuncNo = FuncNo;
    editor->InitForm(mode, AdoQry_Main->FieldByName("ck_id")->AsString(),
                     AdoQry_Main->FieldByName("ck_name")->AsString());
    editor->ShowModal();
    editor->Release();
    GetData();
}

void TQXCKS02A::Act_ModifyExecute(QObject*) {
    if (!AdoQry_Main->Active() || AdoQry_Main->IsEmpty()) return;
    if (AdoQry_Main->FieldByName("t")->AsInteger() == 0) {
        DISPINFO("您没有写该仓库的权限，请用查看功能!", 5);
        return;
    }
    openScheme("Edit");
}

void TQXCKS02A::Act_ViewExecute(QObject*) { openScheme("View"); }
