#pragma once
// The filter of the 调拨单 list: date range, sending and receiving warehouse, number range.
#include "documents/common/DocumentFilter.h"

class TQXCK233F : public TDocumentFilter {
    Q_OBJECT
public:
    explicit TQXCK233F(QWidget* Owner);
};

extern TQXCK233F* QXCK233F;
