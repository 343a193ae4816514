#pragma once
// CId: the 32-bit identifier of a persistent object in the object store.
//
// Ids are given by the store from 1 upwards and never reused within a document; -1 is the
// invalid id that every CId holds until its object is stored. Valid() is true for ids of 1
// and above.
#include <compare>
#include <cstdint>
#include <functional>

class CId {
public:
    CId() = default;
    explicit CId(int32_t value) : m_nId(value) {}

    bool Valid() const { return m_nId > 0; }
    int32_t GetValue() const { return m_nId; }
    void SetValue(int32_t value) { m_nId = value; }
    void Invalidate() { m_nId = -1; }

    friend bool operator==(const CId&, const CId&) = default;
    friend auto operator<=>(const CId&, const CId&) = default;

private:
    int32_t m_nId = -1;
};

template <> struct std::hash<CId> {
    size_t operator()(const CId& id) const noexcept { return std::hash<int32_t>()(id.GetValue()); }
};
