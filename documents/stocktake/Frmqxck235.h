#pragma once
// The count sheet list: the sheets of the filtered period with their state ("盘点中" counting,
// "已汇总" summarised) and the loss/gain sheet made of them; the summary action adds up the
// open sheets of the current sheet's warehouse.
#include "documents/common/DocumentList.h"

class TQXCK235_1;
class TQXCK235F;

class TQXCK235 : public TDocumentList {
    Q_OBJECT
public:
    explicit TQXCK235(QWidget* Owner);

    static AnsiString HeadQuery();
    static const qx::documents::DocumentListKind& Description();

    // The summary: asks whether the warehouse may be summarised now, then opens the dialog.
    void Acti_totExecute(QObject* Sender);
    QAction* Acti_tot;

    TQXCK235_1* entry() const;
    TQXCK235F* filter() const;

protected:
    AnsiString BuildHeadQuery() const override { return HeadQuery(); }
    TDocumentEntry* CreateEntry() override;
    TFrm_Sys_Filter* CreateFilter() override;
};

extern TQXCK235* QXCK235;
