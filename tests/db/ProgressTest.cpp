// Cancelling a long database operation: the statement is interrupted with the cancel message,
// its batch is rolled back, and the connection goes on working, whether the operation's own
// callback or the user interface's interrupt check asks for it.
#include <gtest/gtest.h>

#include <filesystem>

#include "DbTestSupport.h"
#include "db/Interrupt.h"
#include "db/Progress.h"

namespace qx::dbtest {
namespace {

class Progress : public ::testing::Test {
protected:
    void SetUp() override {
        std::filesystem::copy_file(sharedDemoShop(), dir.file("shop.db"));
        db = db::openSqlite(dir.file("shop.db"));
    }
    TempDir dir;
    std::unique_ptr<db::Database> db;
};

TEST_F(Progress, ACancelInterruptsALongStatement) {
    int asked = 0;
    {
        db::ProgressScope cancel([&] {
            ++asked;
            return false;
        });
        try {
            db->open("select *  from V_CHECKKC");
            ADD_FAILURE() << "the balance view over a year of documents must have asked";
        } catch (const db::Error& e) {
            EXPECT_STREQ(e.what(), db::kCancelledMessage);
        }
    }
    EXPECT_EQ(asked, 1) << "it stops at the first no";
    EXPECT_NO_THROW(db->open("select *  from V_CHECKKC")) << "without the callback it runs to its end";
}

TEST_F(Progress, ACancelledBatchKeepsNothing) {
    const long long before = count(*db, "d1802", "K0 = 777");
    {
        db::ProgressScope cancel([] { return false; });
        EXPECT_THROW(db->execute("UPDATE d1802 SET K0 = 777; select *  from V_CHECKKC"), db::Error);
    }
    EXPECT_EQ(count(*db, "d1802", "K0 = 777"), before);
}

TEST_F(Progress, ScopesNestAndRestoreTheOuterCallback) {
    int outer = 0;
    db::ProgressScope a([&] {
        ++outer;
        return true;
    });
    {
        db::ProgressScope b([] { return false; });
        EXPECT_FALSE(db::progressContinues());
    }
    EXPECT_TRUE(db::progressContinues());
    EXPECT_EQ(outer, 1);
}

TEST_F(Progress, TheInterruptCheckOfTheUserInterfaceStopsAProcedureToo) {
    // the progress window installs the process-wide check, not a callback: a cost
    // recalculation asks between its steps and must hear it
    int asked = 0;
    const auto previous = db::setInterruptCheck([&] {
        ++asked;
        return true;
    });
    EXPECT_FALSE(db::progressContinues());
    try {
        db->open("EXEC SYS_CBKS");
        ADD_FAILURE() << "the cost recalculation ran to its end through a cancel";
    } catch (const db::Error& e) {
        EXPECT_NE(std::string(e.what()).find(db::kCancelledMessage), std::string::npos) << e.what();
    }
    db::setInterruptCheck(previous);
    EXPECT_GE(asked, 2);
    EXPECT_TRUE(db::progressContinues());
}

}  // namespace
}  // namespace qx::dbtest
