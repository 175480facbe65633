#pragma once
// The filter of the 调拨到货点收 list: date range, sending and receiving warehouse, number range.
#include "documents/common/DocumentFilter.h"

class TQXCK234F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK234F(QWidget* Owner);
};

extern TQXCK234F* QXCK234F;
