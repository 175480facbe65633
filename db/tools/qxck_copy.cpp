// qxck-copy --from FILE --to URI [--replace]: moves a shop from its SQLite file to a PostgreSQL
// server (every row, number counter and stock row as they are), all or nothing, and compares
// both sides before committing. Progress per table on stderr.
#include <cstdio>
#include <exception>
#include <string>

#include "db/tools/ShopCopy.h"

namespace {

int usage() {
    std::fprintf(stderr, "usage: qxck-copy --from FILE --to postgresql://user@host:port/shop [--replace]\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    std::string from, to;
    qx::copy::CopyOptions options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (arg == "--replace") {
            options.replace = true;
            continue;
        }
        if (i + 1 >= argc) return usage();
        const std::string value = argv[++i];
        if (arg == "--from") from = value;
        else if (arg == "--to") to = value;
        else return usage();
    }
    if (from.empty() || to.empty()) return usage();
    options.progress = [](const std::string& line) {
        std::fprintf(stderr, "%s\n", line.c_str());
        std::fflush(stderr);
    };
    try {
        const auto report = qx::copy::copyShop(from, to, options);
        std::printf("%s: %zu tables, %lld rows copied and compared (%.1f s)\n", from.c_str(), report.tables.size(), report.rows,
                    report.seconds);
        for (const auto& s : report.skipped) std::printf("not copied (no such table on the server): %s\n", s.c_str());
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "qxck-copy: %s\n", e.what());
        return 1;
    }
}
