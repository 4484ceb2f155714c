// The container templates of the tool: a doubly linked list (MyList, with the
// sorted pointer list MyListPtr), a chained hash map (MyMap) and a growable array
// (MyArray). Iteration uses opaque positions (void*, a node or element address);
// a null position ends an iteration. Lists keep insertion order; maps iterate by
// bucket and then chain order, which the missing-items report relies on.
#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>
#include <utility>

#include "CString.h"

constexpr int32_t kDefaultBucketCount = 13931;

template <typename T>
class MyList {
    struct Node {
        T value;
        Node* prev;
        Node* next;
    };

public:
    MyList() = default;
    MyList(MyList const& other) { CopyFrom(other); }
    MyList& operator=(MyList const& other) {
        if (this != &other) {
            RemoveAll();
            CopyFrom(other);
        }
        return *this;
    }
    ~MyList() { RemoveAll(); }

    void* AddTail(T const& value) {
        Node* node = new Node{value, m_pTail, nullptr};
        if (m_pTail) m_pTail->next = node;
        else m_pHead = node;
        m_pTail = node;
        ++m_nCount;
        return node;
    }
    void* AddHead(T const& value) {
        Node* node = new Node{value, nullptr, m_pHead};
        if (m_pHead) m_pHead->prev = node;
        else m_pTail = node;
        m_pHead = node;
        ++m_nCount;
        return node;
    }
    // Inserts before pos (at the tail when pos is null); returns the new node.
    void* InsertBefore(void* pos, T const& value) {
        Node* at = static_cast<Node*>(pos);
        if (!at) return AddTail(value);
        if (at == m_pHead) return AddHead(value);
        Node* node = new Node{value, at->prev, at};
        at->prev->next = node;
        at->prev = node;
        ++m_nCount;
        return node;
    }

    void* GetHeadPosition() const { return m_pHead; }
    void* GetTailPosition() const { return m_pTail; }
    // Returns the value at pos and moves pos to the next node (null after the last).
    T& GetNext(void*& pos) const {
        Node* node = static_cast<Node*>(pos);
        pos = node->next;
        return node->value;
    }
    T& GetPrev(void*& pos) const {
        Node* node = static_cast<Node*>(pos);
        pos = node->prev;
        return node->value;
    }
    T& GetAt(void* pos) const { return static_cast<Node*>(pos)->value; }
    T& GetHead() const { return m_pHead->value; }
    T& GetTail() const { return m_pTail->value; }
    int32_t GetCount() const { return m_nCount; }
    bool IsEmpty() const { return m_nCount == 0; }

    // Unlinks and frees the node at pos; pos becomes null.
    void RemoveAt(void*& pos) {
        Node* node = static_cast<Node*>(pos);
        if (!node) return;
        if (node->prev) node->prev->next = node->next;
        else m_pHead = node->next;
        if (node->next) node->next->prev = node->prev;
        else m_pTail = node->prev;
        delete node;
        --m_nCount;
        pos = nullptr;
    }
    void Remove(void*& pos) { RemoveAt(pos); }
    T RemoveHead() {
        void* pos = m_pHead;
        T value = std::move(m_pHead->value);
        RemoveAt(pos);
        return value;
    }
    T RemoveTail() {
        void* pos = m_pTail;
        T value = std::move(m_pTail->value);
        RemoveAt(pos);
        return value;
    }
    void RemoveAll() {
        Node* node = m_pHead;
        while (node) {
            Node* next = node->next;
            delete node;
            node = next;
        }
        m_pHead = m_pTail = nullptr;
        m_nCount = 0;
    }
    // The position of the first element equal to value, or null.
    void* Find(T const& value) const {
        for (Node* node = m_pHead; node; node = node->next) {
            if (node->value == value) return node;
        }
        return nullptr;
    }

private:
    void CopyFrom(MyList const& other) {
        for (Node* node = other.m_pHead; node; node = node->next) AddTail(node->value);
    }

    Node* m_pHead = nullptr;
    Node* m_pTail = nullptr;
    int32_t m_nCount = 0;
};

template <typename T, typename ARG = T>
class CList : public MyList<T> {};

class CStringList : public MyList<CString> {};

// A list of pointers kept sorted by the pointed-to objects' operator<.
template <typename T>
class MyListPtr : public MyList<T*> {
public:
    // Inserts before the first element that the new one is less than; equal
    // values go after those already present; otherwise at the tail.
    void* AddSort(T* value) {
        for (void* pos = this->GetHeadPosition(); pos;) {
            void* here = pos;
            T* current = this->GetNext(pos);
            if (*value < *current) return this->InsertBefore(here, value);
        }
        return this->AddTail(value);
    }
};

template <typename T, typename ARG = T>
class CListPtr : public MyListPtr<T> {};

