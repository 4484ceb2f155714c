// Look-up indexes over the header parser's lists of enumerations, structures
// and unions. The by-name look-ups are asked once per field while a header is
// parsed, so they are answered here instead of by a walk over the list; every
// answer is the one the walk in list order would give (the first or the last
// object filed under a name). The index follows the list through the parser's
// own append, remove and rename steps; when other code changes a list directly
// (its count, head or tail differ from what the index saw), the index is
// rebuilt from the list before it answers. Names of a listed object are
// changed through the parser (or before the object is listed), never in place.
#pragma once

#include <cctype>
#include <cstdint>
#include <cstddef>
#include <algorithm>
#include <memory>
#include <unordered_map>
#include <utility>
#include <vector>

#include "CString.h"
#include "Collections.h"
#include "ParsedObjects.h"

struct CStringKeyHash {
    size_t operator()(CString const& s) const { return HashKey(s); }
};

// The text with every character put through toupper: two names are equal
// without regard to case exactly when their keys are equal.
inline CString UpperCaseKey(CString const& name) {
    CString key(name.GetData(), name.GetLength());
    for (int32_t i = 0; i < key.GetLength(); ++i) {
        key.SetAt(i, static_cast<char>(std::toupper(static_cast<unsigned char>(key.GetAt(i)))));
    }
    return key;
}

// The names each kind of object is filed under, one list per family.
struct CEnumKeys {
    static constexpr int32_t kFamilies = 2;
    static constexpr int32_t kName = 0;     // m_strName
    static constexpr int32_t kAnyName = 1;  // m_strName and every further name
    static bool Accepts(CObject* object) { return object && object->GetObjTypes() == OBJ_ENUM; }
    static void Keys(CEnum const* e, int32_t family, std::vector<CString>& keys) {
        keys.push_back(e->m_strName);
        if (family != kAnyName) return;
        for (void* pos = e->m_lstNames.GetHeadPosition(); pos;) keys.push_back(e->m_lstNames.GetNext(pos));
    }
};

struct CStructKeys {
    static constexpr int32_t kFamilies = 3;
    static constexpr int32_t kNameOrTag = 0;
    static constexpr int32_t kFurtherName = 1;
    static constexpr int32_t kName = 2;
    static bool Accepts(CObject* object) { return object && object->GetObjTypes() == OBJ_STRUCT; }
    static void Keys(CStruct const* s, int32_t family, std::vector<CString>& keys) {
        if (family == kNameOrTag) {
            keys.push_back(s->m_strName);
            keys.push_back(s->m_strTag);
        } else if (family == kName) {
            keys.push_back(s->m_strName);
        } else {
            for (void* pos = s->m_lstNames.GetHeadPosition(); pos;) keys.push_back(s->m_lstNames.GetNext(pos));
        }
    }
};

struct CUnionKeys {
    static constexpr int32_t kFamilies = 2;
    static constexpr int32_t kNameNoCase = 0;
    static constexpr int32_t kName = 1;
    static bool Accepts(CObject* object) { return object && object->GetObjTypes() == OBJ_UNION; }
    static void Keys(CUnion const* u, int32_t family, std::vector<CString>& keys) {
        keys.push_back(family == kNameNoCase ? UpperCaseKey(u->m_strName) : u->m_strName);
    }
};

template <typename T, typename KEYS>
class CDeclarationIndex {
public:
    using List = CList<CObject*>;

