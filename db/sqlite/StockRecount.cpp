#include "db/sqlite/StockRecount.h"

#include <sqlite3.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/Database.h"
#include "db/Progress.h"
#include "db/TextIndex.h"
#include "db/procedures/Statement.h"
#include "db/sqlite/PostingRules.h"

namespace qx::db {
namespace {

using procedures::Statement;
using posting::PostingRule;

constexpr int kSizes = 10;
constexpr std::uint64_t kProgressEvery = 1u << 16;

// A stock row: what its stored stock K0..K9 exceeds its recount by (K - B - movements).
// One cache line per row: the residuals in 32 bits while they fit (they always do for stock
// and documents within the int range), else in 64 bits beside (wide).
struct alignas(64) StockRow {
    std::int32_t residual[kSizes] = {};
    std::uint32_t warehouse = 0;  // number of its text
    bool wide = false;
    bool lastOfSku = false;  // the rows of a SKU follow each other; this is its last
};

// One row of the function's result.
struct Difference {
    std::int64_t rowid;
    std::int64_t recounted[kSizes];
};

class Cancelled {};

// The connection function the line tables are read through (only while a recount runs).
constexpr const char* kLineFunction = "qx_stock_recount_line";

class Recount;

// What the connection's module and line function share: the recount that is running.
struct Session {
    Recount* active = nullptr;
};

// The recount of one connection's stock, as of the statement that asks for it.
class Recount {
public:
    Recount(sqlite3* db, Session& session) : db_(db), session_(session), previous_(session.active) { session.active = this; }
    ~Recount() { session_.active = previous_; }
    Recount(const Recount&) = delete;
    Recount& operator=(const Recount&) = delete;

    std::vector<Difference> differences() {
        loadStockRows();
        const auto& rules = posting::rules();
        // Rules reading the same line table read it together, once.
        std::vector<bool> done(rules.size(), false);
        for (std::size_t r = 0; r < rules.size(); ++r) {
            if (done[r]) continue;
            std::vector<const PostingRule*> group;
            for (std::size_t o = r; o < rules.size(); ++o)
                if (std::string_view(rules[o].lineTable) == rules[r].lineTable) {
                    group.push_back(&rules[o]);
                    done[o] = true;
                }
            countLines(group);
        }
        std::vector<Difference> out;
        for (std::uint32_t n = 0; n < rows_.size(); ++n) {
            bool differs = false;
            for (int i = 0; i < kSizes; ++i) differs = differs || residual(n, i) != 0;
            if (differs) out.push_back({rowids_[n], {}});
        }
        std::sort(out.begin(), out.end(), [](const Difference& a, const Difference& b) { return a.rowid < b.rowid; });
        recountedValues(out);
        return out;
    }

private:
    // Heads of one rule: whether each document counts and, for a warehouse kept on the head,
    // which warehouse it posts to.
    struct Head {
        bool counts = false;
        std::optional<std::string> warehouse;
    };

    class Heads {
    public:
        Heads(sqlite3* db, const PostingRule& rule) : rule_(rule), db_(db) {
            Statement all(db, "SELECT NOID, " + columns() + " FROM " + rule.headTable);
            while (all.step()) add(all.view(0), read(all, 1));
        }

        // The head of a line's document number; nullptr when none counts.
        const Head* of(std::string_view noid) {
            if (haveLast_ && noid == lastNoid_) return last_;
            std::uint32_t at = index_.find(noid);
            if (at == TextIndex::kMissing) {
                // Not the bytes of any head: the table's own comparison decides (case, width
                // and trailing blanks); the answer is kept for the next line of the same text.
                if (!lookup_) lookup_ = std::make_unique<Statement>(db_, "SELECT " + columns() + " FROM " + rule_.headTable + " WHERE NOID = ?1");
                lookup_->reset();
                lookup_->bind(1, std::string(noid));
                at = add(noid, lookup_->step() ? read(*lookup_, 0) : Head{});
            }
            lastNoid_.assign(noid);
            haveLast_ = true;
            last_ = heads_[at].counts ? &heads_[at] : nullptr;
            return last_;
        }

