#pragma once
// What the period screens share: the size-column titles of their grids, copying a result into a
// screen's own dataset, and the hook through which the balance check opens the stock movement
// detail.
#include <QString>
#include <QStringList>
#include <functional>
#include <initializer_list>

#include "framework/Frm_Base.h"

namespace qx::period {

// The size name of position i of the current row of `ds` (field prefix "m" or "M"), "-" when
// the name is empty.
QString sizeTitle(TClientDataSet* ds, const QString& prefix, int i);

// Columns of a grid as data: field, title, width, shown; "BDATE"-like fields (ending in DATE)
// show "YYYY-MM-DD".
struct GridColumn {
    const char* field;
    const char* title;
    int width;
    bool shown = true;
};
void addColumns(TDBGridEh* grid, std::initializer_list<GridColumn> columns);

// Replaces the fields and rows of `to` with a copy of those of `from` (cursor on the first row).
void copyDataSet(TClientDataSet* from, TClientDataSet* to);

// The stock movement detail of one SKU (its screen belongs to the stock query). The balance
// check opens it through this factory (TQXCK255_1 unless another is installed), in the mode
// "ReadOnly" on its own dataset positioned on the chosen row; with the factory set to nullptr a
// double click opens nothing.
using DetailFactory = std::function<TFrm_Base_Detail*(QWidget* owner)>;
void setStockMovementDetailFactory(DetailFactory factory);
const DetailFactory& stockMovementDetailFactory();

}  // namespace qx::period
