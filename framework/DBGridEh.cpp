#include "framework/DBGridEh.h"

#include <cmath>
#include <QAbstractTableModel>
#include <QApplication>
#include <QClipboard>
#include <QHash>
#include <QHeaderView>
#include <QKeyEvent>
#include <QContextMenuEvent>
#include <QLineEdit>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>
#include <QStyledItemDelegate>
#include <set>

#include "framework/GridExport.h"
#include "framework/U_function.h"

// Titles of the columns every screen shows alike, for columns built from a statement's fields.
QString standardTitle(const QString& field) {
    static const QHash<QString, QString> titles = {
        {"NOID", "单号"},     {"K_ID", "款号"},       {"COL_ID", "色号"},     {"COL_NAME", "颜色"},
        {"WL_ID", "商品编号"}, {"WL_NAME", "品名"},    {"DW_NAME", "单位"},    {"STOT", "合计"},
        {"NOTE", "备注"},     {"BDATE", "开单日期"},  {"EDATE", "最后更改"},  {"CK_ID", "仓库号"},
        {"CK_NAME", "仓库"},  {"YW_NAME", "业务员"},  {"USER_NAME", "开单"},  {"SJ", "单价"},
        {"SMONEY", "金额"},   {"DJ", "成本价"},       {"MONEY", "成本额"},    {"KC", "库存"},
        {"PP_NAME", "品牌"},  {"CLASS_NAME", "类型"}, {"M_NAME", "尺码组"},   {"SK", "审批"},
        {"SDATE", "审批日期"}, {"JY_NAME", "结算方式"}, {"SEND_NAME", "进货方式"}, {"SEND_NO", "送货单号"},
    };
    return titles.value(field.toUpper());
}

// ---------------------------------------------------------------- the model of the grid

class GridModel : public QAbstractTableModel {
public:
    explicit GridModel(TDBGridEh* grid) : QAbstractTableModel(grid), grid_(grid) {}

    TClientDataSet* ds() const { return grid_->dataSet_; }

