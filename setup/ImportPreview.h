#pragma once
// Shows the rows read from a sheet and every bad row (row number, column, reason) before
// anything is written. "导入" is possible only when the sheet is clean; with bad rows the user
// may import the good rows only ("跳过错误行") or cancel.
#include <QLabel>
#include <QPushButton>
#include <QTableWidget>

#include "framework/Frm_Base.h"
#include "setup/ImportSheets.h"

class TImportPreview : public TFrm_Base_Dialog {
    Q_OBJECT
public:
    TImportPreview(QWidget* Owner, const qx::setup::SheetSpec& spec, const QString& fileName,
                   const qx::setup::ScanResult& scan);
    void btn_okClick(QObject* Sender) override;
    void btn_skipClick(QObject* Sender);
    // After a confirmed run: whether the bad rows are skipped.
    bool SkipBadRows = false;

    QLabel* Lab_Summary;
    QTableWidget* RowsGrid;
    QTableWidget* ProblemsGrid;
    QPushButton* btn_skip;

    // Rows shown at most in the grid of rows read (all problems are always listed).
    static constexpr int MaxShownRows = 2000;
};
