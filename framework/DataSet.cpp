#include "framework/DataSet.h"

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QRegularExpression>
#include <cmath>

#include "db/Database.h"
#include "framework/U_function.h"

namespace {


QDateTime parseDateTime(const QString& text) {
    const QString t = text.trimmed();
    for (const char* format : {"yyyy-MM-dd HH:mm:ss.zzz", "yyyy-MM-dd HH:mm:ss", "yyyy-MM-ddTHH:mm:ss",
                               "yyyy-MM-dd HH:mm", "yyyy-MM-dd", "yyyy/MM/dd", "yyyyMMdd"}) {
        QDateTime d = QDateTime::fromString(t, QString::fromLatin1(format));
        if (d.isValid()) return d;
    }
    return {};
}

// Applies a Delphi-style number format: "0", "0.00", "#,##0.00", "#0.0#" (decimals from the part
// after the point: 0 = fixed digit, # = optional digit; "," groups thousands).
QString formatNumber(double v, const QString& format) {
    QString f = format;
    const int semi = f.indexOf(';');
    if (semi >= 0) f = f.left(semi);
    const int dot = f.indexOf('.');
    int fixed = 0, optional = 0;
    if (dot >= 0) {
        for (QChar c : f.mid(dot + 1)) {
            if (c == '0') ++fixed;
            else if (c == '#') ++optional;
            else break;
        }
    }
    QString s = QString::number(v, 'f', fixed + optional);
    if (optional > 0) {
        int minLen = s.indexOf('.') + 1 + fixed;
        while (s.size() > minLen && s.endsWith('0')) s.chop(1);
        if (s.endsWith('.')) s.chop(1);
    }
    if (f.contains(',')) {
        const bool negative = s.startsWith('-');
        if (negative) s.remove(0, 1);
        int point = s.indexOf('.');
        if (point < 0) point = s.size();
        for (int i = point - 3; i > 0; i -= 3) s.insert(i, ',');
        if (negative) s.prepend('-');
    }
    // Literal prefix/suffix (e.g. "0.00%" or "￥0.00") kept as written.
    const int firstDigit = int(f.indexOf(QRegularExpression("[0#]")));
    if (firstDigit > 0) s.prepend(f.left(firstDigit));
    return s;
}

TFieldType fromDbType(qx::db::FieldType t) {
    switch (t) {
        case qx::db::FieldType::Integer: return ftInteger;
        case qx::db::FieldType::Float: return ftFloat;
        case qx::db::FieldType::DateTime: return ftDateTime;
        case qx::db::FieldType::Text: return ftString;
        default: return ftUnknown;
    }
}

QString typeName(TFieldType t) {
    switch (t) {
        case ftString: return "string";
        case ftSmallint: return "smallint";
        case ftInteger: return "integer";
        case ftFloat: return "float";
        case ftCurrency: return "currency";
        case ftBoolean: return "boolean";
        case ftDateTime: return "datetime";
        default: return "unknown";
    }
}

TFieldType typeFromName(const QString& n) {
    for (TFieldType t : {ftString, ftSmallint, ftInteger, ftFloat, ftCurrency, ftBoolean, ftDateTime})
        if (typeName(t) == n) return t;
    return ftUnknown;
}

}  // namespace

// ---------------------------------------------------------------- TField

TField::TField(TClientDataSet* dataSet, const AnsiString& name, TFieldType type, int size,
               const AnsiString& label, TFieldKind kind)
    : FieldName(name), DataType(type), Size(size), DisplayLabel(label.isEmpty() ? name : label),
      FieldKind(kind), dataSet_(dataSet) {}

int TField::Index() const { return index_; }

QVariant TField::Value() const {
    const int row = dataSet_->activeRow();
    if (row < 0) return {};
    return dataSet_->rows_[row].value(Index());
}

