// An open-addressing table of names for the header parser's look-up indexes.
// A large header files some hundred thousand names; chained maps spend most of
// their time there in cache misses and in one allocation per entry, so this
// table keeps its slots in one array, each with its name's hash, and its
// entries (a value and its name side by side) one after another in one block;
// a small filter answers most look-ups of names never filed. A name, once
// filed, keeps its entry until Clear.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>
#include <type_traits>
#include <vector>

inline uint32_t NameTableHash(char const* text, size_t length) {
    uint64_t h = 0x9E3779B97F4A7C15ull ^ length;
    auto mix = [&h](uint64_t word) {
        h = (h ^ word) * 0xBF58476D1CE4E5B9ull;
        h ^= h >> 31;
    };
    for (; length >= 8; text += 8, length -= 8) {
        uint64_t word;
        std::memcpy(&word, text, 8);
        mix(word);
    }
    if (length > 0) {
        uint64_t word = 0;
        std::memcpy(&word, text, length);
        mix(word);
    }
    h ^= h >> 29;
    h *= 0x94D049BB133111EBull;
    return static_cast<uint32_t>(h >> 32);
}

// Names (any bytes, NULs too) with a value each. An entry is known by its id,
// which stays valid, with the value's address, until the next Insert or Clear
// (the value itself keeps its id until Clear).
template <typename V>
class CNameTable {
    static_assert(std::is_trivially_copyable<V>::value && alignof(V) <= 8, "values are kept in a byte block");

public:
    using Id = uint32_t;

    // The id of the entry of name, created with a value-initialised value when
    // missing; inserted tells which.
    Id Insert(char const* text, size_t length, bool* inserted = nullptr) {
        return Insert(text, length, NameTableHash(text, length), inserted);
    }
    // As above, with the name's NameTableHash already known.
    Id Insert(char const* text, size_t length, uint32_t hash, bool* inserted = nullptr) {
        size_t slot = 0;
        if (!m_Slots.empty()) {
            slot = Probe(text, length, hash);
            if (m_Slots[slot] != 0) {
                if (inserted) *inserted = false;
                return IdOf(m_Slots[slot]);
            }
        }
        if ((m_nCount + 1) * 2 > m_Slots.size()) {
            Grow();
            slot = Probe(text, length, hash);
        }
        Id id = Append(text, length);
        m_Slots[slot] = static_cast<uint64_t>(hash) << 32 | (static_cast<uint64_t>(id) + 1);
        Mark(hash);
        ++m_nCount;
        if (inserted) *inserted = true;
        return id;
    }
    // Starts reading the slot and filter word of a name of that hash, so that
    // a loop filing many names waits for memory once for several of them.
    void Prefetch(uint32_t hash) const {
        if (m_Slots.empty()) return;
        __builtin_prefetch(&m_Slots[hash & (m_Slots.size() - 1)]);
        __builtin_prefetch(&m_Filter[FilterIndex(hash)]);
    }
    V* Find(char const* text, size_t length) {
        if (m_Slots.empty()) return nullptr;
        uint32_t hash = NameTableHash(text, length);
        if (!MayHold(hash)) return nullptr;
        uint64_t filed = m_Slots[Probe(text, length, hash)];
        return filed ? &Value(IdOf(filed)) : nullptr;
    }
    V const* Find(char const* text, size_t length) const { return const_cast<CNameTable*>(this)->Find(text, length); }

    V& Value(Id id) { return *reinterpret_cast<V*>(m_Block.data() + static_cast<size_t>(id) * 8); }
    V const& Value(Id id) const { return *reinterpret_cast<V const*>(m_Block.data() + static_cast<size_t>(id) * 8); }
    // The name of an entry, not terminated.
    char const* Text(Id id) const { return reinterpret_cast<char const*>(m_Block.data() + TextAt(id)); }
    size_t Length(Id id) const { return Head(id).length; }

    size_t Count() const { return m_nCount; }
    // Forgets every entry; the memory is kept for the next ones.
    void Clear() {
        std::fill(m_Slots.begin(), m_Slots.end(), uint64_t(0));
        std::fill(m_Filter.begin(), m_Filter.end(), uint64_t(0));
        m_Block.clear();
        m_nCount = 0;
    }

private:
    // An entry: the value, then the name's length in a word of its own, then its bytes.
    struct SHead {
        uint64_t length;
    };
    static constexpr size_t kValueWords = (sizeof(V) + 7) / 8;

