#include "db/tsql/Parser.h"

#include <charconv>
#include <limits>
#include <set>

#include "db/tsql/Ast.h"
#include "db/tsql/Lexer.h"
#include "db/tsql/TranslationError.h"

namespace qx::tsql {

SqlType TypeSpec::sqlType() const {
    static const std::set<std::string> integers = {"INT", "INTEGER", "SMALLINT", "TINYINT", "BIGINT", "BIT"};
    static const std::set<std::string> reals = {"FLOAT", "REAL", "DECIMAL", "NUMERIC", "MONEY", "SMALLMONEY", "DOUBLE"};
    static const std::set<std::string> texts = {"CHAR", "VARCHAR", "NCHAR", "NVARCHAR", "TEXT", "NTEXT", "UNIQUEIDENTIFIER", "SYSNAME"};
    static const std::set<std::string> dates = {"DATETIME", "SMALLDATETIME", "DATE", "DATETIME2", "TIME"};
    if (integers.count(name)) return SqlType::Integer;
    if (reals.count(name)) return SqlType::Real;
    if (texts.count(name)) return SqlType::Text;
    if (dates.count(name)) return SqlType::DateTime;
    return SqlType::Unknown;
}

int TypeSpec::scale() const {
    if (name == "DECIMAL" || name == "NUMERIC") return params.size() >= 2 ? params[1] : 0;
    if (name == "MONEY" || name == "SMALLMONEY") return 4;
    return -1;
}

namespace {

// Words that end an expression or a source and therefore never serve as an alias without AS.
const std::set<std::string>& reservedWords() {
    static const std::set<std::string> words = {
        "ADD", "ALL", "ALTER", "AND", "ANY", "AS", "ASC", "BEGIN", "BETWEEN", "BY", "CASE", "CHECK", "COLLATE",
        "COMMIT", "CONSTRAINT", "CREATE", "CROSS", "DEFAULT", "DELETE", "DESC", "DISTINCT", "DROP", "ELSE",
        "END", "ESCAPE", "EXCEPT", "EXEC", "EXECUTE", "EXISTS", "FOR", "FROM", "FULL", "GROUP", "HAVING", "IN", "INNER",
        "INSERT", "INTERSECT", "INTO", "IS", "JOIN", "LEFT", "LIKE", "NOT", "NULL", "ON", "OPTION", "OR",
        "ORDER", "OUTER", "RIGHT", "ROLLBACK", "SELECT", "SET", "THEN", "TOP", "TRUNCATE", "UNION", "UPDATE",
        "VALUES", "WHEN", "WHERE", "WITH", "PRIMARY", "IDENTITY", "UNIQUE", "REFERENCES", "FOREIGN"};
    return words;
}

bool isReserved(const Token& token) {
    return token.kind == TokenKind::Identifier && reservedWords().count(toUpper(token.text)) > 0;
}

class Parser {
public:
    Parser(std::string_view batch, std::vector<Token> tokens) : batch_(batch), tokens_(std::move(tokens)) {}

    std::vector<Statement> parseAll() {
        std::vector<Statement> statements;
        while (true) {
            while (peek().isOp(";")) ++pos_;
            if (peek().kind == TokenKind::End) break;
            if ((peek().isWord("EXEC") || peek().isWord("EXECUTE")) && peek(1).isOp("(")) {
                // EXEC('…'): the text is a batch of its own, run in place
                pos_ += 2;
                std::string inner;
                do {
                    const Token& part = take();
                    if (part.kind != TokenKind::String) fail("EXEC( ) takes a quoted text near " + describe(part), part);
                    inner += part.text;
                } while (acceptOp("+"));
                expectOp(")");
                for (auto& statement : Parser(inner, tokenize(inner)).parseAll()) statements.push_back(std::move(statement));
                continue;
            }
            statements.push_back(parseOneStatement());
        }
        return statements;
    }

private:
    // ---- token helpers ----
    const Token& peek(std::size_t ahead = 0) const {
        const std::size_t index = pos_ + ahead;
        return index < tokens_.size() ? tokens_[index] : tokens_.back();
    }
    const Token& take() {
        const Token& token = peek();
        if (token.kind != TokenKind::End) ++pos_;
        return token;
    }
    bool acceptWord(std::string_view word) {
        if (peek().isWord(word)) {
            ++pos_;
            return true;
        }
        return false;
    }
    bool acceptOp(std::string_view op) {
        if (peek().isOp(op)) {
            ++pos_;
            return true;
        }
        return false;
    }
    static std::string describe(const Token& token) {
        switch (token.kind) {
            case TokenKind::End: return "end of text";
            case TokenKind::String: return "'" + token.text + "'";
            default: return "'" + token.text + "'";
        }
    }
    [[noreturn]] void fail(const std::string& message, const Token& at) const {
        // The statement as far as it goes: from its first token to the end of the line of the error.
        const std::size_t start = statementStart_ < tokens_.size() ? tokens_[statementStart_].offset : 0;
        std::size_t end = batch_.find('\n', at.offset + at.length);
        if (end == std::string_view::npos) end = batch_.size();
        throw TranslationError(message, std::string(batch_.substr(start, end - start)), at.line, at.column);
    }
    [[noreturn]] void failNear(const Token& at) const { fail("syntax error near " + describe(at), at); }
    void expectWord(std::string_view word) {
        if (!acceptWord(word)) fail("expected " + std::string(word) + " near " + describe(peek()), peek());
    }
    void expectOp(std::string_view op) {
        if (!acceptOp(op)) fail("expected '" + std::string(op) + "' near " + describe(peek()), peek());
    }
    static Position at(const Token& token) { return {token.line, token.column}; }

