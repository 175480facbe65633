#include "period/PeriodCommon.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QProgressDialog>

#include "db/Progress.h"
#include "reports/Frmqxck255_1.h"

namespace qx::period {
namespace {
CancelProbe& probe() {
    static CancelProbe instance;
    return instance;
}
// The stock query's movement detail, unless a test installs another.
DetailFactory& detailFactory() {
    static DetailFactory instance = [](QWidget* owner) -> TFrm_Base_Detail* { return new TQXCK255_1(owner); };
    return instance;
}
constexpr int kRepaintEveryMs = 100;
}  // namespace

CancelProbe setCancelProbe(CancelProbe next) {
    CancelProbe previous = std::move(probe());
    probe() = std::move(next);
    return previous;
}

void runWithProgress(QWidget* parent, const QString& label, const std::function<void()>& work) {
    QProgressDialog window(label, QObject::tr("取消"), 0, 0, parent);
    window.setObjectName("ProgressWindow");
    window.setWindowModality(Qt::WindowModal);
    window.setMinimumDuration(500);
    window.setAutoReset(false);
    window.setAutoClose(false);
    QElapsedTimer sinceRepaint;
    sinceRepaint.start();
    bool cancelled = false;
    db::ProgressScope scope([&] {
        if (const auto& p = probe()) {
            cancelled = p();
        } else {
            if (sinceRepaint.elapsed() >= kRepaintEveryMs) {
                window.setValue(0);  // shows the window once the call has run half a second
                QCoreApplication::processEvents();
                sinceRepaint.restart();
            }
            cancelled = window.wasCanceled();
        }
        return !cancelled;
    });
    try {
        work();
    } catch (...) {
        if (cancelled) Abort();  // the user's choice: the batch was rolled back, nothing to report
        throw;
    }
}

QString sizeTitle(TClientDataSet* ds, const QString& prefix, int i) {
    TField* field = ds ? ds->FindField(prefix + QString::number(i)) : nullptr;
    const QString name = field ? field->AsString().trimmed() : QString();
    return name.isEmpty() ? QStringLiteral("-") : name;
}

void addColumns(TDBGridEh* grid, std::initializer_list<GridColumn> columns) {
    for (const GridColumn& c : columns) {
        TColumnEh* column = grid->AddColumn(c.field, c.title, c.width);
        column->Visible = c.shown;
        if (QString(c.field).endsWith("DATE", Qt::CaseInsensitive)) column->DisplayFormat = "yyyy-mm-dd";
    }
}

void copyDataSet(TClientDataSet* from, TClientDataSet* to) {
    to->ClearFields();
    for (int f = 0; f < from->FieldCount(); ++f) {
        const TField* field = from->Fields(f);
        TField* copy = to->AddField(field->FieldName, field->DataType, field->Size, field->DisplayLabel);
        copy->DisplayFormat = field->DisplayFormat;
    }
    to->CreateDataSet();
    to->DisableControls();
    for (int row = 0; row < from->RecordCount(); ++row) {
        to->Append();
        for (int f = 0; f < from->FieldCount(); ++f) to->Fields(f)->SetValue(from->CellValue(row, f));
        to->Post();
    }
    to->EnableControls();
    to->First();
}

void setStockMovementDetailFactory(DetailFactory factory) { detailFactory() = std::move(factory); }
const DetailFactory& stockMovementDetailFactory() { return detailFactory(); }

}  // namespace qx::period
