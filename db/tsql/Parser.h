#pragma once
// Recursive-descent parser: tokens of a batch → one syntax tree per statement.
#include <string_view>
#include <vector>

#include "db/tsql/Translator.h"

namespace qx::tsql {

// Parses every statement of the batch. Statements end at ";" or where the next statement's
// first keyword appears, as SQL Server reads them.
std::vector<Statement> parseStatements(std::string_view batch);

}  // namespace qx::tsql