    bool isNamePart(const Token& token) const {
        return token.kind == TokenKind::QuotedIdentifier || (token.kind == TokenKind::Identifier && !isReserved(token));
    }
    std::string takeNamePart() {
        const Token& token = peek();
        if (token.kind == TokenKind::QuotedIdentifier || token.kind == TokenKind::Identifier) {
            ++pos_;
            return token.text;
        }
        fail("expected a name near " + describe(token), token);
    }
    Name parseName() {
        Name name;
        name.parts.push_back(takeNamePart());
        while (peek().isOp(".") && (peek(1).kind == TokenKind::Identifier || peek(1).kind == TokenKind::QuotedIdentifier)) {
            ++pos_;
            name.parts.push_back(takeNamePart());
        }
        return name;
    }

    // ---- statements ----
    Statement parseOneStatement() {
        statementStart_ = pos_;
        const Token& first = peek();
        Statement statement;
        statement.line = first.line;
        statement.column = first.column;
        auto tree = std::make_shared<SyntaxTree>();
        tree->pos = at(first);
        if (first.isWord("SELECT") || (first.isOp("(") && peek(1).isWord("SELECT"))) {
            tree->kind = StatementKind::Select;
            tree->query = parseQuery();
            statement.returnsRows = !tree->query->cores.front().into.has_value();
        } else if (first.isWord("INSERT")) {
            parseInsert(*tree);
        } else if (first.isWord("UPDATE")) {
            parseUpdate(*tree);
        } else if (first.isWord("DELETE")) {
            parseDelete(*tree);
        } else if (first.isWord("CREATE")) {
            parseCreate(*tree);
        } else if (first.isWord("DROP")) {
            parseDrop(*tree);
        } else if (first.isWord("TRUNCATE")) {
            take();
            expectWord("TABLE");
            tree->kind = StatementKind::Truncate;
            tree->target = parseName();
        } else if (first.isWord("EXEC") || first.isWord("EXECUTE")) {
            statement.procedure = parseExec();
            statement.returnsRows = true;
            tree->kind = StatementKind::Exec;
        } else {
            fail("unknown statement near " + describe(first), first);
        }
        const Token& last = tokens_[pos_ - 1];
        statement.text = std::string(batch_.substr(first.offset, last.offset + last.length - first.offset));
        statement.tree = std::move(tree);
        return statement;
    }

    void parseInsert(SyntaxTree& tree) {
        take();
        tree.kind = StatementKind::Insert;
        acceptWord("INTO");
        tree.target = parseName();
        if (peek().isOp("(") && !peek(1).isWord("SELECT")) {
            take();
            do tree.columns.push_back(takeNamePart());
            while (acceptOp(","));
            expectOp(")");
        }
        if (acceptWord("VALUES")) {
            do {
                expectOp("(");
                std::vector<ExprPtr> row;
                do row.push_back(parseExpr());
                while (acceptOp(","));
                expectOp(")");
                tree.values.push_back(std::move(row));
            } while (acceptOp(","));
        } else if (acceptWord("DEFAULT")) {
            expectWord("VALUES");
        } else if (peek().isWord("SELECT") || peek().isOp("(")) {
            tree.query = parseQuery();
        } else {
            fail("expected VALUES or SELECT near " + describe(peek()), peek());
        }
    }

    void parseUpdate(SyntaxTree& tree) {
        take();
        tree.kind = StatementKind::Update;
        tree.target = parseName();
        expectWord("SET");
        do {
            Assignment assignment;
            assignment.column = parseName();
            expectOp("=");
            assignment.value = parseExpr();
            tree.assignments.push_back(std::move(assignment));
        } while (acceptOp(","));
        if (acceptWord("FROM")) tree.from = parseFromList();
        if (acceptWord("WHERE")) tree.where = parseExpr();
    }