    // The rows the view knows: updated only through the model's own signals, so the view never
    // sees a count it was not told about (a dataset with disabled controls changes silently).
    int rowCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : shownRows_; }
    int columnCount(const QModelIndex& parent = {}) const override { return parent.isValid() ? 0 : shownColumns_; }

    // The text a cell shows before the cell hook sees it.
    QString baseText(int row, const TColumnEh* column) const {
        TField* f = column->Field();
        if (!f) return {};
        const QVariant v = ds()->CellValue(row, f->Index());
        if (column->BlankZero && IsNumberValue(v) && v.toDouble() == 0) return {};
        if (column->HideDuplicates && row > 0 && ds()->CellValue(row - 1, f->Index()) == v) return {};
        const QString format = column->DisplayFormat.isEmpty() ? f->DisplayFormat : column->DisplayFormat;
        return f->FormatValue(v, format);
    }

    TCellParams params(int row, TColumnEh* column) const {
        TCellParams p;
        p.Font = grid_->font();
        p.Background = column->Color;
        p.FontColor = column->FontColor;
        p.Text = baseText(row, column);
        p.Alignment = column->Alignment;
        p.Row = row;
        p.Selected = grid_->selectionModel() && grid_->selectionModel()->isRowSelected(row, {});
        if (TField* f = column->Field()) {
            const QVariant v = ds()->CellValue(row, f->Index());
            if (IsNumberValue(v) && column->Alignment == (Qt::AlignLeft | Qt::AlignVCenter))
                p.Alignment = Qt::AlignRight | Qt::AlignVCenter;
        }
        if (grid_->OnGetCellParams) {
            TClientDataSet::RowScope scope(ds(), row);
            try {
                grid_->OnGetCellParams(column, p);
            } catch (...) {
                // A drawing hook must not break painting; its errors show as plain cells.
            }
        }
        return p;
    }

    QVariant data(const QModelIndex& index, int role) const override {
        if (!ds() || !index.isValid() || index.row() >= ds()->RecordCount() || index.column() >= grid_->ColumnCount())
            return {};
        TColumnEh* column = grid_->Columns(index.column());
        switch (role) {
            case Qt::DisplayRole: return params(index.row(), column).Text;
            case Qt::EditRole: {
                TField* f = column->Field();
                return f ? f->FormatValue(ds()->CellValue(index.row(), f->Index()), {}) : QString();
            }
            case Qt::BackgroundRole: {
                QColor c = params(index.row(), column).Background;
                return c.isValid() ? QVariant(c) : QVariant();
            }
            case Qt::ForegroundRole: {
                QColor c = params(index.row(), column).FontColor;
                return c.isValid() ? QVariant(c) : QVariant();
            }
            case Qt::FontRole: {
                if (!grid_->OnGetCellParams) return {};
                return params(index.row(), column).Font;
            }
            case Qt::TextAlignmentRole: return int(params(index.row(), column).Alignment);
            default: return {};
        }
    }

    bool setData(const QModelIndex& index, const QVariant& value, int role) override {
        if (role != Qt::EditRole || !ds()) return false;
        if (index.column() >= grid_->ColumnCount() || index.row() >= ds()->RecordCount()) return false;
        TColumnEh* column = grid_->Columns(index.column());
        TField* f = column->Field();
        if (!f) return false;
        // A cell that takes no typing takes none from a paste or a script either.
        if (!(flags(index) & Qt::ItemIsEditable)) return false;
        // An editor closing with the text it was given changes nothing.
        if (value.toString() == f->FormatValue(ds()->CellValue(index.row(), f->Index()), {})) {
            lastEditFailed = false;
            return true;
        }
        // A text field takes no more than its size, whoever types into it (the editor cuts too).
        QString text = value.toString();
        if (f->DataType == ftString && f->Size > 0 && text.size() > f->Size) text.truncate(f->Size);
        inSetData = true;
        lastEditFailed = !qx::guard([&] {
            if (ds()->CurrentRow() != index.row()) ds()->SetRecNo(index.row() + 1);
            ds()->Edit();
            f->SetText(text);
        });
        inSetData = false;
        return !lastEditFailed;
    }

    QVariant headerData(int section, Qt::Orientation orientation, int role) const override {
        if (orientation == Qt::Vertical) {
            if (role == Qt::DisplayRole) return section + 1;
            return {};
        }
        if (section < 0 || section >= grid_->ColumnCount()) return {};
        TColumnEh* c = grid_->Columns(section);
        if (role == Qt::DisplayRole) return c->TitleCaption();
        if (role == Qt::TextAlignmentRole) return int(Qt::AlignCenter);
        return {};
    }

    Qt::ItemFlags flags(const QModelIndex& index) const override {
        Qt::ItemFlags fl = Qt::ItemIsSelectable | Qt::ItemIsEnabled;
        if (!index.isValid() || index.column() >= grid_->ColumnCount()) return fl;
        TColumnEh* c = grid_->Columns(index.column());
        TField* f = c->Field();
        if (!grid_->readOnly_ && !c->ReadOnly && f && !f->ReadOnly && f->FieldKind == fkData &&
            (!grid_->CanEditCell || grid_->CanEditCell(index.row(), c)))
            fl |= Qt::ItemIsEditable;
        return fl;
    }

    void reset() {
        beginResetModel();
        shownColumns_ = grid_->ColumnCount();
        shownRows_ = ds() ? ds()->RecordCount() : 0;
        endResetModel();
    }
    void rowChanged(int row) {
        if (row < 0 || row >= shownRows_) return;
        // Whole rows: footers, duplicates and hooks may depend on any cell.
        emit dataChanged(index(row, 0), index(row, std::max(0, columnCount() - 1)));
        if (row + 1 < rowCount()) emit dataChanged(index(row + 1, 0), index(row + 1, std::max(0, columnCount() - 1)));
    }
    void rowInserted(int row) {
        if (!ds() || ds()->RecordCount() != shownRows_ + 1 || row > shownRows_) {
            reset();
            return;
        }
        beginInsertRows({}, row, row);
        ++shownRows_;
        endInsertRows();
    }
    void rowRemoved(int row) {
        if (!ds() || ds()->RecordCount() != shownRows_ - 1 || row >= shownRows_) {
            reset();
            return;
        }
        beginRemoveRows({}, row, row);
        --shownRows_;
        endRemoveRows();
    }
    // Titles, visibility or formats changed: the same columns, no reset (the view keeps its
    // current cell and editor); added or removed columns: a reset.
    void columnsChanged() {
        const int n = grid_->ColumnCount();
        if (n != shownColumns_) {
            reset();
            return;
        }
        if (n == 0) return;
        emit headerDataChanged(Qt::Horizontal, 0, n - 1);
        if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, n - 1));
    }

    bool lastEditFailed = false;
    bool inSetData = false;  // a cell editor is writing through the field

private:
    int shownColumns_ = 0;
    int shownRows_ = 0;
    TDBGridEh* grid_;
};

// ---------------------------------------------------------------- two-row titles

class BandHeader : public QHeaderView {
public:
    explicit BandHeader(TDBGridEh* grid) : QHeaderView(Qt::Horizontal, grid), grid_(grid) {
        setSectionsClickable(true);
        setHighlightSections(false);
        setDefaultAlignment(Qt::AlignCenter);
    }

    bool hasBands() const {
        for (int i = 0; i < grid_->ColumnCount(); ++i)
            if (grid_->Columns(i)->Visible && !grid_->Columns(i)->TitleBand().isEmpty()) return true;
        return false;
    }