QVariant TField::Convert(const QVariant& value) const {
    if (!value.isValid() || value.isNull()) return {};
    switch (DataType) {
        case ftSmallint:
        case ftInteger: {
            if (value.typeId() == QMetaType::QString) {
                const QString t = value.toString().trimmed();
                if (t.isEmpty()) return {};
                bool ok = false;
                qlonglong v = t.toLongLong(&ok);
                if (!ok) {
                    double d = t.toDouble(&ok);
                    if (ok && d == std::floor(d)) v = qlonglong(d);
                    else ok = false;
                }
                if (!ok) throw EDatabaseError("'" + t + "' 不是有效的整数 (" + FieldName + ")");
                return v;
            }
            if (value.typeId() == QMetaType::Double) return qlonglong(std::llround(value.toDouble()));
            return value.toLongLong();
        }
        case ftFloat:
        case ftCurrency: {
            if (value.typeId() == QMetaType::QString) {
                const QString t = value.toString().trimmed();
                if (t.isEmpty()) return {};
                bool ok = false;
                double d = t.toDouble(&ok);
                if (!ok) throw EDatabaseError("'" + t + "' 不是有效的数值 (" + FieldName + ")");
                return d;
            }
            return value.toDouble();
        }
        case ftBoolean:
            if (value.typeId() == QMetaType::QString) {
                const QString t = value.toString().trimmed().toLower();
                return t == "1" || t == "true" || t == "y" || t == "yes";
            }
            return value.toBool();
        case ftDateTime: {
            if (value.typeId() == QMetaType::QDateTime) return value;
            if (value.typeId() == QMetaType::QDate) return QDateTime(value.toDate(), QTime(0, 0));
            const QString t = value.toString().trimmed();
            if (t.isEmpty()) return {};
            QDateTime d = parseDateTime(t);
            if (!d.isValid()) throw EDatabaseError("'" + t + "' 不是有效的日期 (" + FieldName + ")");
            return d;
        }
        case ftString:
        case ftUnknown:
        default:
            if (value.typeId() == QMetaType::Double) return FloatToStr(value.toDouble());
            if (value.typeId() == QMetaType::QDateTime)
                return value.toDateTime().toString("yyyy-MM-dd HH:mm:ss");
            if (DataType == ftUnknown) return value;
            return value.toString();
    }
}

void TField::SetValue(const QVariant& value) {
    dataSet_->requireEditable();
    QVariant converted = Convert(value);
    QVariant& cell = dataSet_->cellRef(Index());
    if (cell == converted && cell.isNull() == converted.isNull()) return;
    cell = converted;
    dataSet_->modified_ = true;
    if (!dataSet_->inCalc_ && dataSet_->state_ != dsCalcFields) {
        dataSet_->calcRow(dataSet_->current_);
        dataSet_->notifyRow(dataSet_->current_);
    }
}

bool TField::IsNull() const {
    const QVariant v = Value();
    return !v.isValid() || v.isNull();
}

void TField::Clear() { SetValue(QVariant()); }

AnsiString TField::AsString() const {
    const QVariant v = Value();
    if (!v.isValid() || v.isNull()) return {};
    switch (v.typeId()) {
        case QMetaType::Double: return FloatToStr(v.toDouble());
        case QMetaType::QDateTime: {
            const QDateTime d = v.toDateTime();
            return d.time() == QTime(0, 0) ? d.toString("yyyy-MM-dd") : d.toString("yyyy-MM-dd HH:mm:ss");
        }
        case QMetaType::Bool: return v.toBool() ? "True" : "False";
        default: return v.toString();
    }
}

void TField::SetAsString(const AnsiString& value) {
    if (value.isEmpty() && DataType != ftString) SetValue(QVariant());
    else SetValue(value);
}

int TField::AsInteger() const {
    const QVariant v = Value();
    if (!v.isValid() || v.isNull()) return 0;
    if (v.typeId() == QMetaType::Double) return int(std::llround(v.toDouble()));
    bool ok = false;
    int i = v.toInt(&ok);
    if (!ok) {
        double d = v.toString().trimmed().toDouble(&ok);
        i = ok ? int(std::llround(d)) : 0;
    }
    return i;
}

void TField::SetAsInteger(int value) { SetValue(qlonglong(value)); }

double TField::AsFloat() const {
    const QVariant v = Value();
    if (!v.isValid() || v.isNull()) return 0;
    bool ok = false;
    double d = v.toDouble(&ok);
    return ok ? d : v.toString().trimmed().toDouble();
}

void TField::SetAsFloat(double value) { SetValue(value); }

QDateTime TField::AsDateTime() const {
    const QVariant v = Value();
    if (!v.isValid() || v.isNull()) return {};
    if (v.typeId() == QMetaType::QDateTime) return v.toDateTime();
    return parseDateTime(v.toString());
}