    void parseDelete(SyntaxTree& tree) {
        take();
        tree.kind = StatementKind::Delete;
        if (acceptWord("TOP")) {
            expectOp("(");
            tree.top = parseExpr();
            expectOp(")");
        }
        acceptWord("FROM");
        tree.target = parseName();
        if (acceptWord("FROM")) tree.from = parseFromList();
        if (acceptWord("WHERE")) tree.where = parseExpr();
    }

    void parseCreate(SyntaxTree& tree) {
        take();
        if (acceptWord("TABLE")) {
            tree.kind = StatementKind::CreateTable;
            tree.target = parseName();
            expectOp("(");
            do parseTableElement(tree);
            while (acceptOp(","));
            expectOp(")");
        } else if (acceptWord("VIEW")) {
            tree.kind = StatementKind::CreateView;
            tree.target = parseName();
            if (acceptOp("(")) {
                do tree.columns.push_back(takeNamePart());
                while (acceptOp(","));
                expectOp(")");
            }
            expectWord("AS");
            const std::size_t bodyStart = peek().offset;
            tree.query = parseQuery();
            const Token& last = tokens_[pos_ - 1];
            tree.viewBodyText = std::string(batch_.substr(bodyStart, last.offset + last.length - bodyStart));
        } else {
            tree.kind = StatementKind::CreateIndex;
            tree.unique = acceptWord("UNIQUE");
            if (!acceptWord("CLUSTERED")) acceptWord("NONCLUSTERED");
            expectWord("INDEX");
            tree.target = parseName();
            expectWord("ON");
            tree.indexTable = parseName();
            expectOp("(");
            do {
                tree.columns.push_back(takeNamePart());
                if (!acceptWord("ASC")) acceptWord("DESC");
            } while (acceptOp(","));
            expectOp(")");
        }
    }

    std::vector<std::string> parseColumnNameList() {
        std::vector<std::string> names;
        expectOp("(");
        do {
            names.push_back(takeNamePart());
            if (!acceptWord("ASC")) acceptWord("DESC");
        } while (acceptOp(","));
        expectOp(")");
        return names;
    }

    void parseTableElement(SyntaxTree& tree) {
        if (acceptWord("CONSTRAINT")) takeNamePart();
        if (acceptWord("PRIMARY")) {
            expectWord("KEY");
            if (!acceptWord("CLUSTERED")) acceptWord("NONCLUSTERED");
            tree.primaryKey = parseColumnNameList();
            return;
        }
        if (acceptWord("UNIQUE")) {
            if (!acceptWord("CLUSTERED")) acceptWord("NONCLUSTERED");
            tree.uniqueKeys.push_back(parseColumnNameList());
            return;
        }
        ColumnDef column;
        column.pos = at(peek());
        column.name = takeNamePart();
        column.type = parseType();
        while (true) {
            if (acceptWord("IDENTITY")) {
                column.identity = true;
                if (acceptOp("(")) {
                    column.identitySeed = parseSignedInteger();
                    expectOp(",");
                    column.identityStep = parseSignedInteger();
                    if (column.identityStep == 0) fail("the increment of an IDENTITY column cannot be 0", peek());
                    expectOp(")");
                }
            } else if (acceptWord("NOT")) {
                expectWord("NULL");
                column.notNull = true;
            } else if (acceptWord("NULL")) {
            } else if (acceptWord("DEFAULT")) {
                column.defaultValue = parseUnary();
            } else if (acceptWord("PRIMARY")) {
                expectWord("KEY");
                if (!acceptWord("CLUSTERED")) acceptWord("NONCLUSTERED");
                column.primaryKey = true;
            } else if (acceptWord("UNIQUE")) {
                column.unique = true;
            } else if (acceptWord("CONSTRAINT")) {
                takeNamePart();
            } else if (acceptWord("COLLATE")) {
                takeNamePart();  // text columns always get the engine's SQL Server-like collation
            } else {
                break;
            }
        }
        tree.columnDefs.push_back(std::move(column));
    }

    // A whole number written in the text, refused when it has a fraction or is out of range.
    long long integerOf(const Token& token, long long maximum = std::numeric_limits<long long>::max()) const {
        long long value = 0;
        const char* begin = token.text.data();
        const char* end = begin + token.text.size();
        const auto [stop, error] = std::from_chars(begin, end, value);
        if (error != std::errc() || stop != end || value > maximum) fail("expected a whole number near " + describe(token), token);
        return value;
    }

    long long parseSignedInteger() {
        const bool negative = acceptOp("-");
        const Token& token = take();
        if (token.kind != TokenKind::Number) fail("expected a number near " + describe(token), token);
        const long long value = integerOf(token);
        return negative ? -value : value;
    }

