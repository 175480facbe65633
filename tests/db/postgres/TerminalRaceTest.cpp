// Four terminals of one shop save purchase receipts and sales tickets of the same SKUs at the
// same time, each a process with its own connection, with the batches the entry screens send.
// No update is lost, checked stock never goes below zero, every refused sale is refused in the
// guard's words and no document is kept half. The one-minute run is bench/terminal_race_bench.cpp.
#include <gtest/gtest.h>

#include "db/DbTestSupport.h"
#include "support/TerminalRace.h"

namespace qx::dbtest {
namespace {

class TerminalRace : public SharedShopTest {
protected:
    void seed(db::Database& db) override { db.execute(test::kDocumentMasterData); }
};

TEST_P(TerminalRace, FourTerminalsSavingReceiptsAndSalesOfTheSameSkusLoseNothing) {
    test::RaceOptions options;
    options.terminals = 4;
    options.seconds = 2.5;
    const auto outcome = test::runTerminalRace(location, test::RaceBatches::fromGoldenFiles(), options);
    for (const auto& failure : outcome.failures) ADD_FAILURE() << failure;
    for (const auto& given : outcome.gaveUp) RecordProperty("given_up", given);
    // the race was one: both kinds saved, and the shortage reached
    EXPECT_GT(outcome.purchases.size(), 0u);
    EXPECT_GT(outcome.sales.size(), 0u);
    EXPECT_GT(outcome.refused.size(), 0u) << "no sale ran out of stock: the race proved nothing about the guard";
    auto db = db::openDatabase(location);
    for (const auto& damage : test::raceDamage(*db, outcome)) ADD_FAILURE() << damage;
    std::printf("%s: %zu receipts, %zu sales, %zu refused, %zu given up, %lld retried in %.1f s\n", GetParam().c_str(),
                outcome.purchases.size(), outcome.sales.size(), outcome.refused.size(), outcome.gaveUp.size(), outcome.retries,
                outcome.seconds);
}

// The checks themselves: a shop where a sale lost its line, or a checked row went below zero
// behind the guard's back, is reported.
TEST_P(TerminalRace, TheChecksFindAHalfDocumentAndALostUpdate) {
    auto db = db::openDatabase(location);
    const auto batches = test::RaceBatches::fromGoldenFiles();
    auto fill = [](std::string batch, const std::string& number) {
        for (auto at = batch.find("${number}"); at != std::string::npos; at = batch.find("${number}")) batch.replace(at, 9, number);
        return batch;
    };
    db->execute(fill(batches.purchase, "P1"));
    db->execute(fill(batches.sale, "S1"));
    test::RaceOutcome outcome;
    outcome.purchases = {"P1"};
    outcome.sales = {"S1"};
    EXPECT_TRUE(test::raceDamage(*db, outcome).empty());

    db->execute("DELETE FROM D8201A WHERE NOID='S1' AND WL_ID='K0203'", db::ExecOptions{.maintenance = true});
    db->execute("UPDATE d1802 SET K0=-1 WHERE WL_ID='K0102'", db::ExecOptions{.maintenance = true});
    outcome.refused = {"S2"};
    outcome.refusals = {"Deadlock"};
    const auto damage = test::raceDamage(*db, outcome);
    auto reported = [&](const std::string& start) {
        for (const auto& d : damage)
            if (d.rfind(start, 0) == 0) return true;
        return false;
    };
    EXPECT_TRUE(reported("stock rows differing from their recomputation")) << ::testing::PrintToString(damage);
    EXPECT_TRUE(reported("checked stock rows below zero")) << ::testing::PrintToString(damage);
    EXPECT_TRUE(reported("sales ticket lines: 1 instead of 2")) << ::testing::PrintToString(damage);
    EXPECT_TRUE(reported("sale S2 refused with \"Deadlock\"")) << ::testing::PrintToString(damage);
}

INSTANTIATE_TEST_SUITE_P(Engines, TerminalRace, ::testing::ValuesIn(engines()), engineTestName);

}  // namespace
}  // namespace qx::dbtest
