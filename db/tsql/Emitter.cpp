#include "db/tsql/Emitter.h"

#include <cctype>
#include <cstdint>
#include <limits>
#include <map>
#include <set>

#include "db/tsql/Lexer.h"
#include "db/tsql/TranslationError.h"

namespace qx::tsql {
namespace {

constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();

// A table, view or derived table a query reads from.
struct Source {
    std::string refName;    // alias, or the table's own name when it has none
    std::string qualifier;  // how emitted column references name it
    Name table;             // the table behind it (empty for a derived table)
    std::optional<std::vector<CatalogColumn>> columns;  // nullopt: not known to the catalog
};

struct Scope {
    const Scope* parent = nullptr;
    std::vector<Source> sources;
    std::size_t visible = kAll;  // an ON clause sees only the sources joined so far
    bool qualifyLocal = false;   // write resolved unqualified columns with their source
};

struct OutputColumn {
    std::string name;
    SqlType type = SqlType::Unknown;
    int scale = -1;  // decimal places of a DECIMAL/MONEY value; -1 when not a decimal
};

struct Resolution {
    const Source* source = nullptr;
    SqlType type = SqlType::Unknown;
    int scale = -1;
    bool money = false;
    bool bigint = false;
    bool local = false;
};

bool isNumeric(SqlType t) { return t == SqlType::Integer || t == SqlType::Real; }

std::string trimBlanks(std::string_view text) {
    std::size_t start = 0, end = text.size();
    while (start < end && std::isspace(static_cast<unsigned char>(text[start]))) ++start;
    while (end > start && std::isspace(static_cast<unsigned char>(text[end - 1]))) --end;
    return std::string(text.substr(start, end - start));
}

// A string literal that SQL Server would accept as a number, written as a SQLite number.
std::optional<std::string> numberFromText(std::string_view raw) {
    std::string text = trimBlanks(raw);
    if (text.empty()) return std::string("0");
    std::size_t i = 0;
    std::string sign;
    if (text[i] == '+' || text[i] == '-') {
        if (text[i] == '-') sign = "-";
        ++i;
    }
    std::string digits;
    bool sawDigit = false, sawDot = false;
    for (; i < text.size(); ++i) {
        const char c = text[i];
        if (std::isdigit(static_cast<unsigned char>(c))) {
            sawDigit = true;
            digits += c;
        } else if (c == '.' && !sawDot) {
            sawDot = true;
            digits += c;
        } else if ((c == 'e' || c == 'E') && sawDigit) {
            digits += c;
            ++i;
            if (i < text.size() && (text[i] == '+' || text[i] == '-')) digits += text[i++];
            if (i >= text.size()) return std::nullopt;
            for (; i < text.size(); ++i) {
                if (!std::isdigit(static_cast<unsigned char>(text[i]))) return std::nullopt;
                digits += text[i];
            }
            break;
        } else {
            return std::nullopt;
        }
    }
    if (!sawDigit) return std::nullopt;
    if (digits.front() == '.') digits = "0" + digits;
    if (digits.back() == '.') digits += "0";
    // leading zeros would read as another number in some engines
    while (digits.size() > 1 && digits[0] == '0' && std::isdigit(static_cast<unsigned char>(digits[1]))) digits.erase(0, 1);
    return sign + digits;
}

SqlType literalNumberType(const std::string& text) {
    return text.find_first_of(".eE") == std::string::npos ? SqlType::Integer : SqlType::Real;
}

SqlType higherPrecedence(SqlType a, SqlType b) {
    auto rank = [](SqlType t) {
        switch (t) {
            case SqlType::DateTime: return 4;
            case SqlType::Real: return 3;
            case SqlType::Integer: return 2;
            case SqlType::Text: return 1;
            case SqlType::Unknown: return 0;
        }
        return 0;
    };
    return rank(a) >= rank(b) ? a : b;
}

const char* typeWord(SqlType t) {
    switch (t) {
        case SqlType::Integer: return "int";
        case SqlType::Real: return "float";
        case SqlType::DateTime: return "datetime";
        default: return "varchar";
    }
}

class Emitter {
public:
    Emitter(const Statement& statement, const Catalog& catalog, const Dialect& dialect)
        : statement_(statement), catalog_(catalog), d_(dialect) {}

    std::vector<std::string> run() {
        const SyntaxTree& tree = *statement_.tree;
        switch (tree.kind) {
            case StatementKind::Select:
                if (tree.query->cores.front().into) return selectInto(*tree.query);
                outermost_ = tree.query.get();
                return {query(*tree.query, nullptr)};
            case StatementKind::Insert: return {insert(tree)};
            case StatementKind::Update: return {update(tree)};
            case StatementKind::Delete: return {deleteRows(tree)};
            case StatementKind::CreateTable: return createTable(tree);
            case StatementKind::CreateView: return {createView(tree)};
            case StatementKind::CreateIndex: return {createIndex(tree)};
            case StatementKind::DropTable:
            case StatementKind::DropView:
            case StatementKind::DropIndex: return drop(tree);
            case StatementKind::Truncate: return {"DELETE FROM " + d_.tableReference(tree.target)};
            case StatementKind::Exec: return {};  // the engine runs procedure calls itself
        }
        return {};
    }

    std::vector<CatalogColumn> describe() {
        const SyntaxTree& tree = *statement_.tree;
        if (tree.kind != StatementKind::Select || tree.query->cores.front().into) return {};
        bool complete = true;
        std::vector<CatalogColumn> columns;
        for (auto& column : outputColumns(*tree.query, nullptr, &complete)) columns.push_back({column.name, column.type});
        return columns;
    }

private:
    [[noreturn]] void fail(const std::string& message, Position pos) const {
        throw TranslationError(message, statement_.text, pos.line, pos.column);
    }

    std::optional<std::vector<CatalogColumn>> columnsOf(const Name& name) {
        const std::string key = toUpper(name.last());
        auto found = tableCache_.find(key);
        if (found != tableCache_.end()) return found->second;
        auto columns = catalog_.tableColumns(name.last());
        tableCache_.emplace(key, columns);
        return columns;
    }

    // ---------------------------------------------------------------- scopes

    void addSources(const TableRef& ref, Scope& scope) {
        switch (ref.kind) {
            case TableRef::Kind::Table: {
                Source source;
                source.table = ref.table;
                source.refName = ref.alias ? *ref.alias : ref.table.last();
                source.qualifier = ref.alias ? d_.quoteIdentifier(*ref.alias) : d_.tableQualifier(ref.table);
                source.columns = columnsOf(ref.table);
                scope.sources.push_back(std::move(source));
                break;
            }
            case TableRef::Kind::Derived: {
                Source source;
                source.refName = *ref.alias;
                source.qualifier = d_.quoteIdentifier(*ref.alias);
                bool complete = true;
                auto columns = outputColumns(*ref.derived, scope.parent, &complete);
                if (complete) {
                    std::vector<CatalogColumn> list;
                    for (auto& c : columns) list.push_back({c.name, c.type, false, c.scale});
                    source.columns = std::move(list);
                }
                scope.sources.push_back(std::move(source));
                break;
            }
            case TableRef::Kind::Join:
                addSources(*ref.left, scope);
                addSources(*ref.right, scope);
                break;
        }
    }

    Scope buildScope(const std::vector<TableRefPtr>& from, const Scope* parent) {
        Scope scope;
        scope.parent = parent;
        for (const auto& ref : from) addSources(*ref, scope);
        return scope;
    }

    static const Source* findSource(const Scope& scope, std::string_view name) {
        const std::size_t count = std::min(scope.visible, scope.sources.size());
        for (std::size_t i = 0; i < count; ++i)
            if (equalsIgnoreCase(scope.sources[i].refName, name)) return &scope.sources[i];
        // a table that has an alias may still be named by its own name in loose T-SQL
        for (std::size_t i = 0; i < count; ++i)
            if (!scope.sources[i].table.parts.empty() && equalsIgnoreCase(scope.sources[i].table.last(), name))
                return &scope.sources[i];
        return nullptr;
    }

    static CatalogColumn targetColumn(const Source& source, std::string_view column) {
        if (source.columns)
            for (const auto& c : *source.columns)
                if (equalsIgnoreCase(c.name, column)) return c;
        return CatalogColumn{std::string(column)};
    }

    static const CatalogColumn* findColumn(const Source& source, std::string_view column) {
        if (!source.columns) return nullptr;
        for (const auto& c : *source.columns)
            if (equalsIgnoreCase(c.name, column)) return &c;
        return nullptr;
    }

    static std::optional<SqlType> columnType(const Source& source, std::string_view column) {
        if (const CatalogColumn* c = findColumn(source, column)) return c->type;
        return std::nullopt;
    }

    Resolution resolve(const Name& name, const Scope& scope) const {
        Resolution result;
        bool local = true;
        for (const Scope* s = &scope; s; s = s->parent, local = false) {
            if (name.parts.size() >= 2) {
                const Source* source = findSource(*s, name.parts[name.parts.size() - 2]);
                if (!source) continue;
                result.source = source;
                if (const CatalogColumn* c = findColumn(*source, name.last())) {
                    result.type = c->type;
                    result.scale = c->scale;
                    result.money = c->money;
                    result.bigint = c->bigint;
                }
                result.local = local;
                return result;
            }
            const std::size_t count = std::min(s->visible, s->sources.size());
            for (std::size_t i = 0; i < count; ++i) {
                if (const CatalogColumn* c = findColumn(s->sources[i], name.last())) {
                    result.source = &s->sources[i];
                    result.type = c->type;
                    result.scale = c->scale;
                    result.money = c->money;
                    result.bigint = c->bigint;
                    result.local = local;
                    return result;
                }
            }
        }
        return result;
    }

    // ---------------------------------------------------------------- types

    // Types are asked for again and again while emitting (every + asks for both operands):
    // remember them per node. An expression is always typed in the scope it appears in.
    SqlType typeOf(const Expr& e, const Scope& scope) {
        if (auto found = typeCache_.find(&e); found != typeCache_.end()) return found->second;
        const SqlType type = inferType(e, scope);
        typeCache_.emplace(&e, type);
        return type;
    }

