#include "db/sqlite/PostingRules.h"

// GCC 12 reports a false -Wrestrict on "literal" + std::string temporaries (GCC bug 105329).
#if defined(__GNUC__) && !defined(__clang__)
#pragma GCC diagnostic ignored "-Wrestrict"
#endif

#include <string>
#include <string_view>

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

std::string sizeSum(const std::string& prefix, const char* name) {
    return "(" + joined(kSizes, "+", [&](int i) { return "ifnull(" + column(prefix, name, i) + ",0)"; }) + ")";
}

// ---- SQLite trigger texts ------------------------------------------------------------------

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
std::string styleCheckFlag(const PostingRule& rule, const std::string& row) {
    if (rule.lineHasStyle)
        return "ifnull((SELECT st.CHECK_KC FROM d1800 st WHERE st.K_ID=" + row + ".K_ID),0)";
    return "ifnull((SELECT st.CHECK_KC FROM d1801 s JOIN d1800 st ON st.K_ID=s.K_ID WHERE s.WL_ID=" + row +
           ".WL_ID),0)";
}

// " ON CONFLICT ... DO UPDATE": a movement into an existing stock row adds its quantities; into a
// missing one the INSERT creates the row (with the style's CHECK_KC) holding them.
std::string addToExistingRow() {
    return " ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET " +
           joined(kSizes, ", ", [](int i) { return sized("K", i) + "=K" + std::to_string(i) + "+excluded.K" + std::to_string(i); });
}

std::string sizeColumns() {
    return joined(kSizes, ", ", [](int i) { return sized("K", i); });
}

// The statement that posts one line row (factor +1) or takes it back (factor -1).
std::string postLine(const PostingRule& rule, const std::string& row, int factor) {
    const int sign = rule.sign * factor;
    const std::string wh = warehouseOf(rule, row);
    const std::string eff = effectiveFor(rule, row);
    auto quantity = [&](int i) {
        return std::string(sign < 0 ? "-" : "") + "ifnull(" + column(row + ".", rule.quantity, i) + ",0)";
    };
    if (factor > 0) {
        return "INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, " + sizeColumns() + ") SELECT " + row + ".WL_ID, " + wh + ", " +
               styleCheckFlag(rule, row) + ", " + joined(kSizes, ", ", quantity) + " WHERE " + eff + " AND " + wh +
               " IS NOT NULL" + addToExistingRow() + ";\n";
    }
    return "UPDATE d1802 SET " + joined(kSizes, ", ", [&](int i) { return sized("K", i) + "=K" + std::to_string(i) + "+" + quantity(i); }) +
           " WHERE WL_ID=" + row + ".WL_ID AND CK_ID=" + wh + " AND " + eff + ";\n";
}

// The statement that posts (factor +1) or takes back (factor -1) every line of the head row
// `head`, provided `condition` (on the head row) holds.
std::string postDocument(const PostingRule& rule, const std::string& head, int factor, const std::string& condition) {
    const int sign = rule.sign * factor;
    const std::string wh = rule.warehouseOnHead ? head + "." + rule.warehouse : std::string("l.") + rule.warehouse;
    auto total = [&](int i) {
        return std::string(sign < 0 ? "-" : "") + "sum(ifnull(" + column("l.", rule.quantity, i) + ",0))";
    };
    const std::string lines = std::string(" FROM ") + rule.lineTable + " l WHERE " + condition + " AND l.NOID=" + head + ".NOID";
    if (factor > 0) {
        return "INSERT INTO d1802 (WL_ID, CK_ID, CHECK_KC, " + sizeColumns() + ") SELECT l.WL_ID, " + wh + ", max(" +
               styleCheckFlag(rule, "l") + "), " + joined(kSizes, ", ", total) + lines + " AND " + wh +
               " IS NOT NULL GROUP BY l.WL_ID, " + wh + addToExistingRow() + ";\n";
    }
    return "UPDATE d1802 SET " + joined(kSizes, ", ", [&](int i) { return sized("K", i) + "=K" + std::to_string(i) + "+" + sized("m.Q", i); }) +
           " FROM (SELECT l.WL_ID AS WL_ID, " + wh + " AS CK_ID, " +
           joined(kSizes, ", ", [&](int i) { return total(i) + " AS Q" + std::to_string(i); }) + lines + " GROUP BY l.WL_ID, " + wh +
           ") m WHERE d1802.WL_ID=m.WL_ID AND d1802.CK_ID=m.CK_ID;\n";
}

