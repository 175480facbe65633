#include "period/PeriodCommon.h"

#include "reports/Frmqxck255_1.h"

namespace qx::period {
namespace {
// The stock query's movement detail, unless a test installs another.
DetailFactory& detailFactory() {
    static DetailFactory instance = [](QWidget* owner) -> TFrm_Base_Detail* { return new TQXCK255_1(owner); };
    return instance;
}
}  // namespace

QString sizeTitle(TClientDataSet* ds, const QString& prefix, int i) {
    TField* field = ds ? ds->FindField(prefix + QString::number(i)) : nullptr;
    const QString name = field ? field->AsString().trimmed() : QString();
    return name.isEmpty() ? QStringLiteral("-") : name;
}

void addColumns(TDBGridEh* grid, std::initializer_list<GridColumn> columns) {
    for (const GridColumn& c : columns) {
        TColumnEh* column = grid->AddColumn(c.field, c.title, c.width);
        column->Visible = c.shown;
        if (QString(c.field).endsWith("DATE", Qt::CaseInsensitive)) column->DisplayFormat = "yyyy-mm-dd";
    }
}

void copyDataSet(TClientDataSet* from, TClientDataSet* to) {
    to->ClearFields();
    for (int f = 0; f < from->FieldCount(); ++f) {
        const TField* field = from->Fields(f);
        TField* copy = to->AddField(field->FieldName, field->DataType, field->Size, field->DisplayLabel);
        copy->DisplayFormat = field->DisplayFormat;
    }
    to->CreateDataSet();
    to->DisableControls();
    for (int row = 0; row < from->RecordCount(); ++row) {
        to->Append();
        for (int f = 0; f < from->FieldCount(); ++f) to->Fields(f)->SetValue(from->CellValue(row, f));
        to->Post();
    }
    to->EnableControls();
    to->First();
}

void setStockMovementDetailFactory(DetailFactory factory) { detailFactory() = std::move(factory); }
const DetailFactory& stockMovementDetailFactory() { return detailFactory(); }

}  // namespace qx::period