    SqlType inferType(const Expr& e, const Scope& scope) {
        switch (e.kind) {
            case ExprKind::Number: return literalNumberType(e.text);
            case ExprKind::String: return SqlType::Text;
            case ExprKind::Null:
            case ExprKind::Star: return SqlType::Unknown;
            case ExprKind::Column: {
                const Resolution r = resolve(e.name, scope);
                if (!r.source && e.name.parts.size() == 1 && equalsIgnoreCase(e.name.last(), "CURRENT_TIMESTAMP")) return SqlType::DateTime;
                return r.type;
            }
            case ExprKind::Unary: return e.text == "NOT" ? SqlType::Integer : typeOf(*e.args[0], scope);
            case ExprKind::Binary: {
                static const std::set<std::string> arithmetic = {"+", "-", "*", "/", "%", "&", "|", "^"};
                if (!arithmetic.count(e.text)) return SqlType::Integer;
                const SqlType l = typeOf(*e.args[0], scope), r = typeOf(*e.args[1], scope);
                if (e.text == "+" && concatenates(l, r)) return SqlType::Text;
                if (l == SqlType::DateTime || r == SqlType::DateTime) return SqlType::DateTime;
                if (l == SqlType::Real || r == SqlType::Real) return SqlType::Real;
                if (isNumeric(l) && isNumeric(r)) return SqlType::Integer;
                if (isNumeric(l)) return l;
                if (isNumeric(r)) return r;
                return SqlType::Unknown;
            }
            case ExprKind::Like:
            case ExprKind::IsNull:
            case ExprKind::InList:
            case ExprKind::InQuery:
            case ExprKind::Between:
            case ExprKind::Exists:
            case ExprKind::Identity: return SqlType::Integer;
            case ExprKind::Subquery: {
                bool complete = true;
                auto columns = outputColumns(*e.query, &scope, &complete);
                return columns.empty() ? SqlType::Unknown : columns.front().type;
            }
            case ExprKind::Function: return functionType(e, scope);
            case ExprKind::Case: {
                SqlType result = SqlType::Unknown;
                for (std::size_t i = 1; i < e.args.size(); i += 2) result = higherPrecedence(result, typeOf(*e.args[i], scope));
                if (e.elseExpr) result = higherPrecedence(result, typeOf(*e.elseExpr, scope));
                return result;
            }
            case ExprKind::Convert: return e.type.sqlType();
            case ExprKind::DatePartCall: return e.name.last() == "DATEADD" ? SqlType::DateTime : e.name.last() == "DATENAME" ? SqlType::Text : SqlType::Integer;
        }
        return SqlType::Unknown;
    }

    // SQL Server joins two values with + when both are character data; a number on either
    // side makes it an addition.
    static bool concatenates(SqlType l, SqlType r) {
        if (l != SqlType::Text && r != SqlType::Text) return false;
        auto other = l == SqlType::Text ? r : l;
        return other == SqlType::Text || other == SqlType::Unknown;
    }

    SqlType functionType(const Expr& e, const Scope& scope) {
        const std::string name = toUpper(e.name.last());
        if (name == "COUNT" || name == "LEN" || name == "CHARINDEX" || name == "YEAR" || name == "MONTH" || name == "DAY" ||
            name == "DATALENGTH" || name == "PATINDEX" || name == "ISNUMERIC" || name == "ISDATE")
            return SqlType::Integer;
        if (name == "GETDATE" || name == "SYSDATETIME" || name == "CURRENT_TIMESTAMP" || name == "EOMONTH" || name == "DATEFROMPARTS")
            return SqlType::DateTime;
        static const std::set<std::string> texts = {"LEFT", "RIGHT", "SUBSTRING", "UPPER", "LOWER", "LTRIM", "RTRIM", "REPLACE", "SPACE",
                                                    "REPLICATE", "STR", "STUFF", "CONCAT", "QUOTENAME", "REVERSE"};
        if (texts.count(name)) return SqlType::Text;
        // COALESCE, IIF and CHOOSE take the highest type of their values (data type precedence)
        if (name == "COALESCE" || name == "IIF" || name == "CHOOSE") {
            SqlType result = SqlType::Unknown;
            for (std::size_t i = name == "COALESCE" ? 0 : 1; i < e.args.size(); ++i) result = higherPrecedence(result, typeOf(*e.args[i], scope));
            return result;
        }
        if (name == "ISNULL" || name == "NULLIF") {
            SqlType result = SqlType::Unknown;
            for (const auto& a : e.args) {
                result = typeOf(*a, scope);
                if (result != SqlType::Unknown) break;
            }
            return result;
        }
        if (!e.args.empty()) return typeOf(*e.args[0], scope);  // SUM, MIN, MAX, AVG, ABS, ROUND ...
        return SqlType::Unknown;
    }

    // Names and types of a query's result columns; complete is cleared when a * could not be
    // expanded because a source is unknown.
    std::vector<OutputColumn> outputColumns(const Query& q, const Scope* parent, bool* complete) {
        if (auto found = outputCache_.find(&q); found != outputCache_.end()) {
            if (complete && !found->second.second) *complete = false;
            return found->second.first;
        }
        bool allKnown = true;
        auto result = computeOutputColumns(q, parent, &allKnown);
        outputCache_.emplace(&q, std::make_pair(result, allKnown));
        if (complete && !allKnown) *complete = false;
        return result;
    }

    std::vector<OutputColumn> computeOutputColumns(const Query& q, const Scope* parent, bool* complete) {
        std::vector<OutputColumn> result;
        for (std::size_t i = 0; i < q.cores.size(); ++i) {
            Scope scope = buildScope(q.cores[i].from, parent);
            auto columns = coreColumns(q.cores[i], scope, complete);
            if (i == 0) {
                result = std::move(columns);
            } else {
                // SQL Server types a union column by the highest type of its branches
                for (std::size_t c = 0; c < result.size() && c < columns.size(); ++c) {
                    result[c].type = higherPrecedence(result[c].type, columns[c].type);
                    result[c].scale = std::max(result[c].scale, columns[c].scale);
                }
            }
        }
        return result;
    }

    std::vector<OutputColumn> coreColumns(const SelectCore& core, const Scope& scope, bool* complete) {
        std::vector<OutputColumn> result;
        for (const auto& item : core.items) {
            const Expr& e = *item.expr;
            if (e.kind == ExprKind::Star) {
                for (const auto& source : scope.sources) {
                    if (!e.name.parts.empty() && !equalsIgnoreCase(source.refName, e.name.last())) continue;
                    if (!source.columns) {
                        if (complete) *complete = false;
                        continue;
                    }
                    for (const auto& c : *source.columns) result.push_back({c.name, c.type, c.scale});
                }
                continue;
            }
            OutputColumn column;
            if (item.alias) column.name = *item.alias;
            else if (e.kind == ExprKind::Column) column.name = e.name.last();
            column.type = typeOf(e, scope);
            if (column.type == SqlType::Real) column.scale = decimalScale(e, scope).value_or(-1);
            result.push_back(std::move(column));
        }
        return result;
    }

    // A value of the money types: a money column, a cast to money, and what keeps their type
    // (sign, sums, ISNULL, money plus or minus money, money times an integer).
    bool isMoney(const Expr& e, const Scope& scope) {
        switch (e.kind) {
            case ExprKind::Column: return resolve(e.name, scope).money;
            case ExprKind::Convert: return e.type.name == "MONEY" || e.type.name == "SMALLMONEY";
            case ExprKind::Unary: return (e.text == "-" || e.text == "+") && isMoney(*e.args[0], scope);
            case ExprKind::Binary: {
                const bool left = isMoney(*e.args[0], scope), right = isMoney(*e.args[1], scope);
                if (e.text == "+" || e.text == "-") return left && right;
                // money times or by an integer stays money (decimal outranks money, an integer does not)
                if (e.text == "*") return (left && (right || typeOf(*e.args[1], scope) == SqlType::Integer)) ||
                                          (right && typeOf(*e.args[0], scope) == SqlType::Integer);
                if (e.text == "/") return left && typeOf(*e.args[1], scope) == SqlType::Integer;
                return false;
            }
            case ExprKind::Function: {
                const std::string name = toUpper(e.name.last());
                return (name == "SUM" || name == "MIN" || name == "MAX" || name == "ABS" || name == "ISNULL") && !e.args.empty() &&
                       isMoney(*e.args[0], scope);
            }
            default: return false;
        }
    }

    // A bigint value: a BIGINT column or conversion, and what arithmetic, sums and the like make
    // of one (an int beside a bigint becomes a bigint). A literal beyond the int range is a decimal.
    bool isBigint(const Expr& e, const Scope& scope) {
        switch (e.kind) {
            case ExprKind::Column: return resolve(e.name, scope).bigint;
            case ExprKind::Convert: return e.type.name == "BIGINT";
            case ExprKind::Unary: return (e.text == "-" || e.text == "+" || e.text == "~") && isBigint(*e.args[0], scope);
            case ExprKind::Binary:
                return (e.text == "+" || e.text == "-" || e.text == "*" || e.text == "/" || e.text == "%" || e.text == "&" ||
                        e.text == "|" || e.text == "^") &&
                       typeOf(e, scope) == SqlType::Integer && (isBigint(*e.args[0], scope) || isBigint(*e.args[1], scope));
            case ExprKind::Function: {
                const std::string name = toUpper(e.name.last());
                if (name == "COUNT_BIG") return true;
                return (name == "SUM" || name == "MIN" || name == "MAX" || name == "ABS" || name == "ISNULL" || name == "SIGN") &&
                       !e.args.empty() && isBigint(*e.args[0], scope);
            }
            default: return false;
        }
    }

    // Decimal places SQL Server keeps for a DECIMAL/MONEY expression (exact arithmetic:
    // + and - keep the larger scale, * adds them); nullopt for floats, divisions and the rest.
    // Integers count as scale 0.
    std::optional<int> decimalScale(const Expr& e, const Scope& scope) {
        switch (e.kind) {
            case ExprKind::Number: {
                if (e.text.find_first_of("eE") != std::string::npos) return std::nullopt;
                const auto dot = e.text.find('.');
                return dot == std::string::npos ? 0 : static_cast<int>(e.text.size() - dot - 1);
            }
            case ExprKind::Column: {
                const Resolution r = resolve(e.name, scope);
                if (r.type == SqlType::Integer) return 0;
                if (r.scale >= 0) return r.scale;
                return std::nullopt;
            }
            case ExprKind::Unary:
                if (e.text == "-" || e.text == "+") return decimalScale(*e.args[0], scope);
                return std::nullopt;
            case ExprKind::Binary: {
                if (e.text != "+" && e.text != "-" && e.text != "*") return std::nullopt;
                const auto l = decimalScale(*e.args[0], scope), r = decimalScale(*e.args[1], scope);
                if (!l || !r) return std::nullopt;
                return e.text == "*" ? *l + *r : std::max(*l, *r);
            }
            case ExprKind::Function: {
                const std::string name = toUpper(e.name.last());
                if (name == "COUNT") return 0;
                if ((name == "SUM" || name == "MIN" || name == "MAX" || name == "ABS" || name == "ISNULL" || name == "ROUND") && !e.args.empty())
                    return decimalScale(*e.args[0], scope);
                return std::nullopt;
            }
            case ExprKind::Case: {
                int scale = 0;
                for (std::size_t i = 1; i < e.args.size(); i += 2) {
                    auto branch = decimalScale(*e.args[i], scope);
                    if (!branch) return std::nullopt;
                    scale = std::max(scale, *branch);
                }
                if (e.elseExpr) {
                    auto branch = decimalScale(*e.elseExpr, scope);
                    if (!branch) return std::nullopt;
                    scale = std::max(scale, *branch);
                }
                return scale;
            }
            case ExprKind::Convert:
                if (e.type.scale() >= 0) return e.type.scale();
                if (e.type.sqlType() == SqlType::Integer) return 0;
                return std::nullopt;
            default: return std::nullopt;
        }
    }

    // Decimal arithmetic is exact in SQL Server; SQLite computes it in binary floating point.
    // Rounding a REAL result to the places SQL Server would keep removes the float noise
    // (10.1 - 3.3 is 6.8, not 6.799999999999999).
    std::string exactDecimal(const std::string& value, const Expr& e, const Scope& scope) {
        if (typeOf(e, scope) != SqlType::Real) return value;
        const auto scale = decimalScale(e, scope);
        if (!scale || *scale <= 0) return value;
        return d_.round(value, *scale);
    }

    // ---------------------------------------------------------------- values

