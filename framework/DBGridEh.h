#pragma once
// TDBGridEh: the data grid of every screen, a QTableView over a TClientDataSet.
//
// How screens use it
//   DBGridEh->SetDataSet(AdoQry_Main);                 // columns = the dataset's fields
//   TColumnEh* c = DBGridEh->ColumnByField("S0");
//   c->Title = "尺码|S";                                // "band|title": two header rows
//   c->Footer.ValueType = fvtSum; c->DisplayFormat = "0.00";
//   double total = DBGridEh->GetSumValue("SMONEY");    // the footer's sum
//   DBGridEh->OnGetCellParams = [this](TColumnEh* col, TCellParams& p) {
//       if (AdoQry_Main->FieldByName("t")->AsInteger() == 0) p.Background = QColor(0x80, 0xFF, 0xFF);
//   };
//   DBGridEh->SetFrozenCols(2);
//
// The grid follows the dataset's cursor and moves it when the user moves (posting a pending
// edit on leaving a row). While OnGetCellParams / OnDrawColumnCell run, the dataset reads the
// row being drawn, so FieldByName gives that row's values. Typing into a cell writes through
// the field's SetText (so OnSetText handlers run) inside the framework's guard.
// Columns are created from the dataset's fields when it is first set (or when its fields are
// replaced and AutoColumns is on); screens then adjust them.
#include <QColor>
#include <QFont>
#include <QTableView>
#include <functional>
#include <memory>
#include <vector>

#include "framework/DataSet.h"
#include "framework/Export.h"
#include "framework/Types.h"

class TDBGridEh;
class QLabel;

// A colour written the way the module's screens write colours: 0xBBGGRR (0xFFFF80 is a light
// cyan: blue FF, green FF, red 80).
inline QColor TColorToQColor(unsigned int bgr) { return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF); }

enum TFooterValueType { fvtNon, fvtSum, fvtCount, fvtAvg, fvtStaticText, fvtFieldValue };

struct QX_FRAMEWORK_EXPORT TColumnFooterEh {
    TFooterValueType ValueType = fvtNon;
    AnsiString DisplayFormat;  // empty: the column's DisplayFormat
    AnsiString Value;          // fvtStaticText
    Qt::Alignment Alignment = Qt::AlignRight | Qt::AlignVCenter;
};

class QX_FRAMEWORK_EXPORT TColumnEh {
public:
    TColumnEh(TDBGridEh* grid, const AnsiString& fieldName);
    AnsiString FieldName;
    AnsiString Title;  // "尺码|S0" draws "尺码" above a group of columns and "S0" below
    bool Visible = true;
    int Width = 80;
    AnsiString DisplayFormat;
    bool ReadOnly = false;
    int Tag = 0;
    Qt::Alignment Alignment = Qt::AlignLeft | Qt::AlignVCenter;
    QColor FontColor;  // invalid: the grid's
    QColor Color;      // cell background; invalid: the grid's
    bool HideDuplicates = false;  // a value equal to the row above is not shown
    bool BlankZero = false;       // a numeric 0 is shown empty
    TColumnFooterEh Footer;

    TDBGridEh* Grid() const { return grid_; }
    TField* Field() const;  // nullptr when the dataset has no such field
    int Index() const;      // position in the grid
    AnsiString TitleCaption() const;  // the part after "|"
    AnsiString TitleBand() const;     // the part before "|" ("" when none)
    // The footer's sum / count / average over all rows (fvtSum sums whatever ValueType says).
    double GetSumValue() const;
    AnsiString FooterText() const;

private:
    TDBGridEh* grid_;
};

// Cell appearance handed to OnGetCellParams, prefilled with the column's.
struct TCellParams {
    QFont Font;
    QColor Background;
    QColor FontColor;
    AnsiString Text;  // displayed text; set "" to blank a cell
    Qt::Alignment Alignment;
    int Row = 0;
    bool Selected = false;
};

class QX_FRAMEWORK_EXPORT TDBGridEh : public QTableView {
    Q_OBJECT
public:
    explicit TDBGridEh(QWidget* parent = nullptr, const QString& objectName = "DBGridEh");
    // The read-only, sortable grid that report, master-list and detail screens browse their
    // main dataset with.
    static TDBGridEh* CreateBrowseGrid(QWidget* parent, TClientDataSet* dataSet);
    ~TDBGridEh() override;

    void SetDataSet(TClientDataSet* dataSet);
    TClientDataSet* DataSet() const { return dataSet_; }

