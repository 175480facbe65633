// SYS_ZM: the stock movement procedure behind the movement classification, summary and detail
// reports and the stock query's drill-down. It reads the one movement stream the posting rules
// define (the rules V_QX_MOVES is made of: every effective document line, signed, with its kind)
// and the opening stock columns B0..B9 of d1802, and accumulates in C++: one pass over the
// lines, no temp tables.
#include <algorithm>
#include <array>
#include <cctype>
#include <map>
#include <numeric>
#include <optional>
#include <string_view>
#include <string>
#include <unordered_map>
#include <vector>

#include "db/procedures/ClosingSnapshots.h"
#include "db/procedures/StockProcedures.h"
#include "db/procedures/Statement.h"
#include "db/sqlite/PostingRules.h"
#include "db/sqlite/Procedures.h"

namespace qx::db::procedures {
namespace {

constexpr int kSizes = 10;
using Sizes = std::array<std::int32_t, kSizes>;  // per-SKU sums fit: quantities are pieces

// Receipt and issue columns of the summary, by movement kind (mytype of V_QX_MOVES).
struct KindColumn {
    int mytype;
    const char* name;
};
constexpr std::array<KindColumn, 5> kReceiptColumns{{{3, "IN3"}, {7, "IN7"}, {4, "IN4"}, {5, "IN5"}, {6, "IN6"}}};
constexpr std::array<KindColumn, 5> kIssueColumns{{{2, "OU2"}, {10, "OU10"}, {4, "OU4"}, {5, "OU5"}, {6, "OU6"}}};
constexpr int kKindSlots = 11;
constexpr std::array<const char*, kSizes> kPositions{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};  // mytype 0..10; others count in the totals only

struct Arguments {
    bool detail = false;
    int grouping = 0;  // 0 SKU × size, 1 style, 2 category
    std::string from, to;  // [from, to); empty = unbounded
    std::string warehouse;
    std::string article;
    bool onlyMoved = false;
    bool rights = false;
    std::string user;
    bool cost = false;
};

std::string arg(const tsql::ProcedureCall& call, const char* name) {
    auto v = procedureArgument(call, name);
    return v ? trimmed(*v) : std::string();
}

Arguments readArguments(const tsql::ProcedureCall& call) {
    Arguments a;
    a.detail = arg(call, "param") == "1";
    const std::string grouping = arg(call, "param3");
    if (grouping == "1") a.grouping = 1;
    else if (grouping == "2") a.grouping = 2;
    else if (!grouping.empty() && grouping != "0") throw Error("SYS_ZM: @param3 must be 0, 1 or 2, not " + grouping);
    a.from = arg(call, "BDATE");
    a.to = arg(call, "EDATE");
    for (const std::string* d : {&a.from, &a.to})
        if (!d->empty() && !isIsoDate(*d)) throw Error("SYS_ZM: not a date (YYYY-MM-DD): " + *d);
    a.warehouse = arg(call, "ck_id1");
    a.article = arg(call, "wl_id");
    a.onlyMoved = flagValue(arg(call, "param1"));
    a.rights = flagValue(arg(call, "CheckCk"));
    a.user = arg(call, "userid");
    a.cost = flagValue(arg(call, "param2"));
    return a;
}

// What the procedure knows of one SKU.
struct Sku {
    std::string wl, style, colour, colourName, name, brand, unit, category, categoryName;
    std::array<std::string, kSizes> sizeNames;
    double cost = 0;
};

struct Movement {
    std::string date, noid, warehouse, typeName;
    int mytype = 0;
    int dir = 0;
    Sizes q{};
    long long qty = 0;
    long long order = 0;
};

// Per SKU: opening before the range and receipts/issues per kind inside it, each per size.
struct Tally {
    Sizes opening{};
    std::array<Sizes, kKindSlots> in{}, out{};
    Sizes otherIn{}, otherOut{};
    bool moved = false;
    std::array<bool, kSizes> movedSize{};
    std::vector<Movement> lines;  // detail only
};

// The warehouse filter for a column, with its bound values appended to `binds`.
std::string warehouseFilter(const Arguments& a, const std::string& column, std::vector<std::string>& binds) {
    std::string sql;
    if (!a.warehouse.empty()) {
        binds.push_back(a.warehouse);
        sql += " AND " + column + " = ?" + std::to_string(binds.size()) + " COLLATE QX";
    }
    if (a.rights) {
        binds.push_back(a.user);
        sql += " AND " + column + " IN (SELECT CK_ID FROM sys_user_ck WHERE USER_ID = ?" + std::to_string(binds.size()) + ")";
    }
    return sql;
}

// Hash maps keyed by text, looked up by string_view without building a string per row.
struct TextHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view v) const noexcept { return std::hash<std::string_view>{}(v); }
};
template <class T>
using TextMap = std::unordered_map<std::string, T, TextHash, std::equal_to<>>;