    bool isSimpleOperand(const Expr& e) const {
        return e.kind == ExprKind::Column || e.kind == ExprKind::String || e.kind == ExprKind::Number ||
               e.kind == ExprKind::Function || e.kind == ExprKind::Null;
    }

    // The value of e as SQL Server would store or compare it against a target of type target.
    std::string coerced(const Expr& e, const Scope& scope, SqlType target, bool storing) {
        if (isNumeric(target)) {
            if (e.kind == ExprKind::String) {
                if (auto number = numberFromText(e.text)) return *number;
                fail("Conversion failed when converting the varchar value '" + e.text + "' to data type " + typeWord(target) + ".", e.pos);
            }
            if (typeOf(e, scope) == SqlType::Text) return d_.textToNumber(expr(e, scope));
            return expr(e, scope);
        }
        if (target == SqlType::DateTime) {
            if (e.kind == ExprKind::String) {
                if (auto date = dates::parse(e.text)) {
                    if (date->year < 1753)
                        fail("The conversion of a varchar data type to a datetime data type resulted in an out-of-range value.", e.pos);
                    return d_.dateLiteral(dates::formatValue(*date));
                }
                if (storing) fail("Conversion failed when converting date and/or time from character string.", e.pos);
                return expr(e, scope);
            }
            if (storing && typeOf(e, scope) == SqlType::Text) return d_.toDateTime(expr(e, scope));
            return expr(e, scope);
        }
        if (target == SqlType::Text && storing && e.kind == ExprKind::Number) return d_.quoteString(e.text);
        return expr(e, scope);
    }

    // The value e as SQL Server stores it into a column: converted to the column's type and,
    // for DECIMAL(p,s) and MONEY, rounded to the places the column keeps.
    // table: the name a message about the column gives (the statement's target when empty).
    std::string stored(const Expr& e, const Scope& scope, const CatalogColumn& target, std::string_view table = {}) {
        std::string value = coerced(e, scope, target.type, true);
        if (e.kind == ExprKind::Column && typeOf(e, scope) == SqlType::Unknown) value = d_.storedUntyped(value, target.type);
        if (isNumeric(target.type) && target.scale >= 0 && e.kind != ExprKind::Null)
            value = d_.round(value, target.scale);
        if (table.empty() && statement_.tree) table = statement_.tree->target.last();
        if (target.type == SqlType::Text && e.kind == ExprKind::String) return d_.storedText(value, &e.text, table, target);
        if (target.type == SqlType::Text && typeOf(e, scope) == SqlType::Text) return d_.storedText(value, nullptr, table, target);
        return value;
    }

    // ---------------------------------------------------------------- expressions

    std::string columnReference(const Expr& e, const Scope& scope) const {
        const Resolution r = resolve(e.name, scope);
        const std::string column = d_.quoteIdentifier(e.name.last());
        if (r.source) {
            if (e.name.parts.size() >= 2 || (scope.qualifyLocal && r.local)) return r.source->qualifier + "." + column;
            return column;
        }
        if (e.name.parts.size() >= 2) {
            Name table;
            table.parts.push_back(e.name.parts[e.name.parts.size() - 2]);
            return d_.tableQualifier(table) + "." + column;
        }
        if (equalsIgnoreCase(e.name.last(), "CURRENT_TIMESTAMP")) return d_.currentDateTime();
        return column;
    }

    std::string withCollation(const std::string& operand, const Expr& e) const {
        return (isSimpleOperand(e) ? operand : "(" + operand + ")") + d_.collate();
    }

    std::string comparison(const Expr& e, const Scope& scope) {
        const Expr& l = *e.args[0];
        const Expr& r = *e.args[1];
        const SqlType lt = typeOf(l, scope), rt = typeOf(r, scope);
        std::string left, right;
        if (lt == SqlType::DateTime || rt == SqlType::DateTime) {
            left = lt == SqlType::DateTime ? expr(l, scope) : coerced(l, scope, SqlType::DateTime, false);
            right = rt == SqlType::DateTime ? expr(r, scope) : coerced(r, scope, SqlType::DateTime, false);
        } else if (isNumeric(lt) || isNumeric(rt)) {
            left = isNumeric(lt) ? expr(l, scope) : coerced(l, scope, rt, false);
            right = isNumeric(rt) ? expr(r, scope) : coerced(r, scope, lt, false);
        } else {
            // a text written in the statement compares as the dialect needs it (trailing blanks)
            left = l.kind == ExprKind::String ? d_.comparedString(l.text) : expr(l, scope);
            right = r.kind == ExprKind::String ? d_.comparedString(r.text) : expr(r, scope);
            if (lt == SqlType::Text || rt == SqlType::Text) left = withCollation(left, l);
        }
        return "(" + left + " " + e.text + " " + right + ")";
    }

    std::string expr(const Expr& e, const Scope& scope) {
        switch (e.kind) {
            case ExprKind::Number: return e.text.front() == '.' ? "0" + e.text : e.text;
            case ExprKind::String: return d_.quoteString(e.text);
            case ExprKind::Null: return "NULL";
            case ExprKind::Column: return columnReference(e, scope);
            case ExprKind::Star: {
                if (auto columns = tempStar(e, scope)) return *columns;
                if (e.name.parts.empty()) return "*";
                if (const Source* source = findSource(scope, e.name.last())) return source->qualifier + ".*";
                return d_.tableQualifier(e.name) + ".*";
            }
            case ExprKind::Unary:
                if (e.text == "NOT") return "(NOT " + expr(*e.args[0], scope) + ")";
                return "(" + e.text + expr(*e.args[0], scope) + ")";
            case ExprKind::Binary: return binary(e, scope);
            case ExprKind::Like: {
                const std::string escape = e.args.size() > 2 ? expr(*e.args[2], scope) : std::string();
                const std::string match = d_.like(expr(*e.args[0], scope), expr(*e.args[1], scope), escape);
                return e.negated ? "(NOT " + match + ")" : match;
            }
            case ExprKind::IsNull: return "(" + expr(*e.args[0], scope) + (e.negated ? " IS NOT NULL)" : " IS NULL)");
            case ExprKind::InList: {
                const SqlType t = typeOf(*e.args[0], scope);
                std::string operand = expr(*e.args[0], scope);
                if (t == SqlType::Text) operand = withCollation(operand, *e.args[0]);
                std::string text = "(" + operand + (e.negated ? " NOT IN (" : " IN (");
                for (std::size_t i = 1; i < e.args.size(); ++i) {
                    if (i > 1) text += ", ";
                    text += (isNumeric(t) || t == SqlType::DateTime) ? coerced(*e.args[i], scope, t, false) : expr(*e.args[i], scope);
                }
                return text + "))";
            }
            case ExprKind::InQuery:
                return "(" + expr(*e.args[0], scope) + (e.negated ? " NOT IN (" : " IN (") + query(*e.query, &scope) + "))";
            case ExprKind::Between: {
                const SqlType t = typeOf(*e.args[0], scope);
                std::string operand = expr(*e.args[0], scope);
                if (t == SqlType::Text) operand = withCollation(operand, *e.args[0]);
                return "(" + operand + (e.negated ? " NOT BETWEEN " : " BETWEEN ") + coerced(*e.args[1], scope, t, false) +
                       " AND " + coerced(*e.args[2], scope, t, false) + ")";
            }
            case ExprKind::Exists: return "EXISTS (" + query(*e.query, &scope) + ")";
            case ExprKind::Subquery:
                if (yieldsOneRow(*e.query)) return "(" + query(*e.query, &scope) + ")";
                return d_.singleValue(query(*e.query, &scope));
            case ExprKind::Function: return function(e, scope);
            case ExprKind::Case: return caseExpr(e, scope);
            case ExprKind::Convert: return convert(e, scope);
            case ExprKind::DatePartCall: return dateFunction(e, scope);
            case ExprKind::Identity: fail("IDENTITY() is allowed only in the select list of SELECT … INTO", e.pos);
        }
        fail("unsupported expression", e.pos);
    }

    // A scalar subquery that cannot yield two rows needs no check: TOP 1, no FROM, or only
    // aggregates without GROUP BY.
    static bool yieldsOneRow(const Query& q) {
        if (q.cores.size() != 1) return false;
        const SelectCore& c = q.cores.front();
        if (c.top && c.top->kind == ExprKind::Number && (c.top->text == "1" || c.top->text == "0") && !c.topPercent) return true;
        if (c.from.empty()) return true;
        if (!c.groupBy.empty()) return false;
        for (const auto& item : c.items)
            if (!isAggregate(*item.expr)) return false;
        return true;
    }

    std::string binary(const Expr& e, const Scope& scope) {
        static const std::set<std::string> comparisons = {"=", "<>", "<", ">", "<=", ">="};
        if (comparisons.count(e.text)) return comparison(e, scope);
        const Expr& l = *e.args[0];
        const Expr& r = *e.args[1];
        if (e.text == "+") {
            const SqlType lt = typeOf(l, scope), rt = typeOf(r, scope);
            if (concatenates(lt, rt)) return "(" + d_.concat(expr(l, scope), expr(r, scope)) + ")";
            // datetime + n adds days in SQL Server, a fraction being part of a day
            if (lt == SqlType::DateTime && isNumeric(rt)) return d_.call("add_days", {expr(l, scope), expr(r, scope)});
            if (rt == SqlType::DateTime && isNumeric(lt)) return d_.call("add_days", {expr(r, scope), expr(l, scope)});
        }
        if (e.text == "-") {
            const SqlType lt = typeOf(l, scope), rt = typeOf(r, scope);
            if (lt == SqlType::DateTime && isNumeric(rt)) return d_.call("add_days", {expr(l, scope), "-(" + expr(r, scope) + ")"});
        }
        // a + b + c … of ints: the engine's helper checks each partial sum in one call
        if (checkedIntAddition(e, scope)) {
            std::vector<const Expr*> terms{e.args[1].get()};
            const Expr* left = e.args[0].get();
            for (; checkedIntAddition(*left, scope); left = left->args[0].get()) terms.push_back(left->args[1].get());
            terms.push_back(left);
            if (terms.size() > 2) {
                std::vector<std::string> texts;
                for (auto term = terms.rbegin(); term != terms.rend(); ++term) texts.push_back(expr(**term, scope));
                if (std::string sum = d_.checkedIntSum(texts); !sum.empty()) return sum;
            }
        }
        // exclusive or: a helper, since spelling it with | and & would write each operand twice
        if (e.text == "^") return d_.call("bitxor", {expr(l, scope), expr(r, scope)});
        // arithmetic with text converts the text to the number's type, or fails
        auto operand = [&](const Expr& side, const Expr& other) {
            const SqlType sideType = typeOf(side, scope), otherType = typeOf(other, scope);
            if (sideType != SqlType::Text || !isNumeric(otherType)) return expr(side, scope);
            if (side.kind == ExprKind::String && !numberFromText(side.text))
                fail("Conversion failed when converting the varchar value '" + side.text + "' to data type " + typeWord(otherType) + ".", side.pos);
            return coerced(side, scope, otherType, false);
        };
        // SQL Server refuses to divide by zero where SQLite would quietly give NULL
        if (e.text == "/" || e.text == "%") return d_.divide(operand(l, r), operand(r, l), e.text == "%");
        const std::string text = "(" + operand(l, r) + " " + e.text + " " + operand(r, l) + ")";
        if ((e.text == "+" || e.text == "-" || e.text == "*") && typeOf(l, scope) == SqlType::Integer && typeOf(r, scope) == SqlType::Integer &&
            fitsInt(l) && fitsInt(r)) {
            // int arithmetic overflows as SQL Server's does, bigint arithmetic at the bigint range
            const bool big = isBigint(l, scope) || isBigint(r, scope);
            return d_.call("checked", {text, d_.quoteString(big ? "bigint" : "int")});
        }
        if (e.text == "+" || e.text == "-" || e.text == "*") return exactDecimal(text, e, scope);
        return text;
    }

