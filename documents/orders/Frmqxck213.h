#pragma once
// The order list: orders and supplementary orders of the filtered period with their lines
// below. Orders have no counterparty, settlement, state or approval.
#include "documents/common/DocumentList.h"

class TQXCK213_1;
class TQXCK213F;

class TQXCK213 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK213(QWidget* Owner);

    static AnsiString HeadQuery();
    static const qx::documents::DocumentListKind& Description();

    // Orders are never approved: no row is tinted.
    void DBGridEhGetCellParams(QObject*, TColumnEh*, TCellParams&) override {}

    TQXCK213_1* entry() const;
    TQXCK213F* filter() const;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK213* QXCK213;
