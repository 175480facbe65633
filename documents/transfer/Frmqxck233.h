#pragma once
// The transfer list: the transfers of the filtered period (those with lines) with their total
// quantity and amount, the sender's warehouse rights applied, and the lines below.
#include "documents/common/DocumentList.h"

class TQXCK233_1;
class TQXCK233F;

class TQXCK233 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK233(QWidget* Owner);

    static AnsiString HeadQuery();
    void GetData() override;
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;

    TQXCK233_1* entry() const;
    TQXCK233F* filter() const;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK233* QXCK233;