    // An addition of two ints that SQL Server checks for the int range.
    bool checkedIntAddition(const Expr& e, const Scope& scope) {
        return e.kind == ExprKind::Binary && e.text == "+" && typeOf(*e.args[0], scope) == SqlType::Integer &&
               typeOf(*e.args[1], scope) == SqlType::Integer && fitsInt(*e.args[0]) && fitsInt(*e.args[1]) &&
               !isBigint(*e.args[0], scope) && !isBigint(*e.args[1], scope);
    }

    // A literal beyond the int range is a decimal in SQL Server, so its arithmetic does not overflow.
    static bool fitsInt(const Expr& e) {
        if (e.kind != ExprKind::Number) return true;
        return e.text.size() < 10 || (e.text.size() == 10 && e.text <= "2147483647");
    }

    std::string caseExpr(const Expr& e, const Scope& scope) {
        std::string text = "CASE";
        SqlType operandType = SqlType::Unknown;
        if (e.caseOperand) {
            operandType = typeOf(*e.caseOperand, scope);
            std::string operand = expr(*e.caseOperand, scope);
            if (operandType == SqlType::Text) operand = withCollation(operand, *e.caseOperand);
            text += " " + operand;
        }
        // the branches share the highest type among them: a '' beside numbers is 0
        const SqlType resultType = typeOf(e, scope);
        auto branch = [&](const Expr& value) {
            return isNumeric(resultType) || resultType == SqlType::DateTime ? coerced(value, scope, resultType, false) : expr(value, scope);
        };
        for (std::size_t i = 0; i + 1 < e.args.size(); i += 2) {
            const std::string when = e.caseOperand && (isNumeric(operandType) || operandType == SqlType::DateTime)
                                         ? coerced(*e.args[i], scope, operandType, false)
                                         : expr(*e.args[i], scope);
            text += " WHEN " + when + " THEN " + branch(*e.args[i + 1]);
        }
        if (e.elseExpr) text += " ELSE " + branch(*e.elseExpr);
        return text + " END";
    }

    std::string convert(const Expr& e, const Scope& scope) {
        const Expr& value = *e.args[0];
        const std::string v = expr(value, scope);
        switch (e.type.sqlType()) {
            case SqlType::Text: {
                int length = 30;
                if (!e.type.params.empty()) length = e.type.params[0] < 0 ? 0 : e.type.params[0];
                if (e.type.name == "TEXT" || e.type.name == "NTEXT") length = 0;
                std::optional<int> style = e.style;
                const SqlType valueType = typeOf(value, scope);
                if (!style && valueType == SqlType::DateTime) style = 120;
                if (valueType == SqlType::Real && isMoney(value, scope) && (!style || *style == 0 || *style == 2)) {
                    // money as text: two places by default, all four with style 2
                    return d_.toText(d_.fixedPoint(v, style && *style == 2 ? 4 : 2), std::nullopt, length, e.type.isFixedChar());
                }
                if (valueType == SqlType::Real) {
                    // a DECIMAL(p,s) value is written with its s places: 12.50, not 12.5
                    const auto scale = decimalScale(value, scope);
                    if (scale && *scale > 0) return d_.toText(d_.fixedPoint(v, *scale), std::nullopt, length, e.type.isFixedChar());
                    // a float with six significant digits (a decimal quotient keeps its digits)
                    if (!scale && !(value.kind == ExprKind::Binary && (value.text == "/" || value.text == "%")))
                        return d_.toText(d_.call("float_text", {v}), std::nullopt, length, e.type.isFixedChar());
                }
                if (style && !dates::formatStyle(dates::DateTime{}, *style) && *style != 0)
                    fail("unsupported CONVERT style " + std::to_string(*style), e.pos);
                if (!style && valueType == SqlType::Integer) return d_.integerToText(v, length, e.type.isFixedChar());
                return d_.toText(v, style, length, e.type.isFixedChar());
            }
            case SqlType::Integer: {
                if (e.tryConversion) return d_.call("try", {v, d_.quoteString(integerKind(e.type.name)), "0", "0"});
                if (e.type.name == "BIT") return d_.call("bit", {v});
                if (isMoney(value, scope)) return d_.call("int", {v, d_.quoteString(integerKind(e.type.name)), "1"});
                return d_.call("int", {v, d_.quoteString(integerKind(e.type.name))});
            }
            case SqlType::Real: {
                int precision = -1, scale = -1;
                if (e.type.name == "DECIMAL" || e.type.name == "NUMERIC") {
                    precision = e.type.params.empty() ? 18 : e.type.params[0];
                    scale = e.type.params.size() >= 2 ? e.type.params[1] : 0;
                }
                if (e.type.name == "MONEY") precision = 19, scale = 4;
                if (e.type.name == "SMALLMONEY") precision = 10, scale = 4;
                if (e.tryConversion)
                    return d_.call("try", {v, d_.quoteString(scale >= 0 ? "decimal" : "float"), std::to_string(precision), std::to_string(scale)});
                if (scale >= 0) return d_.call("decimal", {v, std::to_string(precision), std::to_string(scale)});
                return d_.toReal(v, std::nullopt);
            }
            case SqlType::DateTime: {
                const std::string value = e.tryConversion ? d_.call("try", {v, d_.quoteString("datetime"), "0", "0"})
                                          : e.style ? d_.call("datetime", {v, std::to_string(*e.style)})
                                                    : d_.toDateTime(v);
                if (e.type.name == "DATE") return d_.call("date", {value});  // the day, at midnight
                if (e.type.name == "SMALLDATETIME") return d_.call("smalldatetime", {value});  // to the nearest minute
                return value;
            }
            case SqlType::Unknown: break;
        }
        fail("unsupported conversion target " + e.type.name, e.pos);
    }

    static const char* integerKind(const std::string& typeName) {
        if (typeName == "SMALLINT") return "smallint";
        if (typeName == "TINYINT") return "tinyint";
        if (typeName == "BIGINT") return "bigint";
        if (typeName == "BIT") return "bit";
        return "int";
    }

    dates::Part datePartOf(const std::string& name, Position pos) const {
        auto part = dates::partFromName(name);
        if (!part) fail("unknown date part " + name, pos);
        return *part;
    }

    std::string dateArgument(const Expr& e, const Scope& scope) {
        if (e.kind == ExprKind::String) {
            if (auto date = dates::parse(e.text)) return d_.dateLiteral(dates::formatValue(*date));
        }
        return expr(e, scope);
    }

    std::string dateFunction(const Expr& e, const Scope& scope) {
        const dates::Part part = datePartOf(e.datePart, e.pos);
        const std::string& name = e.name.last();
        if (name == "DATEPART") return d_.datePart(part, dateArgument(*e.args[0], scope));
        if (name == "DATEADD") return d_.dateAdd(part, expr(*e.args[0], scope), dateArgument(*e.args[1], scope));
        if (name == "DATEDIFF") return d_.dateDiff(part, dateArgument(*e.args[0], scope), dateArgument(*e.args[1], scope));
        if (name == "DATENAME") return d_.call("datename", {d_.quoteString(dates::partName(part)), dateArgument(*e.args[0], scope)});
        fail(name + " is not supported", e.pos);
    }

    void expectArguments(const Expr& e, std::size_t count) const {
        if (e.args.size() != count)
            fail("The " + toUpper(e.name.last()) + " function requires " + std::to_string(count) + " argument(s).", e.pos);
    }

    struct RuntimeHelper {
        const char* name;
        std::size_t minArguments, maxArguments;
    };
    // T-SQL functions that map one to one onto a runtime helper of the same meaning.
    static std::optional<RuntimeHelper> runtimeHelper(const std::string& name) {
        static const std::map<std::string, RuntimeHelper> helpers = {
            {"REPLACE", {"replace", 3, 3}},       {"REPLICATE", {"replicate", 2, 2}}, {"SPACE", {"space", 1, 1}},
            {"STR", {"str", 1, 3}},               {"STUFF", {"stuff", 4, 4}},         {"CONCAT", {"concat", 2, 254}},
            {"QUOTENAME", {"quotename", 1, 2}},   {"ISNUMERIC", {"isnumeric", 1, 1}}, {"PATINDEX", {"patindex", 2, 2}},
            {"EOMONTH", {"eomonth", 1, 2}},       {"DATEFROMPARTS", {"datefromparts", 3, 3}}, {"ISDATE", {"isdate", 1, 1}},
            {"ROUND", {"round", 2, 3}},
        };
        auto found = helpers.find(name);
        if (found == helpers.end()) return std::nullopt;
        return found->second;
    }

