// CArray and CMap: checked access and deterministic order.
#include "framework/Array.h"
#include "framework/Map.h"
#include "framework/String.h"

#include <gtest/gtest.h>

TEST(Containers, ArrayAccessIsCheckedAndMapLookupAndOrderAreDeterministic) {
    CArray<int> a;
    a.Add(10);
    EXPECT_THROW(a[1], CInvalidArgException);
    EXPECT_THROW(std::as_const(a)[-1], CInvalidArgException);
    EXPECT_THROW(a.SetSize(-1), CInvalidArgException);
    EXPECT_THROW(a.RemoveAt(0, 2), CInvalidArgException);
    EXPECT_THROW(a.InsertAt(-1, 0), CInvalidArgException);
    EXPECT_EQ(a.GetSize(), 1);

    CMap<int, int, CString, const CString&> m;
    m.SetAt(3, CString(L"tri"));
    m.SetAt(1, CString(L"jedan"));
    m[2] = CString(L"dva");
    CString v(L"unchanged");
    EXPECT_FALSE(m.Lookup(7, v));
    EXPECT_EQ(v, L"unchanged");
    int expected = 1;
    for (const auto& [key, value] : m)
        EXPECT_EQ(key, expected++);
}
