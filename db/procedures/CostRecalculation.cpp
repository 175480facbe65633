#include "db/procedures/CostRecalculation.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <map>
#include <set>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "db/Progress.h"
#include "db/procedures/Statement.h"
#include "db/sqlite/PostingRules.h"

namespace qx::db::procedures {
namespace {

constexpr int kSizes = 10;
constexpr int kProgressEvery = 4096;

double round2(double v) { return std::round(v * 100.0) / 100.0; }
bool differs(double a, double b) { return std::fabs(a - b) > 0.004; }

// How a rule's movements are valued and what of them is written back.
struct Valuation {
    bool inAtOwnPrice = false;  // receipts at the line's price (purchases, stocktake gains)
    bool writesCost = false;    // the line's DJ/MONEY hold its cost and are rewritten
    bool onlyPureIssues = false;  // ... but only where the line moves nothing in (loss/gain)
};

Valuation valuationOf(std::string_view id) {
    if (id == "purchase") return {true, false, false};
    if (id == "lossgain") return {true, true, true};
    if (id == "purchase_return" || id == "sale" || id == "sale_return" || id == "transfer_out") return {false, true, false};
    return {};  // transfer arrivals and point-of-sale lines: valued, not written
}

// One line of a posting rule as the recalculation sees it.
struct Movement {
    int rule = 0;
    std::int64_t rowid = 0;
    std::string day;   // YYYY-MM-DD
    std::string date;  // the head's date as stored
    std::string noid;
    long long inQty = 0;   // sizes moving into stock
    long long outQty = 0;  // sizes moving out of stock
    double price = 0;      // the line's own price (receipts at their price)
    double storedDj = 0, storedMoney = 0;
    long long lineTotal = 0;  // S0..S9 as the line holds them (MONEY = DJ × this)
};

struct Style {
    std::string name;
    double purchasePrice = 0;  // CGJ: the cost of goods valued before any receipt
    double dj = 0, money = 0;
};

struct Opening {
    long long qty = 0;
    double value = 0;
};

struct LineUpdate {
    int rule;
    std::int64_t rowid;
    double dj, money;
};

// Every effective line of every posting rule, in style order: rule, rowid, style, date,
// number, the quantities of the ten sizes, price, DJ, MONEY. What moves in and out is worked
// out here, not in SQL: ten quantities read are cheaper than forty function calls per line.
std::string movementQuery(const Dialect& d) {
    const auto& rules = posting::rules();
    std::string sql;
    for (std::size_t r = 0; r < rules.size(); ++r) {
        const auto& rule = rules[r];
        const std::string date = std::string("h.") + rule.dateColumn;
        if (!sql.empty()) sql += "\nUNION ALL\n";
        sql += "SELECT " + std::to_string(r) + ", " + d.rowId("l") + ", " + (rule.lineHasStyle ? "l.K_ID" : "s.K_ID") + ", " + date + ", l.NOID";
        for (int i = 0; i < kSizes; ++i) sql += std::string(", l.") + rule.quantity + std::to_string(i);
        sql += rule.priceColumn ? std::string(", l.") + rule.priceColumn + ", l.DJ, l.MONEY" : std::string(", 0, 0, 0");
        sql += std::string(" FROM ") + rule.lineTable + " l INNER JOIN " + rule.headTable + " h ON h.NOID = l.NOID";
        if (!rule.lineHasStyle) sql += " LEFT JOIN d1801 s ON s.WL_ID = l.WL_ID";
        sql += " WHERE " + (rule.effectiveFlag ? std::string("h.") + rule.effectiveFlag + " = 1" : std::string("1 = 1"));
    }
    return sql + "\nORDER BY 3";
}

// The calendar day of a stored date: its first ten characters.
std::string dayOf(std::string_view date) {
    std::size_t end = 0;
    for (int n = 0; n < 10 && end < date.size(); ++n) {
        ++end;
        while (end < date.size() && (static_cast<unsigned char>(date[end]) & 0xC0) == 0x80) ++end;
    }
    return std::string(date.substr(0, end));
}

// Same-day order: receipts before issues, then by kind, number and line.
struct MovementPart {
    const Movement* movement;
    bool in;
    int mytype;
    const char* typeName;
};

bool earlier(const MovementPart& a, const MovementPart& b) {
    return std::tie(a.movement->day, b.in, a.mytype, a.movement->noid, a.movement->rule, a.movement->rowid) <
           std::tie(b.movement->day, a.in, b.mytype, b.movement->noid, b.movement->rule, b.movement->rowid);
}

// The running stock of one style.
class RunningCost {
public:
    RunningCost(const Style& style, const Opening& opening) : purchasePrice_(style.purchasePrice) {
        qty_ = opening.qty;
        value_ = opening.value;
        // Opening stock entered without a value counts at the style's purchase price.
        if (qty_ > 0 && value_ == 0) value_ = static_cast<double>(qty_) * purchasePrice_;
        if (qty_ > 0) {
            average_ = value_ / static_cast<double>(qty_);
            known_ = true;
        }
    }
    // The cost of goods moving now at the running average (the purchase price before any).
    double currentCost() const { return known_ ? average_ : purchasePrice_; }