    std::string function(const Expr& e, const Scope& scope) {
        const std::string name = toUpper(e.name.last());
        auto arg = [&](std::size_t i) { return expr(*e.args[i], scope); };
        if (name == "ISNULL") {
            expectArguments(e, 2);
            // ISNULL takes the type of its first argument: ISNULL(qty, '') is 0
            // and ISNULL(name, 0) is the text '0'
            const SqlType type = typeOf(*e.args[0], scope);
            if (type == SqlType::Text && e.args[1]->kind == ExprKind::Number) return d_.ifNull(arg(0), d_.quoteString(e.args[1]->text));
            const bool convert = isNumeric(type) || type == SqlType::DateTime;
            return d_.ifNull(arg(0), convert ? coerced(*e.args[1], scope, type, false) : arg(1));
        }
        if (name == "LEN") {
            expectArguments(e, 1);
            return d_.length(arg(0));
        }
        if (name == "LEFT") {
            expectArguments(e, 2);
            return d_.left(arg(0), arg(1));
        }
        if (name == "RIGHT") {
            expectArguments(e, 2);
            return d_.right(arg(0), arg(1));
        }
        if (name == "SUBSTRING") {
            expectArguments(e, 3);
            return d_.call("substring", {arg(0), arg(1), arg(2)});
        }
        if (name == "CHARINDEX") {
            if (e.args.size() == 3) return d_.call("charindex", {arg(0), arg(1), arg(2)});
            expectArguments(e, 2);
            return d_.charIndex(arg(0), arg(1));
        }
        if (auto helper = runtimeHelper(name)) {
            if (e.args.size() < helper->minArguments || e.args.size() > helper->maxArguments)
                fail("The " + name + " function requires " + std::to_string(helper->minArguments) +
                         (helper->maxArguments != helper->minArguments ? " or more" : "") + " argument(s).",
                     e.pos);
            std::vector<std::string> args;
            for (std::size_t i = 0; i < e.args.size(); ++i) args.push_back(arg(i));
            const std::string text = d_.call(helper->name, args);
            return name == "ROUND" ? exactDecimal(text, e, scope) : text;
        }
        if (name == "DATALENGTH") {
            expectArguments(e, 1);
            const std::string value = arg(0);
            switch (typeOf(*e.args[0], scope)) {
                case SqlType::Integer: return d_.call("sized", {value, "4"});
                case SqlType::Real:
                case SqlType::DateTime: return d_.call("sized", {value, "8"});
                default: return d_.byteLength(value);
            }
        }
        if (name == "IIF" || name == "CHOOSE") {
            if (name == "IIF") expectArguments(e, 3);
            else if (e.args.size() < 2) fail("The CHOOSE function requires 2 or more argument(s).", e.pos);
            const SqlType resultType = typeOf(e, scope);
            auto branch = [&](const Expr& value) {
                return isNumeric(resultType) || resultType == SqlType::DateTime ? coerced(value, scope, resultType, false) : expr(value, scope);
            };
            if (name == "IIF") return "(CASE WHEN " + arg(0) + " THEN " + branch(*e.args[1]) + " ELSE " + branch(*e.args[2]) + " END)";
            std::string text = "(CASE " + d_.toInteger(coerced(*e.args[0], scope, SqlType::Integer, false));
            for (std::size_t i = 1; i < e.args.size(); ++i) text += " WHEN " + std::to_string(i) + " THEN " + branch(*e.args[i]);
            return text + " END)";
        }
        if (name == "COALESCE" && !e.args.empty()) {
            const SqlType resultType = typeOf(e, scope);
            std::string text = "coalesce(";
            for (std::size_t i = 0; i < e.args.size(); ++i) {
                const bool convert = isNumeric(resultType) || resultType == SqlType::DateTime;
                text += (i ? ", " : "") + (convert ? coerced(*e.args[i], scope, resultType, false) : arg(i));
            }
            return text + ")";
        }
        if (name == "SUM" && e.args.size() == 1 && !e.distinct && !e.star && d_.factorsGroupedFactorsOutOfSums()) {
            if (auto factored = sumOfGroupedFactor(e, scope)) return *factored;
        }
        if ((name == "MIN" || name == "MAX") && e.args.size() == 1 && e.args[0]->kind != ExprKind::Column &&
            typeOf(*e.args[0], scope) == SqlType::Text)
            return name + "(" + withCollation(arg(0), *e.args[0]) + ")";
        if (name == "YEAR" || name == "MONTH" || name == "DAY") {
            expectArguments(e, 1);
            return d_.datePart(*dates::partFromName(name), dateArgument(*e.args[0], scope));
        }
        if (name == "GETDATE" || name == "SYSDATETIME" || name == "CURRENT_TIMESTAMP") {
            expectArguments(e, 0);
            return d_.currentDateTime();
        }
        std::string text = name == "COUNT" || name == "SUM" || name == "AVG" || name == "MIN" || name == "MAX"
                               ? toUpper(name)
                               : e.name.last();
        text += "(";
        if (e.star) text += "*";
        if (e.distinct) text += "DISTINCT ";
        for (std::size_t i = 0; i < e.args.size(); ++i) {
            if (i) text += ", ";
            text += arg(i);
        }
        text += ")";
        // SQL Server averages integers as integers
        if (name == "AVG" && e.args.size() == 1 && typeOf(*e.args[0], scope) == SqlType::Integer) return d_.integerAverage(text);
        if (name == "SUM" && e.args.size() == 1 && isBigint(*e.args[0], scope)) return d_.integerResult(text, "bigint");
        if (name == "SUM") return exactDecimal(text, e, scope);
        // SIGN, CEILING and FLOOR of an integer are integers on SQL Server
        if ((name == "SIGN" || name == "CEILING" || name == "FLOOR") && e.args.size() == 1 && typeOf(*e.args[0], scope) == SqlType::Integer)
            return d_.integerResult(text, isBigint(*e.args[0], scope) ? "bigint" : "int");
        return text;
    }

    // SUM(n * c) with n an int and c a decimal column the query groups by: c is the same in
    // every row of a group, so the sum is c * SUM(n), exactly so in decimal arithmetic (a NULL c
    // or no n makes both NULL).
    std::optional<std::string> sumOfGroupedFactor(const Expr& e, const Scope& scope) {
        const Expr& product = *e.args[0];
        if (product.kind != ExprKind::Binary || product.text != "*" || !groupBy_) return std::nullopt;
        for (std::size_t side = 0; side < 2; ++side) {
            const Expr& factor = *product.args[side];
            const Expr& count = *product.args[1 - side];
            if (factor.kind != ExprKind::Column || typeOf(count, scope) != SqlType::Integer) continue;
            const Resolution r = resolve(factor.name, scope);
            if (!r.source || !r.local || r.type != SqlType::Real || r.scale < 0 || !groupedOn(r.source, factor.name.last(), scope)) continue;
            return exactDecimal("(" + expr(factor, scope) + " * SUM(" + expr(count, scope) + "))", e, scope);
        }
        return std::nullopt;
    }

    bool groupedOn(const Source* source, std::string_view column, const Scope& scope) const {
        for (const auto& item : *groupBy_) {
            if (item->kind != ExprKind::Column || !equalsIgnoreCase(item->name.last(), column)) continue;
            const Resolution r = resolve(item->name, scope);
            if (r.source == source && r.local) return true;
        }
        return false;
    }

    // GROUP BY items that the others decide, for an engine that may select what it does not
    // group by: a column of a table whose row the kept items fix, because they hold one of its
    // unique keys or equal one in the joins (each key column compared for equality with a fixed
    // column of the same type), step by step from table to table. Only where every join is an
    // inner one, and not in a view (it would outlive the keys it relies on).
    std::vector<bool> decidedGroupItems(const SelectCore& c, const Scope& scope) {
        std::vector<bool> dropped(c.groupBy.size(), false);
        if (!d_.selectsUngroupedColumns() || inView_ || c.groupBy.size() < 2) return dropped;
        std::vector<std::pair<const Expr*, const Expr*>> equalities;
        for (const auto& ref : c.from)
            if (!innerJoinEqualities(*ref, equalities)) return dropped;
        if (c.where) conjunctEqualities(*c.where, equalities);
        for (std::size_t i = c.groupBy.size(); i-- > 0;) {
            const Expr& item = *c.groupBy[i];
            if (item.kind != ExprKind::Column) continue;
            const Resolution r = resolve(item.name, scope);
            if (!r.source || !r.local || r.source->table.parts.empty()) continue;
            dropped[i] = true;
            dropped[i] = rowFixed(*r.source, c, scope, dropped, equalities);
        }
        return dropped;
    }

    bool innerJoinEqualities(const TableRef& ref, std::vector<std::pair<const Expr*, const Expr*>>& equalities) {
        if (ref.kind != TableRef::Kind::Join) return true;
        if (ref.joinType != JoinType::Inner && ref.joinType != JoinType::Cross) return false;
        if (ref.on) conjunctEqualities(*ref.on, equalities);
        return innerJoinEqualities(*ref.left, equalities) && innerJoinEqualities(*ref.right, equalities);
    }

    static void conjunctEqualities(const Expr& e, std::vector<std::pair<const Expr*, const Expr*>>& equalities) {
        if (e.kind != ExprKind::Binary) return;
        if (equalsIgnoreCase(e.text, "AND")) {
            conjunctEqualities(*e.args[0], equalities);
            conjunctEqualities(*e.args[1], equalities);
        } else if (e.text == "=" && e.args[0]->kind == ExprKind::Column && e.args[1]->kind == ExprKind::Column) {
            equalities.emplace_back(e.args[0].get(), e.args[1].get());
        }
    }

    // Whether the GROUP BY items not dropped fix the row of target within each group.
    bool rowFixed(const Source& target, const SelectCore& c, const Scope& scope, const std::vector<bool>& dropped,
                  const std::vector<std::pair<const Expr*, const Expr*>>& equalities) {
        std::set<std::pair<const Source*, std::string>> fixed;  // columns equal in every row of a group
        std::set<const Source*> rows;                           // tables with one row per group
        for (std::size_t i = 0; i < c.groupBy.size(); ++i) {
            if (dropped[i] || c.groupBy[i]->kind != ExprKind::Column) continue;
            const Resolution r = resolve(c.groupBy[i]->name, scope);
            if (r.source && r.local) fixed.emplace(r.source, toUpper(c.groupBy[i]->name.last()));
        }
        auto equalsFixed = [&](const Source& source, const std::string& column) {
            if (fixed.count({&source, toUpper(column)})) return true;
            for (const auto& [a, b] : equalities) {
                for (const auto& [mine, other] : {std::pair{a, b}, std::pair{b, a}}) {
                    if (!equalsIgnoreCase(mine->name.last(), column)) continue;
                    const Resolution m = resolve(mine->name, scope), o = resolve(other->name, scope);
                    if (m.source == &source && o.source && o.local && m.type == o.type && m.type != SqlType::Unknown &&
                        fixed.count({o.source, toUpper(other->name.last())}))
                        return true;
                }
            }
            return false;
        };
        for (bool changed = true; changed && !rows.count(&target);) {
            changed = false;
            for (const Source& source : scope.sources) {
                if (rows.count(&source) || source.table.parts.empty() || !source.columns) continue;
                for (const auto& key : keysOf(source.table)) {
                    bool all = !key.empty();
                    for (const auto& column : key) all = all && equalsFixed(source, column);
                    if (!all) continue;
                    rows.insert(&source);
                    for (const auto& column : *source.columns) fixed.emplace(&source, toUpper(column.name));
                    changed = true;
                    break;
                }
            }
        }
        return rows.count(&target) > 0;
    }

    const std::vector<std::vector<std::string>>& keysOf(const Name& table) {
        const std::string key = toUpper(table.last());
        auto found = keyCache_.find(key);
        if (found == keyCache_.end()) found = keyCache_.emplace(key, catalog_.uniqueKeys(table.last())).first;
        return found->second;
    }

    // ---------------------------------------------------------------- queries

    std::string tableRef(const TableRef& ref, const Scope& scope, std::size_t& joined) {
        switch (ref.kind) {
            case TableRef::Kind::Table: {
                ++joined;
                if (&ref == rowExposed_)
                    return "(SELECT " + d_.rowIdentifier() + " AS " + d_.quoteIdentifier("qx_row") + ", * FROM " + d_.tableReference(ref.table) +
                           ") AS " + (ref.alias ? d_.quoteIdentifier(*ref.alias) : d_.tableQualifier(ref.table));
                std::string text = d_.tableReference(ref.table);
                if (ref.alias) text += " AS " + d_.quoteIdentifier(*ref.alias);
                return text;
            }
            case TableRef::Kind::Derived:
                ++joined;
                return "(" + query(*ref.derived, scope.parent) + ") AS " + d_.quoteIdentifier(*ref.alias);
            case TableRef::Kind::Join: {
                std::string text = tableRef(*ref.left, scope, joined);
                static const char* const keywords[] = {" INNER JOIN ", " LEFT JOIN ", " RIGHT JOIN ", " FULL JOIN ", " CROSS JOIN "};
                text += keywords[static_cast<int>(ref.joinType)];
                std::string right = tableRef(*ref.right, scope, joined);
                text += ref.right->kind == TableRef::Kind::Join ? "(" + right + ")" : right;
                if (ref.on) {
                    // SQL Server resolves an ON clause against the tables joined so far only.
                    Scope onScope = scope;
                    onScope.visible = joined;
                    onScope.qualifyLocal = true;
                    text += " ON " + expr(*ref.on, onScope);
                }
                return text;
            }
        }
        return {};
    }

