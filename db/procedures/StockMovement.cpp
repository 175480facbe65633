// SYS_ZM: the stock movement procedure behind the movement classification, summary and detail
// reports and the stock query's drill-down. It reads the one movement stream the posting rules
// define (the rules V_QX_MOVES is made of: every effective document line, signed, with its kind)
// and the opening stock columns B0..B9 of d1802, and accumulates in C++: one pass over the
// lines, no temp tables.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdint>
#include <deque>
#include <map>
#include <numeric>
#include <optional>
#include <string_view>
#include <string>
#include <unordered_map>
#include <vector>

#include "db/Progress.h"
#include "db/TextIndex.h"
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
constexpr std::array<const char*, kSizes> kPositions{"0", "1", "2", "3", "4", "5", "6", "7", "8", "9"};

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

// The ten size names as shown (the size group's name, else the position), kept once per size group.
using SizeNames = std::array<std::string, kSizes>;

// What the procedure knows of one style (the d1800 row with its brand, category and size group).
struct Style {
    std::string name, brand, category, categoryName;
    const SizeNames* sizeNames = nullptr;  // as shown: the size group's names, else the positions
    double cost = 0;
};

// One SKU: its text, its style as d1801 names it, its colour's name and what is known of the style
// (index into the styles; 0 = nothing, for a style d1800 lacks or an SKU d1801 lacks).
struct Sku {
    std::string wl, style, colourName;
    std::uint32_t info = 0;
};

struct Movement {
    std::string date, noid, warehouse, typeName;
    int mytype = 0;
    int dir = 0;
    Sizes q{};
    long long qty = 0;
    long long order = 0;
};

// The receipt and issue slots of a tally: the five kinds with a column, then every other kind
// (counted in the totals only).
constexpr int kSlots = 6;
constexpr int kOtherSlot = 5;
int slotOf(const std::array<KindColumn, 5>& columns, int mytype) {
    for (int s = 0; s < 5; ++s)
        if (columns[static_cast<std::size_t>(s)].mytype == mytype) return s;
    return kOtherSlot;
}

// Per SKU: opening before the range and receipts/issues per kind inside it, each per size.
struct Tally {
    Sizes opening{};
    std::array<Sizes, kSlots> in{}, out{};
    std::uint16_t movedSizes = 0;  // bit i: a non-zero movement of size i in the range
    bool moved = false;            // any movement line in the range
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

// A small table of codes (colours, brands, categories, size groups) read whole: a code's
// columns by its text as stored, and a code with no byte-equal entry (another letter case,
// trailing blanks) asked of the database once, whose collation decides as a join would.
class CodeTable {
public:
    // `columns`: the `width` columns wanted, comma-separated
    CodeTable(ProcedureSession& db, const std::string& table, const std::string& key, const std::string& columns, int width)
        : db_(db), select_("SELECT " + columns + " FROM " + table), key_(key), width_(width) {
        Statement st(db_, "SELECT " + key + ", " + columns + " FROM " + table);
        while (st.step()) {
            auto [at, fresh] = rows_.try_emplace(st.text(0));
            if (fresh) at->second = readRow(st, 1);
        }
    }

    // The columns of the code in column `column` of a row (nullptr for NULL or an unknown code).
    const std::vector<std::string>* find(const Statement& row, int column) {
        if (row.isNull(column)) return nullptr;
        auto found = rows_.find(row.view(column));
        if (found == rows_.end()) {
            if (!other_) other_.emplace(db_, select_ + " WHERE " + key_ + " = ?1");
            other_->reset();
            const std::string code = row.text(column);
            other_->bind(1, code);
            found = rows_.try_emplace(code, other_->step() ? readRow(*other_, 0) : std::vector<std::string>()).first;
        }
        return found->second.empty() ? nullptr : &found->second;
    }

private:
    std::vector<std::string> readRow(const Statement& st, int first) const {
        std::vector<std::string> row;
        for (int i = first; i < first + width_; ++i) row.push_back(st.text(i));
        return row;
    }
    ProcedureSession& db_;
    std::string select_, key_;
    int width_;
    TextMap<std::vector<std::string>> rows_;  // empty: no such code
    std::optional<Statement> other_;
};

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
        loadSkus(only);
        if (snapshot_.empty()) readOpeningStock(only);
        else readSnapshot(only);
        readMovements(only);
        return a_.detail ? detailRows() : summaryRows();
    }