inline uint32_t HashKey(CString const& key) {
    uint32_t h = 0;
    char const* p = key.GetData();
    int32_t n = key.GetLength();
    for (int32_t i = 0; i < n; ++i) h = h * 33u + static_cast<uint32_t>(static_cast<int32_t>(static_cast<signed char>(p[i])));
    return h;
}
inline uint32_t HashKey(int32_t key) { return static_cast<uint32_t>(key); }

template <typename K, typename V>
class MyMap {
    struct Node {
        K key;
        V value;
        Node* next;
    };

public:
    explicit MyMap(int32_t buckets = kDefaultBucketCount)
        : m_nBuckets(buckets > 0 ? buckets : kDefaultBucketCount),
          m_pTable(new Node*[static_cast<size_t>(m_nBuckets)]()) {}
    MyMap(MyMap const&) = delete;
    MyMap& operator=(MyMap const&) = delete;
    virtual ~MyMap() {
        RemoveAll();
        delete[] m_pTable;
    }

    virtual uint32_t Hash(K const& key) const { return HashKey(key); }

    // Lets the table grow with its entries (to about twice the buckets whenever
    // the entries outnumber them), for an index whose bucket order no output
    // reads: look-ups then stay short however large a header or database is.
    // A chain keeps its order when it is spread, so of two nodes with one key
    // the older still answers first.
    void EnableGrowth() { m_bGrows = true; }

    // The last node of a chain is never compared: when the key already sits
    // there (in a chain of two or more), a second node with the same key is
    // appended and Lookup keeps finding the older value. Kept on purpose so that
    // look-ups answer exactly as the stored databases were always indexed.
    void SetAt(K const& key, V const& value) { Set(key, value); }
    // The same, taking the key over when a node is added.
    void SetAt(K&& key, V const& value) { Set(std::move(key), value); }

    V& operator[](K const& key) {
        Node*& head = m_pTable[Bucket(key)];
        Node* last = nullptr;
        for (Node* node = head; node; node = node->next) {
            if (node->key == key) return node->value;
            last = node;
        }
        Node* created = new Node{key, V(), nullptr};
        if (last) last->next = created;
        else head = created;
        ++m_nCount;
        GrowIfFull();  // moves nodes between chains, never the nodes themselves
        return created->value;
    }

    bool Lookup(K const& key, V& value) const {
        for (Node* node = m_pTable[Bucket(key)]; node; node = node->next) {
            if (node->key == key) {
                value = node->value;
                return true;
            }
        }
        return false;
    }
    // Like Lookup, without copying the value out.
    V const* Find(K const& key) const {
        for (Node* node = m_pTable[Bucket(key)]; node; node = node->next) {
            if (node->key == key) return &node->value;
        }
        return nullptr;
    }

    bool RemoveKey(K const& key) {
        Node** link = &m_pTable[Bucket(key)];
        for (Node* node = *link; node; link = &node->next, node = node->next) {
            if (node->key == key) {
                *link = node->next;
                delete node;
                --m_nCount;
                return true;
            }
        }
        return false;
    }
    // Removes the first node whose key and value both match; false when none does.
    bool RemoveKeyValue(K const& key, V const& value) {
        Node** link = &m_pTable[Bucket(key)];
        for (Node* node = *link; node; link = &node->next, node = node->next) {
            if (node->key == key && node->value == value) {
                *link = node->next;
                delete node;
                --m_nCount;
                return true;
            }
        }
        return false;
    }

    void RemoveAll() {
        if (m_nCount == 0) return;
        for (int32_t b = 0; b < m_nBuckets; ++b) {
            Node* node = m_pTable[b];
            while (node) {
                Node* next = node->next;
                delete node;
                node = next;
            }
            m_pTable[b] = nullptr;
        }
        m_nCount = 0;
    }
    void clear() { RemoveAll(); }

    int32_t GetCount() const { return m_nCount; }
    bool IsEmpty() const { return m_nCount == 0; }
    int32_t GetBucketCount() const { return m_nBuckets; }

    void* GetStartPosition() const { return FirstNodeFrom(0); }
    void GetNextAssoc(void*& pos, K& key, V& value) const {
        Node* node = static_cast<Node*>(pos);
        key = node->key;
        value = node->value;
        pos = node->next ? node->next : FirstNodeFrom(Bucket(node->key) + 1);
    }

private:
    int32_t Bucket(K const& key) const { return static_cast<int32_t>(Hash(key) % static_cast<uint32_t>(m_nBuckets)); }
    Node* FirstNodeFrom(int32_t bucket) const {
        if (m_nCount == 0) return nullptr;
        for (int32_t b = bucket; b < m_nBuckets; ++b) {
            if (m_pTable[b]) return m_pTable[b];
        }
        return nullptr;
    }

