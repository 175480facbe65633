#pragma once
// A small shop for the report screens: warehouses 01 (总仓), 02 (东门店) and AB01, two size
// groups, styles K01 (group A: S M L) and K02 (group B: 28..31) with brand and prices, opening
// stock written as stock rows; the signed-in user's globals; every statement recorded; the
// statements the reports must send read from golden files (tests/reports/golden/*.sql).
#include <gtest/gtest.h>

#include <QApplication>
#include <QCheckBox>
#include <QFile>
#include <QMap>
#include <QTemporaryDir>
#include <functional>
#include <memory>
#include <ostream>
#include <vector>

#include "db/Database.h"
#include "framework/Controls.h"
#include "framework/DBGridEh.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/Screenshot.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "tests/support/GoldenStatements.h"
#include "tests/support/ScreenTestEnvironment.h"
#include "tests/support/ShopDatabaseTest.h"

namespace qx::test {

// The golden statements of a report (tests/reports/golden/<file>), by case name.
inline QMap<QString, QString> goldenStatements(const QString& file) {
    const GoldenStatements golden("reports/golden/" + file);
    QMap<QString, QString> out;
    for (const QString& name : golden.caseNames()) out[name] = golden.text(name);
    return out;
}

class ReportTest : public ShopDatabaseTest {
protected:
    void SetUp() override {
        ShopDatabaseTest::SetUp();
        G_CkName = "总仓";
        G_CoName = "报表测试" + QString::number(reinterpret_cast<quintptr>(this));
        G_CM = 9;
    }

    // Grouping items of a summary in sys_GROUP: title, expression, class ("S" summed), the preset
    // letters that include it. The custom combination is the second item and the summed ones.
    // They replace the rows a new shop starts with for that function.
    struct GroupingItem {
        const char* name;
        const char* sql;
        const char* cls;
        const char* letters;
    };
    void insertGroupingItems(int functionId, std::initializer_list<GroupingItem> items) {
        exec("DELETE FROM sys_GROUP WHERE GROUP_ID=" + QString::number(functionId));
        int order = 0;
        for (const GroupingItem& item : items) {
            QString letters;
            for (char c = 'A'; c <= 'P'; ++c) letters += QString(",") + (QString(item.letters).contains(QChar(c)) ? "1" : "0");
            ++order;
            exec(QString("INSERT INTO sys_GROUP (GROUP_ID, GROUP_NAME, GROUP_SQL, GROUP_CLASS, GROUP_SHOW, SHOW_WIDTH, A, B, C, D, E, "
                         "F, G, H, I, J, K, L, M, N, O, P, ORDERBY) VALUES (") +
                 QString::number(functionId) + ",'" + item.name + "','" + item.sql + "','" + item.cls + "'," +
                 (order == 2 || QString(item.cls) == "S" ? "1" : "0") + ",70" + letters + "," + QString::number(order) + ")");
        }
    }

    void seed() override {
        exec("INSERT INTO sys_co (CO, PARAM) VALUES ('测试服饰', '')");
        seedUserAndWarehouses(*db);
        exec("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('AB01', '仓AB')");
        exec("INSERT INTO d1009 (PP_ID, PP_NAME) VALUES ('P1', '雅牌')");
        exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2) VALUES ('A', '服装', 'S', 'M', 'L')");
        exec("INSERT INTO d1006 (M_ID, M_NAME, M0, M1, M2, M3) VALUES ('B', '裤装', '28', '29', '30', '31')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('01', '红色')");
        exec("INSERT INTO d1005 (COL_ID, COL_NAME) VALUES ('02', '黑色')");
        exec("INSERT INTO d1800 (K_ID, PP_ID, M_ID, WL_NAME, DW_NAME, DJ, PFJ, CHECK_KC) VALUES ('K01','P1','A','衬衫','件',40,100,0)");
        exec("INSERT INTO d1800 (K_ID, PP_ID, M_ID, WL_NAME, DW_NAME, DJ, PFJ, CHECK_KC) VALUES ('K02','P1','B','裤子','条',60,200,0)");
        exec("INSERT INTO d1801 VALUES ('K0101','K01','01')");
        exec("INSERT INTO d1801 VALUES ('K0102','K01','02')");
        exec("INSERT INTO d1801 VALUES ('K0201','K02','01')");
        exec("INSERT INTO d1809 (WL_ID, M_INDEX, K_ID, TM) VALUES ('K0101','0','K01','6900000000011')");
    }

    // Opening stock of one SKU in one warehouse (stock row and opening columns alike).
    void openingStock(const QString& sku, const QString& warehouse, const QList<int>& sizes) {
        QString b;
        for (int i = 0; i < 10; ++i) b += "," + QString::number(i < sizes.size() ? sizes[i] : 0);
        execMaintenance("INSERT INTO d1802 (WL_ID, CK_ID, BDATE, B0,B1,B2,B3,B4,B5,B6,B7,B8,B9, CHECK_KC) VALUES ('" + sku + "','" +
                 warehouse + "','2026-01-01'" + b + ",0);update d1802 set k0=b0,k1=b1,k2=b2,k3=b3,k4=b4,k5=b5,k6=b6,k7=b7,"
                 "k8=b8,k9=b9");
    }
    // A document of one line: table pair by kind ("D8101" receipts, "D8201" sales, ...).
    void document(const QString& head, const QString& noid, const QString& warehouse, const QString& date, const QString& sku,
                  const QList<int>& sizes) {
        QString s;
        for (int i = 0; i < 10; ++i) s += "," + QString::number(i < sizes.size() ? sizes[i] : 0);
        exec("INSERT INTO " + head + " (T, NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES (1,'" + noid + "','" + warehouse + "','" +
             date + "','U1','')");
        exec("INSERT INTO " + head + "A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0,S1,S2,S3,S4,S5,S6,S7,S8,S9) VALUES ('" + noid +
             "','" + sku + "','" + sku.left(3) + "','" + sku.mid(3) + "','" + warehouse + "'" + s + ")");
    }

