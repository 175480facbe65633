// SYS_JX and SYS_JD: cross-tabs. A row source (T-SQL) gives row key, column key and value; the
// result has one row per row key and one column per column key (numeric order when every key
// is a number, text order otherwise), NULL where the source has nothing, and a `total`. Extra
// columns and joins (@selectstr, @innerstr) are applied to the pivot under the alias D.
#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <functional>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

#include "db/procedures/Statement.h"
#include "db/procedures/StockProcedures.h"
#include "db/sqlite/Procedures.h"

namespace qx::db::procedures {
namespace {

std::string lower(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::tolower(c); });
    return s;
}

std::string upper(std::string s) {
    std::transform(s.begin(), s.end(), s.begin(), [](unsigned char c) { return std::toupper(c); });
    return s;
}

std::string textOf(const Value& v) {
    if (auto* s = std::get_if<std::string>(&v)) return *s;
    if (auto* i = std::get_if<std::int64_t>(&v)) return std::to_string(*i);
    if (auto* d = std::get_if<double>(&v)) {
        std::string t = std::to_string(*d);
        t.erase(t.find_last_not_of('0') + 1);
        if (!t.empty() && t.back() == '.') t.pop_back();
        return t;
    }
    return {};
}

std::optional<double> numberOf(const std::string& text) {
    const std::string t = trimmed(text);
    if (t.empty()) return std::nullopt;
    char* end = nullptr;
    const double v = std::strtod(t.c_str(), &end);
    if (end != t.c_str() + t.size()) return std::nullopt;
    return v;
}

// The index of the column named `name` (case-insensitive); `fallback` when there is none.
std::size_t columnIndex(const std::vector<std::string>& names, const std::string& name, std::size_t fallback) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (lower(names[i]) == lower(name)) return i;
    if (fallback >= names.size()) throw Error("cross-tab: the row source has no column " + name);
    return fallback;
}
std::size_t columnIndex(const ResultSet& rs, const std::string& name, std::size_t fallback) {
    std::vector<std::string> names;
    for (const auto& column : rs.columns) names.push_back(column.name);
    return columnIndex(names, name, fallback);
}

// The cells of a cross-tab as the source's rows are added up: each row key and column key gets
// an index the first time it is met (a hash lookup, the previous row's key reused when the next
// row carries the same), each row a slot per column key. A slot is present once any source row
// names its pair, even with a NULL value (the cell then shows 0).
class PivotCells {
public:
    struct Row {
        std::string key;
        std::vector<double> sums;
        std::vector<char> present;
    };

    // The column keys in the order they were met.
    const std::deque<std::string>& columnKeys() const { return columnKeys_; }

    std::size_t column(std::string_view key) {
        const auto at = columnIndex_.find(key);
        if (at != columnIndex_.end()) return at->second;
        columnKeys_.emplace_back(key);
        return columnIndex_.emplace(columnKeys_.back(), columnKeys_.size() - 1).first->second;
    }

    Row& row(std::string_view key) {
        if (last_ < rows_.size() && rows_[last_].key == key) return rows_[last_];
        const auto at = rowIndex_.find(key);
        if (at != rowIndex_.end()) {
            last_ = at->second;
        } else {
            rows_.push_back(Row{std::string(key), {}, {}});
            last_ = rows_.size() - 1;
            rowIndex_.emplace(rows_.back().key, last_);
        }
        return rows_[last_];
    }

    // Makes the cell of `row` and `column` present and adds `value` to it.
    static void add(Row& row, std::size_t column, double value) {
        if (row.sums.size() <= column) {
            row.sums.resize(column + 1, 0.0);
            row.present.resize(column + 1, 0);
        }
        row.sums[column] += value;
        row.present[column] = 1;
    }

    // The rows in the byte order of their keys.
    std::vector<const Row*> sortedRows() const {
        std::vector<const Row*> sorted;
        sorted.reserve(rows_.size());
        for (const auto& r : rows_) sorted.push_back(&r);
        std::sort(sorted.begin(), sorted.end(), [](const Row* a, const Row* b) { return a->key < b->key; });
        return sorted;
    }

private:
    struct KeyHash {
        using is_transparent = void;
        std::size_t operator()(std::string_view key) const { return std::hash<std::string_view>{}(key); }
    };
    // the keys live in rows_/columnKeys_; the indexes hold views of them (a deque keeps them put)
    std::deque<Row> rows_;
    std::deque<std::string> columnKeys_;
    std::unordered_map<std::string_view, std::size_t, KeyHash, std::equal_to<>> rowIndex_;
    std::unordered_map<std::string_view, std::size_t, KeyHash, std::equal_to<>> columnIndex_;
    std::size_t last_ = static_cast<std::size_t>(-1);
};

// The text of a key: a text value as it stands, anything else as textOf gives it (into `buffer`).
std::string_view keyText(const Value& v, std::string& buffer) {
    if (auto* s = std::get_if<std::string>(&v)) return *s;
    buffer = textOf(v);
    return buffer;
}