    // A receipt of qty at price (a zero price: at the running average).
    double receive(long long qty, double price) {
        if (price <= 0) price = currentCost();
        if (qty_ <= 0) {
            // Nothing (or less than nothing) in stock: the shortfall is settled at this price.
            qty_ += qty;
            value_ = static_cast<double>(qty_) * price;
            average_ = price;
        } else {
            qty_ += qty;
            value_ += static_cast<double>(qty) * price;
            average_ = qty_ > 0 ? value_ / static_cast<double>(qty_) : price;
        }
        known_ = true;
        if (qty_ == 0) value_ = 0;
        return price;
    }
    // An issue of qty at the running average; returns the cost price.
    double issue(long long qty) {
        const double cost = currentCost();
        qty_ -= qty;
        value_ = qty_ > 0 ? value_ - static_cast<double>(qty) * cost : static_cast<double>(qty_) * cost;
        if (qty_ == 0) value_ = 0;
        return cost;
    }
    long long qty() const { return qty_; }
    double value() const { return value_; }
    bool valued() const { return known_; }
    double average() const { return known_ ? average_ : purchasePrice_; }

private:
    double purchasePrice_;
    long long qty_ = 0;
    double value_ = 0;
    double average_ = 0;
    bool known_ = false;
};

class Recalculation {
public:
    explicit Recalculation(ProcedureSession& db) : db_(db), ifNull_(db.dialect().ifNull) {
        result_.columns = {{"K_ID", FieldType::Text, 17},    {"WL_NAME", FieldType::Text, 80}, {"noid", FieldType::Text, 12},
                           {"BDATE", FieldType::DateTime, 0}, {"mytype", FieldType::Integer, 0}, {"C", FieldType::Text, 9},
                           {"in1", FieldType::Float, 0},      {"in_mon", FieldType::Float, 0}, {"ou1", FieldType::Float, 0},
                           {"ou_mon", FieldType::Float, 0},   {"jc", FieldType::Float, 0},     {"jc_mon", FieldType::Float, 0}};
    }

    ResultSet run() {
        lockTheValuedTables();
        loadStyles();
        loadOpenings();
        scanMovements();
        for (const auto& [style, opening] : openings_)
            if (!done_.count(style)) finishStyle(style, RunningCost(styleOf(style), opening));
        write();
        return std::move(result_);
    }

private:
    // Lines are written back by the row they were read from: no other terminal changes the
    // documents, the styles or the opening stock until the run commits.
    void lockTheValuedTables() {
        std::set<std::string> tables{"d1800", "d1801", "d1802"};
        for (const auto& rule : posting::rules()) tables.insert({rule.headTable, rule.lineTable});
        std::string list;
        for (const auto& table : tables) list += (list.empty() ? "" : ", ") + table;
        if (const std::string lock = db_.dialect().lockForRewrite(list); !lock.empty()) db_.executeNative(lock);
    }