    TypeSpec parseType() {
        TypeSpec type;
        const Token& token = take();
        if (token.kind != TokenKind::Identifier && token.kind != TokenKind::QuotedIdentifier)
            fail("expected a type name near " + describe(token), token);
        type.name = toUpper(token.text);
        if (type.name == "DOUBLE") acceptWord("PRECISION");
        if (peek().isOp("(")) {
            take();
            do {
                if (acceptWord("MAX")) {
                    type.params.push_back(-1);
                } else {
                    const Token& number = take();
                    if (number.kind != TokenKind::Number) fail("expected a length near " + describe(number), number);
                    type.params.push_back(static_cast<int>(integerOf(number, 1000000)));
                }
            } while (acceptOp(","));
            expectOp(")");
        }
        if (type.sqlType() == SqlType::Unknown) fail("unknown type " + token.text, token);
        return type;
    }

    void parseDrop(SyntaxTree& tree) {
        take();
        if (acceptWord("TABLE")) {
            tree.kind = StatementKind::DropTable;
        } else if (acceptWord("VIEW")) {
            tree.kind = StatementKind::DropView;
        } else if (acceptWord("INDEX")) {
            tree.kind = StatementKind::DropIndex;
        } else {
            fail("expected TABLE, VIEW or INDEX near " + describe(peek()), peek());
        }
        if (peek().isWord("IF") && peek(1).isWord("EXISTS")) {
            pos_ += 2;
            tree.ifExists = true;
        }
        do {
            tree.dropNames.push_back(parseName());
            if (tree.kind == StatementKind::DropIndex && acceptWord("ON")) parseName();
        } while (acceptOp(","));
        tree.target = tree.dropNames.front();
    }

    ProcedureCall parseExec() {
        take();
        ProcedureCall call;
        const Name name = parseName();
        call.name = name.last();
        if (peek().kind == TokenKind::End || peek().isOp(";")) return call;
        // Arguments end at the end of the line's statement: ";" or the end of the batch, or the
        // next statement keyword.
        if (!(peek().kind == TokenKind::Identifier && peek().text[0] == '@') && !isArgumentValue(peek())) return call;
        do {
            ProcedureArgument argument;
            if (peek().kind == TokenKind::Identifier && peek().text[0] == '@' && peek(1).isOp("=")) {
                argument.name = take().text.substr(1);
                take();
            }
            const Token& value = peek();
            if (value.kind == TokenKind::String) {
                argument.value = value.text;
                argument.quoted = true;
                take();
            } else if (value.isOp("-") && peek(1).kind == TokenKind::Number) {
                take();
                argument.value = "-" + take().text;
            } else if (value.kind == TokenKind::Number || value.kind == TokenKind::Identifier || value.kind == TokenKind::QuotedIdentifier) {
                argument.value = value.text;
                take();
            } else {
                fail("expected a procedure argument near " + describe(value), value);
            }
            call.arguments.push_back(std::move(argument));
        } while (acceptOp(","));
        return call;
    }
    static bool isArgumentValue(const Token& token) {
        return token.kind == TokenKind::String || token.kind == TokenKind::Number;
    }

    // ---- queries ----
    QueryPtr parseQuery() {
        Nesting nesting(*this);
        auto query = std::make_unique<Query>();
        query->pos = at(peek());
        query->cores.push_back(parseCoreOrParenthesized());
        while (true) {
            if (acceptWord("UNION")) {
                query->ops.push_back(acceptWord("ALL") ? SetOp::UnionAll : SetOp::Union);
            } else if (acceptWord("EXCEPT")) {
                query->ops.push_back(SetOp::Except);
            } else if (acceptWord("INTERSECT")) {
                query->ops.push_back(SetOp::Intersect);
            } else {
                break;
            }
            query->cores.push_back(parseCoreOrParenthesized());
        }
        if (peek().isWord("ORDER") && peek(1).isWord("BY")) {
            pos_ += 2;
            do {
                OrderItem item;
                item.expr = parseExpr();
                if (acceptWord("DESC")) item.descending = true;
                else acceptWord("ASC");
                query->orderBy.push_back(std::move(item));
            } while (acceptOp(","));
        }
        return query;
    }

    SelectCore parseCoreOrParenthesized() {
        if (peek().isOp("(") && peek(1).isWord("SELECT")) {
            const Token& open = take();
            QueryPtr inner = parseQuery();
            expectOp(")");
            if (inner->cores.size() != 1 || !inner->orderBy.empty())
                fail("a parenthesized union branch must be a single SELECT", open);
            return std::move(inner->cores.front());
        }
        return parseSelectCore();
    }

