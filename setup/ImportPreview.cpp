#include "setup/ImportPreview.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QVBoxLayout>

using namespace qx::setup;

TImportPreview::TImportPreview(QWidget* Owner, const SheetSpec& spec, const QString& fileName,
                               const ScanResult& scan)
    : TFrm_Base_Dialog(Owner) {
    setObjectName("ImportPreview");
    SetCaption("导入预览 - " + QString(spec.name));
    Panel_Condition->hide();
    const int bad = int(scan.badRows.size());
    QString summary = "文件 " + QFileInfo(fileName).fileName() + " 共读取 " + QString::number(scan.rows.size()) +
                      " 行资料";
    summary += bad == 0 ? ",全部符合导入格式。"
                        : ",其中 " + QString::number(bad) + " 行有错误(见下表),修正后重新读取,或跳过错误行只导入其余 " +
                              QString::number(scan.goodRows()) + " 行。";
    Lab_Summary = new QLabel(summary);
    Lab_Summary->setObjectName("Lab_Summary");
    Lab_Summary->setWordWrap(true);
    MainLayout()->insertWidget(0, Lab_Summary);

    RowsGrid = new QTableWidget(this);
    RowsGrid->setObjectName("RowsGrid");
    const int shown = std::min<int>(int(scan.rows.size()), MaxShownRows);
    RowsGrid->setRowCount(shown);
    RowsGrid->setColumnCount(int(spec.columns.size()) + 1);
    QStringList titles{"行号"};
    for (const ColumnSpec& c : spec.columns) titles << c.title;
    RowsGrid->setHorizontalHeaderLabels(titles);
    RowsGrid->verticalHeader()->hide();
    RowsGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int r = 0; r < shown; ++r) {
        const bool isBad = scan.badRows.count(r) > 0;
        auto* number = new QTableWidgetItem(QString::number(scan.sheetRows[size_t(r)]));
        RowsGrid->setItem(r, 0, number);
        for (int c = 0; c < int(spec.columns.size()); ++c) {
            auto* item = new QTableWidgetItem(scan.rows[size_t(r)][c].left(200));
            if (isBad) item->setBackground(QColor(0xFF, 0xD0, 0xD0));
            RowsGrid->setItem(r, c + 1, item);
        }
        if (isBad) number->setBackground(QColor(0xFF, 0xD0, 0xD0));
    }
    RowsGrid->resizeColumnsToContents();
    MainLayout()->insertWidget(1, RowsGrid, 3);

    ProblemsGrid = new QTableWidget(this);
    ProblemsGrid->setObjectName("ProblemsGrid");
    ProblemsGrid->setColumnCount(3);
    ProblemsGrid->setHorizontalHeaderLabels({"行号", "列", "错误"});
    ProblemsGrid->setRowCount(int(scan.problems.size()));
    ProblemsGrid->verticalHeader()->hide();
    ProblemsGrid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    for (int i = 0; i < int(scan.problems.size()); ++i) {
        const Problem& p = scan.problems[size_t(i)];
        ProblemsGrid->setItem(i, 0, new QTableWidgetItem(QString::number(p.sheetRow)));
        ProblemsGrid->setItem(i, 1, new QTableWidgetItem(p.column));
        ProblemsGrid->setItem(i, 2, new QTableWidgetItem(p.reason));
    }
    ProblemsGrid->horizontalHeader()->setStretchLastSection(true);
    ProblemsGrid->setVisible(!scan.problems.empty());
    MainLayout()->insertWidget(2, ProblemsGrid, 1);

    btn_ok->setText("导入");
    btn_ok->setEnabled(bad == 0 && !scan.rows.empty());
    btn_skip = new QPushButton("跳过错误行,导入其余 " + QString::number(scan.goodRows()) + " 行", this);
    btn_skip->setObjectName("btn_skip");
    btn_skip->setEnabled(bad > 0 && scan.goodRows() > 0);
    btn_skip->setVisible(bad > 0);
    if (auto* row = qobject_cast<QBoxLayout*>(MainLayout()->itemAt(MainLayout()->count() - 1)->layout()))
        row->insertWidget(1, btn_skip);
    qx::connectGuarded(btn_skip, &QPushButton::clicked, this, [this] { btn_skipClick(btn_skip); });
    resize(1000, 600);
    FormCreate();
}

void TImportPreview::btn_okClick(QObject* Sender) {
    if (!btn_ok->isEnabled()) return;
    TFrm_Base_Dialog::btn_okClick(Sender);
    SkipBadRows = false;
    SetModalResult(mrOk);
}

void TImportPreview::btn_skipClick(QObject*) {
    if (!btn_skip->isEnabled()) return;
    SkipBadRows = true;
    SetModalResult(mrOk);
}
