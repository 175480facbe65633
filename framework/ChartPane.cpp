#include "framework/ChartPane.h"

#include <QBarCategoryAxis>
#include <QBarSeries>
#include <QBarSet>
#include <QChart>
#include <QChartView>
#include <QGraphicsScene>
#include <QLineSeries>
#include <QPainter>
#include <QValueAxis>
#include <QVBoxLayout>
#include <algorithm>
#include <cmath>
#include <memory>

#include "framework/DBGridEh.h"

namespace qx::chart {
namespace {

bool numberField(const TField* f) {
    if (IsNumberType(f->DataType)) return true;
    if (f->DataType != ftUnknown) return false;
    // Typed by its values: the first value that is not NULL decides.
    const TClientDataSet* ds = f->DataSet();
    for (int r = 0; r < ds->RecordCount(); ++r)
        if (const QVariant v = ds->CellValue(r, f->Index()); !v.isNull()) return IsNumberValue(v);
    return false;
}

double valueAt(const TColumnEh* column, int row) {
    const TField* f = column->Field();
    return f ? f->DataSet()->CellValue(row, f->Index()).toDouble() : 0.0;
}

QString labelOf(const TClientDataSet* ds, const QString& labelField, int row) {
    const TField* f = ds->FindField(labelField);
    if (!f) return QString::number(row + 1);
    const QString text = f->FormatValue(ds->CellValue(row, f->Index()), f->DisplayFormat).trimmed();
    return text.isEmpty() ? QObject::tr("(空)") : text;
}

// The visible columns the chart plots, in the order its description lists them.
QList<TColumnEh*> valueColumns(const ChartSpec& spec, const TDBGridEh* grid) {
    QList<TColumnEh*> out;
    if (spec.valueFields.isEmpty()) {
        for (int i = 0; i < grid->ColumnCount(); ++i) {
            TColumnEh* c = grid->Columns(i);
            if (c->Visible && c->Field() && c->FieldName.compare(spec.labelField, Qt::CaseInsensitive) != 0 &&
                numberField(c->Field()))
                out << c;
        }
        return out;
    }
    for (const QString& field : spec.valueFields) {
        TColumnEh* c = grid->ColumnByField(field);
        if (c && c->Visible && c->Field()) out << c;
    }
    return out;
}

// Column titles as category or series names: the title under its band; where two plotted
// columns have the same title under different bands (day 15 of two months), the band in front.
QStringList columnNames(const QList<TColumnEh*>& columns) {
    QStringList captions;
    for (const TColumnEh* c : columns) captions << (c->TitleCaption().isEmpty() ? c->FieldName : c->TitleCaption());
    QStringList out;
    for (int i = 0; i < columns.size(); ++i) {
        const bool repeated = captions.count(captions[i]) > 1;
        out << (repeated && !columns[i]->TitleBand().isEmpty() ? columns[i]->TitleBand() + " " + captions[i] : captions[i]);
    }
    return out;
}

}  // namespace

ChartData chartData(const ChartSpec& spec, const TDBGridEh* grid) {
    ChartData d;
    const TClientDataSet* ds = grid ? grid->DataSet() : nullptr;
    if (spec.isNone() || !ds || !ds->Active() || ds->RecordCount() == 0) return d;
    const QList<TColumnEh*> columns = valueColumns(spec, grid);
    if (columns.isEmpty()) return d;
    const QList<int> selected = grid->SelectedRows();
    if (spec.axis == Axis::Columns) {
        // The value columns are the axis; every selected row is one series.
        d.categories = columnNames(columns);
        QList<int> rows = selected;
        if (rows.isEmpty()) rows << 0;
        if (rows.size() > spec.maxSeries) {
            d.note = QObject::tr("只画选中的前 %1 行").arg(spec.maxSeries);
            rows = rows.mid(0, spec.maxSeries);
        }
        for (int row : rows) {
            Series s{labelOf(ds, spec.labelField, row), {}};
            for (const TColumnEh* c : columns) s.values << valueAt(c, row);
            d.series << s;
        }
        return d;
    }
    // The rows are the axis (all shown, or the selected ones when several are); every value
    // column is one series.
    QList<int> rows;
    if (selected.size() > 1) rows = selected;
    else
        for (int r = 0; r < ds->RecordCount(); ++r) rows << r;
    if (rows.size() > spec.maxCategories) {
        d.note = QObject::tr("只画前 %1 行").arg(spec.maxCategories);
        rows = rows.mid(0, spec.maxCategories);
    }
    for (int row : rows) d.categories << labelOf(ds, spec.labelField, row);
    const QStringList names = columnNames(columns);
    for (int i = 0; i < columns.size(); ++i) {
        Series s{names[i], {}};
        for (int row : rows) s.values << valueAt(columns[i], row);
        d.series << s;
    }
    return d;
}

QChart* buildChart(const ChartSpec& spec, const ChartData& data, const QString& title) {
    auto* chart = new QChart;
    chart->setAnimationOptions(QChart::NoAnimation);
    chart->setTitle(data.note.isEmpty() ? title : title + "(" + data.note + ")");
    chart->legend()->setAlignment(Qt::AlignBottom);
    chart->setBackgroundRoundness(0);
    if (data.isEmpty()) {
        chart->legend()->hide();
        chart->setTitle(title.isEmpty() ? QObject::tr("没有可画的数据") : title + QObject::tr(" - 没有可画的数据"));
        return chart;
    }
    auto* axisX = new QBarCategoryAxis;
    axisX->append(data.categories);
    if (data.categories.size() > 12) axisX->setLabelsAngle(-60);
    auto* axisY = new QValueAxis;
    double low = 0, high = 0;
    for (const Series& s : data.series)
        for (double v : s.values) {
            low = std::min(low, v);
            high = std::max(high, v);
        }
    bool whole = true;
    for (const Series& s : data.series)
        for (double v : s.values) whole = whole && v == std::floor(v) && std::fabs(v) < 1e15;
    if (low == high) high = low + 1;
    axisY->setRange(low, high + (high - low) * 0.05);
    axisY->applyNiceNumbers();
    if (whole && axisY->max() - axisY->min() >= axisY->tickCount() - 1) axisY->setLabelFormat("%.0f");
    chart->addAxis(axisX, Qt::AlignBottom);
    chart->addAxis(axisY, Qt::AlignLeft);
    if (spec.kind == ChartKind::Lines) {
        for (const Series& s : data.series) {
            auto* line = new QLineSeries;
            line->setName(s.name);
            for (int i = 0; i < s.values.size(); ++i) line->append(i, s.values[i]);
            line->setPointsVisible(true);
            chart->addSeries(line);
            line->attachAxis(axisX);
            line->attachAxis(axisY);
        }
    } else {
        auto* bars = new QBarSeries;
        for (const Series& s : data.series) {
            auto* set = new QBarSet(s.name);
            for (double v : s.values) *set << v;
            bars->append(set);
        }
        chart->addSeries(bars);
        bars->attachAxis(axisX);
        bars->attachAxis(axisY);
    }
    if (data.series.size() == 1 && data.series.first().name.isEmpty()) chart->legend()->hide();
    return chart;
}

}  // namespace qx::chart

