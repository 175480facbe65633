// qxck-demo --db FILE|postgresql://… [--scale N] [--seed S] [--end YYYY-MM-DD] [--lines N]: creates a demo shop
// database; with --lines, a large shop of N document lines written directly (for measuring).
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "db/tools/BulkShop.h"
#include "db/tools/DemoData.h"

namespace {

int usage() {
    std::fprintf(stderr, "usage: qxck-demo --db FILE|postgresql://… [--scale N] [--seed S] [--end YYYY-MM-DD] [--lines N]\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    std::string path;
    qx::demo::Options options;
    long long lines = 0;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (i + 1 >= argc) return usage();
        const std::string value = argv[++i];
        if (arg == "--db") path = value;
        else if (arg == "--scale") options.scale = std::atoi(value.c_str());
        else if (arg == "--seed") options.seed = std::strtoull(value.c_str(), nullptr, 10);
        else if (arg == "--end") options.endDate = value;
        else if (arg == "--lines") lines = std::atoll(value.c_str());
        else return usage();
    }
    if (path.empty() || options.scale < 1) return usage();
    try {
        if (lines > 0) {
            qx::demo::BulkOptions bulk;
            bulk.lines = lines;
            bulk.seed = options.seed;
            bulk.endDate = options.endDate;
            bulk.progress = [](long long written) {
                std::fprintf(stderr, "\r%lld lines", written);
                std::fflush(stderr);
            };
            const auto started = std::chrono::steady_clock::now();
            const auto s = qx::demo::createBulkShop(path, bulk);
            const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
            std::fprintf(stderr, "\n");
            std::printf("%s: %d styles, %d SKUs, %lld documents with %lld lines (bulk part %.1f s, total %.1f s)\n", path.c_str(),
                        s.styles, s.skus, s.documents, s.lines, s.seconds, seconds);
            return 0;
        }
        const auto started = std::chrono::steady_clock::now();
        const auto summary = qx::demo::createDemoDatabase(path, options);
        const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - started).count();
        std::printf("%s: %d styles, %d SKUs, %d documents with %d lines from %s to %s (%.1f s)\n", path.c_str(), summary.styles,
                    summary.skus, summary.documents, summary.lines, summary.firstDate.c_str(), summary.lastDate.c_str(), seconds);
        return 0;
    } catch (const std::exception& e) {
        std::fprintf(stderr, "qxck-demo: %s\n", e.what());
        return 1;
    }
}
