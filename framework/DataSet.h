#pragma once
// TClientDataSet / TField: an in-memory table with a current-record cursor, the model behind
// every grid of the module.
//
// How screens use it
//   opensql(AdoQry_Main, FuncNo, "SELECT ...");          // fields = the result's columns
//   for (ds->First(); !ds->Eof(); ds->Next())
//       total += ds->FieldByName("STOT")->AsInteger();  // FieldByName ignores case
//   ds->Edit(); ds->FieldByName("t")->SetAsInteger(0); ds->Post();
//   ds->Append(); ds->FieldByName("K_ID")->SetAsString("K01"); ds->Post();
//   f->OnSetText = [this](TField* f, const AnsiString& t) { SetFloatText(f, t); };
//   f->OnSetText = nullptr;                               // detached
//   { ScopedDisableControls frozen(ds); ... }             // views refresh once at the end
//
// Writing a field needs the edit or insert state (Edit/Append/Insert), as with any dataset;
// Post runs BeforePost (which may Abort() to refuse the row) then AfterPost. Moving the cursor
// posts a pending edit first. Calculated fields (FieldKind fkCalculated) are filled by OnCalcFields
// for every row after a load, after each change in the edit state and on Post.
#include <QAbstractTableModel>
#include <QHash>
#include <QDateTime>
#include <QObject>
#include <QString>
#include <QVariant>
#include <QVector>
#include <functional>
#include <memory>
#include <vector>

#include "framework/Export.h"
#include "framework/Types.h"

namespace qx::db {
struct ResultSet;
}

enum TFieldType { ftUnknown, ftString, ftSmallint, ftInteger, ftFloat, ftCurrency, ftBoolean, ftDateTime };
// Numbers: the field types that hold them, and a value that is one (integer or floating point).
QX_FRAMEWORK_EXPORT bool IsNumberType(TFieldType type);
QX_FRAMEWORK_EXPORT bool IsNumberValue(const QVariant& value);
enum TFieldKind { fkData, fkCalculated };
enum TDataSetState { dsInactive, dsBrowse, dsEdit, dsInsert, dsCalcFields };
enum TLocateOption { loCaseInsensitive = 1, loPartialKey = 2 };
using TLocateOptions = int;

class TClientDataSet;
using TDataSet = TClientDataSet;
class TField;

using TFieldSetTextEvent = std::function<void(TField* Sender, const AnsiString& Text)>;
using TDataSetNotifyEvent = std::function<void(TDataSet* DataSet)>;

class QX_FRAMEWORK_EXPORT TField {
public:
    TField(TClientDataSet* dataSet, const AnsiString& name, TFieldType type, int size,
           const AnsiString& label, TFieldKind kind);

    AnsiString FieldName;
    TFieldType DataType = ftString;
    int Size = 0;
    AnsiString DisplayLabel;  // the column title grids show (defaults to FieldName)
    TFieldKind FieldKind = fkData;
    bool Visible = true;
    bool ReadOnly = false;
    AnsiString DisplayFormat;  // "0.00", "#,##0.00", "yyyy-mm-dd" ...
    TFieldSetTextEvent OnSetText;

    TClientDataSet* DataSet() const { return dataSet_; }
    int Index() const;

    // Value of the current record (the record being drawn or calculated while that happens).
    QVariant Value() const;
    void SetValue(const QVariant& value);  // converted to DataType; needs edit/insert state
    bool IsNull() const;
    void Clear();

    AnsiString AsString() const;  // numbers in shortest form, dates "yyyy-MM-dd[ hh:mm:ss]"
    void SetAsString(const AnsiString& value);
    int AsInteger() const;  // null or non-numeric -> 0
    void SetAsInteger(int value);
    double AsFloat() const;
    void SetAsFloat(double value);
    QDateTime AsDateTime() const;
    void SetAsDateTime(const QDateTime& value);
    bool AsBoolean() const;
    void SetAsBoolean(bool value);

    // What an editor shows and what typing sets: SetText goes through OnSetText when one is
    // attached (the handler stores the value itself), else it sets AsString.
    AnsiString Text() const;
    void SetText(const AnsiString& text);
    // The value formatted with DisplayFormat (or the given format), as grids show it.
    AnsiString DisplayText() const;
    AnsiString FormatValue(const QVariant& value, const AnsiString& format) const;

    // Converts a value to this field's type (throws EDatabaseError when it cannot).
    QVariant Convert(const QVariant& value) const;

private:
    friend class TClientDataSet;
    TClientDataSet* dataSet_;
    int index_ = -1;  // position in the dataset (fields are only appended or replaced whole)
};

class QX_FRAMEWORK_EXPORT TClientDataSet : public QObject {
    Q_OBJECT
public:
    explicit TClientDataSet(QObject* owner = nullptr);
    ~TClientDataSet() override;

    // --- structure
    TField* AddField(const AnsiString& name, TFieldType type, int size = 0,
                     const AnsiString& label = {}, TFieldKind kind = fkData);
    void ClearFields();  // closes the dataset
    int FieldCount() const { return int(fields_.size()); }
    TField* Fields(int index) const { return fields_.at(size_t(index)).get(); }
    TField* FindField(const AnsiString& name) const;  // case-insensitive; nullptr when absent
    TField* FieldByName(const AnsiString& name) const;  // throws EDatabaseError when absent
    int FieldIndex(const AnsiString& name) const;       // -1 when absent
    QStringList FieldNames() const;