TChartPane::TChartPane(QWidget* parent) : QWidget(parent) {
    setObjectName("ChartPane");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    view_ = new QChartView(this);
    view_->setObjectName("ChartView");
    view_->setRenderHint(QPainter::Antialiasing);
    view_->setChart(qx::chart::buildChart(spec_, data_, title_));
    layout->addWidget(view_);
    setMinimumWidth(240);
}

TChartPane::~TChartPane() = default;

void TChartPane::SetSpec(const qx::chart::ChartSpec& spec, const QString& title) {
    spec_ = spec;
    title_ = title;
}

void TChartPane::Redraw(const TDBGridEh* grid) {
    data_ = qx::chart::chartData(spec_, grid);
    QChart* old = view_->chart();
    view_->setChart(qx::chart::buildChart(spec_, data_, title_));
    delete old;
}

void TChartPane::Paint(QPainter& painter, const QRectF& target) const {
    // A chart of its own, laid out at a screen size of the target's shape, then scaled: text
    // keeps its size relative to the chart whatever the resolution of the page.
    QGraphicsScene scene;
    QChart* chart = qx::chart::buildChart(spec_, data_, title_);
    scene.addItem(chart);
    const double width = 800;
    const double height = target.width() > 0 ? width * target.height() / target.width() : 600;
    chart->setGeometry(QRectF(0, 0, width, height));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    scene.render(&painter, target, QRectF(0, 0, width, height), Qt::KeepAspectRatio);
    painter.restore();
}

QImage TChartPane::Render(const QSize& size) const {
    QImage image(size, QImage::Format_ARGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    Paint(painter, QRectF(QPointF(0, 0), QSizeF(size)));
    painter.end();
    return image;
}

bool TChartPane::SavePng(const QString& fileName, const QSize& size) const {
    return Render(size).save(fileName, "PNG");
}