    const Style& styleOf(const std::string& id) {
        auto it = styles_.find(id);
        if (it != styles_.end()) return it->second;
        return styles_.emplace(id, Style{}).first->second;  // lines of a style missing from d1800
    }

    void loadStyles() {
        Statement q(db_, "SELECT K_ID, " + ifNull_ + "(WL_NAME,''), " + ifNull_ + "(CGJ,0), " + ifNull_ + "(DJ,0), " + ifNull_ +
                             "(MONEY,0) FROM d1800");
        while (q.step()) styles_[q.text(0)] = Style{q.text(1), q.real(2), q.real(3), q.real(4)};
    }

    void loadOpenings() {
        std::string qty = "(";
        for (int i = 0; i < kSizes; ++i) qty += std::string(i ? "+" : "") + "k.B" + std::to_string(i);
        qty += ")";
        Statement q(db_, "SELECT s.K_ID, sum(" + qty + "), sum(CASE WHEN " + ifNull_ + "(k.BEGIN_MONEY,0)<>0 THEN k.BEGIN_MONEY ELSE " +
                             ifNull_ + "(k.BEGIN_DJ,0)*" + qty + " END) FROM d1802 k INNER JOIN d1801 s ON s.WL_ID = k.WL_ID " +
                                 "GROUP BY s.K_ID");
        while (q.step())
            if (q.integer(1) != 0 || q.real(2) != 0) openings_[q.text(0)] = Opening{q.integer(1), q.real(2)};
    }

    void scanMovements() {
        const auto& rules = posting::rules();
        Statement q(db_, movementQuery(db_.dialect()));
        std::vector<Movement> style;
        std::string current;
        bool any = false;
        long long seen = 0;
        while (q.step()) {
            if (++seen % kProgressEvery == 0 && !progressContinues()) throw Error(kCancelledMessage);
            std::string id = q.text(2);
            if (any && id != current) {
                valueStyle(current, style);
                style.clear();
            }
            current = std::move(id);
            any = true;
            Movement m;
            m.rule = static_cast<int>(q.integer(0));
            m.rowid = q.integer(1);
            m.date = q.text(3);
            m.day = dayOf(m.date);
            m.noid = q.text(4);
            // The sizes moving into stock are one receipt, those moving out one issue.
            const int sign = rules[static_cast<std::size_t>(m.rule)].sign;
            for (int i = 0; i < kSizes; ++i) {
                const long long quantity = q.integer(5 + i);
                m.lineTotal += quantity;
                const long long moved = sign * quantity;
                if (moved > 0) m.inQty += moved;
                else m.outQty -= moved;
            }
            m.price = q.real(15);
            m.storedDj = q.real(16);
            m.storedMoney = q.real(17);
            if (m.inQty != 0 || m.outQty != 0) style.push_back(std::move(m));
        }
        if (any) valueStyle(current, style);
    }