    // The GROUP BY of the select being written, for as long as it is written.
    struct GroupContext {
        const std::vector<ExprPtr>*& slot;
        const std::vector<ExprPtr>* saved;
        GroupContext(const std::vector<ExprPtr>*& s, const std::vector<ExprPtr>* now) : slot(s), saved(s) { slot = now; }
        ~GroupContext() { slot = saved; }
        GroupContext(const GroupContext&) = delete;
        GroupContext& operator=(const GroupContext&) = delete;
    };

    std::string fromClause(const std::vector<TableRefPtr>& from, const Scope& scope) {
        std::string text;
        std::size_t joined = 0;
        for (std::size_t i = 0; i < from.size(); ++i) {
            if (i) text += ", ";
            text += tableRef(*from[i], scope, joined);
        }
        return text;
    }

    // targets: the types of the columns the rows go into (INSERT … SELECT), for SQL Server's
    // implicit conversions; skipIdentity drops IDENTITY() items (SELECT … INTO).
        // unionTypes: the type SQL Server gives each column of a UNION (the highest of its branches);
    // a literal of a lower type is converted the way SQL Server converts it ('' to 0).
    // selectList: written instead of the core's own select list (the ranking of WITH TIES)
    std::string core(const SelectCore& c, const Scope& scope, const std::vector<CatalogColumn>* targets, bool skipIdentity,
                     const std::vector<SqlType>* unionTypes = nullptr, const std::string* selectList = nullptr) {
        GroupContext group(groupBy_, &c.groupBy);
        if (selectList) {
            std::string text = "SELECT " + *selectList;
            if (!c.from.empty()) text += " FROM " + fromClause(c.from, scope);
            if (c.where) text += " WHERE " + expr(*c.where, scope);
            if (!c.groupBy.empty()) {
                text += " GROUP BY ";
                for (std::size_t i = 0; i < c.groupBy.size(); ++i) text += (i ? ", " : "") + withCollationIfText(*c.groupBy[i], scope);
            }
            if (c.having) text += " HAVING " + expr(*c.having, scope);
            return text;
        }
        std::string text = c.distinct ? "SELECT DISTINCT " : "SELECT ";
        std::size_t position = 0;
        bool positionKnown = true;
        bool first = true;
        for (const auto& item : c.items) {
            const Expr& e = *item.expr;
            if (e.kind == ExprKind::Identity && skipIdentity) continue;
            if (!first) text += ", ";
            first = false;
            if (e.kind == ExprKind::Star) {
                bool complete = true;
                std::size_t expanded = 0;
                for (const Source* source : starSources(e, scope)) {
                    if (!source->columns) complete = false;
                    else expanded += source->columns->size();
                }
                if (!complete) positionKnown = false;
                std::optional<std::string> stored;
                if (targets && positionKnown) stored = storedStar(e, scope, *targets, position);
                text += stored ? *stored : expr(e, scope);
                position += expanded;
                continue;
            }
            if (targets && positionKnown && position < targets->size()) text += stored(e, scope, (*targets)[position]);
            else if (unionTypes && positionKnown && position < unionTypes->size() && e.kind == ExprKind::String &&
                     (*unionTypes)[position] != SqlType::Text)
                text += coerced(e, scope, (*unionTypes)[position], false);
            else if (unionTypes && positionKnown && position < unionTypes->size() && isNumeric((*unionTypes)[position]) &&
                     typeOf(e, scope) == SqlType::Text) {
                // a text branch of a numeric UNION column is converted, as SQL Server converts it
                const std::string number = d_.textToNumber(expr(e, scope));
                text += (*unionTypes)[position] == SqlType::Integer ? d_.toInteger(number) : number;
                if (e.kind == ExprKind::Column && !item.alias) text += " AS " + d_.quoteIdentifier(e.name.last());
            }
            else if (unionTypes && positionKnown && position < unionTypes->size() && e.kind == ExprKind::Number &&
                     (*unionTypes)[position] == SqlType::Real && typeOf(e, scope) == SqlType::Integer)
                text += d_.unionDecimal(expr(e, scope));
            else if (e.kind == ExprKind::String && (unionTypes || c.distinct))
                // a written text that a UNION or DISTINCT compares with others: SQL Server ignores its
                // trailing blanks there (an engine whose collation counts them writes it without)
                text += withCollation(d_.comparedString(e.text), e);
            else if (e.kind != ExprKind::Column && typeOf(e, scope) == SqlType::Text)
                text += withCollation(expr(e, scope), e);  // the value compares, groups and sorts as text columns do
            else text += expr(e, scope);
            ++position;
            if (item.alias) text += " AS " + d_.quoteIdentifier(*item.alias);
        }
        if (!c.from.empty()) text += " FROM " + fromClause(c.from, scope);
        if (c.where) text += " WHERE " + expr(*c.where, scope);
        if (!c.groupBy.empty()) {
            text += " GROUP BY ";
            const std::vector<bool> decided = decidedGroupItems(c, scope);
            bool firstGroup = true;
            for (std::size_t i = 0; i < c.groupBy.size(); ++i) {
                if (decided[i]) continue;
                if (!firstGroup) text += ", ";
                firstGroup = false;
                const Expr& g = *c.groupBy[i];
                std::string group = expr(g, scope);
                if (g.kind != ExprKind::Column && typeOf(g, scope) == SqlType::Text) group = withCollation(group, g);
                text += group;
            }
        }
        if (c.having) text += " HAVING " + expr(*c.having, scope);
        return text;
    }

    // The sources a * reads: every one, or the one it names (a.*), found as a column's qualifier is.
    static std::vector<const Source*> starSources(const Expr& star, const Scope& scope) {
        std::vector<const Source*> sources;
        if (star.name.parts.empty())
            for (const auto& source : scope.sources) sources.push_back(&source);
        else if (const Source* source = findSource(scope, star.name.last()))
            sources.push_back(source);
        return sources;
    }

    // A column of a source, as a reference written where a * stood.
    static Expr columnOf(const Source& source, const std::string& name, Position pos) {
        Expr column{ExprKind::Column, pos};
        column.name.parts = {source.refName, name};
        return column;
    }

    // The columns a * inserts, each as its target column stores it, where storing changes one of
    // them (a decimal rounded, a text trimmed or checked, an untyped NULL converted); otherwise
    // nothing, and the * stays as written.
    std::optional<std::string> storedStar(const Expr& star, const Scope& scope, const std::vector<CatalogColumn>& targets,
                                          std::size_t position) {
        std::string plain, converted;
        for (const Source* source : starSources(star, scope)) {
            for (const auto& c : *source->columns) {
                const Expr column = columnOf(*source, c.name, star.pos);
                const std::string reference = expr(column, scope);
                const std::string value = position < targets.size() ? stored(column, scope, targets[position]) : reference;
                ++position;
                plain += (plain.empty() ? "" : ", ") + reference;
                converted += (converted.empty() ? "" : ", ") + value;
            }
        }
        if (converted == plain) return std::nullopt;
        return converted;
    }

    // TOP n, or TOP n PERCENT: that share of the rows, rounded up.
    std::string withCollationIfText(const Expr& e, const Scope& scope) {
        const std::string text = expr(e, scope);
        return typeOf(e, scope) == SqlType::Text ? withCollation(text, e) : text;
    }

    // TOP n WITH TIES: as many rows as rank within the first n by the ORDER BY.
    std::string tiesCount(const Query& q, const Scope& scope, const std::string& count) {
        const SelectCore& c = q.cores.front();
        if (q.orderBy.empty()) fail("TOP … WITH TIES needs an ORDER BY", c.pos);
        std::string terms;
        for (std::size_t i = 0; i < q.orderBy.size(); ++i) {
            const Expr& e = *q.orderBy[i].expr;
            const Expr* term = &e;
            if (e.kind == ExprKind::Column && e.name.parts.size() == 1)  // a select-list alias: its expression
                for (const auto& item : c.items)
                    if (item.alias && equalsIgnoreCase(*item.alias, e.name.last())) term = item.expr.get();
            terms += (i ? ", " : "") + withCollationIfText(*term, scope) + (q.orderBy[i].descending ? " DESC" : "");
        }
        const std::string rank = "RANK() OVER (ORDER BY " + terms + ") AS " + d_.quoteIdentifier("qx_rank");
        return "(SELECT COUNT(*) FROM (" + core(c, scope, nullptr, false, nullptr, &rank) + ") AS " + d_.quoteIdentifier("qx_ranked") +
               " WHERE " + d_.quoteIdentifier("qx_rank") + " <= " + count + ")";
    }

    std::string topCount(const SelectCore& c, const Scope& scope) {
        if (!c.topPercent) return expr(*c.top, scope);
        // the share needs the query written twice: nesting it would double the text each time
        if (++percentNesting_ > 2) fail("TOP … PERCENT nested in TOP … PERCENT is not supported", c.pos);
        struct Leave {
            int& depth;
            ~Leave() { --depth; }
        } leave{percentNesting_};
        const std::string rows = "SELECT COUNT(*) FROM (" + core(c, scope, nullptr, false) + ") AS " + d_.quoteIdentifier("qx_rows");
        return "(SELECT CAST(ceil((" + rows + ") * (" + expr(*c.top, scope) + ") / 100.0) AS INTEGER))";
    }

    std::string query(const Query& q, const Scope* parent, const std::vector<CatalogColumn>* targets = nullptr, bool skipIdentity = false) {
        static const char* const setOps[] = {" UNION ", " UNION ALL ", " EXCEPT ", " INTERSECT "};
        const bool single = q.cores.size() == 1;
        std::string text;
        std::optional<Scope> singleScope;
        std::vector<SqlType> unionTypes;
        if (!single) unionTypes = compoundColumnTypes(q, parent);
        for (std::size_t i = 0; i < q.cores.size(); ++i) {
            const SelectCore& c = q.cores[i];
            Scope scope = buildScope(c.from, parent);
            std::string branch = core(c, scope, targets, skipIdentity, single ? nullptr : &unionTypes);
            if (c.top && c.topWithTies && !single) fail("TOP … WITH TIES in a UNION is not supported", c.pos);
            if (c.top && !single) {
                // TOP limits its own branch; SQLite only allows LIMIT on the whole compound.
                branch = "SELECT * FROM (" + branch + d_.limit(topCount(c, scope)) + ") AS " + d_.quoteIdentifier("top_" + std::to_string(i + 1));
            }
            if (i) text += setOps[static_cast<int>(q.ops[i - 1])];
            text += branch;
            if (single) singleScope = std::move(scope);
        }
        if (!q.orderBy.empty()) {
            GroupContext group(groupBy_, single ? &q.cores[0].groupBy : nullptr);
            text += " ORDER BY ";
            for (std::size_t i = 0; i < q.orderBy.size(); ++i) {
                if (i) text += ", ";
                const Expr& e = *q.orderBy[i].expr;
                if (single) {
                    std::string term = orderTermBySelectList(q.cores[0], e, *singleScope);
                    if (e.kind != ExprKind::Column && typeOf(e, *singleScope) == SqlType::Text) term = withCollation(term, e);
                    text += term;
                } else {
                    text += compoundOrderTerm(q, e, parent);
                }
                if (q.orderBy[i].descending) text += " DESC";
            }
        }
        if (&q == outermost_ && q.orderBy.empty()) text += insertionOrder(q, singleScope ? &*singleScope : nullptr);
        if (single && q.cores[0].top && q.cores[0].topWithTies)
            text += d_.limit(tiesCount(q, *singleScope, topCount(q.cores[0], *singleScope)));
        else if (single && q.cores[0].top) text += d_.limit(topCount(q.cores[0], *singleScope));
        return text;
    }