    SelectCore parseSelectCore() {
        SelectCore core;
        core.pos = at(peek());
        expectWord("SELECT");
        if (acceptWord("DISTINCT")) core.distinct = true;
        else acceptWord("ALL");
        if (acceptWord("TOP")) {
            if (acceptOp("(")) {
                core.top = parseExpr();
                expectOp(")");
            } else {
                const Token& number = take();
                if (number.kind != TokenKind::Number) fail("expected a number after TOP near " + describe(number), number);
                core.top = std::make_unique<Expr>(ExprKind::Number, at(number));
                core.top->text = number.text;
            }
            if (acceptWord("PERCENT")) core.topPercent = true;
            if (peek().isWord("WITH") && peek(1).isWord("TIES")) {
                pos_ += 2;
                core.topWithTies = true;
            }
        }
        do core.items.push_back(parseSelectItem());
        while (acceptOp(","));
        if (acceptWord("INTO")) core.into = parseName();
        if (acceptWord("FROM")) core.from = parseFromList();
        if (acceptWord("WHERE")) core.where = parseExpr();
        if (peek().isWord("GROUP") && peek(1).isWord("BY")) {
            pos_ += 2;
            do core.groupBy.push_back(parseExpr());
            while (acceptOp(","));
        }
        if (acceptWord("HAVING")) core.having = parseExpr();
        return core;
    }

    SelectItem parseSelectItem() {
        SelectItem item;
        // T-SQL's "alias = expression"
        const Token& first = peek();
        if ((first.kind == TokenKind::Identifier || first.kind == TokenKind::QuotedIdentifier || first.kind == TokenKind::String) &&
            first.text.size() > 0 && first.text[0] != '@' && peek(1).isOp("=") && !isReserved(first)) {
            item.alias = first.text;
            pos_ += 2;
            item.expr = parseExpr();
            return item;
        }
        item.expr = parseExpr();
        if (item.expr->kind == ExprKind::Star) return item;
        if (acceptWord("AS")) {
            const Token& alias = take();
            if (alias.kind == TokenKind::End || alias.kind == TokenKind::Operator || alias.kind == TokenKind::Number)
                fail("expected an alias near " + describe(alias), alias);
            item.alias = alias.text;
        } else if (peek().kind == TokenKind::String || isNamePart(peek())) {
            item.alias = take().text;
        }
        return item;
    }

    std::vector<TableRefPtr> parseFromList() {
        std::vector<TableRefPtr> sources;
        do sources.push_back(parseJoinChain());
        while (acceptOp(","));
        return sources;
    }

    TableRefPtr parseJoinChain() {
        TableRefPtr left = parseTablePrimary();
        while (true) {
            const Token& token = peek();
            JoinType type;
            if (token.isWord("JOIN")) {
                type = JoinType::Inner;
                take();
            } else if (token.isWord("INNER") && peek(1).isWord("JOIN")) {
                type = JoinType::Inner;
                pos_ += 2;
            } else if (token.isWord("CROSS") && peek(1).isWord("JOIN")) {
                type = JoinType::Cross;
                pos_ += 2;
            } else if (token.isWord("LEFT") || token.isWord("RIGHT") || token.isWord("FULL")) {
                type = token.isWord("LEFT") ? JoinType::Left : token.isWord("RIGHT") ? JoinType::Right : JoinType::Full;
                take();
                acceptWord("OUTER");
                expectWord("JOIN");
            } else {
                break;
            }
            auto join = std::make_unique<TableRef>();
            join->kind = TableRef::Kind::Join;
            join->pos = at(token);
            join->joinType = type;
            join->left = std::move(left);
            join->right = parseTablePrimary();
            if (type != JoinType::Cross) {
                expectWord("ON");
                join->on = parseExpr();
            }
            left = std::move(join);
        }
        return left;
    }

    TableRefPtr parseTablePrimary() {
        Nesting nesting(*this);
        auto ref = std::make_unique<TableRef>();
        ref->pos = at(peek());
        if (peek().isOp("(")) {
            const Token& open = take();
            if (peek().isWord("SELECT") || (peek().isOp("(") && peek(1).isWord("SELECT"))) {
                ref->kind = TableRef::Kind::Derived;
                ref->derived = parseQuery();
                expectOp(")");
            } else {
                TableRefPtr inner = parseJoinChain();
                expectOp(")");
                if (inner->kind == TableRef::Kind::Join) return inner;
                ref = std::move(inner);
            }
            parseTableAlias(*ref);
            if (ref->kind == TableRef::Kind::Derived && !ref->alias) fail("a derived table needs an alias", open);
            return ref;
        }
        ref->kind = TableRef::Kind::Table;
        ref->table = parseName();
        skipOldStyleHints();
        parseTableAlias(*ref);
        skipOldStyleHints();
        if (peek().isWord("WITH") && peek(1).isOp("(")) {  // table hints such as WITH (NOLOCK)
            pos_ += 2;
            while (!peek().isOp(")") && peek().kind != TokenKind::End) take();
            expectOp(")");
        }
        return ref;
    }

