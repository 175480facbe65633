#pragma once
// The size matrix of a document line: one quantity per size position S0..S9 (K0..K9 on stock
// rows), their total STOT, and the size names M0..M9 of the style's size group that title the
// columns. Everything that walks the positions does it through here.
#include <QString>
#include <QStringList>

#include "framework/Export.h"

class TClientDataSet;

namespace qx::sizes {

inline constexpr int Count = 10;

// "S0".."S9", the quantity of position i; "M0".."M9", the size name of position i.
QX_FRAMEWORK_EXPORT QString quantityField(int position);
QX_FRAMEWORK_EXPORT QString nameField(int position);
// "S0".."S9" and "S0".."S9","STOT".
QX_FRAMEWORK_EXPORT QStringList quantityFields();
QX_FRAMEWORK_EXPORT QStringList quantityFieldsAndTotal();
// S0..S9, any case; -1 for any other name.
QX_FRAMEWORK_EXPORT int positionOf(const QString& fieldName);
QX_FRAMEWORK_EXPORT bool isQuantityField(const QString& fieldName);

// The sum of S0..S9 of one row (positions the dataset lacks count 0).
QX_FRAMEWORK_EXPORT double lineTotal(const TClientDataSet* lines, int row);
// The same for the dataset's current record.
QX_FRAMEWORK_EXPORT double currentLineTotal(const TClientDataSet* lines);
// The size names M0..M9 of one row ("" where the dataset lacks the field).
QX_FRAMEWORK_EXPORT QStringList namesOfRow(const TClientDataSet* lines, int row);
// A size position is in use when its size group names it.
QX_FRAMEWORK_EXPORT bool positionInUse(const QStringList& sizeNames, int position);

}  // namespace qx::sizes