    QSize sizeHint() const override {
        QSize s = QHeaderView::sizeHint();
        const int line = fontMetrics().height() + 8;
        s.setHeight(hasBands() ? 2 * line : line);
        return s;
    }

protected:
    void paintSection(QPainter* painter, const QRect& rect, int logicalIndex) const override {
        if (logicalIndex < 0 || logicalIndex >= grid_->ColumnCount()) return;
        const TColumnEh* column = grid_->Columns(logicalIndex);
        const QString band = column->TitleBand();
        if (band.isEmpty()) {
            drawCell(painter, rect, column->TitleCaption());
            return;
        }
        const int half = rect.height() / 2;
        drawCell(painter, QRect(rect.left(), rect.top() + half, rect.width(), rect.height() - half),
                 column->TitleCaption());
        // The band spans the neighbouring visible columns with the same band text.
        int first = visualIndex(logicalIndex), last = first;
        auto bandAt = [&](int visual) {
            int logical = this->logicalIndex(visual);
            if (logical < 0 || isSectionHidden(logical)) return QString();
            return grid_->Columns(logical)->TitleBand();
        };
        while (first > 0 && (isSectionHidden(this->logicalIndex(first - 1)) || bandAt(first - 1) == band)) {
            if (isSectionHidden(this->logicalIndex(first - 1)) &&
                (first - 2 < 0 || bandAt(first - 2) != band))
                break;
            --first;
        }
        while (last + 1 < count() && (isSectionHidden(this->logicalIndex(last + 1)) || bandAt(last + 1) == band)) {
            if (isSectionHidden(this->logicalIndex(last + 1)) &&
                (last + 2 >= count() || bandAt(last + 2) != band))
                break;
            ++last;
        }
        const int left = sectionViewportPosition(this->logicalIndex(first));
        const int lastLogical = this->logicalIndex(last);
        const int right = sectionViewportPosition(lastLogical) + sectionSize(lastLogical);
        painter->save();
        painter->setClipRect(rect);
        drawCell(painter, QRect(left, rect.top(), right - left, half), band);
        painter->restore();
    }

private:
    void drawCell(QPainter* painter, const QRect& rect, const QString& text) const {
        painter->save();
        painter->fillRect(rect, palette().button());
        painter->setPen(palette().mid().color());
        painter->drawRect(rect.adjusted(0, 0, -1, -1));
        painter->setPen(palette().buttonText().color());
        painter->drawText(rect.adjusted(2, 0, -2, 0), Qt::AlignCenter, text);
        painter->restore();
    }
    TDBGridEh* grid_;
};

// ---------------------------------------------------------------- footer row

class FooterBar : public QWidget {
public:
    explicit FooterBar(TDBGridEh* grid) : QWidget(grid), grid_(grid) {}

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter p(this);
        p.fillRect(rect(), palette().window());
        QHeaderView* h = grid_->horizontalHeader();
        const int offset = grid_->verticalHeader()->isVisible() ? grid_->verticalHeader()->width() : 0;
        for (int i = 0; i < grid_->ColumnCount(); ++i) {
            if (h->isSectionHidden(i)) continue;
            const TColumnEh* c = grid_->Columns(i);
            QRect r(offset + h->sectionViewportPosition(i) + grid_->frameWidth(), 0, h->sectionSize(i), height());
            p.setPen(palette().mid().color());
            p.drawRect(r.adjusted(0, 0, -1, -1));
            const QString text = c->FooterText();
            if (text.isEmpty()) continue;
            p.setPen(palette().windowText().color());
            QFont f = p.font();
            f.setBold(true);
            p.setFont(f);
            p.drawText(r.adjusted(3, 0, -3, 0), int(c->Footer.Alignment), text);
        }
    }

private:
    TDBGridEh* grid_;
};

// ---------------------------------------------------------------- cells

class GridDelegate : public QStyledItemDelegate {
public:
    explicit GridDelegate(TDBGridEh* grid) : QStyledItemDelegate(grid), grid_(grid) {}

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        QWidget* editor = QStyledItemDelegate::createEditor(parent, option, index);
        // Text cells take no more than their column holds.
        if (auto* line = qobject_cast<QLineEdit*>(editor))
            if (TField* f = grid_->Columns(index.column())->Field(); f && f->DataType == ftString && f->Size > 0)
                line->setMaxLength(f->Size);
        return editor;
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        TColumnEh* column = grid_->Columns(index.column());
        if (grid_->OnDrawColumnCell && grid_->DataSet()) {
            TCellParams p = static_cast<GridModel*>(grid_->model())->params(index.row(), column);
            TClientDataSet::RowScope scope(grid_->DataSet(), index.row());
            bool done = false;
            try {
                done = grid_->OnDrawColumnCell(painter, option.rect, column, p);
            } catch (...) {
                done = false;
            }
            if (done) return;
        }
        QStyledItemDelegate::paint(painter, option, index);
        if (grid_->ButtonFields.contains(column->FieldName, Qt::CaseInsensitive) &&
            (option.state & QStyle::State_HasFocus)) {
            QRect b(option.rect.right() - 16, option.rect.top() + 1, 15, option.rect.height() - 2);
            painter->save();
            painter->fillRect(b, option.palette.button());
            painter->drawText(b, Qt::AlignCenter, "…");
            painter->restore();
        }
    }

