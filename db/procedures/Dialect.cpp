// The spellings the procedures' SQL differs in, per engine (Session.h).
#include <string>

#include "db/procedures/Session.h"

namespace qx::db::procedures {
namespace {

// SQLite: every table has its rowid; dates are stored as "YYYY-MM-DD HH:MM:SS" text.
std::string sqliteRowId(const std::string& alias) { return alias + ".rowid"; }
std::string sqliteIsRow(const std::string& placeholder) { return "rowid=" + placeholder; }
std::string sqliteDay(const std::string& date) { return "substr(" + date + ",1,10)"; }
std::string sqliteJsonTexts(const std::string& placeholder) { return "SELECT value FROM json_each(" + placeholder + ")"; }
std::string sqliteLock(const std::string&) { return {}; }

// PostgreSQL: the line tables have no key, so a row is named by its physical place (ctid: block
// and item), which stays valid within the transaction until the row itself is updated; packed
// into one integer as block × 65536 + item.
std::string postgresRowId(const std::string& alias) {
    return "((" + alias + ".ctid::text::point)[0]::bigint * 65536 + (" + alias + ".ctid::text::point)[1]::bigint)";
}
std::string postgresIsRow(const std::string& placeholder) {
    return "ctid=format('(%s,%s)', " + placeholder + "::bigint / 65536, " + placeholder + "::bigint % 65536)::tid";
}
std::string postgresDay(const std::string& date) { return "to_char(" + date + ", 'YYYY-MM-DD')"; }
std::string postgresDayStart(const std::string& date) { return "date_trunc('day', " + date + ")"; }
std::string postgresJsonTexts(const std::string& placeholder) {
    return "SELECT json_array_elements_text(CAST(" + placeholder + " AS json))";
}
// Readers go on; writers (and a second such routine: the mode conflicts with itself) wait.
std::string postgresLock(const std::string& tables) { return "LOCK TABLE " + tables + " IN SHARE ROW EXCLUSIVE MODE"; }

}  // namespace

const Dialect& sqliteDialect() {
    // A day's text compares before every instant of that day ("2026-03-01" < "2026-03-01 00:00:00").
    static const Dialect dialect{"ifnull", "max", "temp.", false, false, sqliteRowId, sqliteIsRow, sqliteDay, sqliteDay, sqliteJsonTexts, sqliteLock,
                                 "BINARY", " WITHOUT ROWID"};
    return dialect;
}

const Dialect& postgresDialect() {
    static const Dialect dialect{"coalesce", "greatest", "pg_temp.", true, true, postgresRowId, postgresIsRow, postgresDay,
                                 postgresDayStart, postgresJsonTexts, postgresLock, "\"C\"", ""};
    return dialect;
}

std::string quoteName(const Dialect& dialect, const std::string& name) {
    std::string out = "\"";
    for (char c : name) {
        if (c == '"') out += '"';
        out += dialect.foldsNames && c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    }
    return out + "\"";
}

}  // namespace qx::db::procedures
