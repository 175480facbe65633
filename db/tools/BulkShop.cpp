#include "db/tools/BulkShop.h"
#include "db/tools/Random.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <filesystem>
#include <map>
#include <string>
#include <unordered_map>
#include <vector>

#include "db/procedures/Statement.h"
#include "db/sqlite/SqliteDatabase.h"

namespace qx::demo {
namespace {

using db::procedures::Statement;
using Sizes = std::array<int, 10>;


struct Sku {
    std::string wl, style, colour;
    int sizes = 3;  // positions in use
    double cost = 0, price = 0;
};

void exec(sqlite3* db, const std::string& sql) {
    char* error = nullptr;
    if (sqlite3_exec(db, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
        std::string message = error ? error : "?";
        sqlite3_free(error);
        throw db::Error("bulk shop: " + message, sql);
    }
}

std::string pad(long long value, int width) {
    std::string s = std::to_string(value);
    return std::string(static_cast<std::size_t>(std::max(0, width - static_cast<int>(s.size()))), '0') + s;
}

// A line table: its insert statement with the positions of the values bound per line.
struct LineInsert {
    std::unique_ptr<Statement> st;
    bool hasStyle = true;   // K_ID, COL_ID, CK_ID after WL_ID
    bool transfer = false;  // CK_ID_IN and Y0..Y9 too
};

class Bulk {
public:
    Bulk(sqlite3* db, const BulkOptions& o) : db_(db), o_(o), random_(o.seed ^ 0xB01Cull) {}

    BulkSummary run(long long existingLines) {
        const auto started = std::chrono::steady_clock::now();
        readMaster();
        // A new file: no journal while writing (a failed run leaves a file to delete anyway), so
        // every page is written once instead of to the log and again at the checkpoint.
        exec(db_, "PRAGMA journal_mode=DELETE");
        exec(db_, "PRAGMA journal_mode=OFF");
        exec(db_, "PRAGMA synchronous=OFF");
        exec(db_, "PRAGMA cache_size=-262144");
        exec(db_, "PRAGMA threads=2");  // the indexes built at the end sort on both cores
        exec(db_, "BEGIN");
        setTriggersAside();
        addStyles(std::max<long long>(0, (o_.lines - existingLines) / 150));
        prepare();
        stock_.assign(skus_.size() * warehouses_.size(), Sizes{});
        touched_.assign(stock_.size(), false);
        long long written = existingLines;
        const long long bulk = std::max<long long>(1, o_.lines - existingLines);
        while (written < o_.lines) {
            // documents in date order, as a shop enters them day by day: a month's documents
            // lie together in the tables and their numbers follow the dates
            const auto day = static_cast<std::size_t>(std::min<long long>(364, (written - existingLines) * 365 / bulk));
            written += document(std::min<long long>(o_.lines - written, random_.between(3, 24)), days_[day]);
            if (o_.progress && (written / 100000) != lastReport_) {
                lastReport_ = written / 100000;
                o_.progress(written);
            }
        }
        writeStock();
        restoreTriggers();
        exec(db_, "COMMIT");
        exec(db_, "PRAGMA analysis_limit=1000");
        exec(db_, "ANALYZE");
        exec(db_, "PRAGMA journal_mode=WAL");
        exec(db_, "PRAGMA synchronous=NORMAL");
        BulkSummary s;
        s.lines = written;
        s.documents = documents_;
        s.skus = static_cast<int>(skus_.size());
        s.styles = styles_;
        s.seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
        return s;
    }

private:
    void readMaster() {
        Statement w(db_, "SELECT CK_ID FROM d1007 ORDER BY CK_ID");
        while (w.step()) warehouses_.push_back(w.text(0));
        Statement c(db_, "SELECT COL_ID FROM d1005 ORDER BY COL_ID");
        while (c.step()) colours_.push_back(c.text(0));
        Statement s(db_,
                    "SELECT s.WL_ID, s.K_ID, s.COL_ID, st.DJ, st.PFJ, st.M_ID, st.PP_ID, st.CLASS_ID, "
                    "(SELECT count(*) FROM (SELECT 1 FROM d1006 z WHERE z.M_ID=st.M_ID)) FROM d1801 s JOIN d1800 st ON st.K_ID=s.K_ID");
        while (s.step()) {
            Sku k{s.text(0), s.text(1), s.text(2), 3, s.real(3), s.real(4)};
            skus_.push_back(k);
            templates_.push_back({s.text(5), s.text(6), s.text(7)});
        }
        Statement g(db_, "SELECT M_ID, M0, M1, M2, M3, M4, M5, M6, M7, M8, M9 FROM d1006");
        while (g.step()) {
            int n = 0;
            for (int i = 0; i < 10; ++i)
                if (!g.text(1 + i).empty()) n = i + 1;
            groupSizes_[g.text(0)] = std::max(1, n);
        }
        for (std::size_t i = 0; i < skus_.size(); ++i) skus_[i].sizes = groupSizes_[std::get<0>(templates_[i])];
        Statement count(db_, "SELECT count(*) FROM d1800");
        count.step();
        styles_ = static_cast<int>(count.integer(0));
        if (warehouses_.size() < 2 || skus_.empty() || colours_.empty()) throw db::Error("bulk shop: the demo shop has no master data");
        auto end = o_.endDate.empty() ? std::chrono::floor<std::chrono::days>(std::chrono::system_clock::now())
                                      : std::chrono::sys_days{};
        if (!o_.endDate.empty()) {
            const int y = std::stoi(o_.endDate.substr(0, 4)), m = std::stoi(o_.endDate.substr(5, 2)), d = std::stoi(o_.endDate.substr(8, 2));
            end = std::chrono::sys_days{std::chrono::year{y} / m / d};
        }
        for (int i = 0; i < 365; ++i) {
            const std::chrono::year_month_day ymd{end - std::chrono::days(364 - i)};
            days_.push_back(std::to_string(int(ymd.year())) + "-" + pad(unsigned(ymd.month()), 2) + "-" + pad(unsigned(ymd.day()), 2));
        }
    }

    // Triggers, and the indexes of the document tables (built once at the end, sorted, instead
    // of row by row), are set aside while writing.
    void setTriggersAside() {
        Statement t(db_, "SELECT name, sql FROM sqlite_master WHERE type='trigger'");
        while (t.step()) triggers_.emplace_back(t.text(0), t.text(1));
        for (const auto& [name, sql] : triggers_) exec(db_, "DROP TRIGGER \"" + name + "\"");
        Statement i(db_,
                    "SELECT name, sql FROM sqlite_master WHERE type='index' AND sql IS NOT NULL AND lower(tbl_name) IN "
                    "('d8101','d8101a','d8102','d8102a','d8201','d8201a','d8202','d8202a','d8301','d8301a','d8303','d8303a',"
                    "'d712','d712a')");
        while (i.step()) indexes_.emplace_back(i.text(0), i.text(1));
        for (const auto& [name, sql] : indexes_) exec(db_, "DROP INDEX \"" + name + "\"");
    }
    void restoreTriggers() {
        for (const auto& [name, sql] : indexes_) exec(db_, sql);
        for (const auto& [name, sql] : triggers_) exec(db_, sql);
    }

    // More styles like the demo's, each in three colours.
    void addStyles(long long count) {
        Statement style(db_, "INSERT INTO d1800 (K_ID, PP_ID, M_ID, CLASS_ID, WL_NAME, DW_NAME, DJ, CGJ, PFJ, CHECK_KC, TMI, T) "
                             "VALUES (?1, ?2, ?3, ?4, ?5, '件', ?6, ?6, ?7, 0, 0, 1)");
        Statement sku(db_, "INSERT INTO d1801 (WL_ID, K_ID, COL_ID) VALUES (?1, ?2, ?3)");
        const std::size_t templates = templates_.size();
        for (long long n = 0; n < count; ++n) {
            const auto& [group, brand, cls] = templates_[static_cast<std::size_t>(random_.next() % templates)];
            const std::string id = "BK" + pad(n + 1, 7);
            const double cost = random_.between(20, 300);
            style.bind(1, id);
            style.bind(2, brand);
            style.bind(3, group);
            style.bind(4, cls);
            style.bind(5, "批量款" + std::to_string(n + 1));
            style.bind(6, cost);
            style.bind(7, cost * 2.5);
            style.step();
            style.reset();
            for (int c = 0; c < 3; ++c) {
                const std::string colour = colours_[static_cast<std::size_t>((n + c * 3) % static_cast<long long>(colours_.size()))];
                if (c > 0 && colour == colours_[static_cast<std::size_t>(n % static_cast<long long>(colours_.size()))]) continue;
                sku.bind(1, id + colour);
                sku.bind(2, id);
                sku.bind(3, colour);
                sku.step();
                sku.reset();
                skus_.push_back({id + colour, id, colour, groupSizes_[group], cost, cost * 2.5});
            }
            ++styles_;
        }
    }

    void prepare() {
        auto sizes = [](const char* p) {
            std::string s;
            for (int i = 0; i < 10; ++i) s += std::string(",") + p + std::to_string(i);
            return s;
        };
        auto marks = [](int from, int n) {
            std::string s;
            for (int i = 0; i < n; ++i) s += ",?" + std::to_string(from + i);
            return s;
        };
        for (const char* t : {"D8101", "D8102", "D8201", "D8202", "d8301"}) {
            head_[t] = std::make_unique<Statement>(db_, std::string("INSERT INTO ") + t +
                                                            " (T, NOID, CK_ID, BDATE, USER_ID, NOTE) VALUES (?1, ?2, ?3, ?4, 'admin', '')");
            LineInsert l;
            l.st = std::make_unique<Statement>(db_, std::string("INSERT INTO ") + t + "A (NOID, WL_ID, K_ID, COL_ID, CK_ID" + sizes("S") +
                                                        ", DJ, MONEY) VALUES (?1,?2,?3,?4,?5" + marks(6, 10) + ",?16,?17)");
            line_[t] = std::move(l);
        }
        head_["D8303"] = std::make_unique<Statement>(
            db_, "INSERT INTO D8303 (NOID, T, CK_ID, CK_ID_IN, BDATE, USER_ID, NOTE, Y, YDATE) VALUES (?1, 1, ?2, ?3, ?4, 'admin', '', ?5, ?6)");
        LineInsert tl;
        tl.transfer = true;
        tl.st = std::make_unique<Statement>(db_, "INSERT INTO D8303A (NOID, WL_ID, K_ID, COL_ID, CK_ID, CK_ID_IN" + sizes("S") + sizes("Y") +
                                                     ", DJ, MONEY) VALUES (?1,?2,?3,?4,?5,?6" + marks(7, 20) + ",?27,?28)");
        line_["D8303"] = std::move(tl);
        head_["d712"] = std::make_unique<Statement>(db_, "INSERT INTO d712 (NOID, BDATE, CK_ID, VIPID, VIPZK, YW_ID) VALUES (?1, ?2, ?3, '', 100, '')");
        LineInsert pl;
        pl.hasStyle = false;
        pl.st = std::make_unique<Statement>(db_, "INSERT INTO d712a (NOID, WL_ID" + sizes("S") + ", SJ, SMONEY) VALUES (?1,?2" + marks(3, 10) +
                                                     ",?13,?14)");
        line_["d712"] = std::move(pl);
    }

    std::string number(const char* func) { return std::string(func).substr(0, 3) + "B" + pad(++sequence_[func], 8); }

    // Stock per SKU and warehouse, kept by position (SKU-major) while writing.
    void post(const Sku& k, const std::string& ck, const Sizes& q, int sign) {
        std::size_t w = 0;
        while (w + 1 < warehouses_.size() && warehouses_[w] != ck) ++w;
        const std::size_t at = static_cast<std::size_t>(&k - skus_.data()) * warehouses_.size() + w;
        touched_[at] = true;
        for (int i = 0; i < 10; ++i) stock_[at][i] += sign * q[i];
    }

    Sizes quantities(const Sku& k, int lo, int hi) {
        Sizes q{};
        for (int i = 0; i < k.sizes; ++i) q[i] = random_.between(lo, hi);
        return q;
    }

    // One document of a kind drawn by weight, dated `day`; returns its line count.
    long long document(long long lines, const std::string& day) {
        const int pick = random_.between(1, 100);
        const std::string shop = warehouses_[static_cast<std::size_t>(random_.between(1, static_cast<int>(warehouses_.size()) - 1))];
        const std::string head = warehouses_[0];
        const bool effective = random_.between(1, 100) > 3;  // a few stay unapproved
        ++documents_;
        if (pick <= 35) return pos(lines, shop, day);
        const std::string stamp = day + " 10:00:00";
        if (pick <= 60) return simple("D8101", "201", +1, effective, head, stamp, lines, range(2, 8), true);
        if (pick <= 62) return simple("D8102", "202", -1, effective, head, stamp, lines, range(0, 2), true);
        if (pick <= 82) return simple("D8201", "211", -1, effective, shop, stamp, lines, range(0, 3), false);
        if (pick <= 85) return simple("D8202", "212", +1, effective, shop, stamp, lines, range(0, 1), false);
        if (pick <= 88) return lossGain(effective, shop, day, lines);
        return transfer(head, shop, day, lines);
    }

    const Sku& anySku() { return skus_[static_cast<std::size_t>(random_.next() % skus_.size())]; }

    // A document of one head and `lines` lines in warehouse ck; draw gives a line's quantities.
    long long simple(const char* table, const char* func, int sign, bool effective, const std::string& ck, const std::string& stamp,
                     long long lines, const std::function<Sizes(const Sku&)>& draw, bool atCost) {
        const std::string noid = number(func);
        Statement& h = *head_[table];
        h.bind(1, std::int64_t(effective ? 1 : 0));
        h.bind(2, noid);
        h.bind(3, ck);
        h.bind(4, stamp);
        h.step();
        h.reset();
        Statement& l = *line_[table].st;
        for (long long n = 0; n < lines; ++n) {
            const Sku& k = anySku();
            const Sizes q = draw(k);
            l.bindKept(1, noid);
            l.bindKept(2, k.wl);
            l.bindKept(3, k.style);
            l.bindKept(4, k.colour);
            l.bindKept(5, ck);
            int total = 0;
            for (int i = 0; i < 10; ++i) {
                l.bind(6 + i, std::int64_t(q[i]));
                total += q[i];
            }
            const double price = atCost ? k.cost : k.price;
            l.bind(16, price);
            l.bind(17, price * total);
            l.step();
            l.reset();
            if (effective) post(k, ck, q, sign);
        }
        return lines;
    }

    // Quantities between lo and hi in every size of the SKU, at least one piece.
    std::function<Sizes(const Sku&)> range(int lo, int hi) {
        return [this, lo, hi](const Sku& k) {
            Sizes q = quantities(k, lo, hi);
            if (std::all_of(q.begin(), q.end(), [](int v) { return v == 0; })) q[0] = 1;
            return q;
        };
    }

    // A loss/gain line: one size one piece over or under.
    long long lossGain(bool effective, const std::string& ck, const std::string& day, long long lines) {
        return simple("d8301", "218", +1, effective, ck, day + " 18:00:00", lines, [this](const Sku& k) {
            Sizes q{};
            q[static_cast<std::size_t>(random_.between(0, k.sizes - 1))] = random_.between(0, 1) ? 1 : -1;
            return q;
        }, true);
    }

    long long transfer(const std::string& from, const std::string& to, const std::string& day, long long lines) {
        const std::string noid = number("217");
        const bool arrived = random_.between(1, 100) > 5;
        Statement& h = *head_["D8303"];
        h.bind(1, noid);
        h.bind(2, from);
        h.bind(3, to);
        h.bind(4, day + " 09:00:00");
        h.bind(5, std::int64_t(arrived ? 1 : 0));
        if (arrived) h.bind(6, day + " 16:00:00");
        else h.bindNull(6);
        h.step();
        h.reset();
        Statement& l = *line_["D8303"].st;
        for (long long n = 0; n < lines; ++n) {
            const Sku& k = anySku();
            const Sizes q = quantities(k, 1, 4);
            Sizes y = q;
            if (random_.between(1, 50) == 1) y[0] = std::max(0, y[0] - 1);  // one short now and then
            l.bindKept(1, noid);
            l.bindKept(2, k.wl);
            l.bindKept(3, k.style);
            l.bindKept(4, k.colour);
            l.bindKept(5, from);
            l.bindKept(6, to);
            for (int i = 0; i < 10; ++i) {
                l.bind(7 + i, std::int64_t(q[i]));
                l.bind(17 + i, std::int64_t(y[i]));
            }
            l.bind(27, k.cost);
            l.bind(28, 0.0);
            l.step();
            l.reset();
            post(k, from, q, -1);
            if (arrived) post(k, to, y, +1);
        }
        return lines;
    }

    long long pos(long long lines, const std::string& ck, const std::string& day) {
        const std::string noid = number("712");
        Statement& h = *head_["d712"];
        h.bind(1, noid);
        h.bind(2, day + " " + pad(random_.between(10, 21), 2) + ":" + pad(random_.between(0, 59), 2) + ":00");
        h.bind(3, ck);
        h.step();
        h.reset();
        Statement& l = *line_["d712"].st;
        for (long long n = 0; n < lines; ++n) {
            const Sku& k = anySku();
            Sizes q{};
            q[static_cast<std::size_t>(random_.between(0, k.sizes - 1))] = random_.between(1, 30) == 1 ? -1 : 1;  // a return now and then
            l.bindKept(1, noid);
            l.bindKept(2, k.wl);
            for (int i = 0; i < 10; ++i) l.bind(3 + i, std::int64_t(q[i]));
            l.bind(13, k.price);
            l.bind(14, k.price * (q[0] + q[1] + q[2] + q[3] + q[4] + q[5] + q[6] + q[7] + q[8] + q[9]));
            l.step();
            l.reset();
            post(k, ck, q, -1);
        }
        return lines;
    }

    // Adds the posted movements to the stock rows (creating the missing ones); KC = K0+…+K9.
    void writeStock() {
        std::string sql = "INSERT INTO d1802 (WL_ID, CK_ID, K0, K1, K2, K3, K4, K5, K6, K7, K8, K9, KC, CHECK_KC) VALUES "
                          "(?1, ?2, ?3, ?4, ?5, ?6, ?7, ?8, ?9, ?10, ?11, ?12, ?13, 0) ON CONFLICT (WL_ID, CK_ID) DO UPDATE SET ";
        for (int i = 0; i < 10; ++i) sql += (i ? ", K" : "K") + std::to_string(i) + "=K" + std::to_string(i) + "+excluded.K" + std::to_string(i);
        sql += ", KC=KC+excluded.KC";
        Statement st(db_, sql);
        for (std::size_t at = 0; at < stock_.size(); ++at) {
            if (!touched_[at]) continue;
            const Sizes& q = stock_[at];
            st.bind(1, skus_[at / warehouses_.size()].wl);
            st.bind(2, warehouses_[at % warehouses_.size()]);
            int total = 0;
            for (int i = 0; i < 10; ++i) {
                st.bind(3 + i, std::int64_t(q[i]));
                total += q[i];
            }
            st.bind(13, std::int64_t(total));
            st.step();
            st.reset();
        }
    }

    sqlite3* db_;
    BulkOptions o_;
    Random random_;
    std::vector<std::string> warehouses_, colours_, days_;
    std::vector<Sku> skus_;
    std::vector<std::tuple<std::string, std::string, std::string>> templates_;  // size group, brand, class
    std::map<std::string, int> groupSizes_;
    std::vector<std::pair<std::string, std::string>> triggers_, indexes_;
    std::map<std::string, std::unique_ptr<Statement>> head_;
    std::map<std::string, LineInsert> line_;
    std::map<std::string, long long> sequence_;
    std::vector<Sizes> stock_;
    std::vector<bool> touched_;
    long long documents_ = 0;
    long long lastReport_ = -1;
    int styles_ = 0;
};

}  // namespace

BulkSummary createBulkShop(const std::string& path, const BulkOptions& options) {
    Options demo;
    demo.seed = options.seed;
    demo.endDate = options.endDate;
    const Summary base = createDemoDatabase(path, demo);
    auto database = db::openSqlite(path, false);
    auto* sqlite = dynamic_cast<db::SqliteDatabase*>(database.get());
    if (!sqlite) throw db::Error("bulk shop: not an SQLite database");
    BulkSummary s = Bulk(sqlite->handle(), options).run(base.lines);
    s.demo = base;
    s.documents += base.documents;
    return s;
}

}  // namespace qx::demo