    private:
        std::string columns() const {
            std::string sql = rule_.effectiveFlag ? std::string("ifnull(") + rule_.effectiveFlag + " = 1, 0)" : std::string("1");
            if (rule_.warehouseOnHead) sql += std::string(", ") + rule_.warehouse;
            return sql;
        }
        Head read(const Statement& q, int first) const {
            Head head;
            head.counts = q.integer(first) != 0;
            if (rule_.warehouseOnHead && !q.isNull(first + 1)) head.warehouse = q.text(first + 1);
            return head;
        }
        std::uint32_t add(std::string_view noid, Head head) {
            const auto at = static_cast<std::uint32_t>(heads_.size());
            heads_.push_back(std::move(head));
            index_.insert(noid, at);
            return at;
        }

        const PostingRule& rule_;
        sqlite3* db_;
        std::vector<Head> heads_;
        TextIndex index_;
        std::unique_ptr<Statement> lookup_;
        std::string lastNoid_;
        bool haveLast_ = false;
        const Head* last_ = nullptr;
    };

    static void keyOf(std::string& key, std::string_view sku, std::string_view warehouse) {
        const auto length = static_cast<std::uint32_t>(sku.size());
        key.assign(reinterpret_cast<const char*>(&length), sizeof length);
        key.append(sku);
        key.append(warehouse);
    }

    static std::uint32_t numberOf(TextIndex& index, std::uint32_t& count, std::string_view text) {
        std::uint32_t at = index.find(text);
        if (at == TextIndex::kMissing) index.insert(text, at = count++);
        return at;
    }

    // The stock rows grouped by SKU (the SKU's rows one after the other), so that finding a
    // line's row reads one small index of SKUs and the few rows of its SKU.
    void loadStockRows() {
        std::string sql = "SELECT rowid, WL_ID, CK_ID";
        for (int i = 0; i < kSizes; ++i) sql += ", K" + std::to_string(i) + " - B" + std::to_string(i);
        Statement q(db_, sql + " FROM d1802");
        struct Loaded {
            std::int64_t rowid;
            std::uint32_t sku, warehouse;
            std::int64_t residual[kSizes];
        };
        std::vector<Loaded> read;
        while (q.step()) {
            Loaded row;
            row.rowid = q.integer(0);
            row.sku = numberOf(skus_, skuCount_, q.view(1));
            row.warehouse = numberOf(warehouses_, warehouseCount_, q.view(2));
            if (row.warehouse == warehouseTexts_.size()) warehouseTexts_.push_back(q.text(2));
            for (int i = 0; i < kSizes; ++i) row.residual[i] = q.integer(3 + i);
            read.push_back(row);
        }
        skuStart_.assign(skuCount_ + 1, 0);
        for (const Loaded& row : read) ++skuStart_[row.sku + 1];
        for (std::uint32_t n = 0; n < skuCount_; ++n) skuStart_[n + 1] += skuStart_[n];
        rows_.resize(read.size());
        rowids_.resize(read.size());
        std::vector<std::uint32_t> next(skuStart_.begin(), skuStart_.end() - 1);
        for (const Loaded& loaded : read) {
            const std::uint32_t n = next[loaded.sku]++;
            rows_[n].lastOfSku = n + 1 == skuStart_[loaded.sku + 1];
            rowids_[n] = loaded.rowid;
            rows_[n].warehouse = loaded.warehouse;
            bool fits = true;
            for (int i = 0; i < kSizes; ++i) {
                rows_[n].residual[i] = static_cast<std::int32_t>(loaded.residual[i]);
                fits = fits && rows_[n].residual[i] == loaded.residual[i];
            }
            if (!fits) {
                rows_[n].wide = true;
                std::copy(std::begin(loaded.residual), std::end(loaded.residual), wide_[n].begin());
            }
        }
        // From now on a SKU's text leads straight to its first row.
        skus_.renumber([&](std::uint32_t sku) { return skuStart_[sku]; });
    }

    std::int64_t residual(std::uint32_t n, int i) const { return rows_[n].wide ? wide_.at(n)[static_cast<std::size_t>(i)] : rows_[n].residual[i]; }

    // Takes a line's quantities (its rule's sign applied) off a stock row's residuals.
    void subtract(std::uint32_t n, int sign, const std::int64_t* quantities) {
        StockRow& row = rows_[n];
        int i = 0;
        if (!row.wide) {
            for (; i < kSizes; ++i) {
                const std::int64_t value = row.residual[i] - sign * quantities[i];
                if (value != static_cast<std::int32_t>(value)) break;
                row.residual[i] = static_cast<std::int32_t>(value);
            }
            if (i == kSizes) return;
            auto& wide = wide_[n];
            for (int k = 0; k < kSizes; ++k) wide[static_cast<std::size_t>(k)] = row.residual[k];
            row.wide = true;
        }
        auto& wide = wide_[n];
        for (; i < kSizes; ++i) wide[static_cast<std::size_t>(i)] -= sign * quantities[i];
    }

