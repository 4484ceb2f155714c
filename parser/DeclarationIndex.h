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
#include <utility>
#include <vector>

#include "CString.h"
#include "Collections.h"
#include "NameTable.h"
#include "ParsedObjects.h"
#include "PointerMap.h"

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
    template <typename FILE>
    static void Keys(CEnum const* e, int32_t family, FILE&& file) {
        file(e->m_strName);
        if (family != kAnyName) return;
        for (void* pos = e->m_lstNames.GetHeadPosition(); pos;) file(e->m_lstNames.GetNext(pos));
    }
};

struct CStructKeys {
    static constexpr int32_t kFamilies = 3;
    static constexpr int32_t kNameOrTag = 0;
    static constexpr int32_t kFurtherName = 1;
    static constexpr int32_t kName = 2;
    static bool Accepts(CObject* object) { return object && object->GetObjTypes() == OBJ_STRUCT; }
    template <typename FILE>
    static void Keys(CStruct const* s, int32_t family, FILE&& file) {
        if (family == kNameOrTag) {
            file(s->m_strName);
            file(s->m_strTag);
        } else if (family == kName) {
            file(s->m_strName);
        } else {
            for (void* pos = s->m_lstNames.GetHeadPosition(); pos;) file(s->m_lstNames.GetNext(pos));
        }
    }
};

struct CUnionKeys {
    static constexpr int32_t kFamilies = 2;
    static constexpr int32_t kNameNoCase = 0;
    static constexpr int32_t kName = 1;
    static bool Accepts(CObject* object) { return object && object->GetObjTypes() == OBJ_UNION; }
    template <typename FILE>
    static void Keys(CUnion const* u, int32_t family, FILE&& file) {
        if (family == kNameNoCase) file(UpperCaseKey(u->m_strName));
        else file(u->m_strName);
    }
};

// The first object of the list, in list order, whose name holds pattern
// anywhere; a search of the whole list, for the rare look-up by part of a name.
template <typename T, typename KEYS>
T* FirstNameHolding(CList<CObject*> const& list, CString const& pattern) {
    for (void* pos = list.GetHeadPosition(); pos;) {
        CObject* object = list.GetNext(pos);
        if (!KEYS::Accepts(object)) continue;
        T* parsed = static_cast<T*>(object);
        if (parsed->m_strName.Find(pattern) >= 0) return parsed;
    }
    return nullptr;
}

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
        Entry const* found = m_Objects.Find(object);
        if (!found) return false;
        void* pos = found->pos;
        Unfile(object);
        list.RemoveAt(pos);
        Remember(list);
        return true;
    }
    // The object's names changed: file it again under its present names.
    void Renamed(List const& list, T* object) {
        Sync(list);
        Entry const* found = m_Objects.Find(object);
        if (!found) return;
        void* pos = found->pos;
        uint64_t seq = found->seq;
        Unfile(object);
        FileAt(object, pos, seq);
    }
    bool Contains(List const& list, T* object) {
        Sync(list);
        return m_Objects.Contains(object);
    }

    // The first (or last) object of the list filed under key in that family.
    T* First(List const& list, int32_t family, CString const& key) {
        Sync(list);
        SBucket const* filed = Filed(family, key);
        return filed ? filed->first : nullptr;
    }
    // The first object filed under key other than except.
    T* FirstExcept(List const& list, int32_t family, CString const& key, T const* except) {
        Sync(list);
        SBucket const* filed = Filed(family, key);
        if (!filed) return nullptr;
        if (filed->first != except) return filed->first;
        return filed->more && !More(*filed).empty() ? More(*filed).front().second : nullptr;
    }
    T* Last(List const& list, int32_t family, CString const& key) {
        Sync(list);
        SBucket const* filed = Filed(family, key);
        if (!filed) return nullptr;
        return filed->more && !More(*filed).empty() ? More(*filed).back().second : filed->first;
    }

