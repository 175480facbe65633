#pragma once
// qx_stock_recount: a table-valued function of every SQLite connection that recounts the stock
// from the documents, the way the balance view V_CHECKKC defines it (the opening B0..B9 of each
// stock row plus every effective line of the posting rules), and returns the stock rows whose
// stored K0..K9 differ from that recount:
//
//   stock_row  the rowid of the d1802 row
//   C0..C9     the recounted stock per size
//
// It reads each line table once, in storage order, with the heads and the stock rows held in
// memory; keys match as the tables' collation makes them match (exact bytes first, the table's
// own comparison for the rare rest). The balance view of SQLite is a view over it
// (posting::sqliteBalanceViewStatement); PostgreSQL keeps the plain view of the same rules.
struct sqlite3;

namespace qx::db {

inline constexpr const char* kStockRecountName = "qx_stock_recount";

// Registers the function on the connection (once per connection).
void registerStockRecount(sqlite3* db);

}  // namespace qx::db
