#pragma once
// Promotion schemes: the list of warehouses (shops). Modify opens the scheme of the chosen
// warehouse for editing, view opens it read-only; a warehouse the user may only read opens
// only for viewing.
#include "framework/Frm_Base_Qry.h"

class TQXCKS02A : public TFrm_Base_Outer {
    Q_OBJECT
public:
    explicit TQXCKS02A(QWidget* Owner);
    void InitForm(const Trecord& rec) override;
    void Act_ModifyExecute(QObject* Sender) override;
    void Act_ViewExecute(QObject* Sender);

    // The list statement as the warehouse-rights option has it.
    static AnsiString ListQuery();
    QAction* Act_View;

private:
    void openScheme(const AnsiString& mode);
};

extern TQXCKS02A* QXCKS02A;
