#pragma once
// The arrival-check list: the effective transfers (T = 1) addressed to the user's warehouses,
// not yet received ones tinted; the receiver opens one to count it in. "在途" shows the goods
// still on the road.
#include "documents/common/DocumentList.h"

class TQXCK234_1;
class TQXCK234_2;
class TQXCK234F;

class TQXCK234 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK234(QWidget* Owner);

    static AnsiString HeadQuery();
    // Only effective transfers: "(D8303.T = 1)", the filter's condition joined with " and ".
    static AnsiString ListCondition(const AnsiString& filterCondition);
    void GetData() override;
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;
    // The goods in transit, in their own window.
    void Act_InTransitExecute(QObject* Sender);

    TQXCK234_1* entry() const;
    TQXCK234F* filter() const;
    TQXCK234_2* InTransit = nullptr;
    QAction* Act_InTransit;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK234* QXCK234;
