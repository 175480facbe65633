#pragma once
// A prepared SQLite statement for the procedures: bound values (never spliced text), typed
// reads, finalised on scope exit. Plus the small text helpers the procedures share.
#include <sqlite3.h>

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "db/Database.h"

namespace qx::db::procedures {

class Statement {
public:
    Statement(sqlite3* db, const std::string& sql) : db_(db) {
        if (sqlite3_prepare_v2(db, sql.c_str(), static_cast<int>(sql.size()), &st_, nullptr) != SQLITE_OK)
            throw Error(std::string("procedure statement: ") + sqlite3_errmsg(db), sql);
    }
    ~Statement() { sqlite3_finalize(st_); }
    Statement(const Statement&) = delete;
    Statement& operator=(const Statement&) = delete;

    void bind(int index, const std::string& value) {
        sqlite3_bind_text(st_, index, value.data(), static_cast<int>(value.size()), SQLITE_TRANSIENT);
    }
    // Text that stays in place until the statement's next step (not copied).
    void bindKept(int index, const std::string& value) {
        sqlite3_bind_text(st_, index, value.data(), static_cast<int>(value.size()), SQLITE_STATIC);
    }
    void bind(int index, std::int64_t value) { sqlite3_bind_int64(st_, index, value); }
    void bind(int index, double value) { sqlite3_bind_double(st_, index, value); }
    void bindNull(int index) { sqlite3_bind_null(st_, index); }

    bool step() {
        const int rc = sqlite3_step(st_);
        if (rc == SQLITE_ROW) return true;
        if (rc == SQLITE_DONE) return false;
        throw Error(std::string("procedure statement: ") + sqlite3_errmsg(db_), sqlite3_sql(st_));
    }
    void reset() {
        sqlite3_reset(st_);
        sqlite3_clear_bindings(st_);
    }

    std::string text(int column) const {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st_, column));
        return p ? std::string(p, static_cast<std::size_t>(sqlite3_column_bytes(st_, column))) : std::string();
    }
    // valid until the next step
    std::string_view view(int column) const {
        const auto* p = reinterpret_cast<const char*>(sqlite3_column_text(st_, column));
        return p ? std::string_view(p, static_cast<std::size_t>(sqlite3_column_bytes(st_, column))) : std::string_view();
    }
    std::int64_t integer(int column) const { return sqlite3_column_int64(st_, column); }
    double real(int column) const { return sqlite3_column_double(st_, column); }
    bool isNull(int column) const { return sqlite3_column_type(st_, column) == SQLITE_NULL; }

private:
    sqlite3* db_;
    sqlite3_stmt* st_ = nullptr;
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