private:
    TDBGridEh* grid_;
};

// ---------------------------------------------------------------- TColumnEh

TColumnEh::TColumnEh(TDBGridEh* grid, const AnsiString& fieldName) : FieldName(fieldName), Title(fieldName), grid_(grid) {}

TField* TColumnEh::Field() const {
    return grid_->DataSet() ? grid_->DataSet()->FindField(FieldName) : nullptr;
}

int TColumnEh::Index() const {
    for (int i = 0; i < grid_->ColumnCount(); ++i)
        if (grid_->Columns(i) == this) return i;
    return -1;
}

AnsiString TColumnEh::TitleCaption() const {
    const int bar = Title.indexOf('|');
    return bar < 0 ? Title : Title.mid(bar + 1);
}

AnsiString TColumnEh::TitleBand() const {
    const int bar = Title.indexOf('|');
    return bar < 0 ? QString() : Title.left(bar);
}

double TColumnEh::GetSumValue() const {
    TField* f = Field();
    TClientDataSet* ds = grid_->DataSet();
    if (!f || !ds) return 0;
    const int n = ds->RecordCount();
    if (Footer.ValueType == fvtCount) return n;
    double sum = 0;
    for (int r = 0; r < n; ++r) {
        const QVariant v = ds->CellValue(r, f->Index());
        bool ok = false;
        const double d = v.toDouble(&ok);
        if (ok) sum += d;
    }
    if (Footer.ValueType == fvtAvg) return n ? sum / n : 0;
    // Amounts keep at most four places; a sum of many of them carries binary noise in the last
    // digits (217478.39999999) that a footer must not show.
    if (std::fabs(sum) < 1e9) sum = std::round(sum * 1e6) / 1e6;
    return sum;
}

AnsiString TColumnEh::FooterText() const {
    switch (Footer.ValueType) {
        case fvtSum:
        case fvtAvg:
        case fvtCount: {
            const double v = GetSumValue();
            const QString format = !Footer.DisplayFormat.isEmpty() ? Footer.DisplayFormat : DisplayFormat;
            if (TField* f = Field()) return f->FormatValue(v, format);
            return FloatToStr(v);
        }
        case fvtStaticText: return Footer.Value;
        case fvtFieldValue: {
            TField* f = Field();
            return f ? f->DisplayText() : QString();
        }
        default: return {};
    }
}

// ---------------------------------------------------------------- TDBGridEh

TDBGridEh::TDBGridEh(QWidget* parent, const QString& objectName) : QTableView(parent) {
    setObjectName(objectName);
    model_ = new GridModel(this);
    header_ = new BandHeader(this);
    setHorizontalHeader(header_);
    setModel(model_);
    setItemDelegate(new GridDelegate(this));
    footer_ = new FooterBar(this);
    footer_->hide();
    setSelectionBehavior(QAbstractItemView::SelectItems);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::AnyKeyPressed | QAbstractItemView::EditKeyPressed |
                    QAbstractItemView::SelectedClicked);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 8);
    verticalHeader()->setFixedWidth(36);
    setAlternatingRowColors(false);
    connect(header_, &QHeaderView::sectionClicked, this, [this](int section) {
        emit titleClicked(section);
        if (section < 0 || section >= ColumnCount()) return;
        TColumnEh* c = Columns(section);
        if (OnTitleClick) qx::guard([&] { OnTitleClick(c); });
        else if (SortOnTitleClick) qx::guard([&] { SortByColumn(c); });
    });
    connect(header_, &QHeaderView::sectionResized, this, [this](int logical, int, int size) {
        if (logical >= 0 && logical < ColumnCount()) Columns(logical)->Width = size;
        footer_->update();
        if (frozenView_ && logical < frozenCols_) {
            frozenView_->setColumnWidth(logical, size);
            updateFrozenView();
        }
    });
}

TDBGridEh::~TDBGridEh() { ClearHooks(); }

void TDBGridEh::ClearHooks() {
    OnGetCellParams = nullptr;
    OnDrawColumnCell = nullptr;
    OnTitleClick = nullptr;
    OnCellButtonClick = nullptr;
    OnDblClick = nullptr;
    OnKeyDown = nullptr;
    OnAdvance = nullptr;
    CanEditCell = nullptr;
}

