#pragma once
// Supervision codes: the list of tracking codes (style, the warehouse a code was sent to, the
// dates it was generated, sent out and sold, and to which member), filtered by part of a code;
// codes can be deleted and a batch of them stamped as sent to a warehouse.
#include "framework/Frm_Base_Qry.h"

class TQXCK297F;
class TQXCK297_1;

class TQXCK297 : public TFrm_Base_Outer {
    Q_OBJECT
public:
    explicit TQXCK297(QWidget* Owner);
    ~TQXCK297() override;

    void FormCreate();
    void InitForm(const Trecord& rec) override;
    void Act_FilterExecute(QObject* Sender);
    void Act_AddExecute(QObject* Sender) override;

    static const char* const ListQuery;
    static const char* const DeleteQuery;

    TQXCK297F* Filter = nullptr;
    TQXCK297_1* Dispatch = nullptr;
    QAction* Act_Filter;

private:
    void BuildColumns();
};

extern TQXCK297* QXCK297;