    void valueStyle(const std::string& id, const std::vector<Movement>& movements) {
        const auto& rules = posting::rules();
        std::vector<MovementPart> parts;
        parts.reserve(movements.size() + 8);
        for (const auto& m : movements) {
            const auto& rule = rules[static_cast<std::size_t>(m.rule)];
            if (m.inQty) parts.push_back({&m, true, rule.in.mytype, rule.in.typeName});
            if (m.outQty) parts.push_back({&m, false, rule.out.mytype, rule.out.typeName});
        }
        std::sort(parts.begin(), parts.end(), earlier);

        const Style& style = styleOf(id);
        auto opening = openings_.find(id);
        RunningCost cost(style, opening == openings_.end() ? Opening{} : opening->second);

        // The notice groups the parts of one document and kind.
        struct Group {
            const MovementPart* first = nullptr;
            double in = 0, inValue = 0, out = 0, outValue = 0;
        } group;
        auto closeGroup = [&] {
            if (!group.first) return;
            if (cost.qty() < 0) {
                const Movement& m = *group.first->movement;
                result_.rows.push_back({id, style.name, m.noid, m.date, static_cast<std::int64_t>(group.first->mytype),
                                        std::string(group.first->typeName), group.in, round2(group.inValue), group.out,
                                        round2(group.outValue), static_cast<double>(cost.qty()), round2(cost.value())});
            }
            group = Group{};
        };

        for (const auto& part : parts) {
            const Movement& m = *part.movement;
            if (group.first && (group.first->movement->noid != m.noid || group.first->mytype != part.mytype ||
                                group.first->in != part.in || group.first->movement->rule != m.rule))
                closeGroup();
            if (!group.first) group.first = &part;
            const Valuation valuation = valuationOf(rules[static_cast<std::size_t>(m.rule)].id);
            double price;
            if (part.in) {
                price = cost.receive(m.inQty, valuation.inAtOwnPrice ? m.price : 0.0);
                group.in += static_cast<double>(m.inQty);
                group.inValue += static_cast<double>(m.inQty) * price;
            } else {
                price = cost.issue(m.outQty);
                group.out += static_cast<double>(m.outQty);
                group.outValue += static_cast<double>(m.outQty) * price;
            }
            const bool writeThisPart = valuation.writesCost && !(valuation.onlyPureIssues && m.inQty != 0) &&
                                       (!part.in || m.outQty == 0);
            if (writeThisPart) {
                const double dj = round2(price);
                const double money = round2(price * static_cast<double>(m.lineTotal));
                if (differs(dj, m.storedDj) || differs(money, m.storedMoney)) updates_.push_back({m.rule, m.rowid, dj, money});
            }
        }
        closeGroup();
        finishStyle(id, cost);
    }

    void finishStyle(const std::string& id, const RunningCost& cost) {
        done_.insert(id);
        auto it = styles_.find(id);
        if (it == styles_.end()) return;
        const double dj = round2(cost.average());
        const double money = round2(cost.value());
        if (differs(dj, it->second.dj) || differs(money, it->second.money)) styleUpdates_.emplace_back(id, dj, money);
    }

    void write() {
        // Asked at least once per run, before anything is written.
        if (!progressContinues()) throw Error(kCancelledMessage);
        GuardsOff suspended(db_);
        const auto& rules = posting::rules();
        std::map<int, std::unique_ptr<Statement>> byRule;
        long long written = 0;
        // In table and row order: each page of a line table is read and written once.
        std::sort(updates_.begin(), updates_.end(),
                  [](const LineUpdate& a, const LineUpdate& b) { return std::tie(a.rule, a.rowid) < std::tie(b.rule, b.rowid); });
        for (const auto& u : updates_) {
            auto& stmt = byRule[u.rule];
            if (!stmt)
                stmt = std::make_unique<Statement>(
                    db_, std::string("UPDATE ") + rules[static_cast<std::size_t>(u.rule)].lineTable +
                             " SET DJ=?1, MONEY=?2 WHERE " + db_.dialect().isRow("?3"));
            stmt->bind(1, u.dj);
            stmt->bind(2, u.money);
            stmt->bind(3, u.rowid);
            stmt->run();
            if (++written % kProgressEvery == 0 && !progressContinues()) throw Error(kCancelledMessage);
        }
        Statement style(db_, "UPDATE d1800 SET DJ=?1, MONEY=?2 WHERE K_ID=?3");
        for (const auto& [id, dj, money] : styleUpdates_) {
            style.bind(1, dj);
            style.bind(2, money);
            style.bind(3, id);
            style.run();
        }
    }

    ProcedureSession& db_;
    const std::string ifNull_;
    std::map<std::string, Style> styles_;
    std::map<std::string, Opening> openings_;
    std::set<std::string> done_;
    std::vector<LineUpdate> updates_;
    std::vector<std::tuple<std::string, double, double>> styleUpdates_;
    ResultSet result_;
};

}  // namespace

ResultSet recalculateCosts(ProcedureSession& db, const tsql::ProcedureCall&) { return Recalculation(db).run(); }

}  // namespace qx::db::procedures
