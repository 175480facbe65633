#pragma once
// The purchase return list: the returns of the filtered period with their lines below.
#include "documents/common/DocumentList.h"

class TQXCK202_1;
class TQXCK202F;

class TQXCK202 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK202(QWidget* Owner);

    static AnsiString HeadQuery();
    static const qx::documents::DocumentListKind& Description();

    TQXCK202_1* entry() const;
    TQXCK202F* filter() const;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK202* QXCK202;
