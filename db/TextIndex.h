#pragma once
// Texts to numbers by their exact bytes, for the procedures that meet the same codes (SKUs,
// document numbers, warehouses) once per movement line: one probe into a flat table where a
// hash map would chase a node. Texts that are equal only under the shop's collation (letter
// case, width, trailing blanks) are different keys here; callers ask the database when the
// bytes find nothing.
#include <cstdint>
#include <cstring>
#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

namespace qx::db {

// Texts to numbers by their exact bytes: open addressing; a text of up to 16 bytes (codes,
// document numbers, warehouses) is kept in its slot, so a lookup touches one slot, longer ones
// are kept in an arena.
class TextIndex {
public:
    static constexpr std::uint32_t kMissing = std::numeric_limits<std::uint32_t>::max();

    explicit TextIndex(std::size_t expected = 256) {
        std::size_t capacity = 16;
        while (capacity < expected * 2) capacity *= 2;
        slots_.assign(capacity, Slot{});
    }

    static std::size_t hashOf(std::string_view text) { return std::hash<std::string_view>{}(text); }

    // Asks the processor for the slot where a lookup of this hash starts.
    void prefetch(std::size_t hash) const { __builtin_prefetch(&slots_[hash & (slots_.size() - 1)]); }

    // The number of the text, or kMissing.
    std::uint32_t find(std::string_view text) const { return find(text, hashOf(text)); }
    std::uint32_t find(std::string_view text, std::size_t hash) const {
        const std::size_t mask = slots_.size() - 1;
        for (std::size_t i = hash & mask;; i = (i + 1) & mask) {
            const Slot& slot = slots_[i];
            if (slot.value == kMissing) return kMissing;
            if (slot.hash == hash && slot.length == text.size() && std::memcmp(bytesOf(slot), text.data(), text.size()) == 0)
                return slot.value;
        }
    }

    // Adds a text not yet present.
    void insert(std::string_view text, std::uint32_t value) {
        if ((count_ + 1) * 2 > slots_.size()) grow();
        Slot slot;
        slot.hash = std::hash<std::string_view>{}(text);
        slot.value = value;
        slot.length = static_cast<std::uint32_t>(text.size());
        if (text.size() <= kInline) {
            std::memcpy(slot.bytes, text.data(), text.size());
        } else {
            const std::size_t offset = arena_.size();
            std::memcpy(slot.bytes, &offset, sizeof offset);
            arena_.append(text);
        }
        place(slot);
        ++count_;
    }

    // Gives every text the number f(its number).
    template <class F>
    void renumber(F f) {
        for (Slot& slot : slots_)
            if (slot.value != kMissing) slot.value = f(slot.value);
    }

private:
    static constexpr std::size_t kInline = 16;
    struct Slot {
        std::size_t hash = 0;
        std::uint32_t value = kMissing;
        std::uint32_t length = 0;
        char bytes[kInline] = {};  // the text, or where it is in the arena
    };

    const char* bytesOf(const Slot& slot) const {
        if (slot.length <= kInline) return slot.bytes;
        std::size_t offset;
        std::memcpy(&offset, slot.bytes, sizeof offset);
        return arena_.data() + offset;
    }

    void place(const Slot& slot) {
        const std::size_t mask = slots_.size() - 1;
        std::size_t i = slot.hash & mask;
        while (slots_[i].value != kMissing) i = (i + 1) & mask;
        slots_[i] = slot;
    }

    void grow() {
        std::vector<Slot> old(slots_.size() * 2, Slot{});
        old.swap(slots_);
        for (const Slot& slot : old)
            if (slot.value != kMissing) place(slot);
    }

    std::vector<Slot> slots_;
    std::string arena_;
    std::size_t count_ = 0;
};

}  // namespace qx::db
