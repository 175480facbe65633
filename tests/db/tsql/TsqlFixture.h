#pragma once
// A SQLite database driven the way the engine drives the translator: parse the batch, emit each
// statement against the live catalog, run what comes out.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <cstdio>
#include <string>
#include <vector>

#include "db/tsql/SqliteCatalog.h"
#include "db/tsql/TranslationError.h"
#include "db/tsql/Translator.h"

namespace qx::tsql::testing {

class Connection {
public:
    explicit Connection(const std::string& path = ":memory:") {
        if (sqlite3_open(path.c_str(), &db_) != SQLITE_OK) throw std::runtime_error("cannot open " + path);
        installSqliteRuntime(db_);
    }
    ~Connection() { sqlite3_close(db_); }
    Connection(const Connection&) = delete;
    Connection& operator=(const Connection&) = delete;

    sqlite3* handle() const { return db_; }

    // Runs every statement of a T-SQL batch; returns the rows of the last statement that
    // produced rows, one line per row, values separated by '|', NULL as "NULL".
    std::string run(const std::string& tsql) {
        std::string result;
        SqliteCatalog catalog(db_);
        for (const auto& statement : parseBatch(tsql)) {
            for (const auto& sql : emitSqlite(statement, catalog)) {
                emitted.push_back(sql);
                std::string rows;
                const bool hadRows = execute(sql, rows);
                if (statement.returnsRows && hadRows) result = rows;
                else if (statement.returnsRows) result = rows;
            }
        }
        return result;
    }

    // The column names of a SELECT's result, '|'-separated.
    std::string columnNames(const std::string& tsql) {
        SqliteCatalog catalog(db_);
        auto statements = parseBatch(tsql);
        auto sql = emitSqlite(statements.back(), catalog);
        sqlite3_stmt* stmt = prepare(sql.back());
        std::string names;
        for (int i = 0; i < sqlite3_column_count(stmt); ++i) names += (i ? "|" : "") + std::string(sqlite3_column_name(stmt, i));
        sqlite3_finalize(stmt);
        return names;
    }

    std::vector<std::string> emitted;

private:
    sqlite3_stmt* prepare(const std::string& sql) {
        sqlite3_stmt* stmt = nullptr;
        if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK)
            throw std::runtime_error(std::string(sqlite3_errmsg(db_)) + " in: " + sql);
        return stmt;
    }

    bool execute(const std::string& sql, std::string& rows) {
        sqlite3_stmt* stmt = prepare(sql);
        bool any = false;
        int rc;
        while ((rc = sqlite3_step(stmt)) == SQLITE_ROW) {
            any = true;
            if (!rows.empty()) rows += "\n";
            for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
                if (i) rows += "|";
                rows += valueText(stmt, i);
            }
        }
        if (rc != SQLITE_DONE) {
            std::string message = sqlite3_errmsg(db_);
            sqlite3_finalize(stmt);
            throw std::runtime_error(message + " in: " + sql);
        }
        sqlite3_finalize(stmt);
        return any;
    }

    static std::string valueText(sqlite3_stmt* stmt, int i) {
        switch (sqlite3_column_type(stmt, i)) {
            case SQLITE_NULL: return "NULL";
            case SQLITE_INTEGER: return std::to_string(sqlite3_column_int64(stmt, i));
            case SQLITE_FLOAT: {
                char buffer[64];
                std::snprintf(buffer, sizeof buffer, "%.10g", sqlite3_column_double(stmt, i));
                return buffer;
            }
            default: return reinterpret_cast<const char*>(sqlite3_column_text(stmt, i));
        }
    }

    sqlite3* db_ = nullptr;
};

// Typical shop tables: styles, warehouses, stock, a document head with its lines.
inline const char* kFixtureDdl =
    "CREATE TABLE d1007 (CK_ID varchar(4) NOT NULL PRIMARY KEY, CK_NAME varchar(16), G1 int DEFAULT 0);"
    "CREATE TABLE d1800 (K_ID varchar(17) NOT NULL PRIMARY KEY, WL_NAME varchar(80), PP_ID varchar(4), KC int DEFAULT 0,"
    " DJ float DEFAULT 0, MONEY float DEFAULT 0, CHECK_KC bit DEFAULT 0, BDATE datetime);"
    "CREATE TABLE d1802 (WL_ID varchar(21) NOT NULL, CK_ID varchar(4) NOT NULL, K0 int DEFAULT 0, K1 int DEFAULT 0,"
    " KC int DEFAULT 0, CHECK_KC bit DEFAULT 0, PRIMARY KEY (WL_ID, CK_ID));"
    "CREATE TABLE D8101 (T smallint DEFAULT 0, NOID varchar(12) NOT NULL PRIMARY KEY, CK_ID varchar(4), BDATE datetime,"
    " EDATE datetime, TOLMONEY money DEFAULT 0, NOTE varchar(100))"
    " CREATE TABLE D8101A (NOID varchar(12), WL_ID varchar(21), K_ID varchar(17), COL_ID varchar(4), CK_ID varchar(4),"
    " S0 int DEFAULT 0, S1 int DEFAULT 0, DJ float DEFAULT 0, MONEY float DEFAULT 0, NOTE varchar(100));"
    "INSERT INTO d1007 (CK_ID, CK_NAME, G1) VALUES ('A1', 'Head', 0);"
    "INSERT INTO d1007 (CK_ID, CK_NAME, G1) VALUES ('B2', 'Shop', 1);"
    "INSERT INTO d1800 (K_ID, WL_NAME, PP_ID, KC, DJ, MONEY, BDATE) VALUES ('K1', 'Shirt', 'P1', 3, 10, 100, '2024-01-05');"
    "INSERT INTO d1800 (K_ID, WL_NAME, PP_ID, KC, DJ, MONEY, BDATE) VALUES ('K2', 'Jeans', 'P2', 0, 20, 0, '2024-02-10');";

class TsqlTest : public ::testing::Test {
protected:
    void SetUp() override { db.run(kFixtureDdl); }
    Connection db;
};

}  // namespace qx::tsql::testing