void TDBGridEh::SetDataSet(TClientDataSet* dataSet) {
    for (const auto& c : dataSetConnections_) disconnect(c);
    dataSetConnections_.clear();
    dataSet_ = dataSet;
    if (dataSet_) {
        dataSetConnections_ << connect(dataSet_, &TClientDataSet::structureChanged, this, [this] {
            if (AutoColumns) RebuildColumns();
            else modelReset();
        });
        dataSetConnections_ << connect(dataSet_, &TClientDataSet::dataReset, this, [this] { modelReset(); });
        dataSetConnections_ << connect(dataSet_, &TClientDataSet::rowChanged, this, [this](int row) {
            // The row changed under an open editor (a pick list, a script, a setter writing other
            // cells): the dataset is the truth, the editor's old text must not be written back.
            if (!model_->inSetData && Editing() && currentIndex().row() == row) CancelEdit();
            model_->rowChanged(row);
            footer_->update();
        });
        dataSetConnections_ << connect(dataSet_, &TClientDataSet::rowInserted, this, [this](int row) {
            model_->rowInserted(row);
            footer_->update();
        });
        dataSetConnections_ << connect(dataSet_, &TClientDataSet::rowRemoved, this, [this](int row) {
            if (Editing() && currentIndex().row() == row) CancelEdit();
            model_->rowRemoved(row);
            footer_->update();
        });
        dataSetConnections_ << connect(dataSet_, &TClientDataSet::currentChanged, this,
                                       [this](int row) { syncFromDataSet(row); });
        dataSetConnections_ << connect(dataSet_, &QObject::destroyed, this, [this] {
            dataSet_ = nullptr;
            model_->reset();
        });
    }
    if (columns_.empty() || AutoColumns) RebuildColumns();
    else modelReset();
}

void TDBGridEh::modelReset() {
    model_->reset();
    applyColumnGeometry();
    footer_->update();
    if (dataSet_) syncFromDataSet(dataSet_->CurrentRow());
}

void TDBGridEh::syncFromDataSet(int row) {
    if (syncing_ || !dataSet_) return;
    syncing_ = true;
    if (row >= 0 && row < model_->rowCount()) {
        int col = currentIndex().isValid() ? currentIndex().column() : lastColumn_;
        if (col < 0 || col >= ColumnCount() || isColumnHidden(col)) {
            col = 0;
            while (col < ColumnCount() && isColumnHidden(col)) ++col;
        }
        if (col < ColumnCount()) {
            const QModelIndex target = model_->index(row, col);
            if (currentIndex() != target) {
                selectionModel()->setCurrentIndex(target, QItemSelectionModel::ClearAndSelect);
            }
            scrollTo(target);
        }
    }
    syncing_ = false;
    viewport()->update();
    footer_->update();
}

void TDBGridEh::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QTableView::currentChanged(current, previous);
    if (current.isValid()) lastColumn_ = current.column();
    if (syncing_ || !dataSet_ || !current.isValid()) return;
    if (current.row() != dataSet_->CurrentRow()) {
        syncing_ = true;
        const bool moved = qx::guard([&] { dataSet_->SetRecNo(current.row() + 1); });
        syncing_ = false;
        if (!moved) {
            // The row could not be left (its BeforePost refused): stay on it.
            const int row = dataSet_->CurrentRow();
            QMetaObject::invokeMethod(this, [this, row] { syncFromDataSet(row); }, Qt::QueuedConnection);
        }
    }
}

TColumnEh* TDBGridEh::AddColumn(const AnsiString& fieldName, const AnsiString& title, int width) {
    AutoColumns = false;
    auto c = std::make_unique<TColumnEh>(this, fieldName);
    if (!title.isEmpty()) c->Title = title;
    else if (dataSet_)
        if (TField* f = dataSet_->FindField(fieldName)) c->Title = f->DisplayLabel;
    c->Width = width;
    columns_.push_back(std::move(c));
    ColumnsChanged();
    return columns_.back().get();
}

TColumnEh* TDBGridEh::InsertColumn(int index, const AnsiString& fieldName, const AnsiString& title) {
    AutoColumns = false;
    auto c = std::make_unique<TColumnEh>(this, fieldName);
    if (!title.isEmpty()) c->Title = title;
    index = std::clamp(index, 0, ColumnCount());
    columns_.insert(columns_.begin() + index, std::move(c));
    ColumnsChanged();
    return columns_[size_t(index)].get();
}

void TDBGridEh::DeleteColumn(int index) {
    if (index < 0 || index >= ColumnCount()) return;
    columns_.erase(columns_.begin() + index);
    ColumnsChanged();
}

void TDBGridEh::ClearColumns() {
    columns_.clear();
    ColumnsChanged();
}

TColumnEh* TDBGridEh::ColumnByField(const AnsiString& fieldName) const {
    for (const auto& c : columns_)
        if (c->FieldName.compare(fieldName, Qt::CaseInsensitive) == 0) return c.get();
    return nullptr;
}

TColumnEh* TDBGridEh::ColumnByTitle(const AnsiString& title) const {
    for (const auto& c : columns_)
        if (c->Title == title || c->TitleCaption() == title) return c.get();
    return nullptr;
}

