#include "labels/LabelList.h"

#include <QFile>
#include <QSaveFile>
#include <QStringConverter>
#include <QTextStream>

#include "framework/DataSet.h"
#include "framework/U_function.h"

namespace qx::labels {

namespace {

struct LabelField {
    const char* name;
    const char* title;
    TFieldType type;
    int size;
    bool shown;
};

const LabelField kFields[] = {
    {"tm", "条码", ftString, 40, true},         {"K_ID", "款号", ftString, 17, true},
    {"WL_NAME", "名称", ftString, 80, true},    {"DW_NAME", "单位", ftString, 8, true},
    {"M", "尺码", ftString, 10, true},          {"m_index", "尺码标识", ftString, 2, false},
    {"col_ID", "色码", ftString, 4, true},      {"COL_NAME", "颜色", ftString, 20, true},
    {"PP", "品牌", ftString, 30, true},         {"PFJ", "吊牌价", ftFloat, 0, true},
    {"cl", "成份", ftString, 50, true},
};

constexpr const char* kMagic = "QXCK-LABELS 1";

// The style code printed in barcodes; a style without one prints its own code.
constexpr const char* kBarcodeStyle = "ISNULL(NULLIF(D1800.PP_KID,''),D1800.K_ID)";

// Columns every source line has, whatever it is read from; `counts` gives S0..S9.
QString sourceColumns(const QString& counts) {
    QString sql = QString("SELECT D1800.K_ID, ") + kBarcodeStyle +
                  " AS PP_KID, D1800.WL_NAME, D1800.DW_NAME, D1800.CL, D1800.PFJ, D1800.tmi, "
                  "ISNULL(NULLIF(D1800.PP,''),D1009.PP_NAME) AS PP, D1005.COL_ID, D1005.COL_NAME, D1005.S, " +
                  counts;
    for (int k = 0; k < 10; ++k) sql += ", D1006.M" + QString::number(k);
    for (int k = 0; k < 10; ++k) sql += ", " + BarcodeExpression(k) + " AS TM" + QString::number(k);
    return sql;
}

// The stored free barcodes of every SKU, one column per size position (largest if several).
QString barcodePivot() {
    QString sql = "(SELECT WL_ID";
    for (int k = 0; k < 10; ++k) {
        const QString n = QString::number(k);
        sql += ", MAX(CASE WHEN M_INDEX='" + n + "' THEN TM END) AS TM" + n;
    }
    return sql + " FROM D1809 GROUP BY WL_ID) FTM";
}

QString styleJoins() {
    return " INNER JOIN D1800 ON D1801.K_ID = D1800.K_ID INNER JOIN D1006 ON D1800.M_ID = D1006.M_ID INNER JOIN "
           "D1005 ON D1801.COL_ID = D1005.COL_ID LEFT OUTER JOIN D1009 ON D1800.PP_ID = D1009.PP_ID LEFT OUTER "
           "JOIN " +
           barcodePivot() + " ON D1801.WL_ID = FTM.WL_ID ";
}

QString escapeValue(const QVariant& value, const TField* field) {
    if (value.isNull() || !value.isValid()) return "\\N";
    QString text = field->DataType == ftFloat ? FloatToStr(value.toDouble()) : value.toString();
    QString out;
    out.reserve(text.size());
    for (const QChar c : text) {
        switch (c.unicode()) {
            case '\\': out += "\\\\"; break;
            case '\t': out += "\\t"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            default: out += c;
        }
    }
    return out;
}

// Undoes escapeValue; false when the text holds an escape this format does not know.
bool unescapeValue(const QString& text, QVariant& value) {
    if (text == "\\N") {
        value = QVariant();
        return true;
    }
    QString out;
    out.reserve(text.size());
    for (qsizetype i = 0; i < text.size(); ++i) {
        if (text[i] != '\\') {
            out += text[i];
            continue;
        }
        if (++i == text.size()) return false;
        switch (text[i].unicode()) {
            case '\\': out += '\\'; break;
            case 't': out += '\t'; break;
            case 'n': out += '\n'; break;
            case 'r': out += '\r'; break;
            default: return false;
        }
    }
    value = out;
    return true;
}

}  // namespace

void DefineLabelList(TClientDataSet* list) {
    list->ClearFields();
    for (const LabelField& f : kFields) {
        TField* field = list->AddField(f.name, f.type, f.size, f.title);
        field->Visible = f.shown;
        if (f.type == ftFloat) field->DisplayFormat = "0.00";
    }
    list->CreateDataSet();
}

QStringList LabelFieldNames() {
    QStringList names;
    for (const LabelField& f : kFields) names << f.name;
    return names;
}

QString BarcodeExpression(int k) {
    const QString n = QString::number(k);
    const QString colourMark = "ISNULL(D1005.S,'')";
    const QString sizeMark = "ISNULL(D1006.BS" + n + ",'')";
    return QString("CASE D1800.TMI WHEN 1 THEN FTM.TM") + n + " WHEN 2 THEN " + kBarcodeStyle + "+" + colourMark +
           "+" + sizeMark + " WHEN 3 THEN " + kBarcodeStyle + "+" + sizeMark + "+" + colourMark + " ELSE " +
           (k == 0 ? QString(kBarcodeStyle) : QString("NULL")) + " END";
}

QString ReceiptLinesSql(const QString& noid) {
    QString counts;
    for (int k = 0; k < 10; ++k) counts += QString(k ? ", " : "") + "D8101A.S" + QString::number(k);
    return sourceColumns(counts) + " FROM D1801 INNER JOIN D8101A ON D1801.WL_ID = D8101A.WL_ID" + styleJoins() +
           "WHERE (D8101A.NOID = '" + SqlStr(noid) + "')";
}

QString StyleLinesSql(const QString& styleCode) {
    QString counts;
    for (int k = 0; k < 10; ++k) counts += QString(k ? ", " : "") + "0 AS S" + QString::number(k);
    return sourceColumns(counts) + " FROM D1801" + styleJoins() + "WHERE(D1800.K_ID = '" + SqlStr(styleCode) + "')";
}

int AppendTags(TClientDataSet* source, TClientDataSet* list) {
    source->CheckBrowseMode();
    if (source->IsEmpty()) return 0;
    int appended = 0;
    const int keep = source->RecNo();
    source->DisableControls();
    list->DisableControls();
    try {
        for (source->First(); !source->Eof(); source->Next()) {
            int counts[10];
            bool any = false;
            for (int k = 0; k < 10; ++k) {
                counts[k] = source->FieldByName("S" + QString::number(k))->AsInteger();
                any = any || counts[k] != 0;
            }
            if (!any) continue;
            for (int k = 0; k < 10; ++k) {
                const QString n = QString::number(k);
                for (int i = 0; i < counts[k]; ++i) {
                    list->Append();
                    list->FieldByName("tm")->SetValue(source->FieldByName("TM" + n)->Value());
                    for (const char* f : {"k_id", "wl_name", "col_id", "col_name", "dw_name", "pp", "cl", "pfj"})
                        list->FieldByName(f)->SetValue(source->FieldByName(f)->Value());
                    list->FieldByName("m")->SetValue(source->FieldByName("M" + n)->Value());
                    list->FieldByName("m_index")->SetAsString(n);
                    list->Post();
                    ++appended;
                }
            }
        }
    } catch (...) {
        source->SetRecNo(keep);
        list->EnableControls();
        source->EnableControls();
        throw;
    }
    source->SetRecNo(keep);
    list->EnableControls();
    source->EnableControls();
    return appended;
}

QString LabelFileText(TClientDataSet* list) {
    list->CheckBrowseMode();
    QString text = QString(kMagic) + "\n" + LabelFieldNames().join('\t') + "\n";
    const QStringList names = LabelFieldNames();
    QVector<int> index;
    for (const QString& n : names) index << list->FieldIndex(n);
    for (int row = 0; row < list->RecordCount(); ++row) {
        QStringList values;
        for (int i = 0; i < names.size(); ++i)
            values << (index[i] < 0 ? QString("\\N") : escapeValue(list->CellValue(row, index[i]), list->Fields(index[i])));
        text += values.join('\t') + "\n";
    }
    return text + "END " + QString::number(list->RecordCount()) + "\n";
}

void SaveLabelFile(const QString& path, TClientDataSet* list) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        throw EDatabaseError("无法保存标签文件 " + path + ": " + file.errorString());
    file.write(LabelFileText(list).toUtf8());
    if (!file.commit()) throw EDatabaseError("无法保存标签文件 " + path + ": " + file.errorString());
}

