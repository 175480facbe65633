#pragma once
// The framework set up for driving screens in a test, and put back afterwards: the data
// operations on a database with every call recorded, a fixed "today", screens shown as plain
// windows. Modal dialogs are left to the test (qx::ui::setModalHandler); the handler is removed
// when the session ends.
//
//   qx::test::ScreenSession session(db, QDate(2026, 3, 18));
//   ... session.calls ...
#include <QDate>
#include <memory>
#include <vector>

#include "db/Database.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"

namespace qx::test {

class ScreenSession {
public:
    ScreenSession(std::shared_ptr<qx::db::Database> db, const QDate& today) {
        qx::dataop::setDatabase(std::move(db));
        qx::dataop::setObserver([this](const qx::dataop::Call& c) { calls.push_back(c); });
        qx::ui::setToday(today);
        qx::ui::setScreenPresenter([](TFrm_Base* screen) { screen->show(); });
    }
    ~ScreenSession() {
        qx::ui::setModalHandler(nullptr);
        qx::ui::setScreenPresenter(nullptr);
        qx::ui::setToday(QDate());
        qx::dataop::setObserver({});
        qx::dataop::setDatabase(nullptr);
    }
    ScreenSession(const ScreenSession&) = delete;
    ScreenSession& operator=(const ScreenSession&) = delete;

    std::vector<qx::dataop::Call> calls;  // every opensql, ExecSql and GetNOID, in order
};

}  // namespace qx::test