    // Where the engine numbers a #temp table's rows as they are inserted: a statement's query
    // reading one #temp table alone (no join, grouping, DISTINCT or aggregate) gives its rows in
    // that order, as SQL Server and SQLite give them from where they were put. A UNION (EXCEPT,
    // INTERSECT) going into a #temp table puts its rows there in the order of its columns, as
    // SQLite's union gives them, instead of the order the server's hashing happens to give.
    std::string insertionOrder(const Query& q, const Scope* scope) {
        const std::string column = d_.insertionOrderColumn();
        if (column.empty()) return {};
        if (q.cores.size() == 1) {
            const SelectCore& c = q.cores.front();
            if (c.distinct || !c.groupBy.empty() || c.having || c.from.size() != 1) return {};
            const TableRef& from = *c.from.front();
            if (from.kind != TableRef::Kind::Table || !from.table.isTemp()) return {};
            for (const auto& item : c.items)
                if (hasAggregate(*item.expr)) return {};
            if (!scope || scope->sources.size() != 1 || !scope->sources.front().columns) return {};
            return " ORDER BY " + scope->sources.front().qualifier + "." + d_.quoteIdentifier(column);
        }
        if (!intoTemp_) return {};
        for (SetOp op : q.ops)
            if (op == SetOp::UnionAll) return {};
        bool complete = true;
        const auto columns = outputColumns(q, nullptr, &complete);
        if (!complete || columns.empty()) return {};
        std::string text = " ORDER BY ";
        for (std::size_t i = 0; i < columns.size(); ++i) text += (i ? ", " : "") + std::to_string(i + 1);
        return text;
    }

    // A call of an aggregate function (COUNT(*) included).
    static bool isAggregate(const Expr& e) {
        if (e.kind != ExprKind::Function) return false;
        const std::string name = toUpper(e.name.last());
        return e.star || name == "COUNT" || name == "COUNT_BIG" || name == "SUM" || name == "AVG" || name == "MIN" || name == "MAX" ||
               name == "STDEV" || name == "STDEVP" || name == "VAR" || name == "VARP";
    }
    static bool hasAggregate(const Expr& e) {
        if (isAggregate(e)) return true;
        for (const auto& a : e.args)
            if (a && hasAggregate(*a)) return true;
        return (e.caseOperand && hasAggregate(*e.caseOperand)) || (e.elseExpr && hasAggregate(*e.elseExpr));
    }

    // A * over a #temp table, where the engine keeps a hidden column in it: the table's columns
    // written out (other sources of the same * stay as they are); nothing when no #temp table is
    // among its sources.
    std::optional<std::string> tempStar(const Expr& star, const Scope& scope) {
        if (d_.insertionOrderColumn().empty()) return std::nullopt;
        const std::vector<const Source*> sources = starSources(star, scope);
        bool temp = false;
        for (const Source* source : sources) temp = temp || (source->table.isTemp() && source->columns);
        if (!temp) return std::nullopt;
        std::string text;
        for (const Source* source : sources) {
            if (!source->table.isTemp() || !source->columns) {
                text += (text.empty() ? "" : ", ") + source->qualifier + ".*";
                continue;
            }
            for (const auto& c : *source->columns) text += (text.empty() ? "" : ", ") + expr(columnOf(*source, c.name, star.pos), scope);
        }
        return text;
    }

    std::string insertionOrderColumn(const Name& table) const {
        const std::string column = d_.insertionOrderColumn();
        if (column.empty() || !table.isTemp()) return {};
        return ", " + d_.quoteIdentifier(column) + " " + d_.insertionOrderColumnType();
    }

    std::vector<SqlType> compoundColumnTypes(const Query& q, const Scope* parent) {
        std::vector<SqlType> types;
        for (const auto& c : q.cores) {
            Scope scope = buildScope(c.from, parent);
            bool complete = true;
            const auto columns = coreColumns(c, scope, &complete);
            if (types.size() < columns.size()) types.resize(columns.size(), SqlType::Unknown);
            for (std::size_t i = 0; i < columns.size(); ++i) types[i] = higherPrecedence(types[i], columns[i].type);
        }
        return types;
    }

    // SQL Server reads an unqualified ORDER BY name as a column of the select list first
    // (also an unaliased one, as in "SELECT D1007.CK_ID … ORDER BY CK_ID"), then as a column of
    // the tables; SQLite only knows aliases and would call the name ambiguous.
    std::string orderTermBySelectList(const SelectCore& c, const Expr& e, const Scope& scope) {
        if (e.kind != ExprKind::Column || e.name.parts.size() != 1) return expr(e, scope);
        const SelectItem* match = nullptr;
        for (const auto& item : c.items) {
            const bool named = item.alias ? equalsIgnoreCase(*item.alias, e.name.last())
                                          : item.expr->kind == ExprKind::Column && equalsIgnoreCase(item.expr->name.last(), e.name.last());
            if (!named) continue;
            if (match) return expr(e, scope);  // named twice: leave it to the engine
            match = &item;
        }
        if (!match) return expr(e, scope);
        if (match->alias) return d_.quoteIdentifier(*match->alias);
        return expr(*match->expr, scope);
    }

    // A compound SELECT orders by its result columns: map a column name to its position.
    std::string compoundOrderTerm(const Query& q, const Expr& e, const Scope* parent) {
        if (e.kind == ExprKind::Number) return e.text;
        if (e.kind == ExprKind::Column) {
            bool complete = true;
            auto columns = outputColumns(q, parent, &complete);
            for (std::size_t i = 0; i < columns.size(); ++i)
                if (equalsIgnoreCase(columns[i].name, e.name.last())) return std::to_string(i + 1);
            return d_.quoteIdentifier(e.name.last());
        }
        fail("ORDER BY of a UNION must name a result column", e.pos);
    }

    // ---------------------------------------------------------------- statements

    std::vector<std::string> selectInto(const Query& q) {
        const SelectCore& first = q.cores.front();
        const Name& target = *first.into;
        bool complete = true;
        auto columns = outputColumns(q, nullptr, &complete);
        if (!complete) fail("SELECT … INTO reads * from a table that does not exist", first.pos);
        std::string definition;
        std::string insertColumns;
        std::size_t identities = 0;
        std::size_t position = 0;
        const Expr* identityColumn = nullptr;
        std::string identityName;
        for (const auto& item : first.items) {
            if (item.expr->kind == ExprKind::Star) {
                // stars expand to their sources' columns, already counted in columns
                Scope scope = buildScope(first.from, nullptr);
                for (const auto& source : scope.sources) {
                    if (!item.expr->name.parts.empty() && !equalsIgnoreCase(source.refName, item.expr->name.last())) continue;
                    for (std::size_t k = 0; k < source.columns->size(); ++k) appendIntoColumn(columns[position++], definition, insertColumns, first.pos);
                }
                continue;
            }
            const OutputColumn& column = columns[position++];
            if (item.expr->kind == ExprKind::Identity) {
                const Expr& identity = *item.expr;
                if (identity.identityStep == 0) fail("the increment of an IDENTITY column cannot be 0", identity.pos);
                identityColumn = &identity;
                if (++identities > 1) fail("a table can have only one identity column", identity.pos);
                if (column.name.empty()) fail("the IDENTITY column needs a name", identity.pos);
                identityName = column.name;
                if (!definition.empty()) definition += ", ";
                definition += d_.quoteIdentifier(column.name) + " " + d_.identityColumnType();
                continue;
            }
            appendIntoColumn(column, definition, insertColumns, item.expr->pos);
        }
        std::vector<std::string> statements;
        if (target.isTemp()) statements.push_back(d_.dropTableIfExists(target));
        statements.push_back(d_.createTableHead(target) + " (" + definition + insertionOrderColumn(target) + ")");
        if (identityColumn && (identityColumn->identitySeed != 1 || identityColumn->identityStep != 1))
            for (auto& sql : d_.identitySequence(target, identityName, identityColumn->identitySeed, identityColumn->identityStep))
                statements.push_back(sql);
        outermost_ = &q;
        intoTemp_ = target.isTemp();
        statements.push_back("INSERT INTO " + d_.tableReference(target) + " (" + insertColumns + ") " + query(q, nullptr, nullptr, true));
        return statements;
    }

    void appendIntoColumn(const OutputColumn& column, std::string& definition, std::string& insertColumns, Position pos) {
        if (column.name.empty()) fail("No column name was specified for a column of SELECT … INTO", pos);
        if (!definition.empty()) definition += ", ";
        if (!insertColumns.empty()) insertColumns += ", ";
        const std::string type = d_.columnTypeFor(column.type);
        definition += d_.quoteIdentifier(column.name) + (type.empty() ? "" : " " + type);
        insertColumns += d_.quoteIdentifier(column.name);
    }

    std::string insert(const SyntaxTree& tree) {
        const auto tableColumns = columnsOf(tree.target);
        std::vector<std::string> names;
        std::vector<CatalogColumn> types;
        if (!tree.columns.empty()) {
            for (const auto& name : tree.columns) {
                names.push_back(name);
                CatalogColumn type{name};
                if (tableColumns)
                    for (const auto& c : *tableColumns)
                        if (equalsIgnoreCase(c.name, name)) type = c;
                types.push_back(type);
            }
        } else if (tableColumns) {
            // positional: every column but the identity, in table order
            for (const auto& c : *tableColumns) {
                if (c.identity) continue;
                names.push_back(c.name);
                types.push_back(c);
            }
        }
        const bool known = !names.empty();
        std::string text = "INSERT INTO " + d_.tableReference(tree.target);
        if (tree.values.empty() && !tree.query) return text + " DEFAULT VALUES";
        if (known) {
            text += " (";
            for (std::size_t i = 0; i < names.size(); ++i) text += (i ? ", " : "") + d_.quoteIdentifier(names[i]);
            text += ")";
        }
        const std::string mismatch = "Column name or number of supplied values does not match table definition.";
        Scope empty;
        if (!tree.values.empty()) {
            text += " VALUES ";
            for (std::size_t r = 0; r < tree.values.size(); ++r) {
                const auto& row = tree.values[r];
                if (known && row.size() != names.size()) fail(mismatch, row.empty() ? tree.pos : row.front()->pos);
                text += r ? ", (" : "(";
                for (std::size_t i = 0; i < row.size(); ++i) {
                    if (i) text += ", ";
                    text += known ? stored(*row[i], empty, types[i]) : expr(*row[i], empty);
                }
                text += ")";
            }
            return text;
        }
        if (known) {
            bool complete = true;
            auto columns = outputColumns(*tree.query, nullptr, &complete);
            if (complete && columns.size() != names.size()) fail(mismatch, tree.query->pos);
        }
        outermost_ = tree.query.get();
        intoTemp_ = tree.target.isTemp();
        return text + " " + query(*tree.query, nullptr, known ? &types : nullptr);
    }

    Source targetSource(const Name& target) {
        Source source;
        source.table = target;
        source.refName = target.last();
        source.qualifier = d_.tableQualifier(target);
        source.columns = columnsOf(target);
        return source;
    }

