#pragma once
// Syntax tree of the T-SQL statements the module sends.
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "db/tsql/Translator.h"

namespace qx::tsql {

struct Position {
    int line = 1;
    int column = 1;
};

// A possibly qualified name: [schema.]table or [table.]column. Each part keeps its spelling.
struct Name {
    std::vector<std::string> parts;
    const std::string& last() const { return parts.back(); }
    bool isTemp() const { return !parts.empty() && !parts.back().empty() && parts.back()[0] == '#'; }
};

// A T-SQL type as written: varchar(20), decimal(18,2), int, datetime ...
struct TypeSpec {
    std::string name;         // upper case: VARCHAR, INT, DECIMAL ...
    std::vector<int> params;  // length or precision/scale; -1 for MAX
    SqlType sqlType() const;
    // Decimal places SQL Server keeps for DECIMAL(p,s), NUMERIC(p,s) and MONEY; -1 otherwise.
    int scale() const;
    bool isFixedChar() const { return name == "CHAR" || name == "NCHAR"; }
};

struct Query;
struct Expr;
using ExprPtr = std::unique_ptr<Expr>;
using QueryPtr = std::unique_ptr<Query>;

enum class ExprKind {
    Number,       // text: as written
    String,       // text: value
    Null,
    Column,       // name: [qualifier.]column
    Star,         // name: optional qualifier (parts may be empty)
    Unary,        // op: "-", "+", "NOT", "~"; args[0]
    Binary,       // op: + - * / % = <> < > <= >= AND OR; args[0], args[1]
    Like,         // args[0] LIKE args[1] [ESCAPE args[2]]; negated
    IsNull,       // args[0] IS [NOT] NULL; negated
    InList,       // args[0] [NOT] IN (args[1..]); negated
    InQuery,      // args[0] [NOT] IN (query); negated
    Between,      // args[0] [NOT] BETWEEN args[1] AND args[2]
    Exists,       // EXISTS (query)
    Subquery,     // (query) as a value
    Function,     // name.last(): function name as written; args; distinct; star (COUNT(*))
    Case,         // optional operand in caseOperand; args = when0, then0, when1, then1 ...; elseExpr
    Convert,      // CONVERT(type, args[0] [, style]) and CAST(args[0] AS type)
    DatePartCall, // DATEPART/DATEADD/DATEDIFF: name.last() = function, datePart = the bare part
    Identity,     // IDENTITY(type, seed, increment) in a SELECT … INTO list
};

struct Expr {
    ExprKind kind;
    Position pos;
    std::string text;  // literal text, operator
    Name name;
    std::vector<ExprPtr> args;
    QueryPtr query;
    ExprPtr caseOperand;
    ExprPtr elseExpr;
    TypeSpec type;                 // Convert target
    std::optional<int> style;      // Convert style
    std::string datePart;          // DatePartCall
    bool negated = false;
    bool distinct = false;
    bool star = false;
    bool parenthesized = false;
    bool tryConversion = false;  // TRY_CAST / TRY_CONVERT: NULL instead of a conversion error
    long long identitySeed = 1, identityStep = 1;

    explicit Expr(ExprKind k, Position p = {}) : kind(k), pos(p) {}
};

struct SelectItem {
    ExprPtr expr;
    std::optional<std::string> alias;  // AS name, name, 'string' alias, or alias = expr
};

struct TableRef;
using TableRefPtr = std::unique_ptr<TableRef>;

enum class JoinType { Inner, Left, Right, Full, Cross };

struct TableRef {
    enum class Kind { Table, Derived, Join } kind = Kind::Table;
    Position pos;
    Name table;                     // Table
    QueryPtr derived;               // Derived
    std::optional<std::string> alias;
    JoinType joinType = JoinType::Inner;  // Join
    TableRefPtr left, right;
    ExprPtr on;
};

struct OrderItem {
    ExprPtr expr;
    bool descending = false;
};

// One SELECT … FROM … WHERE … GROUP BY … HAVING (a branch of a union).
struct SelectCore {
    Position pos;
    bool distinct = false;
    ExprPtr top;  // TOP n
    bool topPercent = false;
    bool topWithTies = false;  // TOP n WITH TIES
    std::vector<SelectItem> items;
    std::optional<Name> into;
    std::vector<TableRefPtr> from;  // comma-separated sources
    ExprPtr where;
    std::vector<ExprPtr> groupBy;
    ExprPtr having;
};

enum class SetOp { Union, UnionAll, Except, Intersect };

// Branches joined by set operators; ORDER BY applies to the whole.
struct Query {
    Position pos;
    std::vector<SelectCore> cores;
    std::vector<SetOp> ops;  // ops[i] joins cores[i] and cores[i+1]
    std::vector<OrderItem> orderBy;
};

struct ColumnDef {
    Position pos;
    std::string name;
    TypeSpec type;
    bool notNull = false;
    bool primaryKey = false;
    bool unique = false;
    bool identity = false;
    long long identitySeed = 1, identityStep = 1;  // IDENTITY(seed, increment)
    ExprPtr defaultValue;
};

enum class StatementKind { Select, Insert, Update, Delete, CreateTable, CreateView, CreateIndex, DropTable, DropView, DropIndex, Exec, Truncate };

struct Assignment {
    Name column;
    ExprPtr value;
};

// The tree of one statement; which members are set depends on kind.
struct SyntaxTree {
    StatementKind kind = StatementKind::Select;
    Position pos;
    QueryPtr query;                   // Select; Insert … SELECT; CreateView body
    Name target;                      // Insert/Update/Delete/Create*/Drop* object
    std::vector<std::string> columns; // Insert column list; CreateIndex columns
    std::vector<std::vector<ExprPtr>> values;  // Insert … VALUES rows
    std::vector<Assignment> assignments;       // Update SET
    std::vector<TableRefPtr> from;             // Update/Delete FROM
    ExprPtr where;
    ExprPtr top;                               // Delete TOP (n)
    std::vector<ColumnDef> columnDefs;         // CreateTable
    std::vector<std::string> primaryKey;       // CreateTable table-level PRIMARY KEY
    std::vector<std::vector<std::string>> uniqueKeys;  // CreateTable table-level UNIQUE
    Name indexTable;                           // CreateIndex
    bool unique = false;                       // CreateIndex
    bool ifExists = false;                     // Drop
    std::vector<Name> dropNames;               // Drop: several names
    std::string viewBodyText;                  // CreateView
};

}  // namespace qx::tsql
