#pragma once
// The stock procedures the reports call with EXEC: SYS_ZM (stock movements: opening, receipts
// and issues by kind, closing; or the movement lines of each article with a running balance)
// and the cross-tabs SYS_JX and SYS_JD. Their contract is written down in
// db/procedures/README.md.
#include "db/Database.h"
#include "db/procedures/Session.h"
#include "db/tsql/Translator.h"

namespace qx::db {
namespace procedures {

ResultSet stockMovements(ProcedureSession& db, const tsql::ProcedureCall& call);  // SYS_ZM
ResultSet crossTab(ProcedureSession& db, const tsql::ProcedureCall& call);        // SYS_JX
ResultSet crossTabWithHeaders(ProcedureSession& db, const tsql::ProcedureCall& call);  // SYS_JD

// A flag argument as the module writes it: "1", "True", "true", "Y" mean yes.
bool flagValue(const std::string& text);

}  // namespace procedures
}  // namespace qx::db