// The width of the pivot table's row key column: 100 characters, or the longest key's (a server
// refuses a longer text than its column takes).
std::size_t rowKeyWidth(const std::vector<const PivotCells::Row*>& rows) {
    std::size_t widest = 100;
    for (const auto* row : rows) {
        std::size_t characters = 0;
        for (const unsigned char c : row->key) characters += (c & 0xC0) != 0x80;
        widest = std::max(widest, characters);
    }
    return widest;
}

ResultSet pivot(ProcedureSession& db, const tsql::ProcedureCall& call, bool headerRows) {
    auto arg = [&](const char* name) {
        auto v = procedureArgument(call, name);
        return v ? *v : std::string();
    };
    const std::string source = arg("param1");
    if (trimmed(source).empty()) throw Error("cross-tab: @param1 (the row source) is empty");
    std::string rowKeyName = trimmed(arg("param2"));
    const std::string columnKeyName = trimmed(arg("param3"));
    const std::string valueName = trimmed(arg("param4"));
    if (rowKeyName.empty()) rowKeyName = "wl_id";
    const std::string selectText = arg("selectstr");
    const std::string innerText = arg("innerstr");

    // The source's rows summed per row key and column key where they are, when the engine can
    // (a server: one row per cell crosses the connection instead of every line); the pivot below
    // adds up whatever comes, so both forms give the same cells.
    const auto choose = [&](const std::vector<std::string>& names) {
        return std::array<std::size_t, 3>{columnIndex(names, rowKeyName, 0), columnIndex(names, columnKeyName, 1),
                                          columnIndex(names, valueName, 2)};
    };
    std::optional<ResultSet> summed = db.runSummed(source, choose);
    const ResultSet src = summed ? std::move(*summed) : db.runWithinTransaction(source);
    std::vector<std::string> headers;
    if (headerRows) {
        const std::string headerText = arg("PARAM11");
        if (!trimmed(headerText).empty()) {
            const ResultSet h = db.runWithinTransaction(headerText);
            const std::size_t k = h.columns.empty() ? 0 : columnIndex(h, rowKeyName, 0);
            for (const auto& r : h.rows) headers.push_back(textOf(r[k]));
        }
    }
    if (src.columns.size() < 3 && !src.rows.empty()) throw Error("cross-tab: the row source needs row key, column key and value");

    // the row key falls back to the first column, the column key to the second, the value to the third
    const std::size_t rk = src.columns.empty() ? 0 : columnIndex(src, rowKeyName, 0);
    const std::size_t ck = src.columns.size() < 2 ? 0 : columnIndex(src, columnKeyName, 1);
    const std::size_t vk = src.columns.size() < 3 ? 0 : columnIndex(src, valueName, 2);

    bool integral = true;
    PivotCells cells;
    std::string rowBuffer, columnBuffer;
    for (const auto& r : src.rows) {
        auto& cellsOfRow = cells.row(keyText(r[rk], rowBuffer));
        const std::size_t column = cells.column(keyText(r[ck], columnBuffer));
        if (std::holds_alternative<std::monostate>(r[vk])) {
            PivotCells::add(cellsOfRow, column, 0);  // the cell exists; a NULL value adds nothing
            continue;
        }
        double v = 0;
        if (auto* i = std::get_if<std::int64_t>(&r[vk])) v = static_cast<double>(*i);
        else if (auto* d = std::get_if<double>(&r[vk])) {
            v = *d;
            integral = false;
        } else if (auto n = numberOf(textOf(r[vk]))) {
            v = *n;
            if (*n != static_cast<double>(static_cast<long long>(*n))) integral = false;
        }
        PivotCells::add(cellsOfRow, column, v);
    }
    for (const auto& h : headers) cells.row(h);
    const std::vector<const PivotCells::Row*> rows = cells.sortedRows();

    // The column keys in text order, then in numeric order when every key is a number; `slots`
    // gives each result column its slot in the rows' sums.
    std::vector<std::size_t> slots(cells.columnKeys().size());
    for (std::size_t i = 0; i < slots.size(); ++i) slots[i] = i;
    const auto& met = cells.columnKeys();
    std::sort(slots.begin(), slots.end(), [&](std::size_t a, std::size_t b) { return met[a] < met[b]; });
    bool numeric = !slots.empty();
    for (const auto slot : slots)
        if (!numberOf(met[slot])) numeric = false;
    if (numeric)
        std::stable_sort(slots.begin(), slots.end(), [&](std::size_t a, std::size_t b) { return *numberOf(met[a]) < *numberOf(met[b]); });
    std::vector<std::string> keys;
    for (const auto slot : slots) keys.push_back(met[slot]);
    // the cell of a row in a result column, nullptr when the source has nothing for it
    const auto cellOf = [&](const PivotCells::Row& row, std::size_t i) -> const double* {
        const std::size_t slot = slots[i];
        return slot < row.present.size() && row.present[slot] ? &row.sums[slot] : nullptr;
    };

    // Result column names: the row key's name, the keys (made unique), "total".
    std::vector<std::string> names{rowKeyName};
    std::set<std::string> taken{lower(rowKeyName), "total"};
    for (const auto& k : keys) {
        std::string name = k.empty() ? "(空)" : k;
        while (taken.count(lower(name))) name += "_";
        taken.insert(lower(name));
        names.push_back(name);
    }
    names.push_back("total");

    const FieldType valueType = integral ? FieldType::Integer : FieldType::Float;
    auto valueOf = [&](double v) { return integral ? Value(static_cast<std::int64_t>(v)) : Value(v); };

    if (trimmed(selectText).empty() && trimmed(innerText).empty()) {
        ResultSet out;
        out.columns.push_back({rowKeyName, FieldType::Text, 0});
        for (std::size_t i = 1; i + 1 < names.size(); ++i) out.columns.push_back({names[i], valueType, 0});
        out.columns.push_back({"total", valueType, 0});
        out.rows.reserve(rows.size());
        for (const auto* row : rows) {
            std::vector<Value> v;
            v.reserve(keys.size() + 2);
            v.emplace_back(row->key);
            double total = 0;
            bool any = false;
            for (std::size_t i = 0; i < keys.size(); ++i) {
                const double* cell = cellOf(*row, i);
                if (!cell) {
                    v.emplace_back();
                } else {
                    v.push_back(valueOf(*cell));
                    total += *cell;
                    any = true;
                }
            }
            v.push_back(any ? valueOf(total) : Value());
            out.rows.push_back(std::move(v));
        }
        return out;
    }

    // With extra columns or joins: the pivot goes into a temp table D and the caller's texts run
    // against it through the translator.
    const Dialect& d = db.dialect();
    // The table is named after its columns: statements prepared for one shape of pivot are
    // cached by their text and must never meet another shape under the same name.
    std::string shape = integral ? "i" : "f";
    for (const auto& n : names) shape += "\x1f" + n;
    const std::size_t keyWidth = rowKeyWidth(rows);
    shape += "\x1f" + std::to_string(keyWidth);
    char suffix[17];
    std::snprintf(suffix, sizeof suffix, "%016zx", std::hash<std::string>{}(shape));
    const std::string table = std::string("qx_crosstab_") + suffix;
    db.executeNative(std::string("DROP TABLE IF EXISTS ") + d.tempSchema + table);
    std::string create = "CREATE TEMP TABLE " + table + " (" + quoteName(d, names[0]) + " VARCHAR(" + std::to_string(keyWidth) + ") COLLATE QX";
    for (std::size_t i = 1; i < names.size(); ++i)
        create += ", " + quoteName(d, names[i]) + (integral ? " BIGINT" : " FLOAT");  // a server's INT stops at 2^31
    db.executeNative(create + ")");
    {
        std::string insert = std::string("INSERT INTO ") + d.tempSchema + table + " VALUES (?1";
        for (std::size_t i = 1; i < names.size(); ++i) insert += ",?" + std::to_string(i + 1);
        Statement st(db, insert + ")");
        for (const auto* row : rows) {
            st.bind(1, row->key);
            double total = 0;
            bool any = false;
            for (std::size_t i = 0; i < keys.size(); ++i) {
                const double* cell = cellOf(*row, i);
                const int at = static_cast<int>(i + 2);
                if (!cell) {
                    st.bindNull(at);
                } else {
                    if (integral) st.bind(at, static_cast<std::int64_t>(*cell));
                    else st.bind(at, *cell);
                    total += *cell;
                    any = true;
                }
            }
            const int last = static_cast<int>(keys.size() + 2);
            if (!any) st.bindNull(last);
            else if (integral) st.bind(last, static_cast<std::int64_t>(total));
            else st.bind(last, total);
            st.step();
            st.reset();
        }
    }
    std::string query = "SELECT D.*" + selectText + " FROM " + table + " D " + innerText;
    if (upper(innerText).find("ORDER BY") == std::string::npos) query += " ORDER BY D.[" + names[0] + "]";
    ResultSet out;
    try {
        out = db.runWithinTransaction(query);
    } catch (...) {
        try {
            db.executeNative(std::string("DROP TABLE IF EXISTS ") + d.tempSchema + table);
        } catch (...) {  // a failed transaction: the caller rolls back, the table goes with it
        }
        throw;
    }
    db.executeNative(std::string("DROP TABLE IF EXISTS ") + d.tempSchema + table);
    // The pivot's own columns named as the keys are written (an engine folding names gives
    // them back in lower case).
    for (auto& column : out.columns)
        for (const auto& name : names)
            if (lower(column.name) == lower(name)) column.name = name;
    return out;
}

}  // namespace

bool flagValue(const std::string& text) {
    const std::string t = lower(trimmed(text));
    return t == "1" || t == "true" || t == "y" || t == "yes";
}

ResultSet crossTab(ProcedureSession& db, const tsql::ProcedureCall& call) { return pivot(db, call, false); }

ResultSet crossTabWithHeaders(ProcedureSession& db, const tsql::ProcedureCall& call) { return pivot(db, call, true); }

}  // namespace qx::db::procedures