// " AND column IN (...)" for a list of SKUs: bound placeholders for a short list (the
// planner takes the per-article indexes through the movement view), a JSON array for a long one.
std::string skuFilter(const Dialect& d, const std::string& column, const std::vector<std::string>& skus,
                      std::vector<std::string>& binds) {
    if (skus.empty()) return " AND 1 = 0";
    if (skus.size() > 200) {
        binds.push_back(jsonArray(skus));
        return " AND " + column + " IN (" + d.jsonTexts("?" + std::to_string(binds.size())) + ")";
    }
    std::string sql = " AND " + column + " IN (";
    for (std::size_t i = 0; i < skus.size(); ++i) {
        binds.push_back(skus[i]);
        sql += (i ? ",?" : "?") + std::to_string(binds.size());
    }
    return sql + ")";
}

std::unordered_map<std::string, Sku> loadSkus(ProcedureSession& db, const std::optional<std::vector<std::string>>& only) {
    std::string sql =
        "SELECT s.WL_ID, s.K_ID, s.COL_ID, c.COL_NAME, st.WL_NAME, p.PP_NAME, st.DW_NAME, st.CLASS_ID, cl.CLASS_NAME, "
        "z.M0, z.M1, z.M2, z.M3, z.M4, z.M5, z.M6, z.M7, z.M8, z.M9, st.DJ "
        "FROM d1801 s LEFT JOIN d1800 st ON st.K_ID = s.K_ID LEFT JOIN d1005 c ON c.COL_ID = s.COL_ID "
        "LEFT JOIN d1009 p ON p.PP_ID = st.PP_ID LEFT JOIN d1004 cl ON cl.CLASS_ID = st.CLASS_ID "
        "LEFT JOIN d1006 z ON z.M_ID = st.M_ID";
    std::vector<std::string> binds;
    if (only) sql += " WHERE 1 = 1" + skuFilter(db.dialect(), "s.WL_ID", *only, binds);
    Statement st(db, sql);
    for (std::size_t i = 0; i < binds.size(); ++i) st.bind(static_cast<int>(i + 1), binds[i]);
    std::unordered_map<std::string, Sku> out;
    while (st.step()) {
        Sku s;
        s.wl = st.text(0);
        s.style = st.text(1);
        s.colour = st.text(2);
        s.colourName = st.text(3);
        s.name = st.text(4);
        s.brand = st.text(5);
        s.unit = st.text(6);
        s.category = st.text(7);
        s.categoryName = st.text(8);
        for (int i = 0; i < kSizes; ++i) s.sizeNames[i] = st.text(9 + i);
        s.cost = st.real(19);
        out.emplace(s.wl, std::move(s));
    }
    return out;
}

// The SKUs an article text names: an SKU, a style's SKUs, or the SKU of a barcode.
std::vector<std::string> articleSkus(ProcedureSession& db, const std::string& article) {
    Statement st(db,
                 "SELECT WL_ID FROM d1801 WHERE WL_ID = ?1 OR K_ID = ?1 "
                 "UNION SELECT WL_ID FROM d1809 WHERE TM = ?1");
    st.bind(1, article);
    std::vector<std::string> out;
    while (st.step()) out.push_back(st.text(0));
    return out;
}

