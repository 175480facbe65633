#pragma once
// A prepared statement for the procedures, on either engine: bound values (never spliced text),
// typed reads, finalised on scope exit, run inside the calling batch's transaction. On SQLite it
// is the sqlite3_stmt itself (no copies, the same plans); on other engines the session's own
// statement. Plus the small text helpers the procedures share.
#include <sqlite3.h>

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "db/Database.h"
#include "db/Progress.h"
#include "db/procedures/Session.h"

namespace qx::db::procedures {

class Statement {
public:
    Statement(ProcedureSession& session, const std::string& sql) {
        if (sqlite3* db = session.sqliteHandle()) prepareSqlite(db, sql);
        else other_ = session.prepareNative(sql);
    }
    Statement(sqlite3* db, const std::string& sql) { prepareSqlite(db, sql); }
    ~Statement() {
        if (st_) sqlite3_finalize(st_);
    }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    void bind(int index, const std::string& value) {
        if (!st_) return other_->bind(index, std::string_view(value));
        sqlite3_bind_text(st_, index, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
    }
    // Text that stays in place until the statement's next step (not copied).
    void bindKept(int index, const std::string& value) {
        if (!st_) return other_->bind(index, std::string_view(value));
        sqlite3_bind_text(st_, index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    void bind(int index, std::int64_t value) {
        if (!st_) return other_->bind(index, value);
        sqlite3_bind_int64(st_, index, value);
    }
    void bind(int index, double value) {
        if (!st_) return other_->bind(index, value);
        sqlite3_bind_double(st_, index, value);
    }
    void bindNull(int index) {
        if (!st_) return other_->bindNull(index);
        sqlite3_bind_null(st_, index);
    }

    // true while rows come; throws on an error (a cancel included).
    bool step() {
        if (!st_) return other_->step();
        const int rc = sqlite3_step(st_);
        if (rc == SQLITE_ROW) return true;
        if (rc == SQLITE_DONE) return false;
        if ((rc & 0xff) == SQLITE_INTERRUPT) throw Error(kCancelledMessage);
        throw Error(std::string("procedure statement: ") + sqlite3_errmsg(db_), sqlite3_sql(st_));
    }
    // Runs a statement that returns no rows, ready to run again (the bound values stay).
    void run() {
        if (!st_) {
            while (other_->step()) {
            }
            return other_->reset(true);
        }
        while (step()) {
        }
        sqlite3_reset(st_);
    }
    void reset() {
        if (!st_) return other_->reset(false);
        sqlite3_reset(st_);
        sqlite3_clear_bindings(st_);
    }

    std::string text(int column) const { return std::string(view(column)); }
    // valid until the next step
    std::string_view view(int column) const {
        if (!st_) return other_->view(column);
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st_, column));
        return p ? std::string_view(p, static_cast<std::size_t>(sqlite3_column_bytes(st_, column))) : std::string_view();
    }
    std::int64_t integer(int column) const { return st_ ? sqlite3_column_int64(st_, column) : other_->integer(column); }
    double real(int column) const { return st_ ? sqlite3_column_double(st_, column) : other_->real(column); }
    bool isNull(int column) const { return st_ ? sqlite3_column_type(st_, column) == SQLITE_NULL : other_->isNull(column); }

private:
    void prepareSqlite(sqlite3* db, const std::string& sql) {
        db_ = db;
        if (sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &st_, nullptr) != SQLITE_OK)
            throw Error(std::string("procedure statement: ") + sqlite3_errmsg(db), sql);
    }

    sqlite3* db_ = nullptr;
    sqlite3_stmt* st_ = nullptr;
    std::unique_ptr<NativeStatement> other_;
};

inline std::string trimmed(const std::string& s) {
    const auto first = s.find_first_not_of(" \t\r\n");
    if (first == std::string::npos) return {};
    return s.substr(first, s.find_last_not_of(" \t\r\n") - first + 1);
}

// "YYYY-MM-DD" with digits in place.
inline bool isIsoDate(const std::string& s) {
    if (s.size() != 10 || s[4] != '-' || s[7] != '-') return false;
    for (std::size_t i : {0u, 1u, 2u, 3u, 5u, 6u, 8u, 9u})
        if (s[i] < '0' || s[i] > '9') return false;
    return true;
}

// A JSON array of strings, for "IN (SELECT value FROM json_each(?))".
inline std::string jsonArray(const std::vector<std::string>& items) {
    std::string out = "[";
    for (std::size_t n = 0; n < items.size(); ++n) {
        if (n) out += ',';
        out += '"';
        for (unsigned char c : items[n]) {
            if (c == '"' || c == '\\') {
                out += '\\';
                out += static_cast<char>(c);
            } else if (c < 0x20) {
                static const char* hex = "0123456789abcdef";
                out += "\\u00";
                out += hex[c >> 4];
                out += hex[c & 15];
            } else {
                out += static_cast<char>(c);
            }
        }
        out += '"';
    }
    return out + "]";
}

}  // namespace qx::db::procedures
