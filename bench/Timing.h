#pragma once
// Timing of the plain (non-Google-Benchmark) programs: the median wall clock and the median
// processor time of a few runs, in ms. On a shared machine the wall clock includes the waits for
// a processor, the processor time does not (nor a database server's work).
#include <algorithm>
#include <chrono>
#include <ctime>
#include <functional>
#include <vector>

namespace qx::bench {

struct Timing {
    double wall = 0, cpu = 0;
};

inline Timing millis(const std::function<void()>& body, int runs = 3) {
    std::vector<double> walls, cpus;
    for (int i = 0; i < runs; ++i) {
        const auto start = std::chrono::steady_clock::now();
        const std::clock_t cpuStart = std::clock();
        body();
        cpus.push_back(1000.0 * static_cast<double>(std::clock() - cpuStart) / CLOCKS_PER_SEC);
        walls.push_back(std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count());
    }
    std::sort(walls.begin(), walls.end());
    std::sort(cpus.begin(), cpus.end());
    return {walls[walls.size() / 2], cpus[cpus.size() / 2]};
}

}  // namespace qx::bench