void TField::SetAsDateTime(const QDateTime& value) { SetValue(value); }

bool TField::AsBoolean() const {
    const QVariant v = Value();
    if (v.typeId() == QMetaType::QString) {
        const QString t = v.toString().trimmed().toLower();
        return t == "1" || t == "true" || t == "y";
    }
    return v.toBool();
}

void TField::SetAsBoolean(bool value) { SetValue(value); }

AnsiString TField::Text() const { return AsString(); }

void TField::SetText(const AnsiString& text) {
    if (OnSetText) {
        // Copy: the handler may detach (and re-attach) itself while it runs.
        TFieldSetTextEvent handler = OnSetText;
        handler(this, text);
    } else {
        SetAsString(text);
    }
}

AnsiString TField::FormatValue(const QVariant& v, const AnsiString& format) const {
    if (!v.isValid() || v.isNull()) return {};
    if (format.isEmpty()) {
        if (v.typeId() == QMetaType::Double) return FloatToStr(v.toDouble());
        if (v.typeId() == QMetaType::QDateTime) {
            const QDateTime d = v.toDateTime();
            return d.time() == QTime(0, 0) ? d.toString("yyyy-MM-dd") : d.toString("yyyy-MM-dd HH:mm:ss");
        }
        return v.toString();
    }
    if (v.typeId() == QMetaType::QDateTime || DataType == ftDateTime) {
        QDateTime d = v.typeId() == QMetaType::QDateTime ? v.toDateTime() : parseDateTime(v.toString());
        QString f = format;
        f.replace("yyyy", "yyyy").replace("mm", "MM").replace("nn", "mm");
        return d.toString(f);
    }
    bool ok = false;
    double d = v.toDouble(&ok);
    if (!ok) return v.toString();
    return formatNumber(d, format);
}

AnsiString TField::DisplayText() const { return FormatValue(Value(), DisplayFormat); }

bool IsNumberType(TFieldType type) {
    return type == ftSmallint || type == ftInteger || type == ftFloat || type == ftCurrency;
}

bool IsNumberValue(const QVariant& v) {
    switch (v.typeId()) {
        case QMetaType::Int:
        case QMetaType::LongLong:
        case QMetaType::UInt:
        case QMetaType::ULongLong:
        case QMetaType::Double: return true;
        default: return false;
    }
}

// ---------------------------------------------------------------- TClientDataSet

TClientDataSet::TClientDataSet(QObject* owner) : QObject(owner) {}
TClientDataSet::~TClientDataSet() = default;

TField* TClientDataSet::AddField(const AnsiString& name, TFieldType type, int size, const AnsiString& label,
                                 TFieldKind kind) {
    if (FindField(name)) throw EDatabaseError("字段重复: " + name);
    pushField(std::make_unique<TField>(this, name, type, size, label, kind));
    for (auto& row : rows_) row.resize(int(fields_.size()));
    if (kind == fkCalculated) RefreshCalcFields();
    emit structureChanged();
    return fields_.back().get();
}

void TClientDataSet::ClearFields() {
    Close();
    clearFieldList();
    emit structureChanged();
}

TField* TClientDataSet::FindField(const AnsiString& name) const {
    const int i = FieldIndex(name);
    return i < 0 ? nullptr : fields_[size_t(i)].get();
}

TField* TClientDataSet::pushField(std::unique_ptr<TField> field) {
    field->index_ = int(fields_.size());
    fieldsByName_.insert(field->FieldName.trimmed().toUpper(), field->index_);
    fields_.push_back(std::move(field));
    return fields_.back().get();
}

void TClientDataSet::clearFieldList() {
    fields_.clear();
    fieldsByName_.clear();
}

int TClientDataSet::FieldIndex(const AnsiString& name) const {
    const QString n = name.trimmed();
    const auto hit = fieldsByName_.constFind(n.toUpper());
    if (hit != fieldsByName_.constEnd() && fields_[size_t(*hit)]->FieldName.compare(n, Qt::CaseInsensitive) == 0)
        return *hit;
    // A field renamed after it was added is still found.
    for (size_t i = 0; i < fields_.size(); ++i)
        if (fields_[i]->FieldName.compare(n, Qt::CaseInsensitive) == 0) return int(i);
    return -1;
}