std::string headEffective(const PostingRule& rule, const std::string& head) {
    if (!rule.effectiveFlag) return "1";
    return "ifnull(" + head + "." + rule.effectiveFlag + ",0)=1";
}

std::string trigger(const std::string& name, const std::string& timing, const std::string& table,
                    const std::string& when, const std::string& body) {
    std::string out = "CREATE TRIGGER " + name + " " + timing + " ON " + table + " FOR EACH ROW";
    if (!when.empty()) out += " WHEN " + when;
    return out + "\nBEGIN\n" + body + "END";
}

void addPostingTriggers(const PostingRule& rule, std::vector<std::string>& out) {
    const std::string base = std::string("qx_post_") + rule.id;
    out.push_back(trigger(base + "_line_ins", "AFTER INSERT", rule.lineTable, "", postLine(rule, "NEW", +1)));
    out.push_back(trigger(base + "_line_del", "AFTER DELETE", rule.lineTable, "", postLine(rule, "OLD", -1)));
    // A line update re-posts only when something that posts changed: a change of cost columns
    // alone (the cost recalculation writes them) leaves the stock rows alone.
    std::string posted = "OLD.NOID IS NOT NEW.NOID OR OLD.WL_ID IS NOT NEW.WL_ID";
    if (rule.lineHasStyle) posted += " OR OLD.K_ID IS NOT NEW.K_ID";
    if (!rule.warehouseOnHead) posted += std::string(" OR OLD.") + rule.warehouse + " IS NOT NEW." + rule.warehouse;
    for (int i = 0; i < kSizes; ++i)
        posted += " OR " + column("OLD.", rule.quantity, i) + " IS NOT " + column("NEW.", rule.quantity, i);
    out.push_back(trigger(base + "_line_upd", "AFTER UPDATE", rule.lineTable, posted,
                          postLine(rule, "OLD", -1) + postLine(rule, "NEW", +1)));

    // A head posts its lines when it becomes effective (or when a line-independent part of the
    // posting, the head's warehouse or number, changes) and takes them back when it stops.
    std::string changed = headEffective(rule, "OLD") + " <> " + headEffective(rule, "NEW") + " OR OLD.NOID IS NOT NEW.NOID";
    if (rule.warehouseOnHead)
        changed += std::string(" OR OLD.") + rule.warehouse + " IS NOT NEW." + rule.warehouse;
    out.push_back(trigger(base + "_head_upd", "AFTER UPDATE", rule.headTable, changed,
                          postDocument(rule, "OLD", -1, headEffective(rule, "OLD")) +
                              postDocument(rule, "NEW", +1, headEffective(rule, "NEW"))));
    // Lines written before their head count once the head arrives.
    out.push_back(trigger(base + "_head_ins", "AFTER INSERT", rule.headTable, headEffective(rule, "NEW"),
                          postDocument(rule, "NEW", +1, "1")));
}