    // Opens with the defined fields and no rows.
    void CreateDataSet();
    // Replaces fields and rows by the result (column names become field names), first row current.
    void LoadFromResult(const qx::db::ResultSet& result);
    // Keeps the fields, drops every row.
    void EmptyDataSet();
    void Close();
    bool Active() const { return state_ != dsInactive; }
    void Open();  // activates the defined fields (no rows) when inactive

    // --- cursor
    void First();
    void Next();
    void Prior();
    void Last();
    void MoveBy(int distance);
    bool Eof() const { return eof_; }
    bool Bof() const { return bof_; }
    bool IsEmpty() const { return rows_.isEmpty(); }
    int RecordCount() const { return int(rows_.size()); }
    int RecNo() const { return current_ + 1; }  // 1-based; 0 when empty
    void SetRecNo(int recNo);
    // Finds the first row whose fields (";"-separated) equal the values (one QVariant, or a
    // QVariantList for several fields) and makes it current.
    bool Locate(const AnsiString& keyFields, const QVariant& keyValues, TLocateOptions options = 0);

    // --- editing
    TDataSetState State() const { return state_; }
    void Edit();
    void Append();  // new row at the end
    void Insert();  // new row before the current one
    void Post();
    void Cancel();
    void Delete();
    void CheckBrowseMode();  // posts a pending edit
    // Values written or rows deleted since the last load.
    bool Modified() const { return modified_; }

    // --- controls
    void DisableControls();
    void EnableControls();
    bool ControlsDisabled() const { return disableCount_ > 0; }

    // --- files: the fields and rows as JSON
    void SaveToFile(const QString& fileName) const;
    void LoadFromFile(const QString& fileName);

    // --- events
    TDataSetNotifyEvent BeforePost;
    TDataSetNotifyEvent AfterPost;
    TDataSetNotifyEvent BeforeInsert;
    TDataSetNotifyEvent AfterInsert;
    TDataSetNotifyEvent BeforeDelete;
    TDataSetNotifyEvent AfterDelete;
    TDataSetNotifyEvent BeforeScroll;
    TDataSetNotifyEvent AfterScroll;
    TDataSetNotifyEvent AfterOpen;
    TDataSetNotifyEvent OnCalcFields;

    // --- row access for views (0-based rows; no cursor movement, no events)
    QVariant CellValue(int row, int fieldIndex) const;
    int CurrentRow() const { return current_; }
    // Makes `row` the record fields read from, for drawing; restores on destruction.
    class QX_FRAMEWORK_EXPORT RowScope {
    public:
        RowScope(const TClientDataSet* dataSet, int row);
        ~RowScope();

    private:
        TClientDataSet* dataSet_;
        int previous_;
    };
    // Writes one cell without events or state checks (loaders filling computed columns).
    void SetCellValue(int row, int fieldIndex, const QVariant& value);
    // Reorders the rows by a field (text compares case-insensitively, numbers by value); the
    // current record stays current.
    void SortBy(const AnsiString& fieldName, bool ascending = true);
    // Recomputes calculated fields of every row.
    void RefreshCalcFields();

signals:
    void structureChanged();     // fields replaced: views rebuild their columns
    void dataReset();            // rows replaced
    void rowChanged(int row);    // values of one row changed
    void rowInserted(int row);
    void rowRemoved(int row);
    void currentChanged(int row);  // the cursor moved
    void stateChanged();
    void dataEdited();             // a row was posted, inserted or deleted (the data changed)

private:
    friend class TField;
    int activeRow() const;
    void InsertRowAt(int row);
    void BrowseLoadedRows(bool announceOpen);
    QVariant& cellRef(int fieldIndex);
    void setCurrent(int row, bool notify);
    void calcRow(int row);
    void requireEditable() const;
    void notifyRow(int row);
    void notifyReset();
    TField* pushField(std::unique_ptr<TField> field);
    void clearFieldList();

    std::vector<std::unique_ptr<TField>> fields_;
    QHash<QString, int> fieldsByName_;  // upper-cased names
    QList<QVector<QVariant>> rows_;
    QVector<QVariant> savedRow_;  // the row before Edit, for Cancel
    int current_ = -1;
    int overrideRow_ = -1;  // drawing or calculating
    TDataSetState state_ = dsInactive;
    bool eof_ = true;
    bool bof_ = true;
    bool modified_ = false;
    bool inCalc_ = false;
    int disableCount_ = 0;
    bool pendingReset_ = false;
};

// Controls frozen for a scope: views refresh once when it ends, also when it ends by an exception.
class QX_FRAMEWORK_EXPORT ScopedDisableControls {
public:
    explicit ScopedDisableControls(TClientDataSet* dataSet) : dataSet_(dataSet) { dataSet_->DisableControls(); }
    ~ScopedDisableControls() { dataSet_->EnableControls(); }
    ScopedDisableControls(const ScopedDisableControls&) = delete;
    ScopedDisableControls& operator=(const ScopedDisableControls&) = delete;

private:
    TClientDataSet* dataSet_;
};

// The text setters of every field of a dataset switched off for a scope and put back after it,
// so that values a setter writes itself do not run setters again.
class QX_FRAMEWORK_EXPORT ScopedSetTextSuspension {
public:
    explicit ScopedSetTextSuspension(TClientDataSet* dataSet);
    ~ScopedSetTextSuspension();
    ScopedSetTextSuspension(const ScopedSetTextSuspension&) = delete;
    ScopedSetTextSuspension& operator=(const ScopedSetTextSuspension&) = delete;

private:
    std::vector<std::pair<TField*, TFieldSetTextEvent>> saved_;
};