private:
    // Asked once per SKU, line and result row: every few thousand of them the progress window
    // may cancel (the batch then fails with the cancel message and nothing is returned).
    static constexpr std::uint32_t kAskEvery = 4096;
    void goOn() {
        if (--untilAsked_ != 0) return;
        untilAsked_ = kAskEvery;
        if (!progressContinues()) throw Error(kCancelledMessage);
    }

    void bindAll(Statement& st, const std::vector<std::string>& binds) {
        for (std::size_t i = 0; i < binds.size(); ++i) st.bind(static_cast<int>(i + 1), binds[i]);
    }

    // The SKUs (all, or those the article names) and their styles. All SKUs: d1801 in one plain
    // pass, its style and colour matched by their key texts against d1800 and d1005 read whole,
    // and each style's brand, category and size group against d1009, d1004 and d1006 read whole
    // (a key with no byte-equal entry is asked of the database, whose collation decides as the
    // join would). The SKUs of one article: one join, then only their styles, joined likewise.
    void loadSkus(const std::optional<std::vector<std::string>>& only) {
        styles_.assign(1, Style{});  // 0: nothing known
        styles_[0].sizeNames = sizeNamesOf(nullptr);
        struct StyleKey {
            std::string text;
            bool null = true;
            bool exact = false;  // the d1800 key itself (found by the join)
        };
        std::vector<StyleKey> styleKeys;  // per SKU
        std::vector<std::string> binds;
        if (only) {
            Statement st(db_,
                         "SELECT s.WL_ID, s.K_ID, c.COL_NAME, st.K_ID FROM d1801 s LEFT JOIN d1800 st ON st.K_ID = s.K_ID "
                         "LEFT JOIN d1005 c ON c.COL_ID = s.COL_ID WHERE 1 = 1" + skuFilter(db_.dialect(), "s.WL_ID", *only, binds));
            bindAll(st, binds);
            while (st.step()) {
                goOn();
                if (index_.find(st.view(0)) != TextIndex::kMissing) continue;  // one row per SKU
                Sku& s = skus_.emplace_back();
                s.wl = st.text(0);
                s.style = st.text(1);
                s.colourName = st.text(2);
                styleKeys.push_back({st.text(3), st.isNull(3), true});
                index_.insert(skus_.back().wl, static_cast<std::uint32_t>(skus_.size() - 1));
            }
        } else {
            CodeTable colours(db_, "d1005", "COL_ID", "COL_NAME", 1);
            {
                Statement count(db_, "SELECT COUNT(*) FROM d1801");
                const auto n = static_cast<std::size_t>(count.step() ? count.integer(0) : 0);
                skus_.reserve(n);
                styleKeys.reserve(n);
            }
            Statement st(db_, "SELECT WL_ID, K_ID, COL_ID FROM d1801");
            while (st.step()) {
                goOn();
                if (index_.find(st.view(0)) != TextIndex::kMissing) continue;
                Sku& s = skus_.emplace_back();
                s.wl = st.text(0);
                s.style = st.text(1);
                styleKeys.push_back({{}, st.isNull(1), false});  // the text is the SKU's style
                if (const auto* colour = colours.find(st, 2)) s.colourName = (*colour)[0];
                index_.insert(skus_.back().wl, static_cast<std::uint32_t>(skus_.size() - 1));
            }
        }

        TextMap<std::uint32_t> styleAt;  // d1800 key → its style, and the answers for other keys
        if (only) {
            // the styles of the article's SKUs: one join
            std::string sql =
                "SELECT st.K_ID, st.WL_NAME, p.PP_NAME, st.CLASS_ID, cl.CLASS_NAME, z.M0, z.M1, z.M2, z.M3, z.M4, z.M5, z.M6, z.M7, "
                "z.M8, z.M9, st.DJ FROM d1800 st LEFT JOIN d1009 p ON p.PP_ID = st.PP_ID LEFT JOIN d1004 cl ON cl.CLASS_ID = st.CLASS_ID "
                "LEFT JOIN d1006 z ON z.M_ID = st.M_ID";
            binds.clear();
            std::vector<std::string> keys;
            for (const auto& k : styleKeys)
                if (!k.null && std::find(keys.begin(), keys.end(), k.text) == keys.end()) keys.push_back(k.text);
            sql += " WHERE 1 = 1" + skuFilter(db_.dialect(), "st.K_ID", keys, binds);
            Statement st(db_, sql);
            bindAll(st, binds);
            while (st.step()) {
                goOn();
                if (!styleAt.try_emplace(st.text(0), static_cast<std::uint32_t>(styles_.size())).second) continue;
                Style& style = styles_.emplace_back();
                style.name = st.text(1);
                style.brand = st.text(2);
                style.category = st.text(3);
                style.categoryName = st.text(4);
                std::array<std::string, kSizes> names;
                for (std::size_t i = 0; i < kSizes; ++i) names[i] = st.text(5 + static_cast<int>(i));
                style.sizeNames = sizeNamesOf(names.data());
                style.cost = st.real(15);
            }
        } else {
            // every style: d1800 in one plain pass, its brand, category and size group from
            // their tables read whole
            CodeTable brands(db_, "d1009", "PP_ID", "PP_NAME", 1);
            CodeTable categories(db_, "d1004", "CLASS_ID", "CLASS_NAME", 1);
            CodeTable sizeGroups(db_, "d1006", "M_ID", "M0, M1, M2, M3, M4, M5, M6, M7, M8, M9", kSizes);
            std::unordered_map<const std::vector<std::string>*, const SizeNames*> setOfGroup;  // a size group's names, once
            Statement st(db_, "SELECT K_ID, WL_NAME, PP_ID, CLASS_ID, M_ID, DJ FROM d1800");
            while (st.step()) {
                goOn();
                if (!styleAt.try_emplace(st.text(0), static_cast<std::uint32_t>(styles_.size())).second) continue;
                Style& style = styles_.emplace_back();
                style.name = st.text(1);
                if (const auto* brand = brands.find(st, 2)) style.brand = (*brand)[0];
                style.category = st.text(3);
                if (const auto* category = categories.find(st, 3)) style.categoryName = (*category)[0];
                const auto* group = sizeGroups.find(st, 4);
                auto [set, fresh] = setOfGroup.try_emplace(group, nullptr);
                if (fresh) set->second = sizeNamesOf(group ? group->data() : nullptr);
                style.sizeNames = set->second;
                style.cost = st.real(5);
            }
        }
        std::optional<Statement> styleOf;
        const std::string* lastKey = nullptr;  // SKUs of one style mostly come one after another
        std::uint32_t lastStyle = 0;
        for (std::size_t i = 0; i < skus_.size(); ++i) {
            const StyleKey& key = styleKeys[i];
            if (key.null) continue;
            const std::string& text = key.exact ? key.text : skus_[i].style;
            if (lastKey && *lastKey == text) {
                skus_[i].info = lastStyle;
                continue;
            }
            auto found = styleAt.find(text);
            if (found == styleAt.end()) {
                std::uint32_t at = 0;
                if (!key.exact) {
                    if (!styleOf) styleOf.emplace(db_, "SELECT K_ID FROM d1800 WHERE K_ID = ?1");
                    styleOf->reset();
                    styleOf->bind(1, text);
                    if (styleOf->step()) {
                        auto same = styleAt.find(styleOf->view(0));
                        if (same != styleAt.end()) at = same->second;
                    }
                }
                found = styleAt.try_emplace(text, at).first;
            }
            skus_[i].info = lastStyle = found->second;
            lastKey = &text;
        }
        tally_.assign(skus_.size(), Tally{});
        if (a_.detail) lines_.assign(skus_.size(), {});
    }

    // The size names from ten names as read (nullptr: none), kept for the whole reading.
    const SizeNames* sizeNamesOf(const std::string* names) {
        SizeNames& set = sizeSets_.emplace_back();
        for (std::size_t i = 0; i < kSizes; ++i) set[i] = names && !names[i].empty() ? names[i] : std::string(kPositions[i]);
        return &set;
    }

    // The tally of an SKU by its text (a bare SKU for one the stream names but d1801 lacks).
    std::uint32_t skuIndex(std::string_view wl) {
        // rows read in key order (stock rows, snapshot rows) name the same SKU several times running
        if (last_ < skus_.size() && skus_[last_].wl == wl) return last_;
        std::uint32_t found = index_.find(wl);
        if (found == TextIndex::kMissing) found = addSku(wl);
        return last_ = found;
    }
    std::uint32_t addSku(std::string_view wl) {
        const auto at = static_cast<std::uint32_t>(skus_.size());
        Sku& s = skus_.emplace_back();
        s.wl = std::string(wl);
        index_.insert(s.wl, at);
        tally_.emplace_back();
        if (a_.detail) lines_.emplace_back();
        return at;
    }

    static std::string sizeColumns(const char* prefix) {
        std::string sql;
        for (int i = 0; i < kSizes; ++i) sql += std::string(", ") + prefix + std::to_string(i);
        return sql;
    }

    // The quantities of a row (SKU, then ten sizes) added to its SKU's opening; a row of zeros
    // adds nothing.
    void addOpening(const Statement& st) {
        goOn();
        Sizes q;
        bool any = false;
        for (std::size_t i = 0; i < kSizes; ++i) any = (q[i] = static_cast<std::int32_t>(st.integer(1 + static_cast<int>(i)))) != 0 || any;
        if (!any) return;
        auto& t = tally_[skuIndex(st.view(0))];
        for (std::size_t i = 0; i < kSizes; ++i) t.opening[i] += q[i];
    }

    // The stock rows with an opening quantity (most have none: rows of zeros add nothing).
    static std::string withOpeningQuantity() {
        std::string sql = "(";
        for (int i = 0; i < kSizes; ++i) sql += (i ? " OR k.B" : "k.B") + std::to_string(i) + " <> 0";
        return sql + ")";
    }

    // The opening quantities B0..B9 of the stock rows in scope.
    void readOpeningStock(const std::optional<std::vector<std::string>>& only) {
        std::vector<std::string> binds;
        std::string sql = "SELECT k.WL_ID" + sizeColumns("k.B") + " FROM d1802 k WHERE " + withOpeningQuantity();
        sql += warehouseFilter(a_, "k.CK_ID", binds);
        if (only) sql += skuFilter(db_.dialect(), "k.WL_ID", *only, binds);
        Statement st(db_, sql);
        bindAll(st, binds);
        while (st.step()) addOpening(st);
    }

    // The stock at the snapshot's date: its rows in scope, read in one pass, plus the opening
    // quantities of stock rows the snapshot lacks (made after the close; only rows with an
    // opening quantity can add anything). A report of every warehouse and article reads the
    // snapshot's sums per SKU; the stock rows are looked at only when one with opening quantities
    // may have been made since the close. A snapshot stored before the sums existed is read row
    // by row.
    void readSnapshot(const std::optional<std::vector<std::string>>& only) {
        bool summed = false, rowsAdded = true;
        {
            Statement st(db_, "SELECT ROWS_ADDED FROM sys_ck_snapshot_period WHERE PERIOD = ?1");
            st.bind(1, snapshot_);
            if (st.step()) summed = true, rowsAdded = st.integer(0) != 0;
        }
        {
            std::vector<std::string> binds{snapshot_};
            std::string sql;
            if (summed && a_.warehouse.empty() && !a_.rights && !only) {
                sql = "SELECT s.WL_ID" + sizeColumns("s.K") + " FROM sys_ck_snapshot_sku s WHERE s.PERIOD = ?1";
            } else {
                sql = "SELECT s.WL_ID" + sizeColumns("s.K") + " FROM sys_ck_snapshot s WHERE s.PERIOD = ?1";
                sql += warehouseFilter(a_, "s.CK_ID", binds);
                if (only) sql += skuFilter(db_.dialect(), "s.WL_ID", *only, binds);
            }
            Statement st(db_, sql);
            bindAll(st, binds);
            while (st.step()) addOpening(st);
        }
        if (!rowsAdded) return;
        std::vector<std::string> binds{snapshot_};
        std::string sql = "SELECT k.WL_ID" + sizeColumns("k.B") + " FROM d1802 k WHERE " + withOpeningQuantity() +
                          " AND NOT EXISTS (SELECT 1 FROM sys_ck_snapshot s WHERE s.PERIOD = ?1 AND s.WL_ID = k.WL_ID AND s.CK_ID = k.CK_ID)";
        sql += warehouseFilter(a_, "k.CK_ID", binds);
        if (only) sql += skuFilter(db_.dialect(), "k.WL_ID", *only, binds);
        Statement st(db_, sql);
        bindAll(st, binds);
        while (st.step()) addOpening(st);
    }

    // A movement kind as the tally keeps it: its mytype and name, direction and slot.
    struct Kind {
        int mytype;
        const char* typeName;
        int dir;
        int slot;
    };

    // The movement stream, read straight from the document tables by the posting rules (the
    // rules V_QX_MOVES is made of): each line once, a loss/gain or point-of-sale line split here
    // into the sizes moving in and those moving out.
    void readMovements(const std::optional<std::vector<std::string>>& only) {
        long long order = 0;
        for (const auto& rule : posting::rules()) {
            const Kind in{rule.in.mytype, rule.in.typeName, +1, slotOf(kReceiptColumns, rule.in.mytype)};
            const Kind out{rule.out.mytype, rule.out.typeName, -1, slotOf(kIssueColumns, rule.out.mytype)};
            // A summary from the first movement reads every line: the lines in one pass, their
            // heads from memory. Otherwise the heads' date indexes (or the lines' SKU index) pick
            // the lines to read.
            if (!a_.detail && snapshot_.empty() && !only) readEveryLine(rule, in, out);
            else readLinesOfHeads(rule, in, out, only, order);
        }
    }

    // The columns a rule's quantities, warehouse and date come from.
    static std::string warehouseColumn(const posting::PostingRule& rule) {
        return std::string(rule.warehouseOnHead ? "h." : "l.") + rule.warehouse;
    }

    // One line of the stream: the SKU in column `sku`, the quantities in the ten from `first`,
    // split by kind.
    void line(const Statement& st, int sku, int first, const posting::PostingRule& rule, const Kind& in, const Kind& out,
              bool opening, long long& order) {
        goOn();
        Sizes q{};
        for (int i = 0; i < kSizes; ++i) q[static_cast<std::size_t>(i)] = static_cast<std::int32_t>(rule.sign * st.integer(first + i));
        if (!rule.perSizeKind) {
            movement(st, sku, q, rule.sign > 0 ? in : out, opening, order);
            return;
        }
        Sizes inSizes{}, outSizes{};
        bool anyIn = false, anyOut = false;
        for (std::size_t i = 0; i < kSizes; ++i) {
            if (q[i] > 0) inSizes[i] = q[i], anyIn = true;
            if (q[i] < 0) outSizes[i] = q[i], anyOut = true;
        }
        if (anyIn) movement(st, sku, inSizes, in, opening, order);
        if (anyOut) movement(st, sku, outSizes, out, opening, order);
    }

    void readLinesOfHeads(const posting::PostingRule& rule, const Kind& in, const Kind& out,
                          const std::optional<std::vector<std::string>>& only, long long& order) {
        std::vector<std::string> binds;
        const std::string wh = warehouseColumn(rule);
        const std::string date = std::string("h.") + rule.dateColumn;
        // columns: SKU, date, the ten quantities, then (detail only) number and warehouse
        std::string sql = "SELECT l.WL_ID, " + date + sizeColumns((std::string("l.") + rule.quantity).c_str());
        if (a_.detail) sql += ", l.NOID, " + wh;
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
        // read from the snapshot of @BDATE itself, no line can count in the opening
        if (!snapshot_.empty() && snapshot_ == a_.from) {
            while (st.step()) line(st, 0, 2, rule, in, out, false, order);
        } else {
            while (st.step()) line(st, 0, 2, rule, in, out, isOpening(st.view(1)), order);
        }
    }

    bool isOpening(std::string_view date) const { return !a_.from.empty() && date < std::string_view(a_.from); }

    // Every line of a rule in one pass over its table, each matched to its head by the head's
    // number held in memory (what the head says: not counted, opening, or in the range). A line
    // whose number matches no head byte for byte asks the database once, whose collation
    // decides as the join would.
    void readEveryLine(const posting::PostingRule& rule, const Kind& in, const Kind& out) {
        enum : std::uint8_t { kIgnored, kOpening, kInRange };
        std::vector<std::string> noids;
        std::vector<std::uint8_t> states;
        TextIndex heads;
        // counted: effective, before the end, in the warehouses asked for
        std::vector<std::string> binds;
        std::string counted = "CASE WHEN " + (rule.effectiveFlag ? std::string("h.") + rule.effectiveFlag + " = 1" : std::string("1 = 1"));
        if (!a_.to.empty()) {
            binds.push_back(a_.to);
            counted += std::string(" AND h.") + rule.dateColumn + " < ?" + std::to_string(binds.size());
        }
        if (rule.warehouseOnHead) counted += warehouseFilter(a_, warehouseColumn(rule), binds);
        counted += " THEN 1 ELSE 0 END";
        const std::string headColumns = counted + ", h." + rule.dateColumn + " FROM " + rule.headTable + " h";
        const auto stateOf = [&](const Statement& h, int first) -> std::uint8_t {  // from columns first, first + 1
            if (h.integer(first) == 0) return kIgnored;
            return isOpening(h.view(first + 1)) ? kOpening : kInRange;
        };
        {
            Statement h(db_, "SELECT h.NOID, " + headColumns);
            bindAll(h, binds);
            while (h.step()) {
                goOn();
                if (heads.find(h.view(0)) != TextIndex::kMissing) continue;
                noids.push_back(h.text(0));
                states.push_back(stateOf(h, 1));
                heads.insert(noids.back(), static_cast<std::uint32_t>(noids.size() - 1));
            }
        }
        std::optional<Statement> headOf;  // a number the bytes did not find
        std::vector<std::string> lineBinds;
        std::string sql = "SELECT l.NOID, l.WL_ID" + sizeColumns((std::string("l.") + rule.quantity).c_str()) + " FROM " +
                          rule.lineTable + " l WHERE 1 = 1";
        if (!rule.warehouseOnHead) sql += warehouseFilter(a_, warehouseColumn(rule), lineBinds);
        Statement st(db_, sql);
        bindAll(st, lineBinds);
        long long order = 0;
        while (st.step()) {
            if (st.isNull(0)) continue;
            std::uint32_t head = heads.find(st.view(0));
            if (head == TextIndex::kMissing) {
                if (!headOf) {
                    headOf.emplace(db_, "SELECT " + headColumns + " WHERE h.NOID = ?" + std::to_string(binds.size() + 1));
                }
                headOf->reset();
                bindAll(*headOf, binds);
                const std::string noid = st.text(0);
                headOf->bind(static_cast<int>(binds.size() + 1), noid);
                noids.push_back(noid);
                states.push_back(headOf->step() ? stateOf(*headOf, 0) : std::uint8_t{kIgnored});
                head = static_cast<std::uint32_t>(noids.size() - 1);
                heads.insert(noids.back(), head);
            }
            if (states[head] == kIgnored) continue;
            line(st, 1, 2, rule, in, out, states[head] == kOpening, order);
        }
    }

    // One movement of the stream: signed quantities q of a kind, counted in the opening or in
    // the range.
    void movement(const Statement& st, int sku, const Sizes& q, const Kind& kind, bool opening, long long& order) {
        const std::uint32_t at = skuIndex(st.view(sku));
        Tally& t = tally_[at];
        if (opening) {
            for (std::size_t i = 0; i < kSizes; ++i) t.opening[i] += q[i];
            return;
        }
        Sizes& slot = kind.dir > 0 ? t.in[static_cast<std::size_t>(kind.slot)] : t.out[static_cast<std::size_t>(kind.slot)];
        // issues are counted positive in their columns
        for (std::size_t i = 0; i < kSizes; ++i) {
            slot[i] += kind.dir > 0 ? q[i] : -q[i];
            if (q[i] != 0) t.movedSizes = static_cast<std::uint16_t>(t.movedSizes | (1u << i));
        }
        t.moved = true;
        if (!a_.detail) return;
        Movement m;  // the detail's statement: SKU, date, quantities, number, warehouse
        m.date = st.text(1);
        m.noid = st.text(12);
        m.warehouse = st.text(13);
        m.mytype = kind.mytype;
        m.typeName = kind.typeName;
        m.dir = kind.dir;
        m.q = q;
        for (long long v : q) m.qty += v;
        m.order = order++;
        lines_[at].push_back(std::move(m));
    }

    // ---- summary ---------------------------------------------------------------------------

    // The sums of one result row (a size of an SKU, or every size of a group's SKUs).
    struct Sums {
        long long opening = 0;
        std::array<long long, kSlots> in{}, out{};
        double openingMon = 0, inMon = 0, outMon = 0;  // quantity × the style's cost price
        bool moved = false;
        long long totalIn() const { return std::accumulate(in.begin(), in.end(), 0LL); }
        long long totalOut() const { return std::accumulate(out.begin(), out.end(), 0LL); }
        bool any() const {
            if (opening) return true;
            for (int k = 0; k < kSlots; ++k)
                if (in[static_cast<std::size_t>(k)] || out[static_cast<std::size_t>(k)]) return true;
            return false;
        }
        // adds size i of a tally (-1: every size), valued at `cost`
        void add(const Tally& t, int i, double cost) {
            auto sum = [i](const Sizes& s) -> long long {
                if (i >= 0) return s[static_cast<std::size_t>(i)];
                long long total = 0;
                for (long long v : s) total += v;
                return total;
            };
            const long long open = sum(t.opening);
            long long inq = 0, outq = 0;
            opening += open;
            for (std::size_t k = 0; k < kSlots; ++k) {
                const long long kin = sum(t.in[k]), kout = sum(t.out[k]);
                in[k] += kin;
                out[k] += kout;
                inq += kin;
                outq += kout;
            }
            openingMon += open * cost;
            inMon += inq * cost;
            outMon += outq * cost;
            moved = moved || (i >= 0 ? ((t.movedSizes >> i) & 1) != 0 : t.moved);
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

    // The SKUs in the byte order of their texts (d1801 usually hands them over in it already).
    std::vector<std::uint32_t> skusInOrder() const {
        std::vector<std::uint32_t> order(skus_.size());
        std::iota(order.begin(), order.end(), std::uint32_t{0});
        const auto byText = [this](std::uint32_t a, std::uint32_t b) { return skus_[a].wl < skus_[b].wl; };
        if (!std::is_sorted(order.begin(), order.end(), byText)) std::sort(order.begin(), order.end(), byText);
        return order;
    }

    ResultSet summaryRows() {
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

        const double f = a_.cost ? 1.0 : 0.0;
        // each row made at its width and filled in place (a row of the summary is 26 values; at
        // grouping 0 there may be a million rows)
        const std::size_t width = out.columns.size();
        auto emit = [&](std::string_view wl, std::string_view style, std::string_view name, std::string_view brand,
                        std::string_view colour, std::string_view size, Value mIndex, const Sums& r) {
            goOn();
            Value* v = out.rows.emplace_back(width).data();
            for (std::string_view text : {wl, style, name, brand, colour, size}) (v++)->emplace<std::string>(text);
            *v++ = std::move(mIndex);
            const auto integer = [&v](long long n) { (v++)->emplace<std::int64_t>(n); };
            const auto amount = [&v](double a) { (v++)->emplace<double>(cents(a)); };
            integer(r.opening);
            const long long in = r.totalIn(), outq = r.totalOut();
            for (std::size_t k = 0; k < 5; ++k) integer(r.in[k]);
            integer(in);
            for (std::size_t k = 0; k < 5; ++k) integer(r.out[k]);
            integer(outq);
            integer(r.opening + in - outq);
            amount(r.openingMon * f);
            amount(r.inMon * f);
            amount(r.outMon * f);
            amount((r.openingMon + r.inMon - r.outMon) * f);
        };

        if (a_.grouping == 0) {
            // one row per SKU and size, built in order: no rows to sort afterwards
            for (const std::uint32_t at : skusInOrder()) {
                goOn();
                const Sku& sku = skus_[at];
                const Style& style = styles_[sku.info];
                const Tally& t = tally_[at];
                for (int i = 0; i < kSizes; ++i) {
                    Sums r;
                    r.add(t, i, style.cost);
                    if (!r.any() || (a_.onlyMoved && !r.moved)) continue;
                    emit(sku.wl, sku.style, style.name, style.brand, sku.colourName, (*style.sizeNames)[static_cast<std::size_t>(i)],
                         Value(std::int64_t(i)), r);
                }
            }
            return out;
        }

        // groupings 1 and 2: one row per style or category, in the order of the key
        struct Group {
            std::string_view key, style, name, brand;
            Sums sums;
        };
        std::vector<Group> groups;
        TextMap<std::size_t> groupOf;  // key → its group
        for (std::uint32_t at = 0; at < skus_.size(); ++at) {
            goOn();
            const Tally& t = tally_[at];
            const Sku& sku = skus_[at];
            const Style& style = styles_[sku.info];
            const std::string& key = a_.grouping == 1 ? sku.style : style.category;
            auto [found, fresh] = groupOf.try_emplace(key, groups.size());
            if (fresh) {
                Group& g = groups.emplace_back();
                g.key = key;
                if (a_.grouping == 1) {
                    g.style = sku.style;
                    g.name = style.name;
                    g.brand = style.brand;
                } else {
                    g.name = style.categoryName;
                }
            }
            groups[found->second].sums.add(t, -1, style.cost);
        }
        std::sort(groups.begin(), groups.end(), [](const Group& x, const Group& y) { return x.key < y.key; });
        for (const Group& g : groups) {
            if (!g.sums.any() || (a_.onlyMoved && !g.sums.moved)) continue;
            emit(g.key, g.style, g.name, g.brand, {}, {}, Value(), g.sums);
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
            const Sku* sku = nullptr;  // the first of its SKUs
            Sizes opening{}, in{}, out{};
            bool moved = false;
            std::vector<const Movement*> lines;
        };
        std::map<std::string, Article> articles;
        for (std::uint32_t at = 0; at < skus_.size(); ++at) {
            goOn();
            const Tally& t = tally_[at];
            if (!t.moved && std::all_of(t.opening.begin(), t.opening.end(), [](std::int32_t v) { return v == 0; })) continue;
            const Sku& sku = skus_[at];
            Article& a = articles[a_.grouping == 0 ? sku.wl : sku.style];
            if (!a.sku) a.sku = &sku;
            for (std::size_t i = 0; i < kSizes; ++i) {
                a.opening[i] += t.opening[i];
                for (std::size_t k = 0; k < kSlots; ++k) {
                    a.in[i] += t.in[k][i];
                    a.out[i] += t.out[k][i];
                }
            }
            a.moved = a.moved || t.moved;
            for (const auto& m : lines_[at]) a.lines.push_back(&m);
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
            const Style& style = styles_[a.sku->info];
            const double price = style.cost * f;
            const std::string& colour = a_.grouping == 0 ? a.sku->colourName : std::string();
            auto row = [&](int mytype, const std::string& typeName, const std::string& ck, Value date, const std::string& noid,
                           const std::string& size, Value mIndex, long long in, long long ou, long long jc) {
                goOn();
                std::vector<Value> v;
                v.reserve(out.columns.size());
                v.emplace_back(std::int64_t(mytype));
                v.emplace_back(typeName);
                v.emplace_back(ck);
                v.emplace_back(ck.empty() ? std::string() : nameOf(ck));
                v.push_back(std::move(date));
                v.emplace_back(noid);
                v.emplace_back(entry.first);
                v.emplace_back(a.sku->style);
                v.emplace_back(style.name);
                v.emplace_back(style.brand);
                v.emplace_back(colour);
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
            for (std::size_t i = 0; i < kSizes; ++i) {
                if (!a.opening[i] && !a.in[i] && !a.out[i]) continue;
                row(100, "尺码小计", a_.warehouse, Value(), "", (*style.sizeNames)[i], Value(std::int64_t(i)), a.in[i], a.out[i],
                    a.opening[i] + a.in[i] - a.out[i]);
            }
        }
        return out;
    }

    static double cents(double v) { return static_cast<double>(static_cast<long long>(v * 100 + (v < 0 ? -0.5 : 0.5))) / 100; }
    static Value money(double v) { return Value(cents(v)); }

    ProcedureSession& db_;
    Arguments a_;
    std::string snapshot_;  // the closing snapshot the opening starts from ("" for none)
    std::deque<SizeNames> sizeSets_;  // the styles' size names (in place: styles point at them)
    std::vector<Style> styles_;
    std::vector<Sku> skus_;
    TextIndex index_;  // SKU text → its index in skus_, tally_ and lines_
    std::uint32_t last_ = TextIndex::kMissing;  // the SKU found last
    std::vector<Tally> tally_;
    std::vector<std::vector<Movement>> lines_;  // detail only
    std::uint32_t untilAsked_ = kAskEvery;  // SKUs, lines and rows until the next ask
};

}  // namespace

ResultSet stockMovements(ProcedureSession& db, const tsql::ProcedureCall& call) {
    return Builder(db, readArguments(call)).run();
}

}  // namespace qx::db::procedures
