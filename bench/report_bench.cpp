// The business reports on a large shop, each beside the hand-written SQLite query it stands for.
// Each report is opened as the shop opens it: its screen, its condition dialog answered with a
// typical choice (the current month, year or last 30 days of the shop's data), so the batch is
// built by the screen's own code. The benchmark then runs that batch as the screen runs it
// (opensql into a dataset: data operations, translator, procedures, SQLite) and the
// hand-written query over the same tables; the set-up checks that both give the same totals.
//   bench_report                       the scale-10 demo shop ($QXCK_BENCH_DB, see BenchShop.h)
//   QXCK_REPORT_DB=FILE bench_report   a shop made by qxck-demo --lines N, opened read-only
//   QXCK_REPORT_CASES="204 281"         only these reports
// "Today" is the shop's last sales day.
#include <benchmark/benchmark.h>
#include <sqlite3.h>

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDate>
#include <QPushButton>
#include <QRadioButton>
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "bench/BenchShop.h"
#include "db/Database.h"
#include "db/sqlite/SqliteDatabase.h"
#include "frame/Dispatch.h"
#include "framework/DataSet.h"
#include "framework/Frm_Base_Qry.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "reports/Frmqxck201g.h"
#include "reports/Frmqxck201gf.h"
#include "reports/Frmqxck211g.h"
#include "reports/Frmqxck211gf.h"
#include "reports/Frmqxck263.h"
#include "reports/Frmqxck263f.h"
#include "reports/Frmqxck273.h"
#include "reports/Frmqxck273f.h"
#include "reports/Frmqxck281.h"
#include "reports/Frmqxck281f.h"
#include "reports/Frmqxck282.h"
#include "reports/Frmqxck283.h"
#include "reports/Frmqxck283f.h"