TField* TClientDataSet::FieldByName(const AnsiString& name) const {
    if (TField* f = FindField(name)) return f;
    const QString owner = objectName().isEmpty() ? QStringLiteral("数据集") : objectName();
    throw EDatabaseError(owner + ": 未找到字段 '" + name + "'");
}

QStringList TClientDataSet::FieldNames() const {
    QStringList names;
    for (const auto& f : fields_) names << f->FieldName;
    return names;
}

void TClientDataSet::CreateDataSet() {
    rows_.clear();
    state_ = dsBrowse;
    current_ = -1;
    eof_ = bof_ = true;
    modified_ = false;
    notifyReset();
    emit stateChanged();
    if (AfterOpen) AfterOpen(this);
}

void TClientDataSet::Open() {
    if (state_ == dsInactive) CreateDataSet();
}

void TClientDataSet::LoadFromResult(const qx::db::ResultSet& result) {
    if (state_ == dsEdit || state_ == dsInsert) Cancel();
    clearFieldList();
    for (const auto& c : result.columns) {
        QString name = QString::fromStdString(c.name);
        // Two columns of one name (SELECT a.X, b.X): the second is X_1, as datasets name them.
        QString unique = name;
        for (int n = 1; FindField(unique); ++n) unique = name + "_" + QString::number(n);
        pushField(std::make_unique<TField>(this, unique, fromDbType(c.type), c.size, unique, fkData));
    }
    rows_.clear();
    rows_.reserve(qsizetype(result.rows.size()));
    for (const auto& r : result.rows) {
        QVector<QVariant> row(int(fields_.size()));
        for (size_t i = 0; i < r.size() && i < fields_.size(); ++i) {
            const auto& v = r[i];
            if (std::holds_alternative<std::int64_t>(v)) row[int(i)] = qlonglong(std::get<std::int64_t>(v));
            else if (std::holds_alternative<double>(v)) row[int(i)] = std::get<double>(v);
            else if (std::holds_alternative<std::string>(v)) {
                QString s = QString::fromStdString(std::get<std::string>(v));
                if (fields_[i]->DataType == ftDateTime) {
                    QDateTime d = parseDateTime(s);
                    row[int(i)] = d.isValid() ? QVariant(d) : QVariant(s);
                } else {
                    row[int(i)] = s;
                }
            }
        }
        rows_.push_back(std::move(row));
    }
    modified_ = false;
    BrowseLoadedRows(/*announceOpen=*/true);
}

void TClientDataSet::EmptyDataSet() {
    if (state_ == dsEdit || state_ == dsInsert) state_ = dsBrowse;
    if (state_ == dsInactive) state_ = dsBrowse;
    rows_.clear();
    current_ = -1;
    eof_ = bof_ = true;
    notifyReset();
    emit stateChanged();
    emit dataEdited();
    if (AfterScroll) AfterScroll(this);
    emit currentChanged(current_);
}

void TClientDataSet::Close() {
    rows_.clear();
    current_ = -1;
    eof_ = bof_ = true;
    state_ = dsInactive;
    notifyReset();
    emit stateChanged();
}

// --- cursor

void TClientDataSet::setCurrent(int row, bool notify) {
    CheckBrowseMode();
    if (notify && BeforeScroll) BeforeScroll(this);
    const int previous = current_;
    current_ = rows_.isEmpty() ? -1 : std::clamp(row, 0, int(rows_.size()) - 1);
    Q_UNUSED(previous);
    if (notify) {
        if (AfterScroll) AfterScroll(this);
        if (!ControlsDisabled()) emit currentChanged(current_);
    }
}

void TClientDataSet::First() {
    setCurrent(0, true);
    bof_ = true;
    eof_ = rows_.isEmpty();
}

void TClientDataSet::Last() {
    setCurrent(int(rows_.size()) - 1, true);
    eof_ = true;
    bof_ = rows_.isEmpty();
}

void TClientDataSet::Next() {
    CheckBrowseMode();
    if (rows_.isEmpty() || current_ >= int(rows_.size()) - 1) {
        eof_ = true;
        return;
    }
    setCurrent(current_ + 1, true);
    bof_ = false;
    eof_ = false;
}

void TClientDataSet::Prior() {
    CheckBrowseMode();
    if (rows_.isEmpty() || current_ <= 0) {
        bof_ = true;
        return;
    }
    setCurrent(current_ - 1, true);
    bof_ = false;
    eof_ = false;
}

