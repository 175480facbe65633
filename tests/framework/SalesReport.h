#pragma once
// A small report on a real SQLite database for the print, export and chart tests: sales by
// article with two-level column titles ("本期入库数量|进货"), sum footers, a cost column hidden
// unless ShowCost, and a chart described as the test asks.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QTemporaryDir>

#include "db/Database.h"
#include "framework/DBGridEh.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/GridExport.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace qx::test {

class TSalesReport : public TFrm_Base_Qry {
public:
    explicit TSalesReport(QWidget* owner = nullptr) : TFrm_Base_Qry(owner) {
        SetCaption("商品进销汇总");
        SumFields = QStringList{"RK_JH", "RK_XT", "CK_XS", "COST"};
        CostFields = QStringList{"COST"};
        ShowCost = false;
    }
    qx::chart::ChartSpec Spec;
    qx::chart::ChartSpec ChartSpec() const override { return Spec; }

    // Runs the report for the articles whose group is `group` ("" = all), as a condition
    // dialog would, and titles the columns afterwards (as reports do once their data is open).
    void Run(const QString& group = {}) {
        Lab_Condition->setText(group.isEmpty() ? "全部商品" : "商品组:" + group);
        QrySql = "SELECT ITEM, RK_JH, RK_XT, CK_XS, COST, NOTE FROM T_SALES" +
                 (group.isEmpty() ? QString() : " WHERE GRP=" + QuotedStr(group)) + " ORDER BY SEQ";
        GetData();
        const QList<QPair<QString, QString>> titles = {{"ITEM", "品名"},
                                                       {"RK_JH", "本期入库数量|进货"},
                                                       {"RK_XT", "本期入库数量|销售退"},
                                                       {"CK_XS", "本期出库|销售"},
                                                       {"COST", "成本"},
                                                       {"NOTE", "备注"}};
        for (const auto& [field, title] : titles)
            if (TColumnEh* c = DBGridEh->ColumnByField(field)) c->Title = title;
        DBGridEh->ColumnByField("CK_XS")->DisplayFormat = "#,##0.00";
        DBGridEh->ColumnsChanged();
    }
};

// The shop database with the sales table, the message sink scripted, dialogs answered by the
// test (the file an export writes; what a preview or print was asked to show).
class SalesReportTest : public ::testing::Test {
protected:
    void SetUp() override {
        ResetGlobals();
        db = qx::db::openSqlite(dir.filePath("shop.db").toStdString(), true);
        qx::dataop::setDatabase(db);
        ExecSql("901", "", "Add",
                "CREATE TABLE T_SALES (SEQ INT, GRP VARCHAR(10), ITEM VARCHAR(40), RK_JH INT, RK_XT INT, "
                "CK_XS FLOAT, COST FLOAT, NOTE TEXT);"
                "INSERT INTO T_SALES VALUES (1,'A','衬衫',10,2,1234.5,60,'O''Neil''s');"
                "INSERT INTO T_SALES VALUES (2,'A','长裤',20,0,7.25,80,'=SUM(A1:A9)');"
                "INSERT INTO T_SALES VALUES (3,'B','外套',5,1,0,30,NULL);",
                65535, false, true, false, true);
        previousHandler = qx::grid::setDialogHandler(
            [this](qx::grid::Dialog dialog, const TDBGridEh* grid, const QString& title,
                   const qx::grid::PrintOptions& options) {
                asked.push_back({dialog, grid, title, options});
                return answer;
            });
    }
    void TearDown() override {
        qx::grid::setDialogHandler(previousHandler);
        delete report;
        qx::dataop::setDatabase(nullptr);
        ResetGlobals();
    }
    TSalesReport* open() {
        report = new TSalesReport;
        report->resize(1000, 500);
        return report;
    }
    void selectRows(const QList<int>& rows) {
        TDBGridEh* g = report->DBGridEh;
        g->clearSelection();
        for (int r : rows) g->selectionModel()->select(g->model()->index(r, 0),
                                                       QItemSelectionModel::Select | QItemSelectionModel::Rows);
    }

    struct Asked {
        qx::grid::Dialog dialog;
        const TDBGridEh* grid;
        QString title;
        qx::grid::PrintOptions options;
    };
    QTemporaryDir dir;
    std::shared_ptr<qx::db::Database> db;
    qx::ui::ScopedScriptedSink sink;
    qx::grid::DialogHandler previousHandler;
    std::vector<Asked> asked;
    QString answer;  // the file the next save dialog answers
    TSalesReport* report = nullptr;
};

}  // namespace qx::test