namespace {

using Totals = std::vector<double>;

struct Rows {
    std::vector<std::string> names;
    std::vector<std::vector<QVariant>> rows;
};

std::shared_ptr<qx::db::Database> g_db;
sqlite3* g_handle = nullptr;
QDate g_today;

[[noreturn]] void die(const std::string& message) {
    std::fprintf(stderr, "bench_report: %s\n", message.c_str());
    std::exit(1);
}

// Runs native SQLite text, reading every value of every row (what loading the result costs).
Rows native(const std::string& sql, bool keep) {
    sqlite3_stmt* st = nullptr;
    if (sqlite3_prepare_v2(g_handle, sql.c_str(), -1, &st, nullptr) != SQLITE_OK)
        die(std::string(sqlite3_errmsg(g_handle)) + "\n" + sql);
    Rows out;
    const int n = sqlite3_column_count(st);
    for (int c = 0; c < n; ++c) out.names.push_back(sqlite3_column_name(st, c));
    while (sqlite3_step(st) == SQLITE_ROW) {
        std::vector<QVariant> row;
        for (int c = 0; c < n; ++c) {
            switch (sqlite3_column_type(st, c)) {
                case SQLITE_INTEGER:
                    row.emplace_back(qlonglong(sqlite3_column_int64(st, c)));
                    break;
                case SQLITE_FLOAT:
                    row.emplace_back(sqlite3_column_double(st, c));
                    break;
                case SQLITE_TEXT:
                    row.emplace_back(QString::fromUtf8(
                        reinterpret_cast<const char*>(sqlite3_column_text(st, c))));
                    break;
                default:
                    row.emplace_back();
                    break;
            }
        }
        if (keep) out.rows.push_back(std::move(row));
    }
    sqlite3_finalize(st);
    return out;
}

// The dataset's rows as the screen holds them.
Rows rowsOf(TClientDataSet* ds) {
    Rows out;
    for (const QString& f : ds->FieldNames()) out.names.push_back(f.toStdString());
    for (int r = 0; r < ds->RecordCount(); ++r) {
        std::vector<QVariant> row;
        for (int c = 0; c < int(out.names.size()); ++c) row.push_back(ds->CellValue(r, c));
        out.rows.push_back(std::move(row));
    }
    return out;
}

// Sums of the columns `pick` selects, each group summed apart: pick(name) gives the group
// index or -1. Rows whose first cell is `skipLabel` (a header row) are left out.
Totals sums(const Rows& rows, int groups, const std::function<int(const std::string&)>& pick,
            const QString& skipLabel = {}) {
    Totals out(groups, 0.0);
    for (const auto& row : rows.rows) {
        if (!skipLabel.isEmpty() && !row.empty() && row[0].toString() == skipLabel) continue;
        for (size_t c = 0; c < rows.names.size(); ++c) {
            const int g = pick(rows.names[c]);
            if (g >= 0 && !row[c].isNull()) out[g] += row[c].toDouble();
        }
    }
    return out;
}
std::function<int(const std::string&)> named(std::vector<std::string> names) {
    return [names](const std::string& n) {
        for (size_t i = 0; i < names.size(); ++i)
            if (QString::fromStdString(n).compare(QString::fromStdString(names[i]),
                                                  Qt::CaseInsensitive) == 0)
                return int(i);
        return -1;
    };
}
// Cross-tab value columns: titled by a month number or "YYYYMM|DD".
int crossTabColumn(const std::string& n) {
    bool number = false;
    const int m = QString::fromStdString(n).toInt(&number);
    if (number && m >= 1 && m <= 12) return 0;
    return n.find('|') != std::string::npos ? 0 : -1;
}

std::string date(const QDate& d) {
    return d.toString("yyyy-MM-dd").toStdString();
}

struct Case {
    std::string name;
    // Opens the report with its typical choice; the report has run its batch when this returns.
    std::function<TFrm_Base_Qry*()> open;
    std::function<Totals(const Rows&)> reportTotals;
    std::string hand;  // the hand-written SQLite
    std::function<Totals(const Rows&)> handTotals;
};

// Opens a report as the host does: the function table's entry for its code, with the signed-in
// user's record; the screen is then in its unit's screen variable.
template <class R>
R* start(int code, R** variable) {
    Trecord rec;
    rec.UserId = G_UserId;
    rec.FuncCode = code;
    qx::frame::dispatch(rec, nullptr);
    return *variable;
}
// A report whose condition dialog (of type F) is filled by `fill` and confirmed by `press`.
template <class R, class F>
R* withDialog(int code, R** variable, std::function<void(F*)> fill, std::function<void(F*)> press) {
    qx::ui::setModalHandler([fill, press](TFrm_Base* dialog) {
        auto* f = dynamic_cast<F*>(dialog);
        if (!f) return int(mrCancel);
        if (fill) fill(f);
        press(f);
        return f->ModalResult();
    });
    return start<R>(code, variable);
}
template <class F>
void ok(F* f) {
    f->btn_ok->click();
}
// The summary's first preset (by partner), totals only (no size columns).
template <class F>
void byPartner(F* f) {
    f->RB4->setChecked(true);
    f->BSCHK3_2->setChecked(true);
    f->template findChild<QPushButton*>("btn_group1")->click();
}

const char* kQty = "(l.S0+l.S1+l.S2+l.S3+l.S4+l.S5+l.S6+l.S7+l.S8+l.S9)";

std::vector<Case> cases() {
    const QDate monthStart(g_today.year(), g_today.month(), 1);
    const std::string from = "'" + date(monthStart) + "'",
                      to = "'" + date(g_today.addDays(1)) + "'";
    const std::string yearFrom = "'" + date(QDate(g_today.year(), 1, 1)) + "'";
    const QDate progressFrom = g_today.addDays(-29);
    const std::string q = kQty;
    // a head's date in the month, the year, the last 30 days
    const std::string month = "h.BDATE >= " + from + " AND h.BDATE < " + to;
    const std::string year = "h.BDATE >= " + yearFrom + " AND h.BDATE < " + to;
    const std::string days = "h.BDATE >= '" + date(progressFrom) + "' AND h.BDATE < " + to;
    std::vector<Case> out;

    out.push_back({"204 purchase summary, by supplier, this month",
                   [] {
                       return withDialog<TQXCK201G, TQXCK201GF>(204, &QXCK201G, {},
                                                                byPartner<TQXCK201GF>);
                   },
                   [](const Rows& r) {
                       return sums(r, 2, named({"数量", "金额"}));
                   },
                   "SELECT g.KG_NAME, SUM(x.q), SUM(x.m) FROM ("
                   "SELECT h.KH_GYS_ID AS g, " +
                       q +
                       " AS q, l.MONEY AS m FROM D8101 h JOIN D8101A l ON l.NOID = h.NOID "
                       "WHERE h.T = 1 AND " +
                       month + " UNION ALL SELECT h.KH_GYS_ID, -" + q +
                       ", -l.SMONEY FROM D8102 h JOIN D8102A l ON l.NOID = h.NOID "
                       "WHERE h.T = 1 AND " +
                       month + ") x JOIN D1103 g ON g.KH_GYS_ID = x.g GROUP BY g.KG_NAME",
                   [](const Rows& r) {
                       return sums(r, 2, [](const std::string& n) {
                           return n == "SUM(x.q)" ? 0 : n == "SUM(x.m)" ? 1 : -1;
                       });
                   }});

    out.push_back({"214 sales summary, by customer, this month",
                   [] {
                       return withDialog<TQXCK211G, TQXCK211GF>(214, &QXCK211G, {},
                                                                byPartner<TQXCK211GF>);
                   },
                   [](const Rows& r) {
                       return sums(r, 3, named({"数量", "金额", "毛利"}));
                   },
                   "SELECT x.c, SUM(x.q) AS q, SUM(x.m) AS m, SUM(x.ly) AS ly FROM ("
                   "SELECT c.KG_NAME AS c, " +
                       q +
                       " AS q, l.SMONEY AS m, l.SMONEY - l.MONEY AS ly FROM D8201 h "
                       "JOIN D8201A l ON l.NOID = h.NOID JOIN D1102 c ON c.KH_GYS_ID = h.KH_GYS_ID "
                       "WHERE h.T = 1 AND " +
                       month + " UNION ALL SELECT c.KG_NAME, -" + q +
                       ", -l.SMONEY, l.MONEY - l.SMONEY FROM D8202 h "
                       "JOIN D8202A l ON l.NOID = h.NOID JOIN D1102 c ON c.KH_GYS_ID = h.KH_GYS_ID "
                       "WHERE h.T = 1 AND " +
                       month + " UNION ALL SELECT v.VIPNAME, " + q +
                       ", l.SMONEY, l.SMONEY - l.MONEY FROM d712 h "
                       "JOIN d712a l ON l.NOID = h.NOID LEFT JOIN D702 v ON v.VIPID = h.VIPID "
                       "WHERE " +
                       month + ") x GROUP BY x.c",
                   [](const Rows& r) {
                       return sums(r, 3, named({"q", "m", "ly"}));
                   }});

    out.push_back({"263 annual purchases, this year",
                   [] { return withDialog<TQXCK263, TQXCK263F>(263, &QXCK263, {}, ok<TQXCK263F>); },
                   [](const Rows& r) { return sums(r, 1, crossTabColumn, "1920"); },
                   "SELECT strftime('%Y', h.BDATE) || '进', CAST(strftime('%m', h.BDATE) AS INT), "
                   "SUM(l.MONEY) AS v "
                   "FROM D8101 h JOIN D8101A l ON l.NOID = h.NOID WHERE " +
                       year +
                       " GROUP BY 1, 2 UNION ALL SELECT strftime('%Y', h.BDATE) || '退', "
                       "CAST(strftime('%m', h.BDATE) AS INT), "
                       "-SUM(l.SMONEY) FROM D8102 h JOIN D8102A l ON l.NOID = h.NOID WHERE " +
                       year + " GROUP BY 1, 2",
                   [](const Rows& r) { return sums(r, 1, named({"v"})); }});

    out.push_back({"273 annual sales, this year",
                   [] { return withDialog<TQXCK273, TQXCK273F>(273, &QXCK273, {}, ok<TQXCK273F>); },
                   [](const Rows& r) { return sums(r, 1, crossTabColumn, "1920"); },
                   "SELECT strftime('%Y', h.BDATE) || ' 销售', CAST(strftime('%m', h.BDATE) AS "
                   "INT), SUM(l.SMONEY) AS v "
                   "FROM D8201 h JOIN D8201A l ON l.NOID = h.NOID WHERE " +
                       year +
                       " GROUP BY 1, 2 UNION ALL SELECT strftime('%Y', h.BDATE) || '退换', "
                       "CAST(strftime('%m', h.BDATE) AS INT), "
                       "-SUM(l.SMONEY) FROM D8202 h JOIN D8202A l ON l.NOID = h.NOID WHERE " +
                       year +
                       " GROUP BY 1, 2 UNION ALL SELECT strftime('%Y', h.BDATE) || CASE WHEN " + q +
                       " > 0 THEN ' 销售' ELSE '退换' END, CAST(strftime('%m', h.BDATE) AS INT), "
                       "SUM(l.SMONEY) FROM d712 h "
                       "JOIN d712a l ON l.NOID = h.NOID WHERE " +
                       q + " <> 0 AND " + year + " GROUP BY 1, 2",
                   [](const Rows& r) { return sums(r, 1, named({"v"})); }});

    // the ranking's sales sections (styles, warehouses, categories, colours, brands), each
    // numbered by quantity sold; the report also brings stock, slow movers and members
    const std::string t = "WITH t AS (SELECT h.CK_ID, l.K_ID, " + q +
                          " AS sl, l.SMONEY AS m, s.CLASS_ID, p.PP_NAME AS pp, l.COL_ID "
                          "FROM D8201 h JOIN D8201A l ON l.NOID = h.NOID JOIN D1800 s ON s.K_ID = "
                          "l.K_ID JOIN D1009 p ON p.PP_ID = s.PP_ID "
                          "WHERE h.T = 1 AND " +
                          month + " UNION ALL SELECT h.CK_ID, l.K_ID, -" + q +
                          ", -l.SMONEY, s.CLASS_ID, p.PP_NAME, l.COL_ID "
                          "FROM D8202 h JOIN D8202A l ON l.NOID = h.NOID JOIN D1800 s ON s.K_ID = "
                          "l.K_ID JOIN D1009 p ON p.PP_ID = s.PP_ID "
                          "WHERE h.T = 1 AND " +
                          month + " UNION ALL SELECT h.CK_ID, w.K_ID, " + q +
                          ", l.SMONEY, s.CLASS_ID, p.PP_NAME, w.COL_ID "
                          "FROM d712 h JOIN d712a l ON l.NOID = h.NOID JOIN D1801 w ON w.WL_ID = "
                          "l.WL_ID JOIN D1800 s ON s.K_ID = w.K_ID "
                          "JOIN D1009 p ON p.PP_ID = s.PP_ID WHERE " +
                          month + ") ";
    std::string ranking = t;
    int section = 0;
    for (const char* key : {"K_ID", "CK_ID", "CLASS_ID", "COL_ID", "pp"}) {
        ranking += std::string(section ? " UNION ALL " : "") + "SELECT " + std::to_string(section) +
                   " AS section, ROW_NUMBER() OVER "
                   "(ORDER BY SUM(sl) DESC) AS place, " +
                   key + " AS k, SUM(sl) AS sl, SUM(m) AS m FROM t GROUP BY " + key;
        ++section;
    }
    out.push_back({"281 ranking, this month",
                   [] { return withDialog<TQXCK281, TQXCK281F>(281, &QXCK281, {}, ok<TQXCK281F>); },
                   [](const Rows& r) {
                       return sums(
                           r, 10,
                           named({"S1", "S2", "S3", "S4", "S5", "M1", "M2", "M3", "M4", "M5"}));
                   },
                   ranking,
                   [](const Rows& r) {
                       Totals out(10, 0.0);
                       for (const auto& row : r.rows) {
                           const int s = row[0].toInt();
                           out[s] += row[3].toDouble();
                           out[5 + s] += row[4].toDouble();
                       }
                       return out;
                   }});

    out.push_back(
        {"282 business analysis, daily by warehouse, net quantity sold, this month",
         [monthStart] {
             auto* r = start<TQXCK282>(282, &QXCK282);
             r->BDATE->SetText(monthStart.toString("yyyy-MM-dd"));
             r->EDATE->SetText(g_today.toString("yyyy-MM-dd"));
             r->R1->setChecked(true);
             for (QCheckBox* c : {r->C1, r->C2, r->C3, r->C4, r->C5, r->K1})
                 c->setChecked(c == r->C1);
             r->CB1->setCurrentIndex(0);
             r->btn_refresh->click();
             return r;
         },
         [](const Rows& r) { return sums(r, 1, crossTabColumn); },
         "SELECT w.CK_NAME, date(h.BDATE), SUM(" + q +
             ") AS v FROM D8201 h JOIN D8201A l ON l.NOID = h.NOID "
             "JOIN D1007 w ON w.CK_ID = h.CK_ID WHERE " +
             month + " GROUP BY 1, 2 UNION ALL SELECT w.CK_NAME, date(h.BDATE), -SUM(" + q +
             ") FROM D8202 h JOIN D8202A l ON "
             "l.NOID = h.NOID JOIN D1007 w ON w.CK_ID = h.CK_ID WHERE " +
             month + " GROUP BY 1, 2 UNION ALL SELECT w.CK_NAME, date(h.BDATE), SUM(" + q +
             ") FROM d712 h JOIN d712a l ON "
             "l.NOID = h.NOID JOIN D1801 s ON s.WL_ID = l.WL_ID JOIN D1007 w ON w.CK_ID = h.CK_ID "
             "WHERE " +
             month + " GROUP BY 1, 2",
         [](const Rows& r) { return sums(r, 1, named({"v"})); }});

    out.push_back({"283 progress, styles per day, last 30 days",
                   [progressFrom] {
                       return withDialog<TQXCK283, TQXCK283F>(
                           283, &QXCK283,
                           [progressFrom](TQXCK283F* f) {
                               f->BDATE->SetText(progressFrom.toString("yyyy-MM-dd"));
                               f->EDATE->SetText(g_today.toString("yyyy-MM-dd"));
                           },
                           ok<TQXCK283F>);
                   },
                   [](const Rows& r) { return sums(r, 1, crossTabColumn); },
                   "SELECT x.K_ID, x.d, SUM(x.q) AS v FROM (SELECT l.K_ID, date(h.BDATE) AS d, " +
                       q +
                       " AS q FROM D8201 h "
                       "JOIN D8201A l ON l.NOID = h.NOID WHERE " +
                       days + " UNION ALL SELECT l.K_ID, date(h.BDATE), -" + q +
                       " FROM D8202 h JOIN D8202A l ON l.NOID = h.NOID "
                       "WHERE " +
                       days + " UNION ALL SELECT w.K_ID, date(h.BDATE), " + q +
                       " FROM d712 h JOIN d712a l ON l.NOID = h.NOID "
                       "JOIN D1801 w ON w.WL_ID = l.WL_ID WHERE " +
                       days +
                       ") x WHERE x.K_ID IN (SELECT K_ID FROM D1801 s JOIN D1802 k ON k.WL_ID = "
                       "s.WL_ID) GROUP BY 1, 2",
                   [](const Rows& r) { return sums(r, 1, named({"v"})); }});
    return out;
}

bool same(const Totals& a, const Totals& b) {
    if (a.size() != b.size()) return false;
    for (size_t i = 0; i < a.size(); ++i)
        if (std::fabs(a[i] - b[i]) > 0.005 * std::max(1.0, std::fabs(b[i]))) return false;
    return true;
}
std::string text(const Totals& t) {
    std::string out;
    for (double v : t) out += (out.empty() ? "" : ", ") + QString::number(v, 'f', 2).toStdString();
    return out;
}

// With QXCK_REPORT_PLANS set, every statement of a batch that takes longer than 20 ms is
// printed with its time and query plan (what to look at when a report is far slower than its
// hand-written query).
int tracePlans(unsigned, void*, void* statement, void* nanoseconds) {
    const double ms = double(*static_cast<sqlite3_int64*>(nanoseconds)) / 1e6;
    if (ms < 20) return 0;
    const char* sql = sqlite3_sql(static_cast<sqlite3_stmt*>(statement));
    std::fprintf(stderr, "  %.1f ms: %s\n", ms, sql);
    sqlite3_stmt* plan = nullptr;
    if (sqlite3_prepare_v2(g_handle, (std::string("EXPLAIN QUERY PLAN ") + sql).c_str(), -1, &plan,
                           nullptr) == SQLITE_OK)
        while (sqlite3_step(plan) == SQLITE_ROW)
            std::fprintf(stderr, "    %d %d %s\n", sqlite3_column_int(plan, 0),
                         sqlite3_column_int(plan, 1),
                         reinterpret_cast<const char*>(sqlite3_column_text(plan, 3)));
    sqlite3_finalize(plan);
    return 0;
}

struct Prepared {
    QString funcNo;
    QString batch;
    int rows = 0;
};

// Opens the report (its screen builds and runs the batch once), checks the totals against the
// hand-written query and keeps the batch.
Prepared prepare(const Case& c) {
    TFrm_Base_Qry* report = c.open();
    if (report->QrySql.trimmed().isEmpty()) die(c.name + ": the report built no batch");
    Prepared p{report->FuncNo, report->QrySql, report->AdoQry_Main->RecordCount()};
    const Totals reportTotals = c.reportTotals(rowsOf(report->AdoQry_Main));
    const Totals handTotals = c.handTotals(native(c.hand, true));
    if (!same(reportTotals, handTotals))
        die(c.name + ": the totals differ\n  report:       " + text(reportTotals) +
            "\n  hand-written: " + text(handTotals));
    std::fprintf(stderr, "%s: %d rows, totals %s\n", c.name.c_str(), p.rows,
                 text(reportTotals).c_str());
    delete report;
    return p;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);

