#pragma once
// The purchase receipt list: the receipts of the filtered period with their lines below; add,
// copy-add and edit open the entry screen, which is configured once here.
#include "documents/common/DocumentList.h"

class TQXCK201_1;
class TQXCK201F;

class TQXCK201 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK201(QWidget* Owner);

    // The head statement with the warehouse-rights join as the signed-in user has it.
    static AnsiString HeadQuery();
    static const qx::documents::DocumentListKind& Description();

    TQXCK201_1* entry() const;
    TQXCK201F* filter() const;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK201* QXCK201;
