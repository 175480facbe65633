// Four terminals (processes, each with its own connection) saving purchase receipts and sales
// tickets of the same SKUs on one shop for a minute, with the batches the entry screens send;
// then the shop is checked as the race test checks it (tests/support/TerminalRace.h).
//   bench_terminal_race [--seconds 60] [--terminals 4] [--db LOCATION]
// Without --db the shop is a new database on a private PostgreSQL server started for the run
// (tests/support/PostgresServer.h); LOCATION may name an empty database on another server or
// an SQLite file to be created.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

#include "db/Database.h"
#include "support/PostgresServer.h"
#include "support/TerminalRace.h"

int main(int argc, char** argv) {
    ::setenv("QXCK_SOURCE_DIR", QXCK_BENCH_SOURCE_DIR, 0);  // the golden files
    qx::test::RaceOptions options;
    options.seconds = 60;
    std::string location;
    for (int i = 1; i + 1 < argc; i += 2) {
        if (!std::strcmp(argv[i], "--seconds")) options.seconds = std::atof(argv[i + 1]);
        else if (!std::strcmp(argv[i], "--terminals")) options.terminals = std::atoi(argv[i + 1]);
        else if (!std::strcmp(argv[i], "--db")) location = argv[i + 1];
        else {
            std::fprintf(stderr, "usage: bench_terminal_race [--seconds 60] [--terminals 4] [--db LOCATION]\n");
            return 2;
        }
    }
    try {
        if (location.empty()) {
            auto* server = qx::test::PostgresServer::instance();
            if (!server) {
                std::fprintf(stderr, "bench_terminal_race: PostgreSQL server binaries not installed\n");
                return 1;
            }
            location = server->freshDatabase();
        }
        {
            auto shop = qx::db::openDatabase(location, true);
            shop->execute(qx::test::kDocumentMasterData);
        }
        const auto outcome = qx::test::runTerminalRace(location, qx::test::RaceBatches::fromGoldenFiles(), options);
        auto shop = qx::db::openDatabase(location);
        const auto damage = qx::test::raceDamage(*shop, outcome);
        const double saved = static_cast<double>(outcome.purchases.size() + outcome.sales.size());
        std::printf("Four-terminal race on %s (%d terminals, %.1f s):\n", shop->engineName().c_str(), options.terminals, outcome.seconds);
        std::printf("  documents saved %8.0f   (%.1f per second: %zu receipts, %zu sales)\n", saved, saved / outcome.seconds,
                    outcome.purchases.size(), outcome.sales.size());
        std::printf("  sales refused   %8zu   (\"库存不足支持本次出库业务\")\n", outcome.refused.size());
        std::printf("  batches retried %8lld   given up %zu\n", outcome.retries, outcome.gaveUp.size());
        for (const auto& given : outcome.gaveUp) std::printf("  given up: %s\n", given.c_str());
        for (const auto& failure : outcome.failures) std::printf("  FAILED: %s\n", failure.c_str());
        for (const auto& d : damage) std::printf("  DAMAGE: %s\n", d.c_str());
        if (damage.empty() && outcome.failures.empty())
            std::printf("  checked afterwards: no lost update (V_CHECKKC empty), no checked row below zero, no half document\n");
        return damage.empty() && outcome.failures.empty() ? 0 : 1;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "bench_terminal_race: %s\n", e.what());
        return 1;
    }
}
