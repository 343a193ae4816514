#pragma once
// Growable arrays of the framework: CArray (plain values) and OCArray (objects by value).
//
// Every indexed access is checked and raises CInvalidArgException; a negative size is an
// invalid argument and a failed allocation raises CMemoryException.
#include "Exceptions.h"

#include <algorithm>
#include <new>
#include <vector>

template <class TYPE, class ARG_TYPE = const TYPE&> class CArray {
public:
    CArray() = default;
    CArray(const CArray&) = default;
    CArray& operator=(const CArray&) = default;
    CArray(CArray&&) noexcept = default;
    CArray& operator=(CArray&&) noexcept = default;
    virtual ~CArray() = default;

    int GetSize() const { return static_cast<int>(m_data.size()); }
    int GetCount() const { return GetSize(); }
    int GetUpperBound() const { return GetSize() - 1; }
    bool IsEmpty() const { return m_data.empty(); }

    void SetSize(int n) {
        if (n < 0)
            throw CInvalidArgException("CArray::SetSize: negative size");
        try {
            m_data.resize(static_cast<size_t>(n));
        } catch (const std::bad_alloc&) {
            throw CMemoryException();
        }
    }
    void RemoveAll() { m_data.clear(); }
    void FreeExtra() { m_data.shrink_to_fit(); }
    void Reserve(int n) {
        if (n > 0)
            m_data.reserve(static_cast<size_t>(n));
    }

    const TYPE& GetAt(int i) const { return m_data[Check(i)]; }
    TYPE& ElementAt(int i) { return m_data[Check(i)]; }
    void SetAt(int i, ARG_TYPE v) { m_data[Check(i)] = v; }
    const TYPE& operator[](int i) const { return m_data[Check(i)]; }
    TYPE& operator[](int i) { return m_data[Check(i)]; }

    /// Sets element i, growing the array first when i lies beyond its end.
    void SetAtGrow(int i, ARG_TYPE v) {
        if (i < 0)
            throw CInvalidArgException("CArray::SetAtGrow: negative index");
        if (i >= GetSize())
            SetSize(i + 1);
        m_data[static_cast<size_t>(i)] = v;
    }
    int Add(ARG_TYPE v) {
        m_data.push_back(v);
        return GetSize() - 1;
    }
    void InsertAt(int i, ARG_TYPE v, int count = 1) {
        if (i < 0 || count < 0)
            throw CInvalidArgException("CArray::InsertAt: negative index");
        if (i > GetSize())
            SetSize(i);
        m_data.insert(m_data.begin() + i, static_cast<size_t>(count), v);
    }
    void RemoveAt(int i, int count = 1) {
        if (count < 0 || i < 0 || i + count > GetSize())
            throw CInvalidArgException("CArray::RemoveAt: index out of range");
        m_data.erase(m_data.begin() + i, m_data.begin() + i + count);
    }
    void Append(const CArray& other) {
        m_data.insert(m_data.end(), other.m_data.begin(), other.m_data.end());
    }
    void Copy(const CArray& other) {
        if (this != &other)
            m_data = other.m_data;
    }

    TYPE* GetData() { return m_data.data(); }
    const TYPE* GetData() const { return m_data.data(); }

    auto begin() { return m_data.begin(); }
    auto end() { return m_data.end(); }
    auto begin() const { return m_data.begin(); }
    auto end() const { return m_data.end(); }

    bool operator==(const CArray& other) const { return m_data == other.m_data; }

    std::vector<TYPE>& Vector() { return m_data; }
    const std::vector<TYPE>& Vector() const { return m_data; }

private:
    size_t Check(int i) const {
        if (i < 0 || i >= GetSize())
            throw CInvalidArgException("array index out of range");
        return static_cast<size_t>(i);
    }
    std::vector<TYPE> m_data;
};

/// An array of objects held by value; elements are copied on insertion.
template <class TYPE> class OCArray : public CArray<TYPE, const TYPE&> {
public:
    using CArray<TYPE, const TYPE&>::CArray;
};