    SHead const& Head(Id id) const {
        return *reinterpret_cast<SHead const*>(m_Block.data() + (static_cast<size_t>(id) + kValueWords) * 8);
    }
    size_t TextAt(Id id) const { return (static_cast<size_t>(id) + kValueWords + 1) * 8; }
    static Id IdOf(uint64_t filed) { return static_cast<Id>((filed & 0xFFFFFFFFu) - 1); }
    static uint32_t HashOf(uint64_t filed) { return static_cast<uint32_t>(filed >> 32); }

    // Two bits of one filter word per name: most names asked for and never
    // filed are turned away there, in an array a sixteenth of the slots' size
    // that stays in the cache, without reading their slot.
    static uint64_t FilterBits(uint32_t hash) {
        return (uint64_t(1) << ((hash >> 20) & 63)) | (uint64_t(1) << (hash >> 26));
    }
    size_t FilterIndex(uint32_t hash) const {
        return static_cast<size_t>(static_cast<uint64_t>(hash * 0x9E3779B1u) >> m_nFilterShift);
    }
    uint64_t& FilterWord(uint32_t hash) { return m_Filter[FilterIndex(hash)]; }
    uint64_t FilterWord(uint32_t hash) const { return m_Filter[FilterIndex(hash)]; }
    bool MayHold(uint32_t hash) const { return (FilterWord(hash) & FilterBits(hash)) == FilterBits(hash); }
    void Mark(uint32_t hash) { FilterWord(hash) |= FilterBits(hash); }

    // The slot holding name, or the empty slot where it would go.
    size_t Probe(char const* text, size_t length, uint32_t hash) const {
        if (m_Slots.empty()) return 0;
        size_t mask = m_Slots.size() - 1;
        for (size_t slot = hash & mask;; slot = (slot + 1) & mask) {
            uint64_t filed = m_Slots[slot];
            if (filed == 0) return slot;
            if (HashOf(filed) != hash) continue;
            Id id = IdOf(filed);
            if (Head(id).length == length &&
                (length == 0 || std::memcmp(m_Block.data() + TextAt(id), text, length) == 0)) {
                return slot;
            }
        }
    }
    Id Append(char const* text, size_t length) {
        size_t at = m_Block.size();
        size_t words = kValueWords + 1 + (length + 7) / 8;
        if (at / 8 + words >= UINT32_MAX) throw std::bad_alloc();  // ids must fit a slot
        m_Block.resize(at + words * 8);
        unsigned char* entry = m_Block.data() + at;
        new (entry) V();
        SHead head{length};
        std::memcpy(entry + kValueWords * 8, &head, sizeof head);
        if (length > 0) std::memcpy(entry + (kValueWords + 1) * 8, text, length);
        return static_cast<Id>(at / 8);
    }
    void Grow() { Rehash(m_Slots.size() < 16 ? 16 : m_Slots.size() * 2); }
    void Rehash(size_t slots) {
        std::vector<uint64_t> old(slots, 0);
        old.swap(m_Slots);
        size_t words = slots < 16 ? 1 : slots / 16;
        m_Filter.assign(words, 0);
        m_nFilterShift = 32;
        while (words > 1) words /= 2, --m_nFilterShift;
        size_t mask = slots - 1;
        for (uint64_t filed : old) {
            if (filed == 0) continue;
            size_t slot = HashOf(filed) & mask;
            while (m_Slots[slot] != 0) slot = (slot + 1) & mask;
            m_Slots[slot] = filed;
            Mark(HashOf(filed));
        }
    }

    // The hash of a name in the high half, its entry id + 1 in the low one; 0
    // when free. A power of two long, at most half full.
    std::vector<uint64_t> m_Slots;
    std::vector<uint64_t> m_Filter;  // a power of two long, at least one word
    int32_t m_nFilterShift = 32;     // 32 less the bits of a filter word's index
    // Entries one after another, each starting on an 8-byte boundary. The
    // block of a vector is aligned for any fundamental type.
    std::vector<unsigned char> m_Block;
    size_t m_nCount = 0;
};