void TDBGridEh::RebuildColumns() {
    columns_.clear();
    if (dataSet_) {
        for (int i = 0; i < dataSet_->FieldCount(); ++i) {
            TField* f = dataSet_->Fields(i);
            auto c = std::make_unique<TColumnEh>(this, f->FieldName);
            c->Title = f->DisplayLabel;
            if (f->DisplayLabel == f->FieldName && !standardTitle(f->FieldName).isEmpty())
                c->Title = standardTitle(f->FieldName);
            c->Visible = f->Visible;
            c->DisplayFormat = f->DisplayFormat;
            c->ReadOnly = f->ReadOnly;
            const int chars = f->DataType == ftString && f->Size > 0 ? std::min(f->Size, 30) : 10;
            c->Width = std::max(fontMetrics().horizontalAdvance(QString(chars, 'x')),
                                fontMetrics().horizontalAdvance(c->TitleCaption()) + 12);
            columns_.push_back(std::move(c));
        }
    }
    ColumnsChanged();
    emit columnsRebuilt();
}

void TDBGridEh::ColumnsChanged() {
    model_->columnsChanged();
    applyColumnGeometry();
    bool anyFooter = false;
    for (const auto& c : columns_) anyFooter = anyFooter || c->Footer.ValueType != fvtNon;
    if (anyFooter && !footerVisible_) SetFooterRowVisible(true);
    header_->updateGeometry();
    updateGeometries();
    footer_->update();
    header_->viewport()->update();
    if (dataSet_) syncFromDataSet(dataSet_->CurrentRow());
}

void TDBGridEh::applyColumnGeometry() {
    for (int i = 0; i < ColumnCount(); ++i) {
        TColumnEh* c = Columns(i);
        setColumnHidden(i, !c->Visible);
        if (c->Visible && c->Width > 0 && columnWidth(i) != c->Width) {
            const int w = c->Width;
            setColumnWidth(i, w);
            c->Width = w;
        }
    }
    updateFrozenView();
}

bool TDBGridEh::FooterRowVisible() const { return footerVisible_; }

void TDBGridEh::SetFooterRowVisible(bool on) {
    footerVisible_ = on;
    footer_->setVisible(on);
    updateGeometries();
}

double TDBGridEh::GetSumValue(const AnsiString& fieldName) const {
    TColumnEh* c = ColumnByField(fieldName);
    return c ? c->GetSumValue() : 0;
}

QStringList TDBGridEh::FooterTexts() const {
    QStringList out;
    for (const auto& c : columns_)
        if (c->Visible) out << c->FooterText();
    return out;
}

void TDBGridEh::updateGeometries() {
    const int footerHeight = footerVisible_ ? fontMetrics().height() + 8 : 0;
    setViewportMargins(verticalHeader()->isVisible() ? verticalHeader()->width() : 0,
                       header_->isVisible() ? header_->sizeHint().height() : 0, 0, footerHeight);
    QTableView::updateGeometries();
    if (footerVisible_) {
        const QRect vg = viewport()->geometry();
        footer_->setGeometry(frameWidth(), vg.bottom() + 1, width() - 2 * frameWidth(), footerHeight);
        footer_->raise();
    }
    if (header_->height() != header_->sizeHint().height()) {
        header_->setFixedHeight(header_->sizeHint().height());
    }
}

void TDBGridEh::resizeEvent(QResizeEvent* event) {
    QTableView::resizeEvent(event);
    updateGeometries();
    updateFrozenView();
}

void TDBGridEh::scrollContentsBy(int dx, int dy) {
    QTableView::scrollContentsBy(dx, dy);
    footer_->update();
}

// --- frozen columns: an overlay view showing the first columns, scrolling vertically in step.

void TDBGridEh::SetFrozenCols(int count) {
    frozenCols_ = std::max(0, count);
    if (frozenCols_ == 0) {
        delete frozenView_;
        frozenView_ = nullptr;
        return;
    }
    if (!frozenView_) {
        frozenView_ = new QTableView(this);
        frozenView_->setObjectName(objectName() + "_Frozen");
        frozenView_->setModel(model_);
        frozenView_->setSelectionModel(selectionModel());
        frozenView_->setItemDelegate(itemDelegate());
        frozenView_->setFocusPolicy(Qt::NoFocus);
        frozenView_->verticalHeader()->hide();
        frozenView_->setHorizontalHeader(new BandHeader(this));
        frozenView_->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
        frozenView_->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        frozenView_->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        frozenView_->setEditTriggers(editTriggers());
        frozenView_->setStyleSheet("QTableView { border: none; }");
        connect(frozenView_->verticalScrollBar(), &QAbstractSlider::valueChanged, verticalScrollBar(),
                &QAbstractSlider::setValue);
        connect(verticalScrollBar(), &QAbstractSlider::valueChanged, frozenView_->verticalScrollBar(),
                &QAbstractSlider::setValue);
        viewport()->stackUnder(frozenView_);
        frozenView_->show();
    }
    updateFrozenView();
}

