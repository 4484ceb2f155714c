// An open-addressing map from object addresses to values for the header
// parser's look-up indexes: the slots hold the values, so one look-up reads
// one place of memory, and nothing is allocated per entry.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

// Object addresses (never null) to values. Erasing moves later entries back,
// which keeps every look-up's probe short without markers.
template <typename K, typename V>
class CPointerMap {
public:
    V* Find(K const* key) {
        if (!key || m_Slots.empty()) return nullptr;
        SSlot& slot = m_Slots[Probe(key)];
        return slot.key ? &slot.value : nullptr;
    }
    bool Contains(K const* key) { return Find(key) != nullptr; }
    // Starts reading the slot key is looked for in.
    void Prefetch(K const* key) const {
        if (!m_Slots.empty()) __builtin_prefetch(&m_Slots[Home(key)]);
    }
    // The value of key, value-initialised when key was missing (key must not be null).
    V& operator[](K* key) {
        if ((m_nCount + 1) * 2 > m_Slots.size()) Grow();
        SSlot& slot = m_Slots[Probe(key)];
        if (!slot.key) {
            slot.key = key;
            slot.value = V();
            ++m_nCount;
        }
        return slot.value;
    }
    bool Erase(K const* key) {
        if (!key || m_Slots.empty()) return false;
        size_t mask = m_Slots.size() - 1;
        size_t hole = Probe(key);
        if (!m_Slots[hole].key) return false;
        // Each later entry of the run that may stand in the hole moves there.
        for (size_t next = (hole + 1) & mask; m_Slots[next].key; next = (next + 1) & mask) {
            size_t home = Home(m_Slots[next].key);
            if (((next - home) & mask) >= ((next - hole) & mask)) {
                m_Slots[hole] = std::move(m_Slots[next]);
                hole = next;
            }
        }
        m_Slots[hole].key = nullptr;
        m_Slots[hole].value = V();
        --m_nCount;
        return true;
    }
    void Clear() {
        for (SSlot& slot : m_Slots) slot = SSlot();
        m_nCount = 0;
    }
    size_t Count() const { return m_nCount; }

private:
    struct SSlot {
        K* key = nullptr;
        V value{};
    };
    size_t Home(K const* key) const {
        uint64_t x = reinterpret_cast<uintptr_t>(key);
        x ^= x >> 33;
        x *= 0xFF51AFD7ED558CCDull;
        x ^= x >> 33;
        return static_cast<size_t>(x) & (m_Slots.size() - 1);
    }
    size_t Probe(K const* key) const {
        size_t mask = m_Slots.size() - 1;
        size_t slot = Home(key);
        while (m_Slots[slot].key && m_Slots[slot].key != key) slot = (slot + 1) & mask;
        return slot;
    }
    void Grow() {
        std::vector<SSlot> old(m_Slots.size() < 16 ? 16 : m_Slots.size() * 2);
        old.swap(m_Slots);
        for (SSlot& entry : old) {
            if (!entry.key) continue;
            m_Slots[Probe(entry.key)] = std::move(entry);
        }
    }

    std::vector<SSlot> m_Slots;  // a power of two long, at most half full
    size_t m_nCount = 0;
};