    // Rebuilds the index when the list no longer looks as the index left it.
    void Sync(List const& list) {
        if (!Matches(list)) Rebuild(list);
    }
    // The object has just been appended at the list's tail.
    void Appended(List const& list, T* object) {
        void* tail = list.GetTailPosition();
        void* before = tail;
        if (tail) list.GetPrev(before);
        bool inStep = tail && list.GetAt(tail) == object && list.GetCount() == m_nCount + 1 && before == m_pTail &&
                      (m_nCount == 0 || list.GetHeadPosition() == m_pHead);
        if (!inStep) {
            Rebuild(list);  // files the new object with the others
            return;
        }
        File(object, tail);
        Remember(list);
    }
    // Unlinks the object from the list and forgets it; false when it is not listed.
    bool Unlink(List& list, T* object) {
        Sync(list);
        auto found = m_Objects.find(object);
        if (found == m_Objects.end()) return false;
        void* pos = found->second.pos;
        Unfile(object);
        list.RemoveAt(pos);
        Remember(list);
        return true;
    }
    // The object's names changed: file it again under its present names.
    void Renamed(List const& list, T* object) {
        Sync(list);
        auto found = m_Objects.find(object);
        if (found == m_Objects.end()) return;
        void* pos = found->second.pos;
        uint64_t seq = found->second.seq;
        Unfile(object);
        FileAt(object, pos, seq);
    }
    bool Contains(List const& list, T* object) {
        Sync(list);
        return m_Objects.count(object) != 0;
    }

    // The first (or last) object of the list filed under key in that family.
    T* First(List const& list, int32_t family, CString const& key) {
        Sync(list);
        auto const* filed = Filed(family, key);
        return filed ? filed->Front() : nullptr;
    }
    // The first object filed under key other than except.
    T* FirstExcept(List const& list, int32_t family, CString const& key, T const* except) {
        Sync(list);
        auto const* filed = Filed(family, key);
        return filed ? filed->FirstExcept(except) : nullptr;
    }
    T* Last(List const& list, int32_t family, CString const& key) {
        Sync(list);
        auto const* filed = Filed(family, key);
        return filed ? filed->Back() : nullptr;
    }

private:
    // The objects filed under one key, by sequence number (list order). Most
    // keys name one object, which is held in place; the others follow in a
    // sorted array.
    class Bucket {
    public:
        using Filed = std::pair<uint64_t, T*>;
        bool Empty() const { return m_first.second == nullptr; }
        T* Front() const { return m_first.second; }
        T* Back() const { return m_more.empty() ? m_first.second : m_more.back().second; }
        T* FirstExcept(T const* except) const {
            if (m_first.second != except) return m_first.second;
            return m_more.empty() ? nullptr : m_more.front().second;
        }
        // False when seq is filed here already.
        bool Insert(uint64_t seq, T* object) {
            if (Empty()) {
                m_first = Filed(seq, object);
                return true;
            }
            if (seq == m_first.first) return false;
            Filed entry(seq, object);
            if (seq < m_first.first) std::swap(entry, m_first);
            auto at = Position(entry.first);
            if (at != m_more.end() && at->first == entry.first) return false;
            m_more.insert(at, entry);
            return true;
        }
        void Erase(uint64_t seq) {
            if (Empty()) return;
            if (seq == m_first.first) {
                m_first = m_more.empty() ? Filed(0, nullptr) : m_more.front();
                if (!m_more.empty()) m_more.erase(m_more.begin());
                return;
            }
            auto at = Position(seq);
            if (at != m_more.end() && at->first == seq) m_more.erase(at);
        }

    private:
        typename std::vector<Filed>::iterator Position(uint64_t seq) {
            return std::lower_bound(m_more.begin(), m_more.end(), seq,
                                    [](Filed const& e, uint64_t s) { return e.first < s; });
        }
        Filed m_first{0, nullptr};
        std::vector<Filed> m_more;
    };
    using Family = std::unordered_map<CString, Bucket, CStringKeyHash>;
    // Where an object is filed: the family and its element (elements of an
    // unordered_map keep their address), so no name is copied twice. Up to
    // three places, the usual count, are held in place; any further ones in an
    // array of their own.
    class FiledKeys {
    public:
        using Place = typename Family::value_type*;
        void Add(int32_t family, Place place) {
            if (m_nCount < kInPlace) {
                m_families[m_nCount] = static_cast<int8_t>(family);
                m_places[m_nCount] = place;
            } else {
                if (!m_pMore) m_pMore = std::make_unique<std::vector<std::pair<int32_t, Place>>>();
                m_pMore->emplace_back(family, place);
            }
            ++m_nCount;
        }
        int32_t Count() const { return m_nCount; }
        int32_t FamilyAt(int32_t i) const { return i < kInPlace ? m_families[i] : (*m_pMore)[i - kInPlace].first; }
        Place PlaceAt(int32_t i) const { return i < kInPlace ? m_places[i] : (*m_pMore)[i - kInPlace].second; }