void TClientDataSet::MoveBy(int distance) {
    while (distance > 0 && !Eof()) {
        Next();
        --distance;
    }
    while (distance < 0 && !Bof()) {
        Prior();
        ++distance;
    }
}

void TClientDataSet::SetRecNo(int recNo) {
    if (rows_.isEmpty()) return;
    setCurrent(recNo - 1, true);
    bof_ = eof_ = false;
}

bool TClientDataSet::Locate(const AnsiString& keyFields, const QVariant& keyValues, TLocateOptions options) {
    const QStringList names = keyFields.split(';', Qt::SkipEmptyParts);
    QVariantList values = names.size() > 1 ? keyValues.toList() : QVariantList{keyValues};
    if (values.size() != names.size()) return false;
    QVector<int> indexes;
    for (const QString& n : names) indexes << FieldByName(n)->Index();
    const Qt::CaseSensitivity cs = (options & loCaseInsensitive) ? Qt::CaseInsensitive : Qt::CaseSensitive;
    for (int r = 0; r < rows_.size(); ++r) {
        bool match = true;
        for (int k = 0; k < indexes.size() && match; ++k) {
            const QVariant& cell = rows_[r][indexes[k]];
            const QString a = fields_[size_t(indexes[k])]->FormatValue(cell, {});
            const QString b = values[k].toString();
            match = (options & loPartialKey) ? a.startsWith(b, cs) : a.compare(b, cs) == 0;
        }
        if (match) {
            setCurrent(r, true);
            bof_ = eof_ = false;
            return true;
        }
    }
    return false;
}

// --- editing

int TClientDataSet::activeRow() const { return overrideRow_ >= 0 ? overrideRow_ : current_; }

QVariant& TClientDataSet::cellRef(int fieldIndex) {
    const int row = activeRow();
    if (row < 0 || row >= rows_.size()) throw EDatabaseError("数据集没有当前记录");
    return rows_[row][fieldIndex];
}

void TClientDataSet::requireEditable() const {
    if (state_ == dsEdit || state_ == dsInsert || state_ == dsCalcFields) return;
    const QString owner = objectName().isEmpty() ? QStringLiteral("数据集") : objectName();
    throw EDatabaseError(owner + ": 数据集不在编辑或插入状态");
}

void TClientDataSet::Edit() {
    if (state_ == dsEdit || state_ == dsInsert) return;
    if (state_ == dsInactive) throw EDatabaseError("数据集未打开");
    if (rows_.isEmpty()) {
        Append();
        return;
    }
    savedRow_ = rows_[current_];
    state_ = dsEdit;
    emit stateChanged();
}

void TClientDataSet::Append() { InsertRowAt(-1); }

void TClientDataSet::Insert() { InsertRowAt(current_ < 0 ? 0 : current_); }

// A new empty row in insert state at `row` (-1: after the last one), made current.
void TClientDataSet::InsertRowAt(int row) {
    CheckBrowseMode();
    if (state_ == dsInactive) CreateDataSet();
    if (BeforeInsert) BeforeInsert(this);
    if (row < 0) row = int(rows_.size());
    rows_.insert(row, QVector<QVariant>(int(fields_.size())));
    current_ = row;
    state_ = dsInsert;
    bof_ = eof_ = false;
    if (!ControlsDisabled()) emit rowInserted(row);
    else pendingReset_ = true;
    calcRow(row);
    emit stateChanged();
    if (AfterInsert) AfterInsert(this);
    if (!ControlsDisabled()) emit currentChanged(current_);
}

void TClientDataSet::Post() {
    if (state_ != dsEdit && state_ != dsInsert) return;
    if (BeforePost) BeforePost(this);  // may Abort(): the row stays in its edit state
    calcRow(current_);
    state_ = dsBrowse;
    savedRow_.clear();
    notifyRow(current_);
    emit stateChanged();
    emit dataEdited();
    if (AfterPost) AfterPost(this);
}