    static constexpr std::uint32_t kNoStockRow = TextIndex::kMissing - 1;

    // The stock row a SKU and warehouse post into, kNoStockRow when there is none.
    std::uint32_t stockRowOf(std::string_view sku, std::string_view warehouse) {
        const std::uint32_t s = skus_.find(sku);  // the SKU's first row
        const std::uint32_t w = warehouseNumber(warehouse);
        if (s != TextIndex::kMissing && w != TextIndex::kMissing)
            for (std::uint32_t n = s;; ++n) {
                if (rows_[n].warehouse == w) return n;
                if (rows_[n].lastOfSku) break;
            }
        // Other bytes than any stock row's: the key's own comparison decides, once per text.
        keyOf(key_, sku, warehouse);
        const std::uint32_t known = others_.find(key_);
        if (known != TextIndex::kMissing) return known;
        if (!stockLookup_) stockLookup_ = std::make_unique<Statement>(db_, "SELECT rowid FROM d1802 WHERE WL_ID = ?1 AND CK_ID = ?2");
        if (byRowid_.empty())
            for (std::uint32_t n = 0; n < rows_.size(); ++n) byRowid_.emplace(rowids_[n], n);
        stockLookup_->reset();
        stockLookup_->bind(1, std::string(sku));
        stockLookup_->bind(2, std::string(warehouse));
        std::uint32_t found = kNoStockRow;
        if (stockLookup_->step()) {
            auto it = byRowid_.find(stockLookup_->integer(0));
            if (it != byRowid_.end()) found = it->second;
        }
        others_.insert(key_, found);
        return found;
    }

    // Every line of the table, once, for each rule that reads it. SQLite reads the lines and
    // hands each one to the connection function kLineFunction (see line()), which counts it
    // here: one call per line instead of a row handed out and read column by column.
    void countLines(const std::vector<const PostingRule*>& group) {
        readings_.clear();
        std::string arguments = "NOID, WL_ID";
        int column = 2;
        for (const PostingRule* rule : group) {
            Reading r{rule, -1, 0, std::make_unique<Heads>(db_, *rule), rule->sign};
            if (!rule->warehouseOnHead) {
                arguments += std::string(", ") + rule->warehouse;
                r.warehouseColumn = column++;
            }
            r.firstQuantity = column;
            for (int i = 0; i < kSizes; ++i) arguments += std::string(", ") + rule->quantity + std::to_string(i);
            column += kSizes;
            readings_.push_back(std::move(r));
        }
        Statement q(db_, std::string("SELECT 1 FROM ") + group.front()->lineTable + " WHERE " + kLineFunction + "(" + arguments + ")");
        try {
            while (q.step()) {
            }
            flush();
        } catch (const Error&) {
            if (cancelled_) throw Cancelled{};
            throw;
        }
    }

public:
    // One line of the table being read, its values in the order countLines() gave them.
    void line(sqlite3_value** argv) {
        if (++lines_ % kProgressEvery == 0 && !progressContinues()) {
            cancelled_ = true;
            throw Cancelled{};
        }
        if (sqlite3_value_type(argv[0]) == SQLITE_NULL || sqlite3_value_type(argv[1]) == SQLITE_NULL) return;
        const std::string_view noid = textOf(argv[0]);
        for (Reading& r : readings_) {
            const Head* head = r.heads->of(noid);
            if (!head) continue;
            std::string_view warehouse;
            if (r.warehouseColumn < 0) {
                if (!head->warehouse) continue;
                warehouse = *head->warehouse;
            } else {
                if (sqlite3_value_type(argv[r.warehouseColumn]) == SQLITE_NULL) continue;
                warehouse = textOf(argv[r.warehouseColumn]);
            }
            queue(textOf(argv[1]), warehouse, r.sign, argv + r.firstQuantity);
        }
    }