std::map<std::string, std::string> warehouseNames(ProcedureSession& db) {
    Statement st(db, "SELECT CK_ID, CK_NAME FROM d1007");
    std::map<std::string, std::string> out;
    while (st.step()) out[st.text(0)] = st.text(1);
    return out;
}

class Builder {
public:
    Builder(ProcedureSession& db, Arguments a) : db_(db), a_(std::move(a)) {}

    ResultSet run() {
        db_.readOneSnapshot();  // the opening and every kind of movement from the same state
        // The opening of a range that starts in or after a closed month: that month's closing
        // snapshot plus the movements since it, instead of every movement from the beginning.
        if (!a_.from.empty()) snapshot_ = latestSnapshotInTransaction(db_, a_.from).substr(0, 10);
        std::optional<std::vector<std::string>> only;
        if (!a_.article.empty()) only = articleSkus(db_, a_.article);
        skus_ = loadSkus(db_, only);
        readOpeningStock(only);
        readMovements(only);
        return a_.detail ? detailRows() : summaryRows();
    }

private:
    void bindAll(Statement& st, const std::vector<std::string>& binds) {
        for (std::size_t i = 0; i < binds.size(); ++i) st.bind(static_cast<int>(i + 1), binds[i]);
    }

    void readOpeningStock(const std::optional<std::vector<std::string>>& only) {
        std::vector<std::string> binds;
        std::string sql = "SELECT k.WL_ID";
        if (snapshot_.empty()) {
            for (int i = 0; i < kSizes; ++i) sql += ", k.B" + std::to_string(i);
            sql += " FROM d1802 k WHERE 1 = 1";
        } else {
            // a stock row the snapshot lacks (made after the close) starts from its opening quantities
            for (int i = 0; i < kSizes; ++i) {
                const std::string n = std::to_string(i);
                sql += ", CASE WHEN s.WL_ID IS NULL THEN k.B" + n + " ELSE s.K" + n + " END";
            }
            binds.push_back(snapshot_);
            sql += " FROM d1802 k LEFT JOIN sys_ck_snapshot s ON s.PERIOD = ?1 AND s.WL_ID = k.WL_ID AND s.CK_ID = k.CK_ID WHERE 1 = 1";
        }
        sql += warehouseFilter(a_, "k.CK_ID", binds);
        if (only) sql += skuFilter(db_.dialect(), "k.WL_ID", *only, binds);
        Statement st(db_, sql);
        bindAll(st, binds);
        while (st.step()) {
            auto& t = tally(st.view(0));
            for (int i = 0; i < kSizes; ++i) t.opening[i] += st.integer(1 + i);
        }
    }