void TClientDataSet::Cancel() {
    if (state_ == dsInsert) {
        const int row = current_;
        rows_.removeAt(row);
        state_ = dsBrowse;
        current_ = rows_.isEmpty() ? -1 : std::min(row, int(rows_.size()) - 1);
        if (!ControlsDisabled()) emit rowRemoved(row);
        else pendingReset_ = true;
        eof_ = bof_ = rows_.isEmpty();
        emit stateChanged();
        if (AfterScroll) AfterScroll(this);
        if (!ControlsDisabled()) emit currentChanged(current_);
    } else if (state_ == dsEdit) {
        rows_[current_] = savedRow_;
        state_ = dsBrowse;
        savedRow_.clear();
        notifyRow(current_);
        emit stateChanged();
    }
}

void TClientDataSet::Delete() {
    if (state_ == dsInsert) {
        Cancel();
        return;
    }
    if (state_ == dsEdit) Cancel();
    if (rows_.isEmpty()) throw EDatabaseError("不能对空数据集执行删除");
    if (BeforeDelete) BeforeDelete(this);
    const int row = current_;
    rows_.removeAt(row);
    modified_ = true;
    current_ = rows_.isEmpty() ? -1 : std::min(row, int(rows_.size()) - 1);
    eof_ = rows_.isEmpty();
    bof_ = rows_.isEmpty();
    if (!ControlsDisabled()) emit rowRemoved(row);
    else pendingReset_ = true;
    emit dataEdited();
    if (AfterDelete) AfterDelete(this);
    if (AfterScroll) AfterScroll(this);
    if (!ControlsDisabled()) emit currentChanged(current_);
}

void TClientDataSet::CheckBrowseMode() {
    if (state_ == dsEdit || state_ == dsInsert) Post();
}

// --- controls

void TClientDataSet::DisableControls() { ++disableCount_; }

void TClientDataSet::EnableControls() {
    if (disableCount_ == 0) return;
    if (--disableCount_ == 0) {
        // Whatever happened meanwhile, views show it now, once.
        pendingReset_ = false;
        emit dataReset();
        emit currentChanged(current_);
    }
}

void TClientDataSet::notifyRow(int row) {
    if (row < 0) return;
    if (ControlsDisabled()) pendingReset_ = true;
    else emit rowChanged(row);
}

void TClientDataSet::notifyReset() {
    if (ControlsDisabled()) pendingReset_ = true;
    else emit dataReset();
}

// --- calculated fields

void TClientDataSet::calcRow(int row) {
    if (!OnCalcFields || row < 0 || row >= rows_.size() || inCalc_) return;
    bool hasCalc = false;
    for (const auto& f : fields_) hasCalc = hasCalc || f->FieldKind == fkCalculated;
    if (!hasCalc) return;
    const TDataSetState saved = state_;
    const int savedOverride = overrideRow_;
    inCalc_ = true;
    state_ = dsCalcFields;
    overrideRow_ = row;
    try {
        OnCalcFields(this);
    } catch (...) {
        state_ = saved;
        overrideRow_ = savedOverride;
        inCalc_ = false;
        throw;
    }
    state_ = saved;
    overrideRow_ = savedOverride;
    inCalc_ = false;
}

void TClientDataSet::RefreshCalcFields() {
    for (int r = 0; r < rows_.size(); ++r) calcRow(r);
}

QVariant TClientDataSet::CellValue(int row, int fieldIndex) const {
    if (row < 0 || row >= rows_.size() || fieldIndex < 0 || fieldIndex >= rows_[row].size()) return {};
    return rows_[row][fieldIndex];
}

void TClientDataSet::SetCellValue(int row, int fieldIndex, const QVariant& value) {
    if (row < 0 || row >= rows_.size() || fieldIndex < 0 || fieldIndex >= int(fields_.size())) return;
    rows_[row][fieldIndex] = fields_[size_t(fieldIndex)]->Convert(value);
    notifyRow(row);
}

void TClientDataSet::SortBy(const AnsiString& fieldName, bool ascending) {
    CheckBrowseMode();
    const int index = FieldByName(fieldName)->Index();
    QVector<QVariant> current = current_ >= 0 ? rows_[current_] : QVector<QVariant>();
    auto less = [index](const QVector<QVariant>& a, const QVector<QVariant>& b) {
        const QVariant &x = a[index], &y = b[index];
        bool okx = false, oky = false;
        const double dx = x.toDouble(&okx), dy = y.toDouble(&oky);
        if (okx && oky && x.typeId() != QMetaType::QString) return dx < dy;
        return x.toString().compare(y.toString(), Qt::CaseInsensitive) < 0;
    };
    std::stable_sort(rows_.begin(), rows_.end(), [&](const auto& a, const auto& b) {
        return ascending ? less(a, b) : less(b, a);
    });
    if (current_ >= 0) current_ = int(rows_.indexOf(current));
    notifyReset();
    emit currentChanged(current_);
}