// d1802.KC is always the sum of K0..K9; a shortage of a checked row is reported to the
// connection, which refuses the batch at its end unless the stock is back to zero or more.
void addStockTriggers(std::vector<std::string>& out) {
    const std::string total = sizeSum("NEW.", "K");
    const std::string kList = joined(kSizes, ", ", [](int i) { return sized("K", i); });
    out.push_back(trigger("qx_d1802_total_upd", "AFTER UPDATE OF " + kList, "d1802", "NEW.KC IS NOT " + total,
                          "UPDATE d1802 SET KC=" + sizeSum("", "K") + " WHERE rowid=NEW.rowid;\n"));
    out.push_back(trigger("qx_d1802_total_ins", "AFTER INSERT", "d1802", "NEW.KC IS NOT " + total,
                          "UPDATE d1802 SET KC=" + sizeSum("", "K") + " WHERE rowid=NEW.rowid;\n"));
    const std::string loweredBelowZero = joined(kSizes, " OR ", [](int i) {
        const std::string k = sized("K", i);
        return "(NEW." + k + "<0 AND NEW." + k + "<ifnull(OLD." + k + ",0))";
    });
    out.push_back(trigger("qx_d1802_short_upd", "AFTER UPDATE OF " + kList + ", CHECK_KC", "d1802",
                          "NEW.CHECK_KC=1 AND (" + loweredBelowZero + ")",
                          "SELECT qx_stock_short(NEW.WL_ID, NEW.CK_ID);\n"));
    const std::string belowZero = joined(kSizes, " OR ", [](int i) { return sized("NEW.K", i) + "<0"; });
    out.push_back(trigger("qx_d1802_short_ins", "AFTER INSERT", "d1802", "NEW.CHECK_KC=1 AND (" + belowZero + ")",
                          "SELECT qx_stock_short(NEW.WL_ID, NEW.CK_ID);\n"));
}

// " AND (OLD.a IS NOT NEW.a OR ...)" for the listed columns; nothing when there are none.
std::string anyChanged(const std::vector<const char*>& columns) {
    if (columns.empty()) return {};
    std::string out;
    for (const char* c : columns) out += std::string(out.empty() ? "" : " OR ") + "OLD." + c + " IS NOT NEW." + c;
    return " AND (" + out + ")";
}

// Heads take their lines with them; documents dated before sys_co.CK_END_DATE are closed.
void addDocumentTriggers(const DocumentTables& doc, std::vector<std::string>& out) {
    const std::string head = doc.headTable;
    const std::string lines = doc.lineTable;
    const std::string end = "(SELECT max(CK_END_DATE) FROM sys_co)";
    // A head's delete removes its lines first, while the head still exists, so that the line
    // triggers take back what they posted.
    out.push_back(trigger("qx_doc_" + head + "_cascade", "BEFORE DELETE", head, "",
                          "DELETE FROM " + lines + " WHERE NOID=OLD.NOID;\n"));
    auto refuse = [&](const std::string& row, const std::string& table, const std::string& date) {
        return "SELECT qx_closed_period('" + table + "', " + row + ".NOID, " + date + ", " + end + ");\n";
    };
    const std::string guarded = "qx_guarded() AND ";
    out.push_back(trigger("qx_closed_" + head + "_ins", "BEFORE INSERT", head,
                          guarded + "NEW.BDATE < " + end, refuse("NEW", head, "NEW.BDATE")));
    out.push_back(trigger("qx_closed_" + head + "_upd", "BEFORE UPDATE", head,
                          guarded + "(OLD.BDATE < " + end + " OR NEW.BDATE < " + end + ")" + anyChanged(doc.closedHeadColumns),
                          refuse("OLD", head, "min(OLD.BDATE, ifnull(NEW.BDATE, OLD.BDATE))")));
    out.push_back(trigger("qx_closed_" + head + "_del", "BEFORE DELETE", head, guarded + "OLD.BDATE < " + end,
                          refuse("OLD", head, "OLD.BDATE")));
    auto headDate = [&](const std::string& row) {
        return "(SELECT h.BDATE FROM " + head + " h WHERE h.NOID=" + row + ".NOID)";
    };
    out.push_back(trigger("qx_closed_" + lines + "_ins", "BEFORE INSERT", lines,
                          guarded + headDate("NEW") + " < " + end, refuse("NEW", head, headDate("NEW"))));
    out.push_back(trigger("qx_closed_" + lines + "_upd", "BEFORE UPDATE", lines,
                          guarded + "(" + headDate("OLD") + " < " + end + " OR " + headDate("NEW") + " < " + end + ")" + anyChanged(doc.closedLineColumns),
                          refuse("OLD", head, "min(ifnull(" + headDate("OLD") + ",'9'), ifnull(" + headDate("NEW") + ",'9'))")));
    out.push_back(trigger("qx_closed_" + lines + "_del", "BEFORE DELETE", lines,
                          guarded + headDate("OLD") + " < " + end, refuse("OLD", head, headDate("OLD"))));
}

