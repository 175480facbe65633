#pragma once
// The purchase receipt entry screen: goods received from a supplier into one warehouse, one
// head (D8101) and its lines (D8101A), each line one SKU with a quantity per size position.
// Besides what every document does, a receipt keeps the barcodes of its SKUs per size.
#include "documents/common/DocumentEntry.h"

class TQXCK201_1 : public TDocumentEntry {
    Q_OBJECT
public:
    explicit TQXCK201_1(QWidget* Owner);
    void FormCreate();

    // The description of a purchase receipt.
    static const qx::documents::DocumentKind& Description();

    TClientDataSet* tm;  // barcodes of the document's SKUs (per size)

protected:
    void RefreshOwnData() override;
    void AppendOwnStatements(QString& batch) override;
};

extern TQXCK201_1* QXCK201_1;