TClientDataSet::RowScope::RowScope(const TClientDataSet* dataSet, int row)
    : dataSet_(const_cast<TClientDataSet*>(dataSet)), previous_(dataSet->overrideRow_) {
    dataSet_->overrideRow_ = row;
}

TClientDataSet::RowScope::~RowScope() { dataSet_->overrideRow_ = previous_; }

// --- files

void TClientDataSet::SaveToFile(const QString& fileName) const {
    QJsonArray fields;
    for (const auto& f : fields_) {
        QJsonObject o;
        o["name"] = f->FieldName;
        o["type"] = typeName(f->DataType);
        o["size"] = f->Size;
        o["label"] = f->DisplayLabel;
        o["calculated"] = f->FieldKind == fkCalculated;
        fields.append(o);
    }
    QJsonArray rows;
    for (const auto& r : rows_) {
        QJsonArray row;
        for (const QVariant& v : r) {
            if (!v.isValid() || v.isNull()) row.append(QJsonValue::Null);
            else if (v.typeId() == QMetaType::QDateTime) row.append(v.toDateTime().toString("yyyy-MM-dd HH:mm:ss"));
            else row.append(QJsonValue::fromVariant(v));
        }
        rows.append(row);
    }
    QJsonObject doc;
    doc["fields"] = fields;
    doc["rows"] = rows;
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
        throw EDatabaseError("无法写入文件 " + fileName + ": " + file.errorString());
    file.write(QJsonDocument(doc).toJson(QJsonDocument::Compact));
}

void TClientDataSet::LoadFromFile(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw EDatabaseError("无法读取文件 " + fileName + ": " + file.errorString());
    QJsonParseError error{};
    const QJsonDocument doc = QJsonDocument::fromJson(file.readAll(), &error);
    if (error.error != QJsonParseError::NoError || !doc.isObject())
        throw EDatabaseError("文件格式不正确: " + fileName);
    if (state_ == dsEdit || state_ == dsInsert) Cancel();
    clearFieldList();
    for (const auto& fv : doc.object()["fields"].toArray()) {
        const QJsonObject o = fv.toObject();
        pushField(std::make_unique<TField>(this, o["name"].toString(), typeFromName(o["type"].toString()),
                                           o["size"].toInt(), o["label"].toString(),
                                           o["calculated"].toBool() ? fkCalculated : fkData));
    }
    rows_.clear();
    for (const auto& rv : doc.object()["rows"].toArray()) {
        const QJsonArray a = rv.toArray();
        QVector<QVariant> row(int(fields_.size()));
        for (int i = 0; i < a.size() && i < row.size(); ++i) {
            if (a[i].isNull()) continue;
            row[i] = fields_[size_t(i)]->Convert(a[i].toVariant());
        }
        rows_.push_back(std::move(row));
    }
    BrowseLoadedRows(/*announceOpen=*/false);
}

// After rows were loaded: browse state on the first row, views and calculated fields refreshed.
void TClientDataSet::BrowseLoadedRows(bool announceOpen) {
    state_ = dsBrowse;
    emit structureChanged();
    RefreshCalcFields();
    current_ = rows_.isEmpty() ? -1 : 0;
    bof_ = true;
    eof_ = rows_.isEmpty();
    notifyReset();
    emit stateChanged();
    if (announceOpen && AfterOpen) AfterOpen(this);
    if (AfterScroll) AfterScroll(this);
    emit currentChanged(current_);
}


// ---------------------------------------------------------------- scoped helpers

ScopedSetTextSuspension::ScopedSetTextSuspension(TClientDataSet* dataSet) {
    for (int i = 0; i < dataSet->FieldCount(); ++i) {
        TField* field = dataSet->Fields(i);
        if (!field->OnSetText) continue;
        saved_.emplace_back(field, field->OnSetText);
        field->OnSetText = nullptr;
    }
}

ScopedSetTextSuspension::~ScopedSetTextSuspension() {
    for (auto& [field, setter] : saved_) field->OnSetText = std::move(setter);
}
