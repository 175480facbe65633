#pragma once
// The one table of stock posting rules. Everything that moves or recomputes stock derives from
// it: the triggers that post document lines into d1802 (SQLite triggers, and the same as PL/pgSQL
// for PostgreSQL), the movement stream view
// (V_QX_MOVES) and the balance view V_CHECKKC.
#include <string>
#include <utility>
#include <vector>

namespace qx::db::posting {

struct MovementKind {
    int mytype;             // suffix of the movement reports' columns (IN3, OU2, ...)
    const char* typeName;   // TYPE_NAME shown in the movement reports
};

struct PostingRule {
    const char* id;             // short name used for trigger names ("purchase", ...)
    const char* lineTable;      // lines holding the quantities
    const char* headTable;      // head deciding whether and where the lines count
    const char* effectiveFlag;  // head column that must be 1; nullptr = always effective
    const char* warehouse;      // column naming the warehouse
    bool warehouseOnHead;       // true: warehouse is a head column, else a line column
    const char* quantity;       // quantity prefix: "S" (S0..S9) or "Y" (Y0..Y9)
    int sign;                   // +1 into stock, -1 out of stock
    bool perSizeKind;           // the sign of each size decides in/out (loss/gain, point of sale)
    MovementKind in;            // kind of a movement into stock
    MovementKind out;           // kind of a movement out of stock
    const char* dateColumn;     // head column dating the movement
    const char* priceColumn;    // line column with the unit cost, nullptr = none
    bool lineHasStyle;          // line has K_ID (else the style comes from d1801)
};

// Every posting rule, in the order the movement reports list the kinds.
const std::vector<PostingRule>& rules();

// Document head/line pairs (posting or not) whose head delete removes its lines and whose
// dates the closed-period guard protects.
struct DocumentTables {
    const char* headTable;
    const char* lineTable;
    // When set, an update of a closed document is refused only if it changes one of these
    // columns (what the closed period already counted); other columns stay editable. Used for
    // the transfer, whose arrival is confirmed, and posted, in the period it arrives in.
    std::vector<const char*> closedHeadColumns = {};
    std::vector<const char*> closedLineColumns = {};
};
const std::vector<DocumentTables>& documentTables();

// What a clerk calls the document kept in each head table (upper-case table name → name), for
// the closed-period message.
const std::vector<std::pair<const char*, const char*>>& documentKindNames();

// SQLite statements creating the posting triggers, the d1802 total and shortage triggers, the
// closed-period guards and, last, the SKU row completion. They call the connection functions
// qx_guarded(), qx_stock_short(wl_id, ck_id) and qx_closed_period(table, noid, date, end).
std::vector<std::string> sqliteTriggerStatements();

// The same objects on PostgreSQL, from the same rules: PL/pgSQL trigger functions and their
// triggers, KC kept by a BEFORE trigger, the negative-stock check deferred to the commit, and the
// guard functions qx_guarded() (off while the transaction's qx.maintenance is 'on') and
// qx_closed_period(), and the SKU row completion. Unquoted names: PostgreSQL folds them to lower
// case as the dialect does.
std::vector<std::string> postgresTriggerStatements();

// The SKU row of every document line: a line inserted into a document line table whose lines
// name their style and colour (every one but the point-of-sale lines, which carry the SKU code
// alone) adds its missing d1801 row (WL_ID, K_ID, COL_ID from the line, as a document save does)
// and leaves an existing one untouched. Lists join their lines to d1801, so a line without its
// SKU row would not be shown, and saving the document again would drop it.
struct SkuCompletion {
    std::string lineTable;        // "D8201A"
    std::string triggerName;      // "qx_sku_D8201A"
    std::string sqliteTrigger;    // CREATE TRIGGER ... (SQLite)
    std::string postgresTrigger;  // CREATE OR REPLACE FUNCTION ...; CREATE TRIGGER ... (PostgreSQL)
    std::string backfill;         // adds the rows the table's existing lines lack (either engine)
};
const std::vector<SkuCompletion>& skuCompletions();

// T-SQL CREATE VIEW texts, run through the translator after the tables exist:
// V_QX_MOVES (movement stream) and V_CHECKKC (recomputed stock beside the stored stock).
std::vector<std::string> tsqlViewStatements();

// The two of them one by one: SQLite takes the movement stream from T-SQL and the balance view
// from sqliteBalanceViewStatement().
std::string tsqlMovementViewStatement();
std::string tsqlBalanceViewStatement();

// V_CHECKKC on SQLite, native text: the same columns and rows as the T-SQL view, the recount
// done by the connection's table-valued function qx_stock_recount (db/sqlite/StockRecount.h),
// which reads each line table once instead of joining every line to its head and grouping.
std::string sqliteBalanceViewStatement();

// The literal message of the negative-stock guard.
inline constexpr const char* kStockShortMessage = "库存不足支持本次出库业务";

}  // namespace qx::db::posting
