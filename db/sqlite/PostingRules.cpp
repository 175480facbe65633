#include "db/sqlite/PostingRules.h"

// GCC 12 reports a false -Wrestrict on "literal" + std::string temporaries (GCC bug 105329).
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

#include <cctype>
#include <string>
#include <string_view>

#include "db/sqlite/StockRecount.h"

namespace qx::db::posting {
namespace {

constexpr int kSizes = 10;

// A name of size position i: sized("K", 3) → "K3".
std::string sized(std::string_view prefix, int i) {
    std::string out(prefix);
    out += static_cast<char>('0' + i);
    return out;
}

// A quantity column of size position i of a row: column("l.", "S", 3) → "l.S3".
std::string column(const std::string& prefix, const char* name, int i) {
    return prefix + name + std::to_string(i);
}

std::string joined(int count, const std::string& separator, auto&& item) {
    std::string out;
    for (int i = 0; i < count; ++i) {
        if (i) out += separator;
        out += item(i);
    }
    return out;
}

std::string sizeSum(const std::string& prefix, const char* name, const char* ifNull = "ifnull") {
    return "(" + joined(kSizes, "+", [&](int i) { return std::string(ifNull) + "(" + column(prefix, name, i) + ",0)"; }) + ")";
}

// ---- trigger texts ---------------------------------------------------------------------------

// How the engine writes the few pieces the trigger texts differ in; everything else (what posts,
// where, with which sign, what is closed) is the same text for every engine.
struct Flavour {
    const char* ifNull;       // NULL to a default
    const char* isNot;        // NULL-safe "differs"
    const char* least;        // the smaller of two values
    const char* farFuture;    // a date after every other
    const char* alwaysTrue;   // a condition that holds
    const char* stockTarget;  // qualifier of d1802's own columns in its ON CONFLICT update
    bool plpgsql;             // PostgreSQL: PL/pgSQL functions, conditions inside the body
};
constexpr Flavour kSqlite{"ifnull", " IS NOT ", "min", "'9'", "1", "", false};
constexpr Flavour kPostgres{"coalesce", " IS DISTINCT FROM ", "least", "'infinity'", "TRUE", "d1802.", true};

// "a IS NOT b" in the flavour's words.
std::string differs(const Flavour& f, const std::string& a, const std::string& b) { return a + f.isNot + b; }

// The warehouse of the line row `row` ("NEW", "OLD" or a table alias).
std::string warehouseOf(const PostingRule& rule, const std::string& row) {
    if (!rule.warehouseOnHead) return row + "." + rule.warehouse;
    return std::string("(SELECT h.") + rule.warehouse + " FROM " + rule.headTable + " h WHERE h.NOID=" + row + ".NOID)";
}

// True when the head of line row `row` makes the line count.
std::string effectiveFor(const PostingRule& rule, const std::string& row) {
    std::string cond = std::string("EXISTS (SELECT 1 FROM ") + rule.headTable + " h WHERE h.NOID=" + row + ".NOID";
    if (rule.effectiveFlag) cond += std::string(" AND h.") + rule.effectiveFlag + "=1";
    return cond + ")";
}

// CHECK_KC of the style of line row `row`, for stock rows created on demand.
std::string styleCheckFlag(const Flavour& f, const PostingRule& rule, const std::string& row) {
    if (rule.lineHasStyle)
        return std::string(f.ifNull) + "((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=" + row + ".K_ID),0)";
    return std::string(f.ifNull) + "((SELECT st.CHECK_KC FROM d1801 s JOIN d1800 st ON st.K_ID=s.K_ID WHERE s.WL_ID=" + row +
           ".WL_ID),0)";
}

// " ON CONFLICT ... DO UPDATE": a movement into an existing stock row adds its quantities; into a
// missing one the INSERT creates the row (with the style's CHECK_KC) holding them.
std::string addToExistingRow(const Flavour& f) {
    return " ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET " + joined(kSizes, ", ", [&](int i) {
               return sized("K", i) + "=" + f.stockTarget + "K" + std::to_string(i) + "+excluded.K" + std::to_string(i);
           });
}

std::string sizeColumns() {
    return joined(kSizes, ", ", [](int i) { return sized("K", i); });
}

// The statement that posts one line row (factor +1) or takes it back (factor -1).
std::string postLine(const Flavour& f, const PostingRule& rule, const std::string& row, int factor) {
    const int sign = rule.sign * factor;
    const std::string wh = warehouseOf(rule, row);
    const std::string eff = effectiveFor(rule, row);
    auto quantity = [&](int i) {
        return std::string(sign < 0 ? "-" : "") + f.ifNull + "(" + column(row + ".", rule.quantity, i) + ",0)";
    };
    if (factor > 0) {
        return "INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, " + sizeColumns() + ") SELECT " + row + ".WL_ID, " + wh + ", " +
               styleCheckFlag(f, rule, row) + ", " + joined(kSizes, ", ", quantity) + " WHERE " + eff + " AND " + wh +
               " IS NOT NULL" + addToExistingRow(f) + ";\n";
    }
    return "UPDATE d1802 SET " + joined(kSizes, ", ", [&](int i) { return sized("K", i) + "=K" + std::to_string(i) + "+" + quantity(i); }) +
           " WHERE WL_ID=" + row + ".WL_ID AND CK_ID=" + wh + " AND " + eff + ";\n";
}

// The statement that posts (factor +1) or takes back (factor -1) every line of the head row
// `head`, provided `condition` (on the head row) holds.
std::string postDocument(const Flavour& f, const PostingRule& rule, const std::string& head, int factor,
                         const std::string& condition) {
    const int sign = rule.sign * factor;
    const std::string wh = rule.warehouseOnHead ? head + "." + rule.warehouse : std::string("l.") + rule.warehouse;
    auto total = [&](int i) {
        return std::string(sign < 0 ? "-" : "") + "sum(" + f.ifNull + "(" + column("l.", rule.quantity, i) + ",0))";
    };
    const std::string lines = std::string(" FROM ") + rule.lineTable + " l WHERE " + condition + " AND l.NOID=" + head + ".NOID";
    if (factor > 0) {
        return "INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, " + sizeColumns() + ") SELECT l.WL_ID, " + wh + ", max(" +
               styleCheckFlag(f, rule, "l") + "), " + joined(kSizes, ", ", total) + lines + " AND " + wh +
               " IS NOT NULL GROUP BY l.WL_ID, " + wh + addToExistingRow(f) + ";\n";
    }
    return "UPDATE d1802 SET " + joined(kSizes, ", ", [&](int i) { return sized("K", i) + "=K" + std::to_string(i) + "+" + sized("m.Q", i); }) +
           " FROM (SELECT l.WL_ID AS WL_ID, " + wh + " AS CK_ID, " +
           joined(kSizes, ", ", [&](int i) { return total(i) + " AS Q" + std::to_string(i); }) + lines + " GROUP BY l.WL_ID, " + wh +
           ") m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;\n";
}

std::string headEffective(const Flavour& f, const PostingRule& rule, const std::string& head) {
    if (!rule.effectiveFlag) return f.alwaysTrue;
    const std::string test = std::string(f.ifNull) + "(" + head + "." + rule.effectiveFlag + ",0)=1";
    return f.plpgsql ? "(" + test + ")" : test;  // PostgreSQL does not chain comparisons
}

// A row trigger: on SQLite a trigger with its WHEN and body; on PostgreSQL a PL/pgSQL function
// of the same name holding the condition and body, and the trigger calling it.
std::string trigger(const Flavour& f, const std::string& name, const std::string& timing, const std::string& table,
                    const std::string& when, const std::string& body) {
    if (f.plpgsql) {
        const bool before = timing.rfind("BEFORE", 0) == 0;
        const std::string result = !before ? "NULL" : timing.find("DELETE") != std::string::npos ? "OLD" : "NEW";
        std::string function = "CREATE OR REPLACE FUNCTION " + name + "() RETURNS trigger LANGUAGE plpgsql AS $qx$\nBEGIN\n";
        function += when.empty() ? body : "IF " + when + " THEN\n" + body + "END IF;\n";
        function += "RETURN " + result + ";\nEND $qx$;\n";
        return function + "CREATE TRIGGER " + name + " " + timing + " ON " + table + " FOR EACH ROW EXECUTE FUNCTION " + name + "()";
    }
    std::string out = "CREATE TRIGGER " + name + " " + timing + " ON " + table + " FOR EACH ROW";
    if (!when.empty()) out += " WHEN " + when;
    return out + "\nBEGIN\n" + body + "END";
}

// A call of a connection function for its effect (a guard that raises or records).
std::string perform(const Flavour& f, const std::string& call) { return std::string(f.plpgsql ? "PERFORM " : "SELECT ") + call + ";\n"; }

void addPostingTriggers(const Flavour& f, const PostingRule& rule, std::vector<std::string>& out) {
    const std::string base = std::string("qx_post_") + rule.id;
    out.push_back(trigger(f, base + "_line_ins", "AFTER INSERT", rule.lineTable, "", postLine(f, rule, "NEW", +1)));
    out.push_back(trigger(f, base + "_line_del", "AFTER DELETE", rule.lineTable, "", postLine(f, rule, "OLD", -1)));
    // A line update re-posts only when something that posts changed: a change of cost columns
    // alone (the cost recalculation writes them) leaves the stock rows alone.
    std::string posted = differs(f, "OLD.NOID", "NEW.NOID") + " OR " + differs(f, "OLD.WL_ID", "NEW.WL_ID");
    if (rule.lineHasStyle) posted += " OR " + differs(f, "OLD.K_ID", "NEW.K_ID");
    if (!rule.warehouseOnHead) posted += " OR " + differs(f, std::string("OLD.") + rule.warehouse, std::string("NEW.") + rule.warehouse);
    for (int i = 0; i < kSizes; ++i)
        posted += " OR " + differs(f, column("OLD.", rule.quantity, i), column("NEW.", rule.quantity, i));
    out.push_back(trigger(f, base + "_line_upd", "AFTER UPDATE", rule.lineTable, posted,
                          postLine(f, rule, "OLD", -1) + postLine(f, rule, "NEW", +1)));

    // A head posts its lines when it becomes effective (or when a line-independent part of the
    // posting, the head's warehouse or number, changes) and takes them back when it stops.
    std::string changed = headEffective(f, rule, "OLD") + " <> " + headEffective(f, rule, "NEW") + " OR " + differs(f, "OLD.NOID", "NEW.NOID");
    if (rule.warehouseOnHead)
        changed += " OR " + differs(f, std::string("OLD.") + rule.warehouse, std::string("NEW.") + rule.warehouse);
    out.push_back(trigger(f, base + "_head_upd", "AFTER UPDATE", rule.headTable, changed,
                          postDocument(f, rule, "OLD", -1, headEffective(f, rule, "OLD")) +
                              postDocument(f, rule, "NEW", +1, headEffective(f, rule, "NEW"))));
    // Lines written before their head count once the head arrives.
    out.push_back(trigger(f, base + "_head_ins", "AFTER INSERT", rule.headTable, headEffective(f, rule, "NEW"),
                          postDocument(f, rule, "NEW", +1, f.alwaysTrue)));
}

// d1802.KC is always the sum of K0..K9; a shortage of a checked row is reported to the
// connection, which refuses the batch at its end unless the stock is back to zero or more.
void addStockTriggers(std::vector<std::string>& out) {
    const std::string total = sizeSum("NEW.", "K");
    const std::string kList = joined(kSizes, ", ", [](int i) { return sized("K", i); });
    const Flavour& f = kSqlite;
    out.push_back(trigger(f, "qx_d1802_total_upd", "AFTER UPDATE OF " + kList, "d1802", "NEW.KC IS NOT " + total,
                          "UPDATE d1802 SET KC=" + sizeSum("", "K") + " WHERE rowid=NEW.rowid;\n"));
    out.push_back(trigger(f, "qx_d1802_total_ins", "AFTER INSERT", "d1802", "NEW.KC IS NOT " + total,
                          "UPDATE d1802 SET KC=" + sizeSum("", "K") + " WHERE rowid=NEW.rowid;\n"));
    const std::string loweredBelowZero = joined(kSizes, " OR ", [](int i) {
        const std::string k = sized("K", i);
        return "(NEW." + k + "<0 AND NEW." + k + "<ifnull(OLD." + k + ",0))";
    });
    out.push_back(trigger(f, "qx_d1802_short_upd", "AFTER UPDATE OF " + kList + ", CHECK_KC", "d1802",
                          "NEW.CHECK_KC=1 AND (" + loweredBelowZero + ")",
                          "SELECT qx_stock_short(NEW.WL_ID, NEW.CK_ID);\n"));
    const std::string belowZero = joined(kSizes, " OR ", [](int i) { return sized("NEW.K", i) + "<0"; });
    out.push_back(trigger(f, "qx_d1802_short_ins", "AFTER INSERT", "d1802", "NEW.CHECK_KC=1 AND (" + belowZero + ")",
                          "SELECT qx_stock_short(NEW.WL_ID, NEW.CK_ID);\n"));
}

// The same on PostgreSQL: KC set before the row is written; a checked row this transaction drove
// below zero is looked at again when it commits (a deferred constraint trigger), so an edit that
// deletes and re-inserts its lines may pass through a negative value.
void addPostgresStockTriggers(std::vector<std::string>& out) {
    out.push_back("CREATE OR REPLACE FUNCTION qx_d1802_total() RETURNS trigger LANGUAGE plpgsql AS $qx$\nBEGIN\nNEW.KC := " +
                  sizeSum("NEW.", "K", "coalesce") + ";\nRETURN NEW;\nEND $qx$;\n"
                  "CREATE TRIGGER qx_d1802_total BEFORE INSERT OR UPDATE ON d1802 FOR EACH ROW EXECUTE FUNCTION qx_d1802_total()");
    const std::string negative = joined(kSizes, " OR ", [](int i) { return sized("K", i) + "<0"; });
    out.push_back(std::string("CREATE OR REPLACE FUNCTION qx_d1802_short() RETURNS trigger LANGUAGE plpgsql AS $qx$\nBEGIN\n") +
                  "IF qx_guarded() AND EXISTS (SELECT 1 FROM d1802 WHERE WL_ID=NEW.WL_ID AND CK_ID=NEW.CK_ID AND CHECK_KC=1 AND (" +
                  negative + ")) THEN\nRAISE EXCEPTION USING MESSAGE = '" + kStockShortMessage +
                  "', ERRCODE = 'check_violation', DETAIL = 'd1802 WL_ID=' || NEW.WL_ID || ' CK_ID=' || NEW.CK_ID;\nEND IF;\n"
                  "RETURN NULL;\nEND $qx$");
    const std::string loweredBelowZero = joined(kSizes, " OR ", [](int i) {
        const std::string k = sized("K", i);
        return "(NEW." + k + "<0 AND NEW." + k + "<OLD." + k + ")";
    });
    out.push_back("CREATE CONSTRAINT TRIGGER qx_d1802_short_upd AFTER UPDATE ON d1802 DEFERRABLE INITIALLY DEFERRED FOR EACH ROW "
                  "WHEN (NEW.CHECK_KC=1 AND (" + loweredBelowZero + ")) EXECUTE FUNCTION qx_d1802_short()");
    out.push_back("CREATE CONSTRAINT TRIGGER qx_d1802_short_ins AFTER INSERT ON d1802 DEFERRABLE INITIALLY DEFERRED FOR EACH ROW "
                  "WHEN (NEW.CHECK_KC=1 AND (" + joined(kSizes, " OR ", [](int i) { return sized("NEW.K", i) + "<0"; }) +
                  ")) EXECUTE FUNCTION qx_d1802_short()");
}

// The connection functions the PostgreSQL triggers call: qx_guarded() is false in a maintenance
// batch (the engine sets qx.maintenance for its transaction), qx_closed_period raises the
// closed-period message naming the document as the clerk knows it.
void addPostgresGuardFunctions(std::vector<std::string>& out) {
    out.push_back("CREATE OR REPLACE FUNCTION qx_guarded() RETURNS boolean LANGUAGE sql STABLE AS "
                  "$qx$SELECT current_setting('qx.maintenance', true) IS DISTINCT FROM 'on'$qx$");
    std::string kinds = "CASE upper(tbl)";
    for (const auto& [table, name] : documentKindNames()) kinds += std::string(" WHEN '") + table + "' THEN '" + name + "'";
    kinds += " ELSE '单据 ' || tbl END";
    out.push_back("CREATE OR REPLACE FUNCTION qx_closed_period(tbl text, noid text, at timestamp, period_end timestamp) RETURNS void "
                  "LANGUAGE plpgsql AS $qx$\nBEGIN\nRAISE EXCEPTION USING ERRCODE = 'check_violation', MESSAGE = " + kinds +
                  " || ' ' || coalesce(noid, '') || ' 的日期 ' || coalesce(to_char(at, 'YYYY-MM-DD'), '') || ' 属于已结账期间（' || "
                  "coalesce(to_char(period_end, 'YYYY-MM-DD'), '') || ' 之前），不能新增、修改或删除该期间的单据';\nEND $qx$");
}

// " AND (OLD.a IS NOT NEW.a OR ...)" for the listed columns; nothing when there are none.
std::string anyChanged(const Flavour& f, const std::vector<const char*>& columns) {
    if (columns.empty()) return {};
    std::string out;
    for (const char* c : columns) out += std::string(out.empty() ? "" : " OR ") + differs(f, std::string("OLD.") + c, std::string("NEW.") + c);
    return " AND (" + out + ")";
}

// Heads take their lines with them; documents dated before sys_co.CK_END_DATE are closed.
void addDocumentTriggers(const Flavour& f, const DocumentTables& doc, std::vector<std::string>& out) {
    const std::string head = doc.headTable;
    const std::string lines = doc.lineTable;
    const std::string end = "(SELECT max(CK_END_DATE) FROM sys_co)";
    const std::string ifNull = f.ifNull, least = f.least, farFuture = f.farFuture;
    // A head's delete removes its lines first, while the head still exists, so that the line
    // triggers take back what they posted.
    out.push_back(trigger(f, "qx_doc_" + head + "_cascade", "BEFORE DELETE", head, "",
                          "DELETE FROM " + lines + " WHERE NOID=OLD.NOID;\n"));
    auto refuse = [&](const std::string& row, const std::string& table, const std::string& date) {
        return perform(f, "qx_closed_period('" + table + "', " + row + ".NOID, " + date + ", " + end + ")");
    };
    const std::string guarded = "qx_guarded() AND ";
    out.push_back(trigger(f, "qx_closed_" + head + "_ins", "BEFORE INSERT", head,
                          guarded + "NEW.BDATE < " + end, refuse("NEW", head, "NEW.BDATE")));
    out.push_back(trigger(f, "qx_closed_" + head + "_upd", "BEFORE UPDATE", head,
                          guarded + "(OLD.BDATE < " + end + " OR NEW.BDATE < " + end + ")" + anyChanged(f, doc.closedHeadColumns),
                          refuse("OLD", head, least + "(OLD.BDATE, " + ifNull + "(NEW.BDATE, OLD.BDATE))")));
    out.push_back(trigger(f, "qx_closed_" + head + "_del", "BEFORE DELETE", head, guarded + "OLD.BDATE < " + end,
                          refuse("OLD", head, "OLD.BDATE")));
    auto headDate = [&](const std::string& row) {
        return "(SELECT h.BDATE FROM " + head + " h WHERE h.NOID=" + row + ".NOID)";
    };
    out.push_back(trigger(f, "qx_closed_" + lines + "_ins", "BEFORE INSERT", lines,
                          guarded + headDate("NEW") + " < " + end, refuse("NEW", head, headDate("NEW"))));
    out.push_back(trigger(f, "qx_closed_" + lines + "_upd", "BEFORE UPDATE", lines,
                          guarded + "(" + headDate("OLD") + " < " + end + " OR " + headDate("NEW") + " < " + end + ")" + anyChanged(f, doc.closedLineColumns),
                          refuse("OLD", head, least + "(" + ifNull + "(" + headDate("OLD") + "," + farFuture + "), " + ifNull + "(" + headDate("NEW") + "," + farFuture + "))")));
    out.push_back(trigger(f, "qx_closed_" + lines + "_del", "BEFORE DELETE", lines,
                          guarded + headDate("OLD") + " < " + end, refuse("OLD", head, headDate("OLD"))));
}

// Movements dated by a head column other than BDATE (a transfer's arrival, YDATE) are closed
// with the period of that date: a confirmed arrival dated before sys_co.CK_END_DATE cannot be
// taken back, re-dated, re-addressed or recounted, and none can be confirmed into it.
void addPostingDateGuards(const Flavour& f, const PostingRule& rule, std::vector<std::string>& out) {
    if (std::string_view(rule.dateColumn) == "BDATE" || !rule.effectiveFlag) return;
    const std::string end = "(SELECT max(CK_END_DATE) FROM sys_co)";
    const std::string flag = rule.effectiveFlag, date = rule.dateColumn;
    const std::string ifNull = f.ifNull, least = f.least, farFuture = f.farFuture;
    auto closedMovement = [&](const std::string& row) {
        return "(" + ifNull + "(" + row + "." + flag + ",0)=1 AND " + row + "." + date + " < " + end + ")";
    };
    auto refuse = [&](const std::string& noid, const std::string& at) {
        return perform(f, std::string("qx_closed_period('") + rule.headTable + "', " + noid + ", " + at + ", " + end + ")");
    };
    std::string headChanged = differs(f, "OLD." + flag, "NEW." + flag) + " OR " + differs(f, "OLD." + date, "NEW." + date);
    if (rule.warehouseOnHead) headChanged += " OR " + differs(f, std::string("OLD.") + rule.warehouse, std::string("NEW.") + rule.warehouse);
    out.push_back(trigger(f, std::string("qx_closed_") + rule.id + "_head", "BEFORE UPDATE", rule.headTable,
                          "qx_guarded() AND (" + closedMovement("OLD") + " OR " + closedMovement("NEW") + ") AND (" + headChanged + ")",
                          refuse("OLD.NOID", least + "(" + ifNull + "(OLD." + date + "," + farFuture + "), " + ifNull + "(NEW." + date + "," + farFuture + "))")));
    std::string lineChanged = differs(f, "OLD.WL_ID", "NEW.WL_ID");
    if (!rule.warehouseOnHead) lineChanged += " OR " + differs(f, std::string("OLD.") + rule.warehouse, std::string("NEW.") + rule.warehouse);
    for (int i = 0; i < kSizes; ++i) lineChanged += " OR " + differs(f, column("OLD.", rule.quantity, i), column("NEW.", rule.quantity, i));
    const std::string head = std::string("(SELECT h.") + date + " FROM " + rule.headTable + " h WHERE h.NOID=OLD.NOID AND " + ifNull + "(h." +
                             flag + ",0)=1)";
    out.push_back(trigger(f, std::string("qx_closed_") + rule.id + "_line", "BEFORE UPDATE", rule.lineTable,
                          "qx_guarded() AND " + head + " < " + end + " AND (" + lineChanged + ")", refuse("OLD.NOID", head)));
}

// ---- SKU rows -----------------------------------------------------------------------------

bool sameTable(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i)
        if (std::tolower(static_cast<unsigned char>(a[i])) != std::tolower(static_cast<unsigned char>(b[i]))) return false;
    return true;
}

// The document line tables whose lines name their style and colour, each once: the posting
// rules' in their order, then the other documents' (orders, stocktaking); not a table of a rule
// whose lines carry the SKU code alone (the point-of-sale lines).
std::vector<std::string> styledLineTables() {
    std::vector<std::string> out;
    auto add = [&](const char* table) {
        for (const auto& rule : rules())
            if (!rule.lineHasStyle && sameTable(rule.lineTable, table)) return;
        for (const auto& known : out)
            if (sameTable(known, table)) return;
        out.emplace_back(table);
    };
    for (const auto& rule : rules()) add(rule.lineTable);
    for (const auto& doc : documentTables()) add(doc.lineTable);
    return out;
}

// The d1801 row of the line row `row` when it has none, as a document save adds it (the line's
// WL_ID, K_ID, COL_ID). The conflict clause keeps two terminals adding the same new SKU at once
// from failing the later one.
std::string completeSku(const std::string& row) {
    return "INSERT INTO d1801 (WL_ID, K_ID, COL_ID) SELECT " + row + ".WL_ID, " + row + ".K_ID, " + row +
           ".COL_ID WHERE NOT EXISTS (SELECT 1 FROM d1801 s WHERE s.WL_ID=" + row + ".WL_ID) ON CONFLICT (WL_ID) DO NOTHING;\n";
}

// ---- T-SQL view texts ------------------------------------------------------------------------

std::string movementSelect(const PostingRule& rule, const MovementKind& kind, int part) {
    // part: 0 = whole line with the rule's sign, +1 = only sizes moving in, -1 = only sizes out
    const std::string sign = rule.sign < 0 ? "-" : "";
    auto qty = [&](int i) { return sign + column("l.", rule.quantity, i); };
    auto partQty = [&](int i) {
        if (part == 0) return qty(i);
        const std::string cmp = part > 0 ? ">" : "<";
        return "CASE WHEN " + qty(i) + cmp + "0 THEN " + qty(i) + " ELSE 0 END";
    };
    const std::string wh = rule.warehouseOnHead ? std::string("h.") + rule.warehouse : std::string("l.") + rule.warehouse;
    std::string sql = "SELECT l.WL_ID AS WL_ID, " + std::string(rule.lineHasStyle ? "l.K_ID" : "s.K_ID") + " AS K_ID, " +
                      wh + " AS CK_ID, h." + rule.dateColumn + " AS BDATE, l.NOID AS NOID, " +
                      std::to_string(kind.mytype) + " AS mytype, '" + kind.typeName + "' AS TYPE_NAME, " +
                      std::to_string(part == 0 ? (rule.sign > 0 ? 1 : -1) : part) + " AS DIR, ";
    sql += joined(kSizes, ", ", [&](int i) { return partQty(i) + " AS Q" + std::to_string(i); });
    sql += ", " + joined(kSizes, "+", [&](int i) { return "(" + partQty(i) + ")"; }) + " AS QTY, ";
    sql += std::string(rule.priceColumn ? std::string("l.") + rule.priceColumn : std::string("0.00")) + " AS DJ";
    sql += std::string(" FROM ") + rule.lineTable + " l INNER JOIN " + rule.headTable + " h ON h.NOID = l.NOID";
    if (!rule.lineHasStyle) sql += " LEFT JOIN d1801 s ON s.WL_ID = l.WL_ID";
    sql += " WHERE " + std::string(rule.effectiveFlag ? std::string("h.") + rule.effectiveFlag + " = 1" : "1 = 1");
    if (part != 0) {
        const std::string cmp = part > 0 ? ">" : "<";
        sql += " AND (" + joined(kSizes, " OR ", [&](int i) { return qty(i) + cmp + "0"; }) + ")";
    }
    return sql;
}

std::string movementStreamView() {
    std::string body;
    for (const auto& rule : rules()) {
        std::vector<std::string> parts;
        if (rule.perSizeKind) {
            parts.push_back(movementSelect(rule, rule.in, +1));
            parts.push_back(movementSelect(rule, rule.out, -1));
        } else {
            parts.push_back(movementSelect(rule, rule.sign > 0 ? rule.in : rule.out, 0));
        }
        for (const auto& p : parts) body += (body.empty() ? "" : "\nUNION ALL\n") + p;
    }
    return "CREATE VIEW V_QX_MOVES AS\n" + body;
}

// The net quantities of every effective line, per SKU and warehouse: the movement stream
// without its kinds, so a loss/gain or point-of-sale line is read once, not once per direction.
std::string netMovements() {
    std::string body;
    for (const auto& rule : rules()) {
        const std::string sign = rule.sign < 0 ? "-" : "";
        const std::string wh = rule.warehouseOnHead ? std::string("h.") + rule.warehouse : std::string("l.") + rule.warehouse;
        std::string sql = "SELECT l.WL_ID AS WL_ID, " + wh + " AS CK_ID, ";
        sql += joined(kSizes, ", ", [&](int i) { return sign + column("l.", rule.quantity, i) + " AS Q" + std::to_string(i); });
        sql += std::string(" FROM ") + rule.lineTable + " l INNER JOIN " + rule.headTable + " h ON h.NOID = l.NOID WHERE " +
               std::string(rule.effectiveFlag ? std::string("h.") + rule.effectiveFlag + " = 1" : "1 = 1");
        body += (body.empty() ? "" : " UNION ALL ") + sql;
    }
    return body;
}

std::string checkView() {
    auto recomputed = [](int i) {
        return sized("k.B", i) + " + ISNULL(m.Q" + std::to_string(i) + ", 0)";
    };
    std::string sql = "CREATE VIEW V_CHECKKC AS\nSELECT k.CK_ID AS ck_id, w.CK_NAME AS ck_name, k.WL_ID AS wl_id, "
                      "s.K_ID AS k_id, st.WL_NAME AS wl_name, c.COL_NAME AS COL_NAME, ";
    sql += joined(kSizes, ", ", [&](int i) { return recomputed(i) + " AS C" + std::to_string(i); });
    sql += ", " + joined(kSizes, ", ", [](int i) { return sized("k.K", i) + " AS K" + std::to_string(i); });
    sql += ", " + joined(kSizes, ", ", [](int i) { return sized("z.M", i) + " AS m" + std::to_string(i); });
    sql += "\nFROM d1802 k\nLEFT JOIN (SELECT WL_ID, CK_ID, " +
           joined(kSizes, ", ", [](int i) { return "SUM(Q" + std::to_string(i) + ") AS Q" + std::to_string(i); }) +
           " FROM (" + netMovements() + ") n GROUP BY WL_ID, CK_ID) m ON m.WL_ID = k.WL_ID AND m.CK_ID = k.CK_ID\n"
           "LEFT JOIN d1007 w ON w.CK_ID = k.CK_ID\n"
           "LEFT JOIN d1801 s ON s.WL_ID = k.WL_ID\n"
           "LEFT JOIN d1800 st ON st.K_ID = s.K_ID\n"
           "LEFT JOIN d1005 c ON c.COL_ID = s.COL_ID\n"
           "LEFT JOIN d1006 z ON z.M_ID = st.M_ID\nWHERE ";
    sql += joined(kSizes, " OR ", [&](int i) { return sized("k.K", i) + " <> " + recomputed(i); });
    return sql;
}

}  // namespace