    private:
        static constexpr int32_t kInPlace = 3;
        Place m_places[kInPlace] = {};
        int8_t m_families[kInPlace] = {};
        int32_t m_nCount = 0;
        std::unique_ptr<std::vector<std::pair<int32_t, Place>>> m_pMore;
    };
    struct Entry {
        void* pos = nullptr;
        uint64_t seq = 0;
        FiledKeys keys;
    };

    bool Matches(List const& list) const {
        return list.GetCount() == m_nCount && list.GetHeadPosition() == m_pHead && list.GetTailPosition() == m_pTail;
    }
    void Rebuild(List const& list) {
        m_Objects.clear();
        for (auto& family : m_Families) family.clear();
        for (void* pos = list.GetHeadPosition(); pos;) {
            void* at = pos;
            CObject* object = list.GetNext(pos);
            if (KEYS::Accepts(object)) File(static_cast<T*>(object), at);
        }
        Remember(list);
    }
    void Remember(List const& list) {
        m_nCount = list.GetCount();
        m_pHead = list.GetHeadPosition();
        m_pTail = list.GetTailPosition();
    }
    void File(T* object, void* pos) {
        if (m_Objects.count(object)) return;
        FileAt(object, pos, m_nNextSeq++);
    }
    void FileAt(T* object, void* pos, uint64_t seq) {
        Entry& entry = m_Objects[object];
        entry.pos = pos;
        entry.seq = seq;
        std::vector<CString> keys;
        for (int32_t family = 0; family < KEYS::kFamilies; ++family) {
            keys.clear();
            KEYS::Keys(object, family, keys);
            for (CString const& key : keys) {
                auto& filed = *m_Families[family].try_emplace(key).first;
                // A second name alike in one family is filed once.
                if (filed.second.Insert(seq, object)) entry.keys.Add(family, &filed);
            }
        }
    }
    void Unfile(T* object) {
        auto found = m_Objects.find(object);
        if (found == m_Objects.end()) return;
        uint64_t seq = found->second.seq;
        FiledKeys const& keys = found->second.keys;
        for (int32_t i = 0; i < keys.Count(); ++i) {
            Bucket& bucket = keys.PlaceAt(i)->second;
            bucket.Erase(seq);
            if (!bucket.Empty()) continue;
            CString key = keys.PlaceAt(i)->first;  // the element goes with the erase
            m_Families[keys.FamilyAt(i)].erase(key);
        }
        m_Objects.erase(found);
    }
    Bucket const* Filed(int32_t family, CString const& key) const {
        if (family < 0 || family >= KEYS::kFamilies) return nullptr;
        auto found = m_Families[family].find(key);
        return found == m_Families[family].end() ? nullptr : &found->second;
    }

    Family m_Families[KEYS::kFamilies];
    std::unordered_map<T*, Entry> m_Objects;
    uint64_t m_nNextSeq = 0;
    int32_t m_nCount = 0;
    void* m_pHead = nullptr;
    void* m_pTail = nullptr;
};

using CEnumIndex = CDeclarationIndex<CEnum, CEnumKeys>;
using CStructIndex = CDeclarationIndex<CStruct, CStructKeys>;
using CUnionIndex = CDeclarationIndex<CUnion, CUnionKeys>;
