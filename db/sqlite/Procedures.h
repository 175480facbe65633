#pragma once
// The EXEC dispatcher: database procedures are C++ routines that take the call
// (EXEC name @arg=value, ...) and return one result set. SQL they are handed as arguments is
// T-SQL and runs through the same translation as every other statement. One registry for every
// engine: a procedure gets the calling connection as a ProcedureSession (db/procedures/Session.h).
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "db/Database.h"
#include "db/procedures/Session.h"
#include "db/tsql/Translator.h"

namespace qx::db {

using Procedure = std::function<ResultSet(ProcedureSession&, const tsql::ProcedureCall&)>;

// Adds (or replaces) a procedure by name; names compare case-insensitively.
void registerProcedure(const std::string& name, Procedure procedure);

// Is a procedure of that name registered?
bool procedureExists(std::string_view name);

// Runs a call; an unknown name throws Error("unknown procedure: NAME").
ResultSet callProcedure(ProcedureSession& session, const tsql::ProcedureCall& call);

// Runs the EXEC statement of a batch: an error without a statement of its own names the EXEC
// statement, its line and column.
ResultSet callProcedure(ProcedureSession& session, const tsql::Statement& statement);

// The value of a named argument (case-insensitive, without '@'), if the call passes it.
std::optional<std::string> procedureArgument(const tsql::ProcedureCall& call, std::string_view name);

}  // namespace qx::db