    std::string path;
    if (const char* large = std::getenv("QXCK_REPORT_DB")) {
        // read-only and without locking: the reports only read, their temporary tables live in
        // the connection's own temp database
        sqlite3_config(SQLITE_CONFIG_URI, 1);
        path = std::string("file:") + large + "?immutable=1";
        g_db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path, true));
    } else {
        path = qx::bench::benchShopPath();
        g_db = std::shared_ptr<qx::db::Database>(qx::db::openSqlite(path));
    }
    g_handle = dynamic_cast<qx::db::SqliteDatabase&>(*g_db).handle();
    {
        const Rows last = native("SELECT MAX(BDATE) FROM D8201", true);
        g_today = QDate::fromString(last.rows.at(0).at(0).toString().left(10), "yyyy-MM-dd");
        if (!g_today.isValid()) die("the shop has no sales");
    }
    const Rows lines = native(
        "SELECT (SELECT COUNT(*) FROM D8101A) + (SELECT COUNT(*) FROM D8102A) + (SELECT COUNT(*) "
        "FROM D8201A) + "
        "(SELECT COUNT(*) FROM D8202A) + (SELECT COUNT(*) FROM d8301A) + (SELECT COUNT(*) FROM "
        "D8303A) + "
        "(SELECT COUNT(*) FROM d712a)",
        true);
    std::fprintf(stderr, "%s: %lld document lines, today %s\n", path.c_str(),
                 lines.rows.at(0).at(0).toLongLong(), date(g_today).c_str());

    ResetGlobals();
    G_UserId = "U1";
    G_UserName = "bench";
    G_CM = 9;
    qx::dataop::setDatabase(g_db);
    qx::ui::setToday(g_today);

    if (std::getenv("QXCK_REPORT_PLANS"))
        sqlite3_trace_v2(g_handle, SQLITE_TRACE_PROFILE, tracePlans, nullptr);
    std::vector<std::pair<Case, Prepared>> prepared;
    // QXCK_REPORT_CASES="204 263": only the reports whose names start with one of these codes
    const QStringList only =
        QString::fromUtf8(std::getenv("QXCK_REPORT_CASES") ? std::getenv("QXCK_REPORT_CASES") : "")
            .split(' ', Qt::SkipEmptyParts);
    for (const Case& c : cases()) {
        const QString name = QString::fromStdString(c.name);
        if (only.isEmpty() || std::any_of(only.begin(), only.end(), [&](const QString& code) {
                return name.startsWith(code);
            }))
            prepared.emplace_back(c, prepare(c));
    }
    qx::ui::setModalHandler(nullptr);
    sqlite3_trace_v2(g_handle, 0, nullptr, nullptr);

    for (const auto& [c, p] : prepared) {
        benchmark::RegisterBenchmark(("report/" + c.name).c_str(),
                                     [p = p](benchmark::State& state) {
                                         TClientDataSet ds;
                                         for (auto _ : state)
                                             opensql(&ds, p.funcNo, p.batch, 0, 0, {}, {}, false,
                                                     "1");
                                         state.counters["rows"] = ds.RecordCount();
                                     })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
        benchmark::RegisterBenchmark(("hand/" + c.name).c_str(),
                                     [hand = c.hand](benchmark::State& state) {
                                         size_t rows = 0;
                                         for (auto _ : state) rows = native(hand, true).rows.size();
                                         state.counters["rows"] = double(rows);
                                     })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    }
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    qx::dataop::setDatabase(nullptr);
    g_db.reset();
    return 0;
}
