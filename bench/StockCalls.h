#pragma once
// The stock movement calls the stock benchmarks time on either engine: the June summary by SKU
// and size and by style, and the detail of one article over May and June.
#include <string>

#include "bench/Timing.h"
#include "db/Database.h"

namespace qx::bench {

inline const std::string kJuneSummaryBySize = "EXEC SYS_ZM @param3=0,@BDATE='2026-06-01',@EDATE='2026-07-01',@ck_id1='',@param2=1";
inline const std::string kJuneSummaryByStyle = "EXEC SYS_ZM @param3=1,@BDATE='2026-06-01',@EDATE='2026-07-01',@ck_id1='',@param2=1";

// The movement detail of one SKU (median of five runs); `rows` gets the rows it returned.
inline Timing timeArticleDetail(qx::db::Database& db, const std::string& sku, long long& rows) {
    return millis([&] {
        rows = static_cast<long long>(
            db.open("EXEC SYS_ZM @param=1,@BDATE='2026-05-01',@EDATE='2026-07-01',@wl_id='" + sku + "',@param2=1").rows.size());
    }, 5);
}

}  // namespace qx::bench