    // FROM t (NOLOCK): table hints without WITH; they change locking only, so they are dropped.
    void skipOldStyleHints() {
        static const char* const hints[] = {"NOLOCK", "READUNCOMMITTED", "UPDLOCK", "HOLDLOCK", "ROWLOCK", "TABLOCK", "READPAST", "PAGLOCK", "TABLOCKX", "XLOCK", "NOWAIT"};
        while (peek().isOp("(")) {
            bool hint = false;
            for (const char* h : hints) hint = hint || peek(1).isWord(h);
            if (!hint) return;
            pos_ += 1;
            while (!peek().isOp(")") && peek().kind != TokenKind::End) take();
            expectOp(")");
        }
    }

    void parseTableAlias(TableRef& ref) {
        if (acceptWord("AS")) {
            ref.alias = takeNamePart();
        } else if (isNamePart(peek())) {
            ref.alias = take().text;
        }
    }

    // ---- expressions ----
    ExprPtr makeBinary(const Token& opToken, std::string op, ExprPtr left, ExprPtr right) {
        auto expr = std::make_unique<Expr>(ExprKind::Binary, at(opToken));
        expr->text = std::move(op);
        expr->args.push_back(std::move(left));
        expr->args.push_back(std::move(right));
        return expr;
    }

    ExprPtr parseExpr() { return parseOr(); }

    ExprPtr parseOr() {
        ExprPtr left = parseAnd();
        Chain chain(*this);
        while (peek().isWord("OR")) {
            chain.grow();
            const Token& op = take();
            left = makeBinary(op, "OR", std::move(left), parseAnd());
        }
        return left;
    }

    ExprPtr parseAnd() {
        ExprPtr left = parseNot();
        Chain chain(*this);
        while (peek().isWord("AND")) {
            chain.grow();
            const Token& op = take();
            left = makeBinary(op, "AND", std::move(left), parseNot());
        }
        return left;
    }

    ExprPtr parseNot() {
        Nesting nesting(*this, 1);
        if (peek().isWord("NOT")) {
            const Token& op = take();
            auto expr = std::make_unique<Expr>(ExprKind::Unary, at(op));
            expr->text = "NOT";
            expr->args.push_back(parseNot());
            return expr;
        }
        return parseComparison();
    }

    ExprPtr parseComparison() {
        ExprPtr left = parseAdditive();
        Chain chain(*this);
        while (true) {
            chain.grow();
            const Token& token = peek();
            static const std::set<std::string> comparisons = {"=", "<>", "!=", "<", ">", "<=", ">=", "!<", "!>"};
            if (token.kind == TokenKind::Operator && comparisons.count(token.text)) {
                take();
                std::string op = token.text == "!=" ? "<>" : token.text == "!<" ? ">=" : token.text == "!>" ? "<=" : token.text;
                left = makeBinary(token, op, std::move(left), parseAdditive());
                continue;
            }
            bool negated = false;
            std::size_t lookahead = 0;
            if (token.isWord("NOT")) {
                negated = true;
                lookahead = 1;
            }
            const Token& word = peek(lookahead);
            if (word.isWord("IS") && !negated) {
                take();
                auto expr = std::make_unique<Expr>(ExprKind::IsNull, at(word));
                expr->negated = acceptWord("NOT");
                expectWord("NULL");
                expr->args.push_back(std::move(left));
                left = std::move(expr);
            } else if (word.isWord("LIKE")) {
                pos_ += lookahead + 1;
                auto expr = std::make_unique<Expr>(ExprKind::Like, at(word));
                expr->negated = negated;
                expr->args.push_back(std::move(left));
                expr->args.push_back(parseAdditive());
                if (acceptWord("ESCAPE")) expr->args.push_back(parsePrimary());
                left = std::move(expr);
            } else if (word.isWord("BETWEEN")) {
                pos_ += lookahead + 1;
                auto expr = std::make_unique<Expr>(ExprKind::Between, at(word));
                expr->negated = negated;
                expr->args.push_back(std::move(left));
                expr->args.push_back(parseAdditive());
                expectWord("AND");
                expr->args.push_back(parseAdditive());
                left = std::move(expr);
            } else if (word.isWord("IN")) {
                pos_ += lookahead + 1;
                expectOp("(");
                ExprPtr expr;
                if (peek().isWord("SELECT")) {
                    expr = std::make_unique<Expr>(ExprKind::InQuery, at(word));
                    expr->query = parseQuery();
                    expr->args.push_back(std::move(left));
                } else {
                    expr = std::make_unique<Expr>(ExprKind::InList, at(word));
                    expr->args.push_back(std::move(left));
                    do expr->args.push_back(parseExpr());
                    while (acceptOp(","));
                }
                expectOp(")");
                expr->negated = negated;
                left = std::move(expr);
            } else {
                break;
            }
        }
        return left;
    }