    template <typename KK>
    void Set(KK&& key, V const& value) {
        Node*& head = m_pTable[Bucket(key)];
        if (!head) {
            head = new Node{std::forward<KK>(key), value, nullptr};
            ++m_nCount;
            GrowIfFull();
            return;
        }
        if (head->key == key) {
            head->value = value;
            return;
        }
        Node* node = head;
        while (node->next) {
            if (node->key == key) {
                node->value = value;
                return;
            }
            node = node->next;
        }
        node->next = new Node{std::forward<KK>(key), value, nullptr};
        ++m_nCount;
        GrowIfFull();
    }

    void GrowIfFull() {
        if (!m_bGrows || m_nCount <= m_nBuckets || m_nBuckets > INT32_MAX / 4) return;
        int32_t buckets = m_nBuckets * 2 + 1;
        Node** table = new Node*[static_cast<size_t>(buckets)]();
        Node** tails = new Node*[static_cast<size_t>(buckets)]();
        for (int32_t b = 0; b < m_nBuckets; ++b) {
            for (Node* node = m_pTable[b]; node;) {
                Node* next = node->next;
                uint32_t to = Hash(node->key) % static_cast<uint32_t>(buckets);
                node->next = nullptr;
                if (tails[to]) tails[to]->next = node;
                else table[to] = node;
                tails[to] = node;
                node = next;
            }
        }
        delete[] tails;
        delete[] m_pTable;
        m_pTable = table;
        m_nBuckets = buckets;
    }

    int32_t m_nBuckets;
    Node** m_pTable;
    int32_t m_nCount = 0;
    bool m_bGrows = false;
};

template <typename K, typename KARG, typename V, typename VARG>
class CMap : public MyMap<K, V> {
public:
    explicit CMap(int32_t buckets = kDefaultBucketCount) : MyMap<K, V>(buckets) {}
};

template <typename V>
class CMapStringTo : public MyMap<CString, V> {
public:
    explicit CMapStringTo(int32_t buckets = kDefaultBucketCount) : MyMap<CString, V>(buckets) {}
};

class CMapStringToString : public CMapStringTo<CString> {
public:
    explicit CMapStringToString(int32_t buckets = kDefaultBucketCount) : CMapStringTo<CString>(buckets) {}
};

class CMapStringToPtr : public CMapStringTo<void*> {
public:
    explicit CMapStringToPtr(int32_t buckets = kDefaultBucketCount) : CMapStringTo<void*>(buckets) {}
};

// Only the elements below the size are constructed: the slots past it are raw
// memory, so growing, adding and trimming an array of large records builds no
// element that is not used.
template <typename T>
class MyArray {
public:
    explicit MyArray(uint32_t growBy = 50) : m_nGrowBy(growBy ? growBy : 1) {}
    MyArray(MyArray const& other) : m_nGrowBy(other.m_nGrowBy) { CopyFrom(other); }
    MyArray& operator=(MyArray const& other) {
        if (this != &other) {
            RemoveAll();
            CopyFrom(other);
        }
        return *this;
    }
    ~MyArray() {
        Destroy(0, m_nSize);
        ::operator delete(m_pData);
    }

    // value may live in this array.
    T* Add(T const& value) { return Emplace(value); }
    T* Add(T&& value) { return Emplace(std::move(value)); }
    T* Add() { return Emplace(); }
    // Appends an element built from args.
    template <typename... A>
    T* Emplace(A&&... args) {
        if (m_nSize < m_nCapacity) return new (&m_pData[m_nSize++]) T(std::forward<A>(args)...);
        // The new element is built before the old block goes, since args may
        // refer to an element of it.
        uint32_t capacity = GrownCapacity(m_nSize + 1);
        T* block = Allocate(capacity);
        T* added = new (&block[m_nSize]) T(std::forward<A>(args)...);
        MoveTo(block, capacity);
        ++m_nSize;
        return added;
    }

    uint32_t GetSize() const { return m_nSize; }
    uint32_t GetCapacity() const { return m_nCapacity; }
    // Makes room for n elements in all (exactly n when it has to grow), so
    // that adding that many moves no element; nothing is added.
    void Reserve(uint32_t n) {
        if (n > m_nCapacity) MoveTo(Allocate(n), n);
    }
    T& GetAt(uint32_t i) const { return m_pData[i]; }
    void SetSize(uint32_t n) {
        if (n < m_nSize) {
            Destroy(n, m_nSize);
            m_nSize = n;
        }
        Fill(n);
    }

    void* GetHeadPosition() const { return m_nSize ? m_pData : nullptr; }
    T& GetNext(void*& pos) const {
        T* element = static_cast<T*>(pos);
        uint32_t index = static_cast<uint32_t>(element - m_pData);
        pos = index + 1 < m_nSize ? element + 1 : nullptr;
        return *element;
    }