    // The movement stream, read straight from the document tables by the posting rules (the
    // rules V_QX_MOVES is made of): each line once, a loss/gain or point-of-sale line split here
    // into the sizes moving in and those moving out.
    void readMovements(const std::optional<std::vector<std::string>>& only) {
        long long order = 0;
        for (const auto& rule : posting::rules()) {
            std::vector<std::string> binds;
            const std::string wh = std::string(rule.warehouseOnHead ? "h." : "l.") + rule.warehouse;
            const std::string date = std::string("h.") + rule.dateColumn;
            std::string sql = "SELECT l.WL_ID, " + wh + ", " + date + ", l.NOID";
            for (int i = 0; i < kSizes; ++i) sql += ", l." + std::string(rule.quantity) + std::to_string(i);
            sql += std::string(" FROM ") + rule.lineTable + " l JOIN " + rule.headTable + " h ON h.NOID = l.NOID WHERE " +
                   (rule.effectiveFlag ? std::string("h.") + rule.effectiveFlag + " = 1" : std::string("1 = 1"));
            if (!a_.to.empty()) {
                binds.push_back(a_.to);
                sql += " AND " + date + " < ?" + std::to_string(binds.size());
            }
            if (!snapshot_.empty()) {  // what lies before the snapshot is in it
                binds.push_back(snapshot_);
                sql += " AND " + date + " >= ?" + std::to_string(binds.size());
            }
            sql += warehouseFilter(a_, wh, binds);
            if (only) sql += skuFilter(db_.dialect(), "l.WL_ID", *only, binds);
            Statement st(db_, sql);
            bindAll(st, binds);
            while (st.step()) {
                Sizes q{};
                for (int i = 0; i < kSizes; ++i) q[i] = rule.sign * st.integer(4 + i);
                if (!rule.perSizeKind) {
                    const auto& kind = rule.sign > 0 ? rule.in : rule.out;
                    movement(st, q, kind.mytype, kind.typeName, rule.sign, order);
                    continue;
                }
                Sizes in{}, out{};
                bool anyIn = false, anyOut = false;
                for (int i = 0; i < kSizes; ++i) {
                    if (q[i] > 0) in[i] = q[i], anyIn = true;
                    if (q[i] < 0) out[i] = q[i], anyOut = true;
                }
                if (anyIn) movement(st, in, rule.in.mytype, rule.in.typeName, +1, order);
                if (anyOut) movement(st, out, rule.out.mytype, rule.out.typeName, -1, order);
            }
        }
    }

    // One movement of the stream: signed quantities q of kind mytype, direction dir.
    void movement(const Statement& st, const Sizes& q, int mytype, const char* typeName, int dir, long long& order) {
        auto& t = tally(st.view(0));
        const std::string_view date = st.view(2);
        if (!a_.from.empty() && date < std::string_view(a_.from)) {
            for (int i = 0; i < kSizes; ++i) t.opening[i] += q[i];
            return;
        }
        Sizes* slot = nullptr;
        if (mytype >= 0 && mytype < kKindSlots) slot = dir > 0 ? &t.in[mytype] : &t.out[mytype];
        else slot = dir > 0 ? &t.otherIn : &t.otherOut;
        // issues are counted positive in their columns
        for (int i = 0; i < kSizes; ++i) {
            (*slot)[i] += dir > 0 ? q[i] : -q[i];
            if (q[i] != 0) t.movedSize[i] = true;
        }
        t.moved = true;
        if (!a_.detail) return;
        Movement m;
        m.date = std::string(date);
        m.noid = st.text(3);
        m.warehouse = st.text(1);
        m.mytype = mytype;
        m.typeName = typeName;
        m.dir = dir;
        m.q = q;
        for (long long v : q) m.qty += v;
        m.order = order++;
        t.lines.push_back(std::move(m));
    }

    // ---- summary ---------------------------------------------------------------------------

    struct Row {
        // views into the SKU table and the tally, which outlive the rows
        std::string_view wl, style, name, brand, colour, size;
        std::optional<long long> mIndex;
        long long opening = 0;
        std::array<long long, kKindSlots> in{}, out{};
        long long otherIn = 0, otherOut = 0;
        double cost = 0;  // cost amounts: quantity × the style's cost price
        double openingMon = 0, inMon = 0, outMon = 0;
        bool moved = false;
        bool any() const {
            if (opening) return true;
            for (int k = 0; k < kKindSlots; ++k)
                if (in[k] || out[k]) return true;
            return otherIn || otherOut;
        }
    };

    // The article columns both results carry: wl_id, K_ID, wl_name, PP_NAME, wl_gg, dw_name, M_INDEX.
    static void addArticleColumns(ResultSet& out) {
        out.columns.push_back({"wl_id", FieldType::Text, 21});
        out.columns.push_back({"K_ID", FieldType::Text, 17});
        out.columns.push_back({"wl_name", FieldType::Text, 80});
        out.columns.push_back({"PP_NAME", FieldType::Text, 10});
        out.columns.push_back({"wl_gg", FieldType::Text, 30});
        out.columns.push_back({"dw_name", FieldType::Text, 6});
        out.columns.push_back({"M_INDEX", FieldType::Integer, 0});
    }

