#include "db/sqlite/Procedures.h"

#include <algorithm>
#include <cctype>
#include <map>
#include <mutex>

#include "db/procedures/CostRecalculation.h"
#include "db/procedures/StockProcedures.h"

namespace qx::db {
namespace {

std::string upper(std::string_view text) {
    std::string out(text);
    std::transform(out.begin(), out.end(), out.begin(), [](unsigned char c) { return std::toupper(c); });
    return out;
}

// SYS_M @param=1, @sqltext='<T-SQL>': runs the text it is handed and returns its rows.
ResultSet runSqlText(ProcedureSession& db, const tsql::ProcedureCall& call) {
    auto text = procedureArgument(call, "sqltext");
    if (!text) throw Error("SYS_M needs the argument @sqltext");
    return db.runWithinTransaction(*text);
}

struct Registry {
    std::mutex mutex;
    std::map<std::string, Procedure> procedures;
    Registry() {
        procedures.emplace("SYS_M", runSqlText);
        procedures.emplace("SYS_CBKS", qx::db::procedures::recalculateCosts);
        procedures.emplace("SYS_ZM", qx::db::procedures::stockMovements);
        procedures.emplace("SYS_JX", qx::db::procedures::crossTab);
        procedures.emplace("SYS_JD", qx::db::procedures::crossTabWithHeaders);
    }
};

Registry& registry() {
    static Registry instance;
    return instance;
}

}  // namespace

void registerProcedure(const std::string& name, Procedure procedure) {
    auto& r = registry();
    std::lock_guard lock(r.mutex);
    r.procedures[upper(name)] = std::move(procedure);
}

bool procedureExists(std::string_view name) {
    auto& r = registry();
    std::lock_guard lock(r.mutex);
    return r.procedures.count(upper(name)) > 0;
}

ResultSet callProcedure(ProcedureSession& db, const tsql::ProcedureCall& call) {
    Procedure procedure;
    {
        auto& r = registry();
        std::lock_guard lock(r.mutex);
        auto it = r.procedures.find(upper(call.name));
        if (it == r.procedures.end()) throw Error("unknown procedure: " + call.name);
        procedure = it->second;
    }
    return procedure(db, call);
}

ResultSet callProcedure(ProcedureSession& session, const tsql::Statement& statement) {
    try {
        return callProcedure(session, *statement.procedure);
    } catch (const Error& e) {
        if (!e.statement().empty()) throw;
        throw Error(e.what(), statement.text, statement.line, statement.column);
    }
}

std::optional<std::string> procedureArgument(const tsql::ProcedureCall& call, std::string_view name) {
    const std::string wanted = upper(name);
    for (const auto& argument : call.arguments)
        if (upper(argument.name) == wanted) return argument.value;
    return std::nullopt;
}

}  // namespace qx::db
