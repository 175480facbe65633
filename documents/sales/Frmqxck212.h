#pragma once
// The sales return list: the returns of the filtered period with their lines below.
#include "documents/common/DocumentList.h"

class TQXCK212_1;
class TQXCK212F;

class TQXCK212 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK212(QWidget* Owner);

    static AnsiString HeadQuery();
    static const qx::documents::DocumentListKind& Description();

    TQXCK212_1* entry() const;
    TQXCK212F* filter() const;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK212* QXCK212;
