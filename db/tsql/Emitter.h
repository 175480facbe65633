#pragma once
// Walks a statement's syntax tree and writes it in a target dialect with SQL Server's meaning.
#include <string>
#include <vector>

#include "db/tsql/Dialect.h"
#include "db/tsql/Translator.h"

namespace qx::tsql {

std::vector<std::string> emitStatement(const Statement& statement, const Catalog& catalog, const Dialect& dialect);
std::vector<CatalogColumn> describeResult(const Statement& statement, const Catalog& catalog, const Dialect& dialect);

}  // namespace qx::tsql
