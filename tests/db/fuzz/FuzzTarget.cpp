#include "FuzzTarget.h"

#include <sqlite3.h>

#include <memory>
#include <string>

#include "db/SmallShop.h"
#include "db/sqlite/SqliteDatabase.h"

namespace qx::fuzz {
namespace {

// Statements that would run for minutes (cross joins of cross joins) are cut off: the
// harness looks for crashes and wrong states, not for slow queries.
constexpr int kStepsPerCheck = 1000;
constexpr int kMaxChecks = 20000;

int progress(void* counter) { return ++*static_cast<int*>(counter) > kMaxChecks ? 1 : 0; }

struct Shop {
    std::unique_ptr<db::SqliteDatabase> db;
    int checks = 0;
    Shop() : db(std::make_unique<db::SqliteDatabase>(":memory:", true)) {
        db->execute(dbtest::kSmallShopBatch);
        sqlite3_progress_handler(db->handle(), kStepsPerCheck, progress, &checks);
    }
};

Shop& shop() {
    static Shop instance;
    return instance;
}

}  // namespace

void runInput(const std::uint8_t* data, std::size_t size) {
    Shop& s = shop();
    const std::string batch(reinterpret_cast<const char*>(data), size);
    for (const bool execute : {false, true}) {
        s.checks = 0;
        s.db->runNative("BEGIN");
        try {
            if (execute) s.db->execute(batch);
            else s.db->open(batch);
        } catch (const db::Error&) {
            // a clear refusal is the answer to bad input
        }
        sqlite3_exec(s.db->handle(), "ROLLBACK", nullptr, nullptr, nullptr);
    }
}

}  // namespace qx::fuzz

#ifdef QX_LIBFUZZER
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    qx::fuzz::runInput(data, size);
    return 0;
}
#endif
