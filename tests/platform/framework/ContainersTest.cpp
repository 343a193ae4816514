// CArray and CMap: checked access and deterministic order.
#include "framework/Array.h"
#include "framework/Map.h"
#include "framework/String.h"

#include <gtest/gtest.h>

TEST(CArrayAccess, OutOfRangeIndexesThrowInvalidArgument) {
    CArray<int> a;
    EXPECT_THROW(a[0], CInvalidArgException);
    a.Add(10);
    a.Add(20);
    EXPECT_EQ(a[1], 20);
    EXPECT_THROW(a[2], CInvalidArgException);
    EXPECT_THROW(a[-1], CInvalidArgException);
    EXPECT_THROW(a.GetAt(2), CInvalidArgException);
    EXPECT_THROW(a.SetAt(-1, 0), CInvalidArgException);
    EXPECT_THROW(a.ElementAt(5), CInvalidArgException);
    const CArray<int>& c = a;
    EXPECT_THROW(c[2], CInvalidArgException);
    EXPECT_THROW(a.SetSize(-1), CInvalidArgException);
    EXPECT_THROW(a.RemoveAt(1, 2), CInvalidArgException);
    EXPECT_THROW(a.SetAtGrow(-1, 0), CInvalidArgException);
    EXPECT_THROW(a.InsertAt(-1, 0), CInvalidArgException);
    EXPECT_EQ(a.GetSize(), 2);
}

TEST(CMapLookup, MissingKeyLeavesValueAndIterationIsAscending) {
    CMap<int, int, CString, const CString&> m;
    m.SetAt(3, CString(L"tri"));
    m.SetAt(1, CString(L"jedan"));
    m[2] = CString(L"dva");
    CString v(L"unchanged");
    EXPECT_FALSE(m.Lookup(7, v));
    EXPECT_EQ(v, L"unchanged");
    EXPECT_TRUE(m.Lookup(2, v));
    EXPECT_EQ(v, L"dva");
    int expected = 1;
    for (const auto& [key, value] : m)
        EXPECT_EQ(key, expected++);
    EXPECT_TRUE(m.RemoveKey(1));
    EXPECT_FALSE(m.RemoveKey(1));
    EXPECT_EQ(m.GetCount(), 2);
}