const std::vector<PostingRule>& rules() {
    static const std::vector<PostingRule> table = {
        {"purchase", "D8101A", "D8101", "T", "CK_ID", false, "S", +1, false,
         {6, "采购进货"}, {6, "采购进货"}, "BDATE", "DJ", true},
        {"purchase_return", "D8102A", "D8102", "T", "CK_ID", false, "S", -1, false,
         {6, "采购退货"}, {6, "采购退货"}, "BDATE", "DJ", true},
        {"sale", "D8201A", "D8201", "T", "CK_ID", false, "S", -1, false,
         {2, "销售开单"}, {2, "销售开单"}, "BDATE", "DJ", true},
        {"sale_return", "D8202A", "D8202", "T", "CK_ID", false, "S", +1, false,
         {3, "销售退货"}, {3, "销售退货"}, "BDATE", "DJ", true},
        {"lossgain", "d8301A", "d8301", "T", "CK_ID", false, "S", +1, true,
         {4, "盘盈"}, {4, "盘亏"}, "BDATE", "DJ", true},
        {"transfer_out", "D8303A", "D8303", "T", "CK_ID", false, "S", -1, false,
         {5, "调拨出"}, {5, "调拨出"}, "BDATE", "DJ", true},
        {"transfer_in", "D8303A", "D8303", "Y", "CK_ID_IN", false, "Y", +1, false,
         {5, "调拨进"}, {5, "调拨进"}, "YDATE", "DJ", true},
        {"pos", "d712a", "d712", nullptr, "CK_ID", true, "S", -1, true,
         {7, "POS退货"}, {10, "POS销售"}, "BDATE", nullptr, false},
    };
    return table;
}

