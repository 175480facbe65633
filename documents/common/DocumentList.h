#pragma once
// The list of a stock document kind, built from its description: the head grid's columns with
// their labels, the configuration texts handed to the entry screen, the approval columns and
// tint, and the start-up (filter first, then the head query). A kind's list unit supplies its
// head query and creates its own entry screen and filter.
#include "documents/common/DocumentKind.h"
#include "framework/Frm_Base_Entry_Head.h"

class TDocumentEntry;

class TDocumentList : public TFrm_Base_Entry_Head {
    Q_OBJECT
public:
    TDocumentList(QWidget* Owner, const qx::documents::DocumentListKind& kind);

    void InitForm(const Trecord& rec) override;
    void FormCreate();
    void DBGridEhGetCellParams(QObject* Sender, TColumnEh* Column, TCellParams& Params) override;

    TDocumentEntry* Entry = nullptr;
    TFrm_Sys_Filter* Filter = nullptr;

protected:
    // The head statement with the warehouse-rights join as the signed-in user has it.
    virtual AnsiString BuildHeadQuery() const = 0;
    virtual TDocumentEntry* CreateEntry() = 0;
    virtual TFrm_Sys_Filter* CreateFilter() = 0;

private:
    void buildHeadColumns();
    qx::documents::DocumentListKind kind_;
};
