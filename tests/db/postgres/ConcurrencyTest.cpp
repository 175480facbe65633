// Many hosts on one shop database: document numbers from several processes never repeat, and
// two terminals selling the last piece of checked stock at the same moment cannot both succeed.
// The same tests run on an SQLite file shared by the processes and on a PostgreSQL server.
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <barrier>
#include <fstream>
#include <set>
#include <thread>

#include "db/DbTestSupport.h"

namespace qx::dbtest {
namespace {

// Two terminals send their batches at the same moment; each outcome is "ok" or the error.
std::array<std::string, 2> atOnce(db::Database& first, db::Database& second, const std::array<std::string, 2>& batches) {
    db::Database* terminals[2] = {&first, &second};
    std::barrier start(2);
    std::array<std::string, 2> outcome;
    auto send = [&](int t) {
        start.arrive_and_wait();
        try {
            terminals[t]->execute(batches[t]);
            outcome[t] = "ok";
        } catch (const db::Error& e) {
            outcome[t] = e.what();
        }
    };
    std::thread a(send, 0), b(send, 1);
    a.join();
    b.join();
    return outcome;
}

class Concurrency : public SharedShopTest {
protected:
    void seed(db::Database& db) override { seedSmallShop(db); }
};

TEST_P(Concurrency, EightProcessesTakingAThousandNumbersEachNeverGetTheSameOne) {
    constexpr int kProcesses = 8, kCalls = 1000;
    std::vector<pid_t> children;
    for (int p = 0; p < kProcesses; ++p) {
        const pid_t pid = fork();
        ASSERT_GE(pid, 0) << "fork failed";
        if (pid == 0) {
            // A host of its own: its own connection, its numbers into its own file.
            int status = 0;
            try {
                auto db = db::openDatabase(location);
                std::ofstream out(dir.file("numbers-" + std::to_string(p)));
                for (int i = 0; i < kCalls; ++i) out << db->nextDocumentNumber("201") << "\n";
                if (!out) status = 2;
            } catch (const std::exception& e) {
                std::fprintf(stderr, "process %d: %s\n", p, e.what());
                status = 1;
            }
            _exit(status);
        }
        children.push_back(pid);
    }
    for (pid_t pid : children) {
        int status = 0;
        ASSERT_EQ(waitpid(pid, &status, 0), pid);
        ASSERT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "a process failed to take its numbers";
    }
    std::set<std::string> numbers;
    std::size_t total = 0;
    for (int p = 0; p < kProcesses; ++p) {
        std::ifstream in(dir.file("numbers-" + std::to_string(p)));
        for (std::string number; std::getline(in, number); ++total) {
            EXPECT_EQ(number.size(), 12u) << number;
            EXPECT_EQ(number.rfind("201", 0), 0u) << number;
            numbers.insert(number);
        }
    }
    EXPECT_EQ(total, static_cast<std::size_t>(kProcesses * kCalls));
    EXPECT_EQ(numbers.size(), static_cast<std::size_t>(kProcesses * kCalls)) << "a number was handed out twice";
    auto db = db::openDatabase(location);
    EXPECT_EQ(integer(scalar(*db, "SELECT MAX(SEQ) FROM sys_noid WHERE FUNC_NO='201'")), kProcesses * kCalls)
        << "no number was skipped either";
}

// One piece of the checked style K2 in stock, two terminals sell it at once: exactly one sale
// goes through, the other is refused with the guard's message and leaves nothing behind.
TEST_P(Concurrency, OfTwoSalesOfTheLastPieceExactlyOneSucceeds) {
    constexpr int kRounds = 8;
    auto admin = db::openDatabase(location);
    std::unique_ptr<db::Database> terminals[2] = {db::openDatabase(location), db::openDatabase(location)};
    for (int round = 0; round < kRounds; ++round) {
        SCOPED_TRACE("round " + std::to_string(round));
        const std::string receipt = "R" + std::to_string(round);
        admin->execute("INSERT INTO D8101(T,NOID,CK_ID,BDATE) VALUES ('1','" + receipt + "','ZC','2026-05-10');"
                       "INSERT INTO D8101A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) VALUES ('" + receipt + "','K201','K2','01','ZC',1);");
        ASSERT_EQ(stock(*admin, "K201", "ZC"), sizes({1}));
        auto sale = [&](int t) {
            const std::string noid = "S" + std::to_string(round) + "_" + std::to_string(t);
            return "INSERT INTO D8201(T,NOID,CK_ID,BDATE) VALUES ('1','" + noid + "','ZC','2026-05-11');"
                   "INSERT INTO D8201A (NOID, WL_ID, K_ID, COL_ID, CK_ID, S0) VALUES ('" + noid + "','K201','K2','01','ZC','1');";
        };
        const auto outcome = atOnce(*terminals[0], *terminals[1], {sale(0), sale(1)});
        const int sold = (outcome[0] == "ok") + (outcome[1] == "ok");
        EXPECT_EQ(sold, 1) << outcome[0] << " / " << outcome[1];
        for (const auto& o : outcome)
            if (o != "ok") EXPECT_EQ(o, "库存不足支持本次出库业务");
        EXPECT_EQ(stock(*admin, "K201", "ZC"), sizes({0}));
        const std::string sales = "NOID IN ('S" + std::to_string(round) + "_0', 'S" + std::to_string(round) + "_1')";
        EXPECT_EQ(count(*admin, "D8201", sales), 1) << "the refused sale left its head";
        EXPECT_EQ(count(*admin, "D8201A", sales), 1) << "the refused sale left its line";
    }
    EXPECT_EQ(count(*admin, "V_CHECKKC"), 0) << "every stock row equals its recomputation";
}

// Two terminals write the same two rows in opposite orders at once: the server breaks the
// deadlock by cancelling one batch, which leaves nothing and runs again; both saves go through.
TEST_P(Concurrency, ABatchCancelledToBreakADeadlockRunsAgain) {
    if (GetParam() != "postgresql") GTEST_SKIP() << "SQLite takes the write lock at the start of a batch: no deadlock to break";
    std::unique_ptr<db::Database> terminals[2] = {db::openDatabase(location), db::openDatabase(location)};
    auto save = [](const std::string& name, const std::string& first, const std::string& second) {
        // the pause makes both hold their first row before they ask for the second
        return "UPDATE d1007 SET CK_NAME='" + name + "' WHERE CK_ID='" + first + "';SELECT pg_sleep(0.3);" +
               "UPDATE d1007 SET CK_NAME='" + name + "' WHERE CK_ID='" + second + "'";
    };
    const auto outcome = atOnce(*terminals[0], *terminals[1], {save("甲", "ZC", "MD1"), save("乙", "MD1", "ZC")});
    EXPECT_EQ(outcome[0], "ok");
    EXPECT_EQ(outcome[1], "ok");
    auto db = db::openDatabase(location);
    const auto names = db->open("SELECT CK_NAME FROM d1007 WHERE CK_ID IN ('ZC','MD1')").rows;
    ASSERT_EQ(names.size(), 2u);
    EXPECT_EQ(text(names[0][0]), text(names[1][0])) << "each batch wrote both rows or none";
}

INSTANTIATE_TEST_SUITE_P(Engines, Concurrency, ::testing::ValuesIn(engines()), engineTestName);

}  // namespace
}  // namespace qx::dbtest