    ExprPtr parseAdditive() {
        ExprPtr left = parseMultiplicative();
        Chain chain(*this);
        while (true) {
            chain.grow();
            const Token& token = peek();
            if (token.isOp("+") || token.isOp("-") || token.isOp("&") || token.isOp("|") || token.isOp("^") || token.isOp("||")) {
                take();
                left = makeBinary(token, token.text, std::move(left), parseMultiplicative());
            } else {
                return left;
            }
        }
    }

    ExprPtr parseMultiplicative() {
        ExprPtr left = parseUnary();
        Chain chain(*this);
        while (true) {
            chain.grow();
            const Token& token = peek();
            if (token.isOp("*") || token.isOp("/") || token.isOp("%")) {
                take();
                left = makeBinary(token, token.text, std::move(left), parseUnary());
            } else {
                return left;
            }
        }
    }

    ExprPtr parseUnary() {
        Nesting nesting(*this);
        const Token& token = peek();
        if (token.isOp("-") || token.isOp("+") || token.isOp("~")) {
            take();
            auto expr = std::make_unique<Expr>(ExprKind::Unary, at(token));
            expr->text = token.text;
            expr->args.push_back(parseUnary());
            return expr;
        }
        return parsePrimary();
    }

    // Deeply nested text (parentheses, subqueries) is refused before it exhausts the stack.
    struct Nesting {
        explicit Nesting(Parser& p, int weight = 5) : parser(p), weight(weight) { parser.deepen(weight); }
        ~Nesting() { parser.depth_ -= weight; }
        Parser& parser;
        int weight;
    };
    // A nesting level costs 5, an operator of a chain (a + b + c …) 1: at most 100 levels of
    // parentheses or 500 chained operators, whatever mix. The translation recurses once per level
    // too, and a build with the address sanitizer's larger frames runs out of stack from about
    // 950 chained operators on: 500 keeps a margin in every build (the module's statements stay
    // far below it).
    static constexpr int kMaxDepth = 500;
    // The operators of one chain each deepen the tree by one level.
    struct Chain {
        explicit Chain(Parser& p) : parser(p) {}
        ~Chain() { parser.depth_ -= added; }
        void grow() {
            parser.deepen(1);
            ++added;
        }
        Parser& parser;
        int added = 0;
    };
    void deepen(int weight) {
        depth_ += weight;
        if (depth_ > kMaxDepth) {
            depth_ -= weight;
            fail("the statement is nested too deeply", peek());
        }
    }

    ExprPtr parsePrimary() {
        Nesting nesting(*this);
        const Token& token = peek();
        switch (token.kind) {
            case TokenKind::Number: {
                take();
                auto expr = std::make_unique<Expr>(ExprKind::Number, at(token));
                expr->text = token.text;
                return expr;
            }
            case TokenKind::String: {
                take();
                auto expr = std::make_unique<Expr>(ExprKind::String, at(token));
                expr->text = token.text;
                return expr;
            }
            case TokenKind::Operator:
                if (token.isOp("(")) {
                    take();
                    if (peek().isWord("SELECT")) {
                        auto expr = std::make_unique<Expr>(ExprKind::Subquery, at(token));
                        expr->query = parseQuery();
                        expectOp(")");
                        return expr;
                    }
                    ExprPtr inner = parseExpr();
                    expectOp(")");
                    inner->parenthesized = true;
                    return inner;
                }
                if (token.isOp("*")) {
                    take();
                    return std::make_unique<Expr>(ExprKind::Star, at(token));
                }
                failNear(token);
            case TokenKind::End: fail("unexpected end of text", token);
            case TokenKind::Identifier:
            case TokenKind::QuotedIdentifier: break;
        }
        if (token.kind == TokenKind::Identifier) {
            const std::string word = toUpper(token.text);
            if (word == "NULL") {
                take();
                return std::make_unique<Expr>(ExprKind::Null, at(token));
            }
            if (word == "CASE") return parseCase();
            if (word == "EXISTS") {
                take();
                expectOp("(");
                auto expr = std::make_unique<Expr>(ExprKind::Exists, at(token));
                expr->query = parseQuery();
                expectOp(")");
                return expr;
            }
            if (peek(1).isOp("(")) {
                if (word == "CAST") return parseCast();
                if (word == "CONVERT") return parseConvert();
                if (word == "TRY_CAST" || word == "TRY_CONVERT") {
                    ExprPtr converted = word == "TRY_CAST" ? parseCast() : parseConvert();
                    converted->tryConversion = true;
                    return converted;
                }
                if (word == "DATEPART" || word == "DATEADD" || word == "DATEDIFF" || word == "DATENAME") return parseDateFunction();
                if (word == "IDENTITY") return parseIdentity();
                return parseFunction();
            }
            if (token.text[0] == '@') fail("variables are not supported: " + token.text, token);
            if (isReserved(token)) failNear(token);
        }
        return parseColumnOrStar();
    }

