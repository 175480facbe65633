#include "labels/Frmqxck297f.h"

#include <QLabel>
#include <QLineEdit>

TQXCK297F* QXCK297F = nullptr;

TQXCK297F::TQXCK297F(QWidget* Owner) : TFrm_Sys_Filter(Owner) {
    setObjectName("QXCK297F");
    SetCaption("监管码");
    Edit1 = Panel_Condition->AddEdit("Edit1", "监管码", 20);
    Label1 = Panel_Condition->CaptionOf(Edit1);
    FormCreate();
}

void TQXCK297F::FormCreate() { TFrm_Sys_Filter::FormCreate(); }

// F2, F3 and F4 all confirm.
void TQXCK297F::FormKeyDown(QObject* Sender, int& Key, Qt::KeyboardModifiers Shift) {
    if (Key == Qt::Key_F2 || Key == Qt::Key_F3 || Key == Qt::Key_F4) {
        Key = 0;
        btn_okClick(btn_ok);
        return;
    }
    TFrm_Sys_Filter::FormKeyDown(Sender, Key, Shift);
}

void TQXCK297F::btn_okClick(QObject* Sender) {
    TFrm_Sys_Filter::btn_okClick(Sender);
    Condition = "";
    const QString code = Edit1->text();
    if (!code.trimmed().isEmpty()) {
        Condition = "(d1805.jgm " + QString("like '%") + SqlStr(code) + "%'" + ")";
        Description = Label1->text() + "    包含   " + code;
    }
    SetModalResult(mrOk);
}