const std::vector<std::pair<const char*, const char*>>& documentKindNames() {
    static const std::vector<std::pair<const char*, const char*>> names = {
        {"D8101", "进货单"}, {"D8102", "进货退货单"}, {"D8201", "销售单"},  {"D8202", "销售退货单"},
        {"D8203", "订单"},   {"D8300", "盘点单"},     {"D8301", "损溢单"},  {"D8303", "调拨单"},
        {"D712", "POS销售单"},
    };
    return names;
}

const std::vector<DocumentTables>& documentTables() {
    static const std::vector<DocumentTables> table = {
        {"D8101", "D8101A"}, {"D8102", "D8102A"}, {"D8201", "D8201A"}, {"D8202", "D8202A"},
        {"D8203", "D8203A"}, {"d8300", "d8300A"}, {"d8301", "d8301A"},
        {"D8303", "D8303A", {"NOID", "T", "CK_ID", "CK_ID_IN", "BDATE"},
         {"NOID", "WL_ID", "K_ID", "CK_ID", "CK_ID_IN", "S0", "S1", "S2", "S3", "S4", "S5", "S6", "S7", "S8", "S9"}},
        {"d712", "d712a"},
    };
    return table;
}

const std::vector<SkuCompletion>& skuCompletions() {
    static const std::vector<SkuCompletion> table = [] {
        std::vector<SkuCompletion> out;
        for (const auto& lines : styledLineTables()) {
            const std::string name = "qx_sku_" + lines;
            out.push_back({lines, name, trigger(kSqlite, name, "AFTER INSERT", lines, "", completeSku("NEW")),
                           trigger(kPostgres, name, "AFTER INSERT", lines, "", completeSku("NEW")),
                           "INSERT INTO d1801 (WL_ID, K_ID, COL_ID) SELECT l.WL_ID, min(l.K_ID), min(l.COL_ID) FROM " + lines +
                               " l WHERE NOT EXISTS (SELECT 1 FROM d1801 s WHERE s.WL_ID=l.WL_ID) GROUP BY l.WL_ID"});
        }
        return out;
    }();
    return table;
}