    ExprPtr parseColumnOrStar() {
        const Token& first = peek();
        Name name;
        name.parts.push_back(takeNamePart());
        while (peek().isOp(".")) {
            take();
            if (peek().isOp("*")) {
                take();
                auto star = std::make_unique<Expr>(ExprKind::Star, at(first));
                star->name = std::move(name);
                return star;
            }
            name.parts.push_back(takeNamePart());
        }
        auto expr = std::make_unique<Expr>(ExprKind::Column, at(first));
        expr->name = std::move(name);
        return expr;
    }

    ExprPtr parseCase() {
        const Token& token = take();
        auto expr = std::make_unique<Expr>(ExprKind::Case, at(token));
        if (!peek().isWord("WHEN")) expr->caseOperand = parseExpr();
        if (!peek().isWord("WHEN")) fail("expected WHEN near " + describe(peek()), peek());
        while (acceptWord("WHEN")) {
            expr->args.push_back(parseExpr());
            expectWord("THEN");
            expr->args.push_back(parseExpr());
        }
        if (acceptWord("ELSE")) expr->elseExpr = parseExpr();
        expectWord("END");
        return expr;
    }

    ExprPtr parseCast() {
        const Token& token = take();
        expectOp("(");
        auto expr = std::make_unique<Expr>(ExprKind::Convert, at(token));
        expr->args.push_back(parseExpr());
        expectWord("AS");
        expr->type = parseType();
        expectOp(")");
        return expr;
    }

    ExprPtr parseConvert() {
        const Token& token = take();
        expectOp("(");
        auto expr = std::make_unique<Expr>(ExprKind::Convert, at(token));
        expr->type = parseType();
        expectOp(",");
        expr->args.push_back(parseExpr());
        if (acceptOp(",")) {
            const Token& style = take();
            if (style.kind != TokenKind::Number) fail("expected a style number near " + describe(style), style);
            expr->style = static_cast<int>(integerOf(style, 1000));
        }
        expectOp(")");
        return expr;
    }

    ExprPtr parseDateFunction() {
        const Token& token = take();
        expectOp("(");
        auto expr = std::make_unique<Expr>(ExprKind::DatePartCall, at(token));
        expr->name.parts.push_back(toUpper(token.text));
        const Token& part = take();
        if (part.kind != TokenKind::Identifier && part.kind != TokenKind::QuotedIdentifier && part.kind != TokenKind::String)
            fail("expected a date part near " + describe(part), part);
        expr->datePart = toUpper(part.text);
        expr->pos = at(part);
        while (acceptOp(",")) expr->args.push_back(parseExpr());
        expectOp(")");
        const std::size_t expected = expr->name.last() == "DATEPART" || expr->name.last() == "DATENAME" ? 1 : 2;
        if (expr->args.size() != expected) fail(token.text + " expects " + std::to_string(expected + 1) + " arguments", token);
        return expr;
    }

    ExprPtr parseIdentity() {
        const Token& token = take();
        expectOp("(");
        auto expr = std::make_unique<Expr>(ExprKind::Identity, at(token));
        expr->type = parseType();
        if (acceptOp(",")) {
            expr->identitySeed = parseSignedInteger();
            expectOp(",");
            expr->identityStep = parseSignedInteger();
        }
        expectOp(")");
        return expr;
    }

    ExprPtr parseFunction() {
        const Token& token = take();
        auto expr = std::make_unique<Expr>(ExprKind::Function, at(token));
        expr->name.parts.push_back(token.text);
        expectOp("(");
        if (acceptOp(")")) return expr;
        if (peek().isOp("*") && peek(1).isOp(")")) {
            pos_ += 2;
            expr->star = true;
            return expr;
        }
        if (acceptWord("DISTINCT")) expr->distinct = true;
        else acceptWord("ALL");
        do expr->args.push_back(parseExpr());
        while (acceptOp(","));
        expectOp(")");
        return expr;
    }

    std::string_view batch_;
    std::vector<Token> tokens_;
    std::size_t pos_ = 0;
    std::size_t statementStart_ = 0;
    int depth_ = 0;
};

}  // namespace

std::vector<Statement> parseStatements(std::string_view batch) {
    return Parser(batch, tokenize(batch)).parseAll();
}

}  // namespace qx::tsql