    // At or past the size, the array grows until it holds i and the size becomes i+1.
    T& operator[](uint32_t i) {
        if (i >= m_nSize) Fill(i + 1);
        return m_pData[i];
    }
    T const& operator[](uint32_t i) const { return m_pData[i]; }

    T& GetTail() const { return m_pData[m_nSize - 1]; }
    bool IsEmpty() const { return m_nSize == 0; }
    void RemoveTail() {
        if (m_nSize) m_pData[--m_nSize].~T();
    }
    // Removes first..last inclusive (last is an index, not a count); last 0
    // means first alone; the two are swapped when last is below first; nothing
    // is removed (false) when the larger index is not below the size.
    bool RemoveAt(uint32_t first, uint32_t last) {
        if (last == 0) last = first;
        if (last < first) std::swap(first, last);
        if (last >= m_nSize) return false;
        uint32_t removed = last - first + 1;
        for (uint32_t i = last + 1; i < m_nSize; ++i) m_pData[i - removed] = std::move(m_pData[i]);
        Destroy(m_nSize - removed, m_nSize);
        m_nSize -= removed;
        return true;
    }
    // Inserts before index i (appends when i is at or past the size).
    void InsertAt(uint32_t i, T const& value) {
        T copy(value);
        if (i >= m_nSize) {
            (*this)[i] = std::move(copy);
            return;
        }
        Emplace(std::move(m_pData[m_nSize - 1]));
        for (uint32_t k = m_nSize - 2; k > i; --k) m_pData[k] = std::move(m_pData[k - 1]);
        m_pData[i] = std::move(copy);
    }
    void RemoveAll() {
        Destroy(0, m_nSize);
        m_nSize = 0;
    }
    // Gives back the slots past the size, for an array that is complete: a
    // large database holds many short field lists.
    void FreeExtra() {
        if (m_nCapacity == m_nSize) return;
        if (!m_nSize) {
            ::operator delete(m_pData);
            m_pData = nullptr;
            m_nCapacity = 0;
            return;
        }
        MoveTo(Allocate(m_nSize), m_nSize);
    }

private:
    // Small arrays double from 4 up to the growth step, so that the many short
    // field lists of a large database do not each hold 50 slots; from the growth
    // step on, the capacity at least doubles (for CArray the 51st Add raises it
    // from 50 to 100), so that building a long array stays linear.
    static uint64_t NextCapacity(uint64_t capacity, uint64_t step) {
        if (capacity < step) return capacity * 2 < 4 ? (step < 4 ? step : 4) : (capacity * 2 < step ? capacity * 2 : step);
        return capacity + (capacity > step ? capacity : step);
    }
    uint32_t GrownCapacity(uint32_t needed) const {
        uint64_t capacity = m_nCapacity;
        while (capacity < needed) capacity = NextCapacity(capacity, m_nGrowBy);
        if (capacity > UINT32_MAX / 2) capacity = needed;
        return static_cast<uint32_t>(capacity);
    }
    // Raw slots for capacity elements.
    static T* Allocate(uint32_t capacity) {
        return static_cast<T*>(::operator new(static_cast<size_t>(capacity) * sizeof(T)));
    }
    // Moves the elements into block, of capacity slots, and makes it the array's block.
    void MoveTo(T* block, uint32_t capacity) {
        for (uint32_t i = 0; i < m_nSize; ++i) {
            new (&block[i]) T(std::move(m_pData[i]));
            m_pData[i].~T();
        }
        ::operator delete(m_pData);
        m_pData = block;
        m_nCapacity = capacity;
    }
    void EnsureCapacity(uint32_t needed) {
        if (needed <= m_nCapacity) return;
        uint32_t capacity = GrownCapacity(needed);
        MoveTo(Allocate(capacity), capacity);
    }
    // Grows the size to n with empty elements.
    void Fill(uint32_t n) {
        EnsureCapacity(n);
        for (; m_nSize < n; ++m_nSize) new (&m_pData[m_nSize]) T();
    }
    void Destroy(uint32_t first, uint32_t end) {
        for (uint32_t i = first; i < end; ++i) m_pData[i].~T();
    }
    void CopyFrom(MyArray const& other) {
        EnsureCapacity(other.m_nSize);
        for (; m_nSize < other.m_nSize; ++m_nSize) new (&m_pData[m_nSize]) T(other.m_pData[m_nSize]);
    }

    T* m_pData = nullptr;
    uint32_t m_nSize = 0;
    uint32_t m_nCapacity = 0;
    uint32_t m_nGrowBy;
};

template <typename T, typename ARG = T const&>
class CArray : public MyArray<T> {
public:
    CArray() : MyArray<T>(50) {}
};

class CUIntArray : public MyArray<uint32_t> {
public:
    CUIntArray() : MyArray<uint32_t>(50) {}
};

class CStringArray : public MyArray<CString> {
public:
    CStringArray() : MyArray<CString>(50) {}
};
