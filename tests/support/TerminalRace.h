#pragma once
// Several terminals of one shop at once: each a process of its own with its own connection,
// saving purchase receipts and sales tickets of the same few SKUs as fast as it can, with the
// exact batches the entry screens send (their golden files, tests/documents/golden). Afterwards
// the shop is checked for lost updates, checked stock below zero and half documents.
//
// Used by the short race test (tests/db/postgres/TerminalRaceTest.cpp) and by the one-minute
// benchmark (bench/terminal_race_bench.cpp).
#include <string>
#include <vector>

#include "db/Database.h"

namespace qx::test {

// Size group A (S, M, L), colours 01..03, warehouse 01; K01 (barcode rule 2, stock checked,
// cost 25) and K02 (rule 0, stock not checked, cost 40): the master data the purchase receipt's
// and sales ticket's golden batches are written against.
extern const char* const kDocumentMasterData;

// The batches the race sends, from the golden files: a purchase receipt of K0102 (3 S, 2 M) and
// a sales ticket of K0102 (3 S, 1 M) and K0203 (2 M). "${number}" is the document's number.
struct RaceBatches {
    std::string purchase, sale;
    static RaceBatches fromGoldenFiles();
};

struct RaceOptions {
    int terminals = 4;
    double seconds = 3;
    int purchasePercent = 45;  // the rest are sales
    unsigned seed = 1;
};

// What the terminals did, summed over all of them.
struct RaceOutcome {
    std::vector<std::string> purchases, sales;  // numbers of the documents saved
    std::vector<std::string> refused;           // sales refused by the negative-stock guard
    std::vector<std::string> refusals;          // the messages they were refused with
    std::vector<std::string> gaveUp;            // "number: message" of batches given up after retries
    std::vector<std::string> failures;          // anything else: "terminal n: message"
    long long retries = 0;                      // batches run again after the server cancelled them
    double seconds = 0;                         // wall time of the race
};

// Forks options.terminals processes; each opens `location` (a file path or a server URI) and
// saves documents for options.seconds. Returns when every terminal has finished.
RaceOutcome runTerminalRace(const std::string& location, const RaceBatches& batches, const RaceOptions& options);

// Everything that is wrong with the shop after a race, one sentence each; empty when the race
// lost no update, drove no checked row below zero and left no half document.
std::vector<std::string> raceDamage(db::Database& shop, const RaceOutcome& outcome);

}  // namespace qx::test