// Movements dated by a head column other than BDATE (a transfer's arrival, YDATE) are closed
// with the period of that date: a confirmed arrival dated before sys_co.CK_END_DATE cannot be
// taken back, re-dated, re-addressed or recounted, and none can be confirmed into it.
void addPostingDateGuards(const PostingRule& rule, std::vector<std::string>& out) {
    if (std::string_view(rule.dateColumn) == "BDATE" || !rule.effectiveFlag) return;
    const std::string end = "(SELECT max(CK_END_DATE) FROM sys_co)";
    const std::string flag = rule.effectiveFlag, date = rule.dateColumn;
    auto closedMovement = [&](const std::string& row) {
        return "(ifnull(" + row + "." + flag + ",0)=1 AND " + row + "." + date + " < " + end + ")";
    };
    auto refuse = [&](const std::string& noid, const std::string& at) {
        return std::string("SELECT qx_closed_period('") + rule.headTable + "', " + noid + ", " + at + ", " + end + ");\n";
    };
    std::string headChanged = "OLD." + flag + " IS NOT NEW." + flag + " OR OLD." + date + " IS NOT NEW." + date;
    if (rule.warehouseOnHead) headChanged += std::string(" OR OLD.") + rule.warehouse + " IS NOT NEW." + rule.warehouse;
    out.push_back(trigger(std::string("qx_closed_") + rule.id + "_head", "BEFORE UPDATE", rule.headTable,
                          "qx_guarded() AND (" + closedMovement("OLD") + " OR " + closedMovement("NEW") + ") AND (" + headChanged + ")",
                          refuse("OLD.NOID", "min(ifnull(OLD." + date + ",'9'), ifnull(NEW." + date + ",'9'))")));
    std::string lineChanged = "OLD.WL_ID IS NOT NEW.WL_ID";
    if (!rule.warehouseOnHead) lineChanged += std::string(" OR OLD.") + rule.warehouse + " IS NOT NEW." + rule.warehouse;
    for (int i = 0; i < kSizes; ++i) lineChanged += " OR " + column("OLD.", rule.quantity, i) + " IS NOT " + column("NEW.", rule.quantity, i);
    const std::string head = std::string("(SELECT h.") + date + " FROM " + rule.headTable + " h WHERE h.NOID=OLD.NOID AND ifnull(h." +
                             flag + ",0)=1)";
    out.push_back(trigger(std::string("qx_closed_") + rule.id + "_line", "BEFORE UPDATE", rule.lineTable,
                          "qx_guarded() AND " + head + " < " + end + " AND (" + lineChanged + ")", refuse("OLD.NOID", head)));
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

std::vector<std::string> sqliteTriggerStatements() {
    std::vector<std::string> out;
    addStockTriggers(out);
    for (const auto& rule : rules()) addPostingTriggers(rule, out);
    for (const auto& doc : documentTables()) addDocumentTriggers(doc, out);
    for (const auto& rule : rules()) addPostingDateGuards(rule, out);
    return out;
}

std::vector<std::string> tsqlViewStatements() { return {movementStreamView(), checkView()}; }

}  // namespace qx::db::posting
