#pragma once
// Reads an .xlsx file back through liborcus' spreadsheet model (tests): the first sheet's cells
// with their kind (text or number) and its merged ranges, from the model's check dump
// ("Sheet/row/col:numeric:3.5", "Sheet/row/col:string:\"text\"", "…:merge-width:3").
#include <QHash>
#include <QPair>
#include <QString>
#include <sstream>

#include <orcus/orcus_xlsx.hpp>
#include <orcus/spreadsheet/document.hpp>
#include <orcus/spreadsheet/factory.hpp>

namespace qx::test {

class XlsxReadBack {
public:
    explicit XlsxReadBack(const QString& fileName) {
        orcus::spreadsheet::document doc({1048576, 16384});
        orcus::spreadsheet::import_factory factory(doc);
        orcus::orcus_xlsx reader(&factory);
        reader.read_file(fileName.toStdString());
        const auto name = doc.get_sheet_name(0);
        sheetName_ = QString::fromUtf8(name.data(), qsizetype(name.size()));
        std::ostringstream dump;
        doc.dump_check(dump);
        for (const QString& line : QString::fromStdString(dump.str()).split('\n', Qt::SkipEmptyParts)) {
            // "<sheet>/<row>/<col>:<kind>:<value>"; the sheet's own name may hold neither ':' nor '/'.
            const int kindAt = int(line.indexOf(':'));
            const int valueAt = int(line.indexOf(':', kindAt + 1));
            const QStringList where = line.left(kindAt).split('/');
            if (where.size() != 3 || where[0] != sheetName_ || valueAt < 0) continue;
            const Key key{where[1].toInt(), where[2].toInt()};
            const QString kind = line.mid(kindAt + 1, valueAt - kindAt - 1);
            const QString value = line.mid(valueAt + 1);
            if (kind == "merge-width") merges_[key].first = value.toInt();
            else if (kind == "merge-height") merges_[key].second = value.toInt();
            else cells_[key] = {kind, kind == "string" ? value.mid(1, value.size() - 2) : value};
            if (kind != "merge-width" && kind != "merge-height") {
                lastRow_ = std::max(lastRow_, key.first);
                lastColumn_ = std::max(lastColumn_, key.second);
            }
        }
    }
    QString sheetName() const { return sheetName_; }
    bool isNumber(int row, int col) const { return cells_.value({row, col}).first == "numeric"; }
    bool isText(int row, int col) const { return cells_.value({row, col}).first == "string"; }
    bool isEmpty(int row, int col) const { return !cells_.contains({row, col}); }
    double number(int row, int col) const { return isNumber(row, col) ? cells_.value({row, col}).second.toDouble() : 0; }
    QString text(int row, int col) const { return isText(row, col) ? cells_.value({row, col}).second : QString(); }
    // "A1:C1" for a merged range starting at the cell, "" when it starts none.
    QString mergeAt(int row, int col) const {
        if (!merges_.contains({row, col})) return {};
        const auto [width, height] = merges_.value({row, col});
        return name(row, col) + ":" + name(row + std::max(height, 1) - 1, col + std::max(width, 1) - 1);
    }
    int lastRow() const { return lastRow_; }
    int lastColumn() const { return lastColumn_; }

    static QString name(int row, int col) {
        QString letters;
        for (int c = col + 1; c > 0; c = (c - 1) / 26) letters.prepend(QChar('A' + (c - 1) % 26));
        return letters + QString::number(row + 1);
    }

private:
    using Key = QPair<int, int>;
    QString sheetName_;
    QHash<Key, QPair<QString, QString>> cells_;  // kind, value
    QHash<Key, QPair<int, int>> merges_;         // width, height
    int lastRow_ = -1, lastColumn_ = -1;
};

}  // namespace qx::test