    // --- columns
    int ColumnCount() const { return int(columns_.size()); }
    TColumnEh* Columns(int index) const { return columns_.at(size_t(index)).get(); }
    // Adding or inserting columns makes them the grid's own (AutoColumns off): fields without a
    // column are then not shown.
    TColumnEh* AddColumn(const AnsiString& fieldName, const AnsiString& title = {}, int width = 80);
    TColumnEh* InsertColumn(int index, const AnsiString& fieldName, const AnsiString& title = {});
    void DeleteColumn(int index);
    void ClearColumns();
    TColumnEh* ColumnByField(const AnsiString& fieldName) const;  // case-insensitive; or nullptr
    TColumnEh* ColumnByTitle(const AnsiString& title) const;      // whole title; or nullptr
    // Rebuilds the columns from the dataset's visible fields (titles = DisplayLabel).
    void RebuildColumns();
    bool AutoColumns = true;  // rebuild when the dataset's fields are replaced
    // Call after changing column properties (titles, visibility, formats, footers).
    void ColumnsChanged();

    // --- footer row
    bool FooterRowVisible() const;
    void SetFooterRowVisible(bool on);
    double GetSumValue(const AnsiString& fieldName) const;  // 0 when there is no such column
    QStringList FooterTexts() const;                        // one per visible column

    // --- appearance and behaviour
    void SetFrozenCols(int count);
    int FrozenCols() const { return frozenCols_; }
    void SetReadOnly(bool readOnly);
    bool ReadOnly() const { return readOnly_; }
    void SetMultiSelect(bool on);
    QList<int> SelectedRows() const;
    // Copies the selected cells (or the current cell) as tab-separated text.
    void CopyToClipboard() const;

    // Types text into the current row's cell of a field, as a user would (OnSetText runs; a new
    // row is appended when the grid is empty). False when refused (the refusal was reported).
    bool SetFieldText(const AnsiString& fieldName, const AnsiString& text);
    // Titles, displayed rows and footers, tab-separated, one line each (scripts, logs).
    QString DumpText() const;
    // Visible columns with their titles, rows as displayed, footer texts (tests, export, scripts).
    QStringList VisibleTitles() const;
    QList<QStringList> DisplayedRows() const;
    QString DisplayedText(int row, int column) const;  // column: index in Columns

    // Ends an open cell editor, keeping (CommitEdit) or dropping (CancelEdit) what was typed.
    void CommitEdit();
    void CancelEdit();
    bool Editing() const { return state() == QAbstractItemView::EditingState; }
    using QTableView::edit;
    // Focus the cell of `fieldName` in the current row and start editing it.
    void EditField(const AnsiString& fieldName);
    TColumnEh* CurrentColumn() const;
    void SetCurrentColumn(TColumnEh* column);

    // --- hooks (screens set them; a screen's destructor clears them with ClearHooks, since they
    // call into the screen)
    void ClearHooks();
    std::function<void(TColumnEh* Column, TCellParams& Params)> OnGetCellParams;
    // Return true when the cell was painted completely.
    std::function<bool(QPainter* Painter, const QRect& Rect, TColumnEh* Column, const TCellParams& Params)>
        OnDrawColumnCell;
    // May this cell take typing? (besides the grid's and the column's ReadOnly)
    std::function<bool(int Row, TColumnEh* Column)> CanEditCell;
    std::function<void(TColumnEh* Column)> OnTitleClick;
    // Without an OnTitleClick, a title click sorts the rows by that column (again: descending)
    // when this is on (reports and details turn it on).
    bool SortOnTitleClick = false;
    void SortByColumn(TColumnEh* column);
    std::function<void(TColumnEh* Column)> OnCellButtonClick;  // the "..." of a column's cell
    std::function<void()> OnDblClick;
    // A key pressed in the grid (not while an editor is open). Set handled to keep it.
    std::function<void(QKeyEvent* Event, bool& Handled)> OnKeyDown;
    // Enter and Tab (and leaving an editor with them) call this instead of the default move;
    // entry screens move across the size cells with it. Backwards: Shift+Tab.
    std::function<void(bool Backwards)> OnAdvance;
    // Columns whose cells show an ellipsis button (double-click or Ctrl+Enter runs it too).
    QStringList ButtonFields;

signals:
    void columnsRebuilt();
    void titleClicked(int column);

protected:
    // "复制" and "导出…" (XLSX, CSV, PDF through qx::grid): every grid exports, whatever its screen.
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void updateGeometries() override;
    bool edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    friend class TColumnEh;
    friend class GridModel;
    friend class GridDelegate;
    friend class BandHeader;
    friend class FooterBar;
    void modelReset();
    void syncFromDataSet(int row);
    void applyColumnGeometry();
    void updateFrozenView();
    int visualColumnOf(const TColumnEh* column) const;
    QWidget* openEditor() const;

    TClientDataSet* dataSet_ = nullptr;
    std::vector<std::unique_ptr<TColumnEh>> columns_;
    class GridModel* model_ = nullptr;
    class BandHeader* header_ = nullptr;
    class FooterBar* footer_ = nullptr;
    QTableView* frozenView_ = nullptr;
    int frozenCols_ = 0;
    bool readOnly_ = false;
    bool footerVisible_ = false;
    bool syncing_ = false;
    int lastColumn_ = -1;  // the column of the current cell, kept across model resets
    QList<QMetaObject::Connection> dataSetConnections_;
};
