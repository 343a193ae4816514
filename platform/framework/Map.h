#pragma once
// CMap: the framework's associative container. Iteration runs in ascending key order, so
// everything built from a map is deterministic.
#include <map>

template <class KEY, class ARG_KEY, class VALUE, class ARG_VALUE> class CMap {
public:
    int GetCount() const { return static_cast<int>(m_map.size()); }
    int GetSize() const { return GetCount(); }
    bool IsEmpty() const { return m_map.empty(); }

    /// True and the value when the key is present; the out-argument is untouched otherwise.
    bool Lookup(ARG_KEY key, VALUE& value) const {
        auto it = m_map.find(key);
        if (it == m_map.end())
            return false;
        value = it->second;
        return true;
    }
    void SetAt(ARG_KEY key, ARG_VALUE value) { m_map[key] = value; }
    VALUE& operator[](ARG_KEY key) { return m_map[key]; }
    bool RemoveKey(ARG_KEY key) { return m_map.erase(key) > 0; }
    void RemoveAll() { m_map.clear(); }

    auto begin() const { return m_map.begin(); }
    auto end() const { return m_map.end(); }
    auto begin() { return m_map.begin(); }
    auto end() { return m_map.end(); }

    bool operator==(const CMap& other) const { return m_map == other.m_map; }

private:
    std::map<KEY, VALUE> m_map;
};