    static Sku unknownSku(const std::string& wl) {
        Sku s;
        s.wl = wl;
        return s;
    }

    // What is known of an SKU (a bare one for an SKU the stream names but d1801 lacks).
    const Sku& skuOf(const std::string& wl) {
        auto found = skus_.find(wl);
        if (found != skus_.end()) return found->second;
        return skus_.emplace(wl, unknownSku(wl)).first->second;
    }

    ResultSet summaryRows() {
        std::vector<Row> rows;
        TextMap<std::size_t> groups;  // group key → its row (groupings 1 and 2)
        rows.reserve(a_.grouping == 0 ? tally_.size() * 4 : 1024);
        for (auto& entry : tally_) {
            const auto& wl = entry.first;
            auto& t = entry.second;  // named, not bound: the lambdas below capture it
            const Sku& sku = skuOf(wl);
            auto add = [&](Row& r, int i) {  // i = size position, or -1 for all sizes
                auto sum = [&](const Sizes& s) -> long long {
                    if (i >= 0) return s[i];
                    long long total = 0;
                    for (long long v : s) total += v;
                    return total;
                };
                const long long open = sum(t.opening);
                long long in = 0, out = 0;
                r.opening += open;
                for (int k = 0; k < kKindSlots; ++k) {
                    const long long kin = sum(t.in[k]), kout = sum(t.out[k]);
                    r.in[k] += kin;
                    r.out[k] += kout;
                    in += kin;
                    out += kout;
                }
                const long long oin = sum(t.otherIn), oout = sum(t.otherOut);
                r.otherIn += oin;
                r.otherOut += oout;
                in += oin;
                out += oout;
                r.openingMon += open * sku.cost;
                r.inMon += in * sku.cost;
                r.outMon += out * sku.cost;
                r.moved = r.moved || (i >= 0 ? t.movedSize[i] : t.moved);
            };
            if (a_.grouping == 0) {
                for (int i = 0; i < kSizes; ++i) {
                    Row r;
                    add(r, i);
                    if (!r.any() && !r.moved) continue;
                    r.wl = wl;
                    r.style = sku.style;
                    r.name = sku.name;
                    r.brand = sku.brand;
                    r.colour = sku.colourName;
                    r.size = sku.sizeNames[i].empty() ? std::string_view(kPositions[i]) : std::string_view(sku.sizeNames[i]);
                    r.mIndex = i;
                    rows.push_back(std::move(r));
                }
                continue;
            }
            const std::string& key = a_.grouping == 1 ? sku.style : sku.category;
            auto [at, fresh] = groups.try_emplace(key, rows.size());
            if (fresh) rows.emplace_back();
            Row& r = rows[at->second];
            if (fresh) {
                r.wl = key;
                if (a_.grouping == 1) {
                    r.style = sku.style;
                    r.name = sku.name;
                    r.brand = sku.brand;
                } else {
                    r.name = sku.categoryName;
                }
            }
            add(r, -1);
        }

        ResultSet out;
        auto col = [&](const char* name, FieldType type, int size = 0) { out.columns.push_back({name, type, size}); };
        addArticleColumns(out);
        col("BeginKc", FieldType::Integer);
        for (const auto& k : kReceiptColumns) col(k.name, FieldType::Integer);
        col("TOL_IN", FieldType::Integer);
        for (const auto& k : kIssueColumns) col(k.name, FieldType::Integer);
        col("TOL_OUT", FieldType::Integer);
        col("END_KC", FieldType::Integer);
        col("BeginKc_mon", FieldType::Float);
        col("TOL_IN_mon", FieldType::Float);
        col("TOL_OUT_mon", FieldType::Float);
        col("END_KC_mon", FieldType::Float);

        // sorted by position, not by moving the rows (the keys are unique, so the order is too)
        std::vector<std::size_t> order(rows.size());
        std::iota(order.begin(), order.end(), std::size_t{0});
        std::sort(order.begin(), order.end(), [&rows](std::size_t a, std::size_t b) {
            const Row& x = rows[a];
            const Row& y = rows[b];
            if (x.wl != y.wl) return x.wl < y.wl;
            return x.mIndex.value_or(-1) < y.mIndex.value_or(-1);
        });
        out.rows.reserve(rows.size());
        for (const std::size_t at : order) {
            const Row& r = rows[at];
            if (a_.onlyMoved && !r.moved) continue;
            if (!r.any()) continue;
            std::vector<Value> v;
            v.reserve(out.columns.size());
            for (std::string_view text : {r.wl, r.style, r.name, r.brand, r.colour, r.size}) v.emplace_back(std::string(text));
            v.push_back(r.mIndex ? Value(std::int64_t(*r.mIndex)) : Value());
            v.emplace_back(std::int64_t(r.opening));
            long long in = r.otherIn, outq = r.otherOut;
            for (int k = 0; k < kKindSlots; ++k) {
                in += r.in[k];
                outq += r.out[k];
            }
            for (const auto& k : kReceiptColumns) v.emplace_back(std::int64_t(r.in[k.mytype]));
            v.emplace_back(std::int64_t(in));
            for (const auto& k : kIssueColumns) v.emplace_back(std::int64_t(r.out[k.mytype]));
            v.emplace_back(std::int64_t(outq));
            v.emplace_back(std::int64_t(r.opening + in - outq));
            const double f = a_.cost ? 1.0 : 0.0;
            v.emplace_back(money(r.openingMon * f));
            v.emplace_back(money(r.inMon * f));
            v.emplace_back(money(r.outMon * f));
            v.emplace_back(money((r.openingMon + r.inMon - r.outMon) * f));
            out.rows.push_back(std::move(v));
        }
        return out;
    }