std::vector<std::string> sqliteTriggerStatements() {
    std::vector<std::string> out;
    addStockTriggers(out);
    for (const auto& rule : rules()) addPostingTriggers(kSqlite, rule, out);
    for (const auto& doc : documentTables()) addDocumentTriggers(kSqlite, doc, out);
    for (const auto& rule : rules()) addPostingDateGuards(kSqlite, rule, out);
    for (const auto& completion : skuCompletions()) out.push_back(completion.sqliteTrigger);
    return out;
}

std::vector<std::string> postgresTriggerStatements() {
    std::vector<std::string> out;
    addPostgresGuardFunctions(out);
    addPostgresStockTriggers(out);
    for (const auto& rule : rules()) addPostingTriggers(kPostgres, rule, out);
    for (const auto& doc : documentTables()) addDocumentTriggers(kPostgres, doc, out);
    for (const auto& rule : rules()) addPostingDateGuards(kPostgres, rule, out);
    for (const auto& completion : skuCompletions()) out.push_back(completion.postgresTrigger);
    return out;
}

std::vector<std::string> tsqlViewStatements() { return {movementStreamView(), checkView()}; }

std::string tsqlMovementViewStatement() { return movementStreamView(); }

std::string tsqlBalanceViewStatement() { return checkView(); }