    // Opens a report: `fill` sets the dialog (of type F) before OK; answers every other dialog
    // with Cancel. The report has run its statement when this returns.
    // `before` runs on the new report before its InitForm (e.g. to hide cost).
    template <class R, class F>
    R* openReport(int code, std::function<void(F*)> fill = {}, std::function<void(R*)> before = {}) {
        driveDialog<F>(fill);
        return startReport<R>(code, before);
    }
    // Opens a report whose dialog is cancelled: no statement is built.
    template <class R>
    R* openCancelled(int code) {
        qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
        return startReport<R>(code, {});
    }
    template <class R>
    R* startReport(int code, std::function<void(R*)> before) {
        auto* report = new R(nullptr);
        if (before) before(report);
        report->resize(1100, 600);
        report->Tag = code;
        report->InitForm(record(code));
        return report;
    }
    template <class F>
    void driveDialog(std::function<void(F*)> fill) {
        qx::ui::setModalHandler([fill](TFrm_Base* dialog) {
            auto* filter = dynamic_cast<F*>(dialog);
            if (!filter) return int(mrCancel);
            if (fill) fill(filter);
            filter->btn_ok->click();
            return filter->ModalResult();
        });
    }

    // The checks of a trade report's dialog (purchase and sales summaries and details): no data
    // source, no settlement kind, reversed dates. `open(fill)` opens the report with its dialog
    // filled by `fill`; each case shows its message, keeps the dialog open and queries nothing.
    template <class F, class Open>
    void expectTradeChoiceMessages(Open open, const QString& sourceMessage, const QString& settlementMessage) {
        const std::vector<std::pair<std::function<void(F*)>, QString>> cases = {
            {[](F* f) {
                 for (QCheckBox* c : {f->BSCHK1_1, f->BSCHK1_2, f->BSCHK1_3})
                     if (c) c->setChecked(false);
             },
             sourceMessage},
            {[](F* f) {
                 f->BSCHK2_1->setChecked(false);
                 f->BSCHK2_2->setChecked(false);
             },
             settlementMessage},
            {[](F* f) {
                 f->BDATE->SetText("2026-03-18");
                 f->EDATE->SetText("2026-03-01");
             },
             "<开始日期> 不能大于 <结束日期>!"}};
        for (const auto& [fill, message] : cases) {
            sink->clear();
            calls.clear();
            auto* r = open(fill);
            ASSERT_FALSE(sink->messages.empty()) << message.toStdString();
            EXPECT_EQ(sink->messages.back().text, message);
            EXPECT_NE(r->Filter->ModalResult(), mrOk) << message.toStdString();
            EXPECT_TRUE(r->QrySql.isEmpty()) << "nothing is queried: " << message.toStdString();
            r->close();
        }
    }
    // Unknown codes typed into the lookups of a report's dialog (opened and cancelled) are reported.
    template <class R>
    void expectUnknownCodesReported(int code) {
        qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
        auto* r = startReport<R>(code, {});
        for (TLinkEdit* e : {r->Filter->KH_ID, r->Filter->YW_ID, r->Filter->CK_ID, r->Filter->wl_id}) {
            sink->clear();
            e->setText("N'O");
            qx::guard([e] { e->CheckId(); });
            EXPECT_FALSE(sink->messages.empty()) << e->objectName().toStdString() << " reports an unknown code";
        }
        EXPECT_TRUE(r->QrySql.isEmpty());
        r->close();
    }
    // Refresh of a report whose dialog was cancelled is refused with `message`.
    template <class R>
    void expectRefreshRefused(int code, const QString& message) {
        qx::ui::setModalHandler([](TFrm_Base*) { return int(mrCancel); });
        auto* r = startReport<R>(code, {});
        r->Act_Refresh->trigger();
        ASSERT_EQ(sink->messages.size(), 1u);
        EXPECT_EQ(sink->messages[0].text, message);
        EXPECT_EQ(sink->messages[0].dispKind, 5);
        r->close();
    }

    // Shows a report and saves its picture (screenshots/{name}.png under the build folder).
    static void screenshot(QWidget* report, const QString& name) {
        report->show();
        const QString file = qx::saveScreenshot(report, name);
        EXPECT_TRUE(!file.isEmpty() && QFile::exists(file)) << name.toStdString();
    }

    QString lastStatement() const {
        const auto s = statements();
        return s.empty() ? QString() : s.back();
    }

    // Column values of a dataset as texts.
    static QStringList column(TClientDataSet* ds, const QString& field) {
        QStringList out;
        for (int r = 0; r < ds->RecordCount(); ++r) out << ds->CellValue(r, ds->FieldIndex(field)).toString();
        return out;
    }
};

}  // namespace qx::test
