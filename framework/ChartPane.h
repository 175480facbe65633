#pragma once
// The chart pane of a report (Qt Charts): what a ChartSpec draws from the grid's rows and its
// selection. The report base (TFrm_Base_Qry) keeps one beside its grid; tests and the print path
// use the same drawing.
//
// How it is used
//   TChartPane* pane = new TChartPane(splitter);
//   pane->SetSpec(ChartSpec(), ReportTitle);
//   pane->Redraw(DBGridEh);               // after the data or the selection changed
//   pane->SavePng(fileName);              // the chart alone as a picture
//   pane->Paint(painter, pageRect);       // on a printed page
#include <QImage>
#include <QList>
#include <QString>
#include <QStringList>
#include <QWidget>

#include "framework/Export.h"
#include "framework/ReportChart.h"

class TDBGridEh;
class QChart;
class QChartView;
class QPainter;
class QRectF;

namespace qx::chart {

struct Series {
    QString name;
    QList<double> values;  // one per category
};

struct ChartData {
    QStringList categories;
    QList<Series> series;
    QString note;  // what was left out ("" when everything is drawn)
    bool isEmpty() const { return categories.isEmpty() || series.isEmpty(); }
};

// What a chart description draws from the grid: its visible value columns, its rows and its selection.
QX_FRAMEWORK_EXPORT ChartData chartData(const ChartSpec& spec, const TDBGridEh* grid);
// A new chart of the data (the caller owns it).
QX_FRAMEWORK_EXPORT QChart* buildChart(const ChartSpec& spec, const ChartData& data, const QString& title);

}  // namespace qx::chart

class QX_FRAMEWORK_EXPORT TChartPane : public QWidget {
    Q_OBJECT
public:
    explicit TChartPane(QWidget* parent = nullptr);
    ~TChartPane() override;

    void SetSpec(const qx::chart::ChartSpec& spec, const QString& title);
    const qx::chart::ChartSpec& Spec() const { return spec_; }
    QString Title() const { return title_; }
    // Reads the grid again and draws the chart anew.
    void Redraw(const TDBGridEh* grid);
    const qx::chart::ChartData& Data() const { return data_; }
    QChartView* View() const { return view_; }

    // Draws the chart, as shown, scaled into `target` (pictures, printed pages, PDF).
    void Paint(QPainter& painter, const QRectF& target) const;
    QImage Render(const QSize& size) const;
    bool SavePng(const QString& fileName, const QSize& size = QSize(1200, 800)) const;

private:
    qx::chart::ChartSpec spec_;
    QString title_;
    qx::chart::ChartData data_;
    QChartView* view_;
};
