#pragma once
// SYS_CBKS: the full cost recalculation. Values every effective movement of goods by the moving
// weighted average per style (all colours and warehouses together), writes the cost prices and
// amounts of the issue lines and each style's average cost and stock value, and returns the
// movements after which a style's running stock was below zero. The contract is in README.md
// beside this file.
#include "db/Database.h"
#include "db/procedures/Session.h"
#include "db/tsql/Translator.h"

namespace qx::db::procedures {

// EXEC SYS_CBKS (no arguments). Runs inside the caller's transaction: a failure or a cancel
// (see db/Progress.h) leaves nothing written.
ResultSet recalculateCosts(ProcedureSession& db, const tsql::ProcedureCall& call);

// The columns of the negative-stock rows, in order.
inline constexpr const char* kNegativeStockColumns[] = {"K_ID", "WL_NAME", "noid", "BDATE", "mytype", "C",
                                                        "in1",  "in_mon",  "ou1",  "ou_mon", "jc",   "jc_mon"};

}  // namespace qx::db::procedures
