#pragma once
// What the sales ticket and the sales return entry screens share beyond every document: the
// customer head, lines that may come from an order (which needs the warehouse first).
#include "documents/common/DocumentEntry.h"

class TSalesEntry : public TDocumentEntry {
    Q_OBJECT
public:
    using TDocumentEntry::TDocumentEntry;

    // Choosing lines from an order needs a warehouse to take them from.
    void DBGridEhDblClick1(QObject* Sender) override;
    void btn_click(QObject* Sender) { KH_GYS_IDButtonClick(Sender); }
    void setcbj() {}

    // The head of a sales document with its number caption.
    static QList<qx::documents::HeadField> customerHead(const QString& numberCaption);
    // The filter of a sales document list: customer, warehouse and the number range.
    static qx::documents::DocumentFilterKind customerFilter(const QString& caption, const QString& headTable,
                                                            const QString& numberCaption);
};