void TDBGridEh::updateFrozenView() {
    if (!frozenView_) return;
    int width = 0;
    for (int i = 0; i < ColumnCount(); ++i) {
        const bool frozen = i < frozenCols_;
        frozenView_->setColumnHidden(i, !frozen || isColumnHidden(i));
        if (frozen && !isColumnHidden(i)) {
            frozenView_->setColumnWidth(i, columnWidth(i));
            width += columnWidth(i);
        }
    }
    for (int r = 0; r < model_->rowCount(); ++r) frozenView_->setRowHeight(r, rowHeight(r));
    frozenView_->horizontalHeader()->setFixedHeight(header_->height());
    const int left = frameWidth() + (verticalHeader()->isVisible() ? verticalHeader()->width() : 0);
    frozenView_->setGeometry(left, frameWidth(), width, viewport()->height() + header_->height());
}

void TDBGridEh::SortByColumn(TColumnEh* column) {
    if (!column || !dataSet_ || !column->Field()) return;
    const bool ascending = property("qx_sort").toString() != column->FieldName + "+";
    setProperty("qx_sort", column->FieldName + (ascending ? "+" : "-"));
    dataSet_->SortBy(column->FieldName, ascending);
    header_->setSortIndicatorShown(true);
    header_->setSortIndicator(column->Index(), ascending ? Qt::AscendingOrder : Qt::DescendingOrder);
}

void TDBGridEh::SetReadOnly(bool readOnly) {
    readOnly_ = readOnly;
    model_->columnsChanged();
    if (dataSet_) syncFromDataSet(dataSet_->CurrentRow());
}

void TDBGridEh::SetMultiSelect(bool on) {
    setSelectionMode(on ? QAbstractItemView::ExtendedSelection : QAbstractItemView::SingleSelection);
    setSelectionBehavior(on ? QAbstractItemView::SelectRows : QAbstractItemView::SelectItems);
}

QList<int> TDBGridEh::SelectedRows() const {
    std::set<int> rows;
    for (const QModelIndex& i : selectionModel()->selectedIndexes()) rows.insert(i.row());
    if (rows.empty() && currentIndex().isValid()) rows.insert(currentIndex().row());
    return QList<int>(rows.begin(), rows.end());
}

void TDBGridEh::CopyToClipboard() const {
    QModelIndexList indexes = selectionModel()->selectedIndexes();
    if (indexes.isEmpty() && currentIndex().isValid()) indexes << currentIndex();
    std::sort(indexes.begin(), indexes.end(), [](const QModelIndex& a, const QModelIndex& b) {
        return a.row() != b.row() ? a.row() < b.row() : a.column() < b.column();
    });
    QString text;
    int row = -1;
    for (const QModelIndex& i : indexes) {
        if (isColumnHidden(i.column())) continue;
        if (row >= 0) text += (i.row() != row) ? "\n" : "\t";
        row = i.row();
        text += model_->data(i, Qt::DisplayRole).toString();
    }
    QApplication::clipboard()->setText(text);
}

void TDBGridEh::contextMenuEvent(QContextMenuEvent* event) {
    QMenu menu(this);
    menu.addAction(tr("复制"), this, [this] { CopyToClipboard(); });
    menu.addAction(tr("导出…"), this, [this] { qx::guard([this] { qx::grid::exportWithDialog(this, window()->windowTitle()); }); });
    menu.exec(event->globalPos());
}

QStringList TDBGridEh::VisibleTitles() const {
    QStringList out;
    for (const auto& c : columns_)
        if (c->Visible) out << c->Title;
    return out;
}

QString TDBGridEh::DisplayedText(int row, int column) const {
    return model_->data(model_->index(row, column), Qt::DisplayRole).toString();
}

QList<QStringList> TDBGridEh::DisplayedRows() const {
    QList<QStringList> rows;
    for (int r = 0; r < model_->rowCount(); ++r) {
        QStringList row;
        for (int c = 0; c < ColumnCount(); ++c)
            if (Columns(c)->Visible) row << DisplayedText(r, c);
        rows << row;
    }
    return rows;
}

TColumnEh* TDBGridEh::CurrentColumn() const {
    const QModelIndex i = currentIndex();
    return i.isValid() && i.column() < ColumnCount() ? Columns(i.column()) : nullptr;
}

void TDBGridEh::SetCurrentColumn(TColumnEh* column) {
    if (!column || !dataSet_ || dataSet_->CurrentRow() < 0) return;
    setCurrentIndex(model_->index(dataSet_->CurrentRow(), column->Index()));
}