    // UPDATE a SET … FROM t a JOIN …, UPDATE t SET … FROM t JOIN …: the target is a source of
    // its own FROM. The engine's UPDATE … FROM names the table once more under a private alias
    // and ties the two by row.
    std::string updateThroughFrom(const SyntaxTree& tree) {
        Scope scope;
        for (const auto& ref : tree.from) addSources(*ref, scope);
        scope.qualifyLocal = true;
        const Source* target = findSource(scope, tree.target.last());
        if (!target || target->table.parts.empty()) fail("the target of UPDATE must be a table of its FROM", tree.pos);
        const std::string alias = d_.quoteIdentifier("qx_target");
        // the engine hides the row ids of an UPDATE's FROM tables: the target's copy shows its own
        rowExposed_ = findTableRef(tree.from, tree.target.last());
        std::string text = "UPDATE " + d_.tableReference(target->table) + " AS " + alias + " SET ";
        for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
            const Assignment& a = tree.assignments[i];
            if (i) text += ", ";
            text += d_.quoteIdentifier(a.column.last()) + " = " + stored(*a.value, scope, targetColumn(*target, a.column.last()), target->table.last());
        }
        text += " FROM " + fromClause(tree.from, scope);
        const std::string row = d_.rowIdentifier();
        text += " WHERE " + alias + "." + row + " = " + target->qualifier + "." + d_.quoteIdentifier("qx_row");
        if (tree.where) text += " AND (" + expr(*tree.where, scope) + ")";
        return text;
    }

    static const TableRef* findTableRef(const std::vector<TableRefPtr>& from, std::string_view name) {
        std::vector<const TableRef*> pending;
        for (const auto& ref : from) pending.push_back(ref.get());
        while (!pending.empty()) {
            const TableRef* ref = pending.back();
            pending.pop_back();
            if (ref->kind == TableRef::Kind::Join) {
                pending.push_back(ref->left.get());
                pending.push_back(ref->right.get());
            } else if (ref->kind == TableRef::Kind::Table) {
                if (ref->alias ? equalsIgnoreCase(*ref->alias, name) : equalsIgnoreCase(ref->table.last(), name)) return ref;
            }
        }
        return nullptr;
    }

    std::string update(const SyntaxTree& tree) {
        {
            Scope probe;
            for (const auto& ref : tree.from) addSources(*ref, probe);
            for (const auto& source : probe.sources)
                if (equalsIgnoreCase(source.refName, tree.target.last())) return updateThroughFrom(tree);
        }
        Scope scope;
        scope.sources.push_back(targetSource(tree.target));
        for (const auto& ref : tree.from) addSources(*ref, scope);
        for (std::size_t i = 1; i < scope.sources.size(); ++i)
            if (equalsIgnoreCase(scope.sources[i].refName, tree.target.last()))
                fail("UPDATE of a table that its own FROM names again is not supported", tree.pos);
        std::string text = "UPDATE " + d_.tableReference(tree.target) + " SET ";
        for (std::size_t i = 0; i < tree.assignments.size(); ++i) {
            const Assignment& a = tree.assignments[i];
            if (i) text += ", ";
            text += d_.quoteIdentifier(a.column.last()) + " = " + stored(*a.value, scope, targetColumn(scope.sources.front(), a.column.last()));
        }
        if (!tree.from.empty()) {
            std::size_t joined = 1;
            text += " FROM ";
            for (std::size_t i = 0; i < tree.from.size(); ++i) {
                if (i) text += ", ";
                text += tableRef(*tree.from[i], scope, joined);
            }
        }
        if (tree.where) text += " WHERE " + expr(*tree.where, scope);
        return text;
    }

    std::string deleteRows(const SyntaxTree& tree) {
        if (tree.from.empty()) {
            Scope scope;
            scope.sources.push_back(targetSource(tree.target));
            std::string text = "DELETE FROM " + d_.tableReference(tree.target);
            if (tree.top) {  // DELETE TOP (n): any n of the rows the WHERE selects
                const std::string row = d_.rowIdentifier();
                text += " WHERE " + row + " IN (SELECT " + row + " FROM " + d_.tableReference(tree.target);
                if (tree.where) text += " WHERE " + expr(*tree.where, scope);
                return text + d_.limit(expr(*tree.top, scope)) + ")";
            }
            if (tree.where) text += " WHERE " + expr(*tree.where, scope);
            return text;
        }
        // DELETE target FROM sources …: delete the target's rows that the join selects.
        Scope scope = buildScope(tree.from, nullptr);
        const Source* target = findSource(scope, tree.target.last());
        std::string from = fromClause(tree.from, scope);
        Name table = tree.target;
        std::string qualifier;
        if (target && !target->table.parts.empty()) {
            table = target->table;
            qualifier = target->qualifier;
        } else {
            scope.sources.insert(scope.sources.begin(), targetSource(tree.target));
            qualifier = scope.sources.front().qualifier;
            from = d_.tableReference(tree.target) + ", " + from;
        }
        const std::string row = d_.rowIdentifier();
        std::string text = "DELETE FROM " + d_.tableReference(table) + " WHERE " + row + " IN (SELECT " + qualifier + "." + row + " FROM " + from;
        if (tree.where) text += " WHERE " + expr(*tree.where, scope);
        if (tree.top) text += d_.limit(expr(*tree.top, scope));
        return text + ")";
    }

    std::vector<std::string> createTable(const SyntaxTree& tree) {
        std::string body;
        const ColumnDef* identity = nullptr;
        bool columnPrimaryKey = false;
        Scope empty;
        for (const auto& column : tree.columnDefs) {
            if (!body.empty()) body += ", ";
            body += d_.quoteIdentifier(column.name) + " ";
            if (column.identity) {
                if (identity) fail("a table can have only one identity column", column.pos);
                identity = &column;
                body += d_.identityColumnType();
            } else {
                body += d_.columnType(column.type);
                body += storageCheck(tree.target, column);
                if (column.primaryKey) {
                    body += " PRIMARY KEY";
                    columnPrimaryKey = true;
                }
            }
            if (column.notNull) body += " NOT NULL";
            if (column.unique) body += " UNIQUE";
            if (column.defaultValue) {
                CatalogColumn target{column.name, column.type.sqlType(), false, column.type.scale()};
                body += " DEFAULT (" + stored(*column.defaultValue, empty, target) + ")";
            }
        }
        if (identity && (columnPrimaryKey || !tree.primaryKey.empty())) {
            const bool keyIsIdentity = tree.primaryKey.size() == 1 && equalsIgnoreCase(tree.primaryKey[0], identity->name);
            if (!keyIsIdentity) fail("an IDENTITY column beside another primary key is not supported", identity->pos);
        } else if (!tree.primaryKey.empty()) {
            body += ", PRIMARY KEY (" + nameList(tree.primaryKey) + ")";
        }
        for (const auto& unique : tree.uniqueKeys) body += ", UNIQUE (" + nameList(unique) + ")";
        body += insertionOrderColumn(tree.target);
        std::vector<std::string> statements;
        if (tree.target.isTemp()) statements.push_back(d_.dropTableIfExists(tree.target));
        statements.push_back(d_.createTableHead(tree.target) + " (" + body + ")");
        if (identity && (identity->identitySeed != 1 || identity->identityStep != 1))
            for (auto& sql : d_.identitySequence(tree.target, identity->name, identity->identitySeed, identity->identityStep)) statements.push_back(sql);
        for (const auto& column : tree.columnDefs)
            if (!column.identity)
                for (auto& sql : d_.columnMarks(tree.target, column.name, column.type)) statements.push_back(sql);
        return statements;
    }

    // What a column refuses as SQL Server does: text longer than VARCHAR(n)/CHAR(n) ("String or
    // binary data would be truncated"), integers outside INT/SMALLINT/TINYINT (overflow).
    std::string storageCheck(const Name& table, const ColumnDef& column) const {
        if (d_.columnTypeChecks(column.type)) return "";
        const std::string name = d_.quoteIdentifier(column.name);
        const std::string& type = column.type.name;
        if (column.type.sqlType() == SqlType::Text && !column.type.params.empty() && column.type.params[0] > 0)
            return " CHECK (" + d_.call("fits", {name, std::to_string(column.type.params[0]), d_.quoteString(table.last()), d_.quoteString(column.name)}) + ")";
        if (column.type.scale() >= 0) {
            const int precision = !column.type.params.empty() ? column.type.params[0] : type == "SMALLMONEY" ? 10 : type == "MONEY" ? 19 : 18;
            return " CHECK (" + d_.call("fits_decimal", {name, std::to_string(precision), std::to_string(column.type.scale())}) + ")";
        }
        if (type == "INT" || type == "INTEGER" || type == "SMALLINT" || type == "TINYINT" || type == "BIGINT")
            return " CHECK (" + d_.integerRangeCheck(name, integerKind(type)) + ")";
        return "";
    }

    std::string nameList(const std::vector<std::string>& names) const {
        std::string text;
        for (std::size_t i = 0; i < names.size(); ++i) text += (i ? ", " : "") + d_.quoteIdentifier(names[i]);
        return text;
    }

    std::string createView(const SyntaxTree& tree) {
        inView_ = true;
        std::string text = "CREATE VIEW " + d_.quoteIdentifier(tree.target.last());
        if (!tree.columns.empty()) text += " (" + nameList(tree.columns) + ")";
        return text + " AS " + query(*tree.query, nullptr);
    }

    std::string createIndex(const SyntaxTree& tree) {
        return d_.createIndexHead(tree.unique, tree.target, tree.indexTable) + " (" + nameList(tree.columns) + ")";
    }

    std::vector<std::string> drop(const SyntaxTree& tree) {
        std::vector<std::string> statements;
        const char* what = tree.kind == StatementKind::DropTable ? "DROP TABLE " : tree.kind == StatementKind::DropView ? "DROP VIEW " : "DROP INDEX ";
        for (const auto& name : tree.dropNames) {
            std::string object = tree.kind == StatementKind::DropIndex ? d_.quoteIdentifier(name.last()) : d_.tableReference(name);
            statements.push_back(std::string(what) + (tree.ifExists ? "IF EXISTS " : "") + object);
        }
        return statements;
    }

    const Statement& statement_;
    const Catalog& catalog_;
    const Dialect& d_;
    std::map<std::string, std::optional<std::vector<CatalogColumn>>> tableCache_;
    std::map<const Expr*, SqlType> typeCache_;
    const TableRef* rowExposed_ = nullptr;
    int percentNesting_ = 0;  // the target's table in UPDATE … FROM (see updateThroughFrom)
    std::map<const Query*, std::pair<std::vector<OutputColumn>, bool>> outputCache_;
    std::map<std::string, std::vector<std::vector<std::string>>> keyCache_;
    const std::vector<ExprPtr>* groupBy_ = nullptr;  // the GROUP BY of the select being written
    const Query* outermost_ = nullptr;  // the statement's own query (not a subquery or derived table)
    bool intoTemp_ = false;             // its rows go into a #temp table
    bool inView_ = false;
};

}  // namespace

std::vector<CatalogColumn> describeResult(const Statement& statement, const Catalog& catalog, const Dialect& dialect) {
    if (!statement.tree) return {};
    return Emitter(statement, catalog, dialect).describe();
}

std::vector<std::string> emitStatement(const Statement& statement, const Catalog& catalog, const Dialect& dialect) {
    if (!statement.tree) throw TranslationError("statement has no syntax tree", statement.text, statement.line, statement.column);
    return Emitter(statement, catalog, dialect).run();
}

}  // namespace qx::tsql