std::string sqliteBalanceViewStatement() {
    // The recount lists the differing stock rows; the names are joined to those rows only.
    std::string sql = "CREATE VIEW V_CHECKKC AS\nSELECT k.CK_ID AS ck_id, w.CK_NAME AS ck_name, k.WL_ID AS wl_id, "
                      "s.K_ID AS k_id, st.WL_NAME AS wl_name, c.COL_NAME AS COL_NAME, ";
    sql += joined(kSizes, ", ", [](int i) { return sized("r.C", i) + " AS C" + std::to_string(i); });
    sql += ", " + joined(kSizes, ", ", [](int i) { return sized("k.K", i) + " AS K" + std::to_string(i); });
    sql += ", " + joined(kSizes, ", ", [](int i) { return sized("z.M", i) + " AS m" + std::to_string(i); });
    sql += std::string("\nFROM ") + kStockRecountName + " r JOIN d1802 k ON k.rowid = r.stock_row\n"
           "LEFT JOIN d1007 w ON w.CK_ID = k.CK_ID\n"
           "LEFT JOIN d1801 s ON s.WL_ID = k.WL_ID\n"
           "LEFT JOIN d1800 st ON st.K_ID = s.K_ID\n"
           "LEFT JOIN d1005 c ON c.COL_ID = s.COL_ID\n"
           "LEFT JOIN d1006 z ON z.M_ID = st.M_ID";
    return sql;
}

}  // namespace qx::db::posting
