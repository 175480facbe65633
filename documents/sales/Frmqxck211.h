#pragma once
// The sales ticket list: the tickets of the filtered period with their lines below.
#include "documents/common/DocumentList.h"

class TQXCK211_1;
class TQXCK211F;

class TQXCK211 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK211(QWidget* Owner);

    static AnsiString HeadQuery();
    static const qx::documents::DocumentListKind& Description();

    TQXCK211_1* entry() const;
    TQXCK211F* filter() const;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK211* QXCK211;
