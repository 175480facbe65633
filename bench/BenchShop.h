#pragma once
// The demo shop the benchmarks read: $QXCK_BENCH_DB, or a scale-10 shop made once in the temp
// folder.
#include <cstdlib>
#include <filesystem>
#include <string>

#include "db/tools/DemoData.h"

namespace qx::bench {

inline std::string benchShopPath() {
    if (const char* path = std::getenv("QXCK_BENCH_DB")) return path;
    const auto path = (std::filesystem::temp_directory_path() / "qxck-bench-scale10.db").string();
    if (!std::filesystem::exists(path)) {
        qx::demo::Options options;
        options.scale = 10;
        options.seed = 1;
        options.endDate = "2026-06-30";
        qx::demo::createDemoDatabase(path, options);
    }
    return path;
}

}  // namespace qx::bench