    // Lines wait a few steps in a ring before they are counted: meanwhile the processor fetches
    // the index slot of their SKU, then their stock row, for lines behind them. Without it every
    // line waits for two reads from memory in turn on a large shop.
    void flush() {
        for (std::size_t n = 0; n < kAhead && queued_ > n; ++n) findRow(ring_[(queued_ - std::min<std::size_t>(queued_, kAhead) + n) % kRing]);
        const std::size_t first = queued_ - std::min<std::size_t>(queued_, 2 * kAhead);
        for (std::size_t n = first; n < queued_; ++n) count(ring_[n % kRing]);
        queued_ = 0;
    }

private:
    static constexpr std::size_t kAhead = 16, kRing = 2 * kAhead, kQueuedText = 40;
    struct Pending {
        char sku[kQueuedText];
        std::uint32_t skuLength = 0;
        std::uint32_t warehouse = 0;  // number of its text
        std::size_t hash = 0;
        std::uint32_t firstRow = 0;   // the SKU's first row, once found
        int sign = 1;
        std::int64_t quantity[kSizes] = {};
    };

    void queue(std::string_view sku, std::string_view warehouse, int sign, sqlite3_value** quantities) {
        const std::uint32_t w = warehouseNumber(warehouse);
        if (w == TextIndex::kMissing || sku.size() > kQueuedText) {
            // Texts no stock row has byte for byte (or very long ones): counted at once.
            const std::uint32_t at = stockRowOf(sku, warehouse);
            if (at != kNoStockRow) {
                std::int64_t q[kSizes];
                for (int i = 0; i < kSizes; ++i) q[i] = sqlite3_value_int64(quantities[i]);
                subtract(at, sign, q);
            }
            return;
        }
        if (queued_ >= 2 * kAhead) count(ring_[(queued_ - 2 * kAhead) % kRing]);
        if (queued_ >= kAhead) findRow(ring_[(queued_ - kAhead) % kRing]);
        Pending& p = ring_[queued_ % kRing];
        std::memcpy(p.sku, sku.data(), sku.size());
        p.skuLength = static_cast<std::uint32_t>(sku.size());
        p.warehouse = w;
        p.sign = sign;
        for (int i = 0; i < kSizes; ++i) p.quantity[i] = sqlite3_value_int64(quantities[i]);
        p.hash = TextIndex::hashOf(sku);
        skus_.prefetch(p.hash);
        ++queued_;
    }

    void findRow(Pending& p) {
        p.firstRow = skus_.find(std::string_view(p.sku, p.skuLength), p.hash);
        if (p.firstRow != TextIndex::kMissing) __builtin_prefetch(&rows_[p.firstRow]);
    }

    void count(const Pending& p) {
        std::uint32_t at = kNoStockRow;
        if (p.firstRow != TextIndex::kMissing)
            for (std::uint32_t n = p.firstRow;; ++n) {
                if (rows_[n].warehouse == p.warehouse) {
                    at = n;
                    break;
                }
                if (rows_[n].lastOfSku) break;
            }
        if (at == kNoStockRow) at = stockRowOf(std::string_view(p.sku, p.skuLength), warehouseTexts_[p.warehouse]);
        if (at != kNoStockRow) subtract(at, p.sign, p.quantity);
    }

    std::uint32_t warehouseNumber(std::string_view warehouse) {
        if (!haveLastWarehouse_ || warehouse != lastWarehouse_) {
            lastWarehouse_.assign(warehouse);
            lastWarehouseNumber_ = warehouses_.find(warehouse);
            haveLastWarehouse_ = true;
        }
        return lastWarehouseNumber_;
    }

    Pending ring_[kRing];
    std::size_t queued_ = 0;

public:

private:
    // The bytes of a text value as they are stored: asking for them as a blob spares the copy
    // sqlite3_value_text makes to end them with a NUL.
    static std::string_view textOf(sqlite3_value* value) {
        const auto* bytes = static_cast<const char*>(sqlite3_value_blob(value));
        return bytes ? std::string_view(bytes, static_cast<std::size_t>(sqlite3_value_bytes(value))) : std::string_view();
    }

    struct Reading {
        const PostingRule* rule;
        int warehouseColumn;  // -1: on the head
        int firstQuantity;
        std::unique_ptr<Heads> heads;
        int sign;
    };
    std::vector<Reading> readings_;

    // The recount of the rows that differ: their stored stock less what it exceeds it by.
    void recountedValues(std::vector<Difference>& out) {
        if (out.empty()) return;
        std::unordered_map<std::int64_t, std::uint32_t> residualOf;
        for (std::uint32_t n = 0; n < rows_.size(); ++n) residualOf.emplace(rowids_[n], n);
        std::string sql = "SELECT K0";
        for (int i = 1; i < kSizes; ++i) sql += ", K" + std::to_string(i);
        Statement q(db_, sql + " FROM d1802 WHERE rowid = ?1");
        for (Difference& d : out) {
            q.reset();
            q.bind(1, d.rowid);
            if (!q.step()) continue;
            const std::uint32_t n = residualOf.at(d.rowid);
            for (int i = 0; i < kSizes; ++i) {
                const std::int64_t value = q.integer(i) - residual(n, i);
                if (value < std::numeric_limits<std::int32_t>::min() || value > std::numeric_limits<std::int32_t>::max())
                    throw Error("Arithmetic overflow error converting expression to data type int.");
                d.recounted[i] = value;
            }
        }
    }

