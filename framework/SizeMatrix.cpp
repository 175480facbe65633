#include "framework/SizeMatrix.h"

#include "framework/DataSet.h"

namespace qx::sizes {

QString quantityField(int position) { return "S" + QString::number(position); }
QString nameField(int position) { return "M" + QString::number(position); }

QStringList quantityFields() {
    QStringList fields;
    for (int i = 0; i < Count; ++i) fields << quantityField(i);
    return fields;
}

QStringList quantityFieldsAndTotal() { return quantityFields() << "STOT"; }

int positionOf(const QString& fieldName) {
    if (fieldName.size() != 2 || (fieldName[0] != 'S' && fieldName[0] != 's') || !fieldName[1].isDigit()) return -1;
    return fieldName[1].digitValue();
}

bool isQuantityField(const QString& fieldName) { return positionOf(fieldName) >= 0; }

double lineTotal(const TClientDataSet* lines, int row) {
    double sum = 0;
    for (int i = 0; i < Count; ++i)
        if (const int index = lines->FieldIndex(quantityField(i)); index >= 0) sum += lines->CellValue(row, index).toDouble();
    return sum;
}

double currentLineTotal(const TClientDataSet* lines) {
    double sum = 0;
    for (int i = 0; i < Count; ++i)
        if (TField* f = lines->FindField(quantityField(i))) sum += f->AsFloat();
    return sum;
}

QStringList namesOfRow(const TClientDataSet* lines, int row) {
    QStringList names;
    for (int i = 0; i < Count; ++i) {
        const int index = lines->FieldIndex(nameField(i));
        names << (index >= 0 && row >= 0 ? lines->CellValue(row, index).toString() : QString());
    }
    return names;
}

bool positionInUse(const QStringList& sizeNames, int position) {
    return position >= 0 && position < sizeNames.size() && !sizeNames[position].trimmed().isEmpty();
}

}  // namespace qx::sizes