private:
    // The objects filed under one name in one family, by sequence number (list
    // order). Most names name one object, which is held in place; the others
    // follow in a sorted array of m_More.
    using SFiled = std::pair<uint64_t, T*>;
    struct SBucket {
        uint64_t seq;
        T* first;       // null when nothing is filed under the name
        uint32_t more;  // 1 + its array in m_More, 0 before one is needed
    };
    // A name's buckets of every family lie together: the look-ups of one name
    // in several families then read one place. A name keeps its entry, empty
    // or not, until the index is rebuilt, so that renaming an object adds
    // nothing.
    struct SNamed {
        SBucket families[KEYS::kFamilies];
    };
    using Place = typename CNameTable<SNamed>::Id;
    // Where an object is filed: the family and its name's entry. Up to three
    // places, the usual count, are held in place; any further ones in an array
    // of their own.
    class FiledKeys {
    public:
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

    std::vector<SFiled>& More(SBucket const& bucket) { return m_More[bucket.more - 1]; }
    static typename std::vector<SFiled>::iterator Position(std::vector<SFiled>& more, uint64_t seq) {
        return std::lower_bound(more.begin(), more.end(), seq, [](SFiled const& e, uint64_t s) { return e.first < s; });
    }
    // False when seq is filed under the name already.
    bool Insert(int32_t family, Place place, uint64_t seq, T* object) {
        SBucket& bucket = m_Names.Value(place).families[family];
        if (!bucket.first) {
            bucket.seq = seq;
            bucket.first = object;
            return true;
        }
        if (seq == bucket.seq) return false;
        SFiled entry(seq, object);
        if (seq < bucket.seq) {
            std::swap(entry.first, bucket.seq);
            std::swap(entry.second, bucket.first);
        }
        if (!bucket.more) {
            m_More.emplace_back();
            bucket.more = static_cast<uint32_t>(m_More.size());
        }
        std::vector<SFiled>& more = More(bucket);
        auto at = Position(more, entry.first);
        if (at != more.end() && at->first == entry.first) return false;
        more.insert(at, entry);
        return true;
    }
    void Erase(int32_t family, Place place, uint64_t seq) {
        SBucket& bucket = m_Names.Value(place).families[family];
        if (!bucket.first) return;
        std::vector<SFiled>* more = bucket.more ? &More(bucket) : nullptr;
        if (seq == bucket.seq) {
            if (more && !more->empty()) {
                bucket.seq = more->front().first;
                bucket.first = more->front().second;
                more->erase(more->begin());
            } else {
                bucket.seq = 0;
                bucket.first = nullptr;
            }
            return;
        }
        if (!more) return;
        auto at = Position(*more, seq);
        if (at != more->end() && at->first == seq) more->erase(at);
    }

    bool Matches(List const& list) const {
        return list.GetCount() == m_nCount && list.GetHeadPosition() == m_pHead && list.GetTailPosition() == m_pTail;
    }
    void Rebuild(List const& list) {
        m_Objects.Clear();
        m_Names.Clear();
        m_More.clear();
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
        if (!object) return;
        // The places the object and its names go are fetched together, so
        // that their cache misses overlap.
        m_Objects.Prefetch(object);
        for (int32_t family = 0; family < KEYS::kFamilies; ++family) {
            KEYS::Keys(object, family, [this](CString const& key) {
                m_Names.Prefetch(NameTableHash(key.GetData(), static_cast<size_t>(key.GetLength())));
            });
        }
        if (m_Objects.Contains(object)) return;
        FileAt(object, pos, m_nNextSeq++);
    }
    void FileAt(T* object, void* pos, uint64_t seq) {
        Entry& entry = m_Objects[object];
        entry.pos = pos;
        entry.seq = seq;
        for (int32_t family = 0; family < KEYS::kFamilies; ++family) {
            KEYS::Keys(object, family, [&](CString const& key) {
                Place place = m_Names.Insert(key.GetData(), static_cast<size_t>(key.GetLength()));
                // A second name alike in one family is filed once.
                if (Insert(family, place, seq, object)) entry.keys.Add(family, place);
            });
        }
    }
    void Unfile(T* object) {
        Entry* found = m_Objects.Find(object);
        if (!found) return;
        FiledKeys const& keys = found->keys;
        for (int32_t i = 0; i < keys.Count(); ++i) Erase(keys.FamilyAt(i), keys.PlaceAt(i), found->seq);
        m_Objects.Erase(object);
    }
    SBucket const* Filed(int32_t family, CString const& key) const {
        if (family < 0 || family >= KEYS::kFamilies) return nullptr;
        SNamed const* named = m_Names.Find(key.GetData(), static_cast<size_t>(key.GetLength()));
        return named ? &named->families[family] : nullptr;
    }

    CNameTable<SNamed> m_Names;
    std::vector<std::vector<SFiled>> m_More;
    CPointerMap<T, Entry> m_Objects;
    uint64_t m_nNextSeq = 0;
    int32_t m_nCount = 0;
    void* m_pHead = nullptr;
    void* m_pTail = nullptr;
};

using CEnumIndex = CDeclarationIndex<CEnum, CEnumKeys>;
using CStructIndex = CDeclarationIndex<CStruct, CStructKeys>;
using CUnionIndex = CDeclarationIndex<CUnion, CUnionKeys>;
