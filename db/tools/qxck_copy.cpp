// qxck-copy --from FILE|postgresql://… --to postgresql://…|FILE: moves a shop to another database
// (its SQLite file to a server, say) with every row, number counter and stock row.
#include <cstdio>
#include <string>

#include "db/tools/ShopCopy.h"

int main(int argc, char** argv) {
    std::string from, to;
    for (int i = 1; i + 1 < argc; i += 2) {
        const std::string arg = argv[i];
        if (arg == "--from") from = argv[i + 1];
        else if (arg == "--to") to = argv[i + 1];
    }
    if (from.empty() || to.empty() || argc != 5) {
        std::fprintf(stderr, "usage: qxck-copy --from FILE|postgresql://… --to postgresql://…|FILE\n");
        return 2;
    }
    try {
        const auto summary = qx::demo::copyShop(from, to);
        std::printf("%s → %s: %lld rows in %zu tables\n", from.c_str(), to.c_str(), summary.total, summary.rows.size());
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "qxck-copy: %s\n", e.what());
        return 1;
    }
}
