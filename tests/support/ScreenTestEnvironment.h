#pragma once
// What a screen test installs around the module and puts back afterwards: the database behind
// the data operations, an observer recording every statement, a fixed "today", screens shown as
// plain windows; and reading a database's answers as text.
#include <QDate>
#include <QString>
#include <QStringList>
#include <memory>
#include <vector>

#include "db/Database.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"

namespace qx::test {

// A value as text: numbers in their shortest form, NULL as "NULL" (or `null` when given).
inline QString valueText(const qx::db::Value& v, const QString& null = "NULL") {
    if (auto* s = std::get_if<std::string>(&v)) return QString::fromStdString(*s);
    if (auto* i = std::get_if<std::int64_t>(&v)) return QString::number(*i);
    if (auto* d = std::get_if<double>(&v)) return FloatToStr(*d);
    return null;
}

// The first column of the first row ("" when there is none or it is NULL).
inline QString scalarOf(qx::db::Database& db, const QString& sql) {
    const auto r = db.open(sql.toStdString());
    if (r.rows.empty() || r.rows[0].empty()) return {};
    return valueText(r.rows[0][0], {});
}

// Every row as "a|b|c".
inline QStringList rowsOf(qx::db::Database& db, const QString& sql) {
    QStringList out;
    for (const auto& row : db.open(sql.toStdString()).rows) {
        QStringList cells;
        for (const auto& v : row) cells << valueText(v);
        out << cells.join('|');
    }
    return out;
}

class ScreenTestEnvironment {
public:
    // Signed in as `user`; calls (when given) receives every data operation.
    void install(std::shared_ptr<qx::db::Database> db, std::vector<qx::dataop::Call>* calls = nullptr,
                 const QDate& today = QDate(2026, 3, 18), const QString& user = "U1") {
        ResetGlobals();
        G_UserId = user;
        qx::dataop::setDatabase(std::move(db));
        if (calls) qx::dataop::setObserver([calls](const qx::dataop::Call& c) { calls->push_back(c); });
        qx::ui::setToday(today);
        qx::ui::setScreenPresenter([](TFrm_Base* screen) { screen->show(); });
    }
    void restore() {
        qx::ui::setModalHandler(nullptr);
        qx::ui::setScreenPresenter(nullptr);
        qx::ui::setToday(QDate());
        qx::dataop::setObserver({});
        qx::dataop::setDatabase(nullptr);
        ResetGlobals();
    }
};

}  // namespace qx::test
