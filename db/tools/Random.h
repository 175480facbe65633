#pragma once
// Deterministic random numbers (splitmix64), identical on every platform: the demo and bulk
// shops give the same data for the same seed.
#include <cstdint>
#include <vector>

namespace qx::demo {

class Random {
public:
    explicit Random(std::uint64_t seed) : state_(seed) {}
    std::uint64_t next() {
        std::uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    int between(int lo, int hi) { return lo + static_cast<int>(next() % static_cast<std::uint64_t>(hi - lo + 1)); }
    bool chance(int percent) { return between(1, 100) <= percent; }
    template <typename T>
    const T& pick(const std::vector<T>& items) { return items[next() % items.size()]; }

private:
    std::uint64_t state_;
};

}  // namespace qx::demo
