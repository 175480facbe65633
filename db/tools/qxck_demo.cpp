// qxck-demo --db FILE [--scale N] [--seed S] [--end YYYY-MM-DD]: creates a demo shop database.
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "db/tools/DemoData.h"

namespace {

int usage() {
    std::fprintf(stderr, "usage: qxck-demo --db FILE [--scale N] [--seed S] [--end YYYY-MM-DD]\n");
    return 2;
}

}  // namespace

int main(int argc, char** argv) {
    std::string path;
    qx::demo::Options options;
    for (int i = 1; i < argc; ++i) {
        const std::string arg = argv[i];
        if (i + 1 >= argc) return usage();
        const std::string value = argv[++i];
        if (arg == "--db") path = value;
        else if (arg == "--scale") options.scale = std::atoi(value.c_str());
        else if (arg == "--seed") options.seed = std::strtoull(value.c_str(), nullptr, 10);
        else if (arg == "--end") options.endDate = value;
        else return usage();
    }
    if (path.empty() || options.scale < 1) return usage();
    try {
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
