#pragma once
// The count sheet filter: date range, warehouse, the generated loss/gain number and the number
// range.
#include "documents/common/DocumentFilter.h"

class TQXCK235F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK235F(QWidget* Owner);
    static const qx::documents::DocumentFilterKind& Description();
};

extern TQXCK235F* QXCK235F;
