#pragma once
// The server-side helpers the PostgreSQL dialect calls by a qx_ name (db/tsql/PostgresDialect.cpp),
// created once per database by the engine: SQL and PL/pgSQL functions with SQL Server's meaning.
#include <string>
#include <vector>

namespace qx::db {

// CREATE FUNCTION statements, one per overload, in creation order.
const std::vector<std::string>& postgresRuntimeFunctions();

}  // namespace qx::db
