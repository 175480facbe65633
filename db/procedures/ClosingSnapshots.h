#pragma once
// Closing snapshots: when a stock month is closed (sys_co.CK_END_DATE moves forward) the
// database stores, per SKU and warehouse, the stock and its value at the first day of the new
// open month in the host-owned table sys_ck_snapshot; when a month is reopened (the date moves
// back) the snapshots after the new date are dropped. Documents dated before a snapshot can no
// longer change (the closed-period guard), so a snapshot plus the movements since it gives the
// same stock as the opening quantities plus every movement. See README.md beside this file.
#include <string>
#include <vector>

#include "db/Database.h"
#include "db/procedures/Session.h"

namespace qx::db::procedures {

// SQLite statements creating the table and the trigger on sys_co (idempotent: run on every
// connection, so shop files made before snapshots existed get them too).
std::vector<std::string> closingSnapshotStatements();
// The same objects in another engine's SQL, from the same text (on PostgreSQL: a PL/pgSQL
// function per trigger).
std::vector<std::string> closingSnapshotStatements(const Dialect& dialect);

// The T-SQL query of the stock per SKU and warehouse before `date` ("YYYY-MM-DD"): columns
// WL_ID, CK_ID, Q0..Q9. Read from the latest snapshot at or before `date` plus the movements
// since, or, with `useSnapshots` false or no snapshot, from the opening quantities plus every
// movement before `date`. Both give the same rows.
std::string stockBeforeQuery(db::Database& db, const std::string& date, bool useSnapshots = true);

// The T-SQL query of the rows V_CHECKKC lists, with the recomputed stock read from the latest
// snapshot plus the movements since (same columns, same rows).
std::string balanceFromSnapshotQuery(db::Database& db);

// The latest snapshot date at or before `date` ("" when none).
std::string latestSnapshotAtOrBefore(db::Database& db, const std::string& date);
// The same inside a procedure (the calling batch's transaction).
std::string latestSnapshotInTransaction(ProcedureSession& session, const std::string& date);

}  // namespace qx::db::procedures