bool TDBGridEh::SetFieldText(const AnsiString& fieldName, const AnsiString& text) {
    TColumnEh* c = ColumnByField(fieldName);
    if (!dataSet_) return false;
    if (!c) {
        // A field without a column still takes text the way a cell would.
        TField* f = dataSet_->FindField(fieldName);
        if (!f) return false;
        return qx::guard([&] {
            dataSet_->Edit();
            f->SetText(text);
        });
    }
    if (dataSet_->CurrentRow() < 0) qx::guard([&] { dataSet_->Append(); });
    return model_->setData(model_->index(dataSet_->CurrentRow(), c->Index()), text, Qt::EditRole);
}

QString TDBGridEh::DumpText() const {
    QStringList lines;
    lines << VisibleTitles().join('\t');
    for (const QStringList& row : DisplayedRows()) lines << row.join('\t');
    if (footerVisible_) lines << FooterTexts().join('\t');
    return lines.join('\n') + '\n';
}

QWidget* TDBGridEh::openEditor() const {
    // Cell editors live on the viewport; the one shown is the open one.
    for (QWidget* w : viewport()->findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly))
        if (w->isVisible()) return w;
    return nullptr;
}

void TDBGridEh::CommitEdit() {
    if (state() != QAbstractItemView::EditingState) return;
    if (QWidget* editor = openEditor()) {
        commitData(editor);
        QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    }
}

void TDBGridEh::CancelEdit() {
    if (state() != QAbstractItemView::EditingState) return;
    if (QWidget* editor = openEditor()) QTableView::closeEditor(editor, QAbstractItemDelegate::RevertModelCache);
}

void TDBGridEh::EditField(const AnsiString& fieldName) {
    TColumnEh* c = ColumnByField(fieldName);
    if (!c || !dataSet_ || dataSet_->CurrentRow() < 0) return;
    const QModelIndex i = model_->index(dataSet_->CurrentRow(), c->Index());
    setCurrentIndex(i);
    setFocus();
    QTableView::edit(i);
}

bool TDBGridEh::edit(const QModelIndex& index, EditTrigger trigger, QEvent* event) {
    return QTableView::edit(index, trigger, event);
}

void TDBGridEh::closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) {
    const bool advance = OnAdvance && (hint == QAbstractItemDelegate::SubmitModelCache ||
                                       hint == QAbstractItemDelegate::EditNextItem ||
                                       hint == QAbstractItemDelegate::EditPreviousItem);
    if (!advance) {
        QTableView::closeEditor(editor, hint);
        return;
    }
    QTableView::closeEditor(editor, QAbstractItemDelegate::NoHint);
    if (model_->lastEditFailed) {
        model_->lastEditFailed = false;
        return;
    }
    const bool backwards = hint == QAbstractItemDelegate::EditPreviousItem;
    QMetaObject::invokeMethod(this, [this, backwards] { qx::guard([&] { OnAdvance(backwards); }); },
                              Qt::QueuedConnection);
}

int TDBGridEh::visualColumnOf(const TColumnEh* column) const { return header_->visualIndex(column->Index()); }

void TDBGridEh::keyPressEvent(QKeyEvent* event) {
    if (OnKeyDown) {
        bool handled = false;
        qx::guard([&] { OnKeyDown(event, handled); });
        if (handled) return;
    }
    if (event->matches(QKeySequence::Copy)) {
        CopyToClipboard();
        return;
    }
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (OnAdvance && state() != QAbstractItemView::EditingState &&
        ((enter && !(event->modifiers() & Qt::ControlModifier)) || event->key() == Qt::Key_Tab ||
         event->key() == Qt::Key_Backtab)) {
        const bool backwards = event->key() == Qt::Key_Backtab;
        qx::guard([&] { OnAdvance(backwards); });
        return;
    }
    if (enter && (event->modifiers() & Qt::ControlModifier)) {
        if (TColumnEh* c = CurrentColumn();
            c && ButtonFields.contains(c->FieldName, Qt::CaseInsensitive) && OnCellButtonClick) {
            qx::guard([&] { OnCellButtonClick(c); });
            return;
        }
    }
    QTableView::keyPressEvent(event);
}

void TDBGridEh::mouseDoubleClickEvent(QMouseEvent* event) {
    const QModelIndex i = indexAt(event->pos());
    if (i.isValid()) {
        TColumnEh* c = Columns(i.column());
        if (ButtonFields.contains(c->FieldName, Qt::CaseInsensitive) && OnCellButtonClick) {
            setCurrentIndex(i);
            qx::guard([&] { OnCellButtonClick(c); });
            return;
        }
    }
    if (OnDblClick) {
        qx::guard([&] { OnDblClick(); });
        return;
    }
    QTableView::mouseDoubleClickEvent(event);
}

TDBGridEh* TDBGridEh::CreateBrowseGrid(QWidget* parent, TClientDataSet* dataSet) {
    auto* grid = new TDBGridEh(parent, "DBGridEh");
    grid->SetReadOnly(true);
    grid->SortOnTitleClick = true;
    grid->SetDataSet(dataSet);
    return grid;
}
