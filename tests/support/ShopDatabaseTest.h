#pragma once
// The base of the screen tests over a real shop database: a fresh SQLite shop in a temporary
// folder (or a server shop, see newShop), filled by the family's seed(), the screen environment installed over it (signed in as
// U1 王经理 at warehouse 01, today 2026-03-18), messages answered by a scripted sink and every
// statement the screens send recorded. The master data most families share is seeded by the
// helpers below; each family adds its own.
#include <gtest/gtest.h>

#include <QApplication>
#include <QStringList>
#include <QTemporaryDir>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <vector>

#include "db/Database.h"
#include "framework/Frm_Base.h"
#include "framework/U_dataop.h"
#include "framework/U_function.h"
#include "framework/U_glo.h"
#include "tests/support/PostgresServer.h"
#include "tests/support/RecordedCalls.h"
#include "tests/support/ScreenTestEnvironment.h"

// Readable failures: texts as texts.
inline void PrintTo(const QString& text, std::ostream* out) { *out << '"' << text.toStdString() << '"'; }

namespace qx::test {

using qx::dataop::Call;

// The user U1 (王经理), warehouses 01 (总仓) and 02 (东门店), U1 entitled to 01.
inline void seedUserAndWarehouses(qx::db::Database& db) {
    db.execute("INSERT INTO sys_user (USER_ID, USER_NAME) VALUES ('U1', '王经理')");
    db.execute("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('01', '总仓')");
    db.execute("INSERT INTO d1007 (CK_ID, CK_NAME) VALUES ('02', '东门店')");
    db.execute("INSERT INTO sys_user_ck VALUES ('U1', '01', 1)");
}

// Supplier G01 (华美制衣), salesperson 01 (张三), payment method 1 (现金), delivery method 1 (自提).
inline void seedTradingPartners(qx::db::Database& db) {
    db.execute("INSERT INTO d1103 (KH_GYS_ID, KG_NAME) VALUES ('G01', '华美制衣')");
    db.execute("INSERT INTO d1101 (YW_ID, YW_NAME) VALUES ('01', '张三')");
    db.execute("INSERT INTO d1010 (JY_ID, JY_NAME) VALUES ('1', '现金')");
    db.execute("INSERT INTO d1011 (SEND_ID, SEND_NAME) VALUES ('1', '自提')");
}

class ShopDatabaseTest : public ::testing::Test {
protected:
    void SetUp() override {
        db = std::shared_ptr<qx::db::Database>(newShop());
        seed();
        environment.install(db, &calls);
        G_UserName = "王经理";
        G_ckid = "01";
    }
    void TearDown() override { environment.restore(); }

    // The family's shop, written straight into the new database.
    virtual void seed() = 0;

    // The screens' tests run on a shop file; with QXCK_SCREEN_ENGINE=postgresql each test's shop
    // is a new database on the test process's private server instead (the same tests, a server).
    static bool onServer() { return screenTestsOnServer(); }
    std::unique_ptr<qx::db::Database> newShop() const {
        if (!onServer()) return qx::db::openSqlite(dir.filePath("shop.db").toStdString(), true);
        auto* server = PostgresServer::instance();
        if (!server) throw std::runtime_error("QXCK_SCREEN_ENGINE=postgresql needs the PostgreSQL server binaries");
        return qx::db::openDatabase(server->freshShop());
    }

    void exec(const QString& sql) { db->execute(sql.toStdString()); }
    // A statement the database allows only to maintenance (schema changes, closed months).
    void execMaintenance(const QString& sql) { db->execute(sql.toStdString(), qx::db::ExecOptions{true}); }
    qx::db::ResultSet query(const QString& sql) { return db->open(sql.toStdString()); }
    // The first column of the first row as text ("" when there is none).
    QString scalar(const QString& sql) { return scalarOf(*db, sql); }
    int count(const QString& sql) { return scalar(sql).toInt(); }
    // Every row of a query as "a|b|c" lines (a database's content compared as text).
    QStringList dump(const QString& sql) { return rowsOf(*db, sql); }

    // The statements of one kind of call (queries unless told), in order.
    std::vector<QString> statements(Call::Kind kind = Call::Kind::OpenSql) const { return statementsOf(calls, kind); }
    std::vector<Call> execs() const {
        std::vector<Call> out;
        for (const auto& c : calls)
            if (c.kind == Call::Kind::ExecSql) out.push_back(c);
        return out;
    }
    // The last batch handed to ExecSql, with its number and mode.
    Call lastExec() const {
        for (auto it = calls.rbegin(); it != calls.rend(); ++it)
            if (it->kind == Call::Kind::ExecSql) return *it;
        return {};
    }
    QString lastBatch() const { return lastExec().sql; }
    // Whether a statement was sent, by any data operation.
    bool sent(const QString& sql) const {
        for (const auto& c : calls)
            if (c.sql == sql) return true;
        return false;
    }

    // What a screen is opened with: the signed-in user and warehouse, the function code.
    Trecord record(int code) const {
        Trecord rec;
        rec.UserId = G_UserId;
        rec.UserName = G_UserName;
        rec.CkId = G_ckid;
        rec.CkName = G_CkName;
        rec.FuncCode = code;
        return rec;
    }

    ScreenTestEnvironment environment;
    qx::ui::ScopedScriptedSink sink;
    QTemporaryDir dir;
    std::shared_ptr<qx::db::Database> db;
    std::vector<Call> calls;  // every opensql, ExecSql and GetNOID, in order
};

}  // namespace qx::test