    sqlite3* db_;
    Session& session_;
    Recount* previous_;
    bool cancelled_ = false;
    std::vector<StockRow> rows_;  // grouped by SKU
    std::vector<std::int64_t> rowids_;  // of rows_, in the same order
    std::unordered_map<std::uint32_t, std::array<std::int64_t, kSizes>> wide_;
    TextIndex skus_{1 << 14}, warehouses_{64}, others_{64};
    std::uint32_t skuCount_ = 0, warehouseCount_ = 0;
    std::vector<std::string> warehouseTexts_;  // by number
    std::vector<std::uint32_t> skuStart_;  // while loading: the rows of SKU n are skuStart_[n] .. skuStart_[n + 1]
    std::string lastWarehouse_;
    std::uint32_t lastWarehouseNumber_ = TextIndex::kMissing;
    bool haveLastWarehouse_ = false;
    std::unique_ptr<Statement> stockLookup_;
    std::unordered_map<std::int64_t, std::uint32_t> byRowid_;
    std::string key_;
    std::uint64_t lines_ = 0;
};

// ---- the virtual table ---------------------------------------------------------------------

struct RecountTable {
    sqlite3_vtab base{};
    sqlite3* db = nullptr;
    Session* session = nullptr;
};

struct RecountCursor {
    sqlite3_vtab_cursor base{};
    // Computed at the cursor's first scan and kept for its later ones: a join that scans it
    // again sees the stock as it was when the statement began reading it.
    std::optional<std::vector<Difference>> rows;
    std::size_t at = 0, end = 0;
};

constexpr int kStockRowColumn = 0;

int connect(sqlite3* db, void* session, int, const char* const*, sqlite3_vtab** out, char**) {
    std::string schema = "CREATE TABLE x(stock_row";
    for (int i = 0; i < kSizes; ++i) schema += ", C" + std::to_string(i);
    const int rc = sqlite3_declare_vtab(db, (schema + ")").c_str());
    if (rc != SQLITE_OK) return rc;
    auto* table = new RecountTable;
    table->db = db;
    table->session = static_cast<Session*>(session);
    *out = &table->base;
    return SQLITE_OK;
}

int disconnect(sqlite3_vtab* table) {
    delete reinterpret_cast<RecountTable*>(table);
    return SQLITE_OK;
}

// A scan computes everything; an equality on stock_row then picks from what is computed.
int bestIndex(sqlite3_vtab*, sqlite3_index_info* info) {
    for (int i = 0; i < info->nConstraint; ++i) {
        const auto& c = info->aConstraint[i];
        if (c.usable && c.iColumn == kStockRowColumn && c.op == SQLITE_INDEX_CONSTRAINT_EQ) {
            info->aConstraintUsage[i].argvIndex = 1;
            info->aConstraintUsage[i].omit = 1;
            info->idxNum = 1;
            info->estimatedCost = 10;
            info->estimatedRows = 1;
            info->idxFlags = SQLITE_INDEX_SCAN_UNIQUE;
            return SQLITE_OK;
        }
    }
    info->idxNum = 0;
    info->estimatedCost = 1000;
    info->estimatedRows = 100;
    return SQLITE_OK;
}

int open(sqlite3_vtab*, sqlite3_vtab_cursor** out) {
    auto* cursor = new RecountCursor;
    *out = &cursor->base;
    return SQLITE_OK;
}

int close(sqlite3_vtab_cursor* cursor) {
    delete reinterpret_cast<RecountCursor*>(cursor);
    return SQLITE_OK;
}

int fail(sqlite3_vtab_cursor* cursor, int rc, const char* message) {
    sqlite3_free(cursor->pVtab->zErrMsg);
    cursor->pVtab->zErrMsg = sqlite3_mprintf("%s", message);
    return rc;
}

int filter(sqlite3_vtab_cursor* base, int idxNum, const char*, int argc, sqlite3_value** argv) {
    auto* cursor = reinterpret_cast<RecountCursor*>(base);
    auto* table = reinterpret_cast<RecountTable*>(base->pVtab);
    if (!cursor->rows) {
        try {
            cursor->rows = Recount(table->db, *table->session).differences();
        } catch (const Cancelled&) {
            return fail(base, SQLITE_INTERRUPT, kCancelledMessage);
        } catch (const Error& e) {
            if ((sqlite3_errcode(table->db) & 0xff) == SQLITE_INTERRUPT) return fail(base, SQLITE_INTERRUPT, kCancelledMessage);
            return fail(base, SQLITE_ERROR, e.what());
        } catch (const std::bad_alloc&) {
            return SQLITE_NOMEM;
        }
    }
    const auto& rows = *cursor->rows;
    cursor->at = 0;
    cursor->end = rows.size();
    if (idxNum == 1 && argc == 1) {
        if (sqlite3_value_type(argv[0]) != SQLITE_INTEGER) {
            cursor->at = cursor->end;
            return SQLITE_OK;
        }
        const std::int64_t wanted = sqlite3_value_int64(argv[0]);
        auto it = std::lower_bound(rows.begin(), rows.end(), wanted, [](const Difference& d, std::int64_t v) { return d.rowid < v; });
        cursor->at = static_cast<std::size_t>(it - rows.begin());
        cursor->end = it != rows.end() && it->rowid == wanted ? cursor->at + 1 : cursor->at;
    }
    return SQLITE_OK;
}

int next(sqlite3_vtab_cursor* base) {
    ++reinterpret_cast<RecountCursor*>(base)->at;
    return SQLITE_OK;
}

int eof(sqlite3_vtab_cursor* base) {
    auto* cursor = reinterpret_cast<RecountCursor*>(base);
    return cursor->at >= cursor->end;
}

int column(sqlite3_vtab_cursor* base, sqlite3_context* context, int n) {
    auto* cursor = reinterpret_cast<RecountCursor*>(base);
    const Difference& row = (*cursor->rows)[cursor->at];
    sqlite3_result_int64(context, n == kStockRowColumn ? row.rowid : row.recounted[n - 1]);
    return SQLITE_OK;
}

int rowid(sqlite3_vtab_cursor* base, sqlite3_int64* out) {
    auto* cursor = reinterpret_cast<RecountCursor*>(base);
    *out = (*cursor->rows)[cursor->at].rowid;
    return SQLITE_OK;
}

const sqlite3_module kModule = {
    /* iVersion */ 0,
    /* xCreate */ nullptr,  // eponymous only: always there, never created
    connect,
    bestIndex,
    disconnect,
    /* xDestroy */ nullptr,
    open,
    close,
    filter,
    next,
    eof,
    column,
    rowid,
    /* xUpdate */ nullptr,
    /* xBegin */ nullptr,
    /* xSync */ nullptr,
    /* xCommit */ nullptr,
    /* xRollback */ nullptr,
    /* xFindFunction */ nullptr,
    /* xRename */ nullptr,
    /* xSavepoint */ nullptr,
    /* xRelease */ nullptr,
    /* xRollbackTo */ nullptr,
    /* xShadowName */ nullptr,
};

// kLineFunction(NOID, WL_ID, ...): counts one line into the running recount; always 0.
void lineFunction(sqlite3_context* context, int, sqlite3_value** argv) {
    auto* session = static_cast<Session*>(sqlite3_user_data(context));
    if (!session->active) return sqlite3_result_error(context, "qx_stock_recount_line: no recount is running", -1);
    try {
        session->active->line(argv);
        sqlite3_result_int(context, 0);
    } catch (const Cancelled&) {
        sqlite3_result_error(context, kCancelledMessage, -1);
    } catch (const std::exception& e) {
        sqlite3_result_error(context, e.what(), -1);
    }
}

void destroySession(void* session) { delete static_cast<Session*>(session); }

}  // namespace

void registerStockRecount(sqlite3* db) {
    auto* session = new Session;
    if (sqlite3_create_module_v2(db, kStockRecountName, &kModule, session, destroySession) != SQLITE_OK)
        throw Error(std::string("cannot register ") + kStockRecountName + ": " + sqlite3_errmsg(db));
    if (sqlite3_create_function_v2(db, kLineFunction, -1, SQLITE_UTF8 | SQLITE_DIRECTONLY, session, lineFunction, nullptr, nullptr,
                                   nullptr) != SQLITE_OK)
        throw Error(std::string("cannot register ") + kLineFunction + ": " + sqlite3_errmsg(db));
}

}  // namespace qx::db