LoadResult LoadLabelFile(const QString& path, TClientDataSet* list) {
    if (list->FieldCount() != int(std::size(kFields))) DefineLabelList(list);
    list->EmptyDataSet();
    QFile file(path);
    if (!file.exists()) return {};
    if (!file.open(QIODevice::ReadOnly)) return {false, "无法读取标签文件 " + path + ": " + file.errorString()};
    const QByteArray bytes = file.readAll();
    auto decode = QStringDecoder(QStringDecoder::Utf8);
    const QString text = decode(bytes);
    if (decode.hasError()) return {false, "标签文件 " + path + " 不是本程序保存的标签列表(编码不对)"};
    QStringList lines = text.split('\n');
    if (lines.isEmpty() || lines.first() != kMagic)
        return {false, "标签文件 " + path + " 不是本程序保存的标签列表"};
    if (lines.size() < 2 || lines[1] != LabelFieldNames().join('\t'))
        return {false, "标签文件 " + path + " 的栏目与标签列表不符"};
    // The last line is empty (the file ends with a newline); before it the END line.
    if (lines.size() < 4 || !lines.last().isEmpty() || !lines[lines.size() - 2].startsWith("END "))
        return {false, "标签文件 " + path + " 不完整(可能被截断)"};
    bool numberOk = false;
    const int declared = lines[lines.size() - 2].mid(4).toInt(&numberOk);
    const int rows = int(lines.size()) - 4;
    if (!numberOk || declared != rows) return {false, "标签文件 " + path + " 不完整(可能被截断)"};

    const int fieldCount = int(std::size(kFields));
    QList<QVector<QVariant>> parsed;
    for (int r = 0; r < rows; ++r) {
        const QStringList cells = lines[2 + r].split('\t');
        if (cells.size() != fieldCount)
            return {false, "标签文件 " + path + " 第" + QString::number(3 + r) + "行的栏目数不对"};
        QVector<QVariant> values(fieldCount);
        for (int i = 0; i < fieldCount; ++i) {
            QVariant v;
            bool number = true;
            if (!unescapeValue(cells[i], v)) number = false;
            if (number && !v.isNull() && kFields[i].type == ftFloat) v = v.toString().toDouble(&number);
            if (!number) return {false, "标签文件 " + path + " 第" + QString::number(3 + r) + "行的内容不正确"};
            values[i] = v;
        }
        parsed << values;
    }
    list->DisableControls();
    for (const auto& values : parsed) {
        list->Append();
        for (int i = 0; i < fieldCount; ++i) list->Fields(i)->SetValue(values[i]);
        list->Post();
    }
    list->First();
    list->EnableControls();
    return {};
}

}  // namespace qx::labels
