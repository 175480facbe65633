// qx_crash_writer --db FILE --start N: saves purchase receipts N, N+1, … into a shop database
// as the entry screen does (head and lines in one batch, posted to stock by the database), and
// every so often edits an earlier one (its lines deleted and written again, its effective flag
// taken back and set again). After each save returns it prints "ACK <number>" and flushes:
// what a user would have seen as "saved". It runs until it is killed.
#include <cstdio>
#include <cstdlib>
#include <string>

#include "CrashDocuments.h"
#include "db/Database.h"

int main(int argc, char** argv) {
    if (argc != 5 || std::string(argv[1]) != "--db" || std::string(argv[3]) != "--start") {
        std::fprintf(stderr, "usage: qx_crash_writer --db FILE --start N\n");
        return 2;
    }
    try {
        auto db = qx::db::openSqlite(argv[2]);
        for (long long i = std::atoll(argv[4]);; ++i) {
            db->execute(qx::crash::saveBatch(i));
            std::printf("ACK %s\n", qx::crash::documentNumber(i).c_str());
            std::fflush(stdout);
            if (i % 3 == 0 && i > 0) db->execute(qx::crash::editBatch(i - 1));
        }
    } catch (const std::exception& e) {
        std::fprintf(stderr, "qx_crash_writer: %s\n", e.what());
        return 1;
    }
}