    // ---- detail ----------------------------------------------------------------------------

    ResultSet detailRows() {
        ResultSet out;
        auto col = [&](const char* name, FieldType type, int size = 0) { out.columns.push_back({name, type, size}); };
        col("mytype", FieldType::Integer);
        col("TYPE_NAME", FieldType::Text, 10);
        col("CK_ID", FieldType::Text, 4);
        col("CK_NAME", FieldType::Text, 10);
        col("BDATE", FieldType::DateTime);
        col("NOID", FieldType::Text, 12);
        addArticleColumns(out);
        col("in1", FieldType::Integer);
        col("in_mon", FieldType::Float);
        col("ou1", FieldType::Integer);
        col("ou_mon", FieldType::Float);
        col("jc", FieldType::Integer);
        col("jc_mon", FieldType::Float);
        col("kc", FieldType::Text, 30);

        const auto names = warehouseNames(db_);
        auto nameOf = [&](const std::string& ck) {
            auto it = names.find(ck);
            return it == names.end() ? std::string() : it->second;
        };
        // articles: the SKU (grouping 0) or the style (1, 2)
        struct Article {
            Sku sku;
            Sizes opening{}, in{}, out{};
            bool moved = false;
            std::vector<const Movement*> lines;
        };
        std::map<std::string, Article> articles;
        for (auto& [wl, t] : tally_) {
            const Sku& sku = skuOf(wl);
            const std::string key = a_.grouping == 0 ? wl : sku.style;
            auto [it, fresh] = articles.try_emplace(key);
            Article& a = it->second;
            if (fresh) {
                a.sku = sku;
                if (a_.grouping != 0) {
                    a.sku.wl = sku.style;
                    a.sku.colourName.clear();
                }
            }
            for (int i = 0; i < kSizes; ++i) {
                a.opening[i] += t.opening[i];
                for (int k = 0; k < kKindSlots; ++k) {
                    a.in[i] += t.in[k][i];
                    a.out[i] += t.out[k][i];
                }
                a.in[i] += t.otherIn[i];
                a.out[i] += t.otherOut[i];
            }
            a.moved = a.moved || t.moved;
            for (const auto& m : t.lines) a.lines.push_back(&m);
        }
        const double f = a_.cost ? 1.0 : 0.0;
        for (auto& entry : articles) {
            auto& a = entry.second;  // named, not bound: the lambda below captures it
            if (a_.onlyMoved && !a.moved) continue;
            long long opening = 0;
            for (long long v : a.opening) opening += v;
            if (!a.moved && opening == 0) continue;
            std::sort(a.lines.begin(), a.lines.end(), [](const Movement* x, const Movement* y) {
                if (x->date != y->date) return x->date < y->date;
                if (x->noid != y->noid) return x->noid < y->noid;
                return x->order < y->order;
            });
            const double price = a.sku.cost * f;
            auto row = [&](int mytype, const std::string& typeName, const std::string& ck, Value date, const std::string& noid,
                           const std::string& size, Value mIndex, long long in, long long ou, long long jc) {
                std::vector<Value> v;
                v.emplace_back(std::int64_t(mytype));
                v.emplace_back(typeName);
                v.emplace_back(ck);
                v.emplace_back(ck.empty() ? std::string() : nameOf(ck));
                v.push_back(std::move(date));
                v.emplace_back(noid);
                v.emplace_back(a.sku.wl);
                v.emplace_back(a.sku.style);
                v.emplace_back(a.sku.name);
                v.emplace_back(a.sku.brand);
                v.emplace_back(a.sku.colourName);
                v.emplace_back(size);
                v.push_back(std::move(mIndex));
                v.emplace_back(std::int64_t(in));
                v.emplace_back(money(in * price));
                v.emplace_back(std::int64_t(ou));
                v.emplace_back(money(ou * price));
                v.emplace_back(std::int64_t(jc));
                v.emplace_back(money(jc * price));
                v.emplace_back(std::string());
                out.rows.push_back(std::move(v));
            };
            long long balance = opening;
            row(0, "期初结存", a_.warehouse, a_.from.empty() ? Value() : Value(a_.from + " 00:00:00"), "", "", Value(), 0, 0,
                balance);
            for (const Movement* m : a.lines) {
                const long long in = m->dir > 0 ? m->qty : 0;
                const long long ou = m->dir > 0 ? 0 : -m->qty;
                balance += in - ou;
                row(m->mytype, m->typeName, m->warehouse, Value(m->date), m->noid, "", Value(), in, ou, balance);
            }
            for (int i = 0; i < kSizes; ++i) {
                if (!a.opening[i] && !a.in[i] && !a.out[i]) continue;
                const std::string size = a.sku.sizeNames[i].empty() ? std::to_string(i) : a.sku.sizeNames[i];
                row(100, "尺码小计", a_.warehouse, Value(), "", size, Value(std::int64_t(i)), a.in[i], a.out[i],
                    a.opening[i] + a.in[i] - a.out[i]);
            }
        }
        return out;
    }

    static Value money(double v) { return Value(static_cast<double>(static_cast<long long>(v * 100 + (v < 0 ? -0.5 : 0.5))) / 100); }

    ProcedureSession& db_;
    Arguments a_;
    std::string snapshot_;  // the closing snapshot the opening starts from ("" for none)
    std::unordered_map<std::string, Sku> skus_;
    Tally& tally(std::string_view wl) {
        auto it = tally_.find(wl);
        if (it == tally_.end()) it = tally_.emplace(std::string(wl), Tally{}).first;
        return it->second;
    }

    TextMap<Tally> tally_;
};

}  // namespace

ResultSet stockMovements(ProcedureSession& db, const tsql::ProcedureCall& call) {
    return Builder(db, readArguments(call)).run();
}

}  // namespace qx::db::procedures
