// The table of load case ordinals by id that renaming many combinations at once reads: small
// ids, ids far apart, negative ids and ordinals set again all give back what was set.
#include "model/KombOptItem.h"

#include <gtest/gtest.h>

#include <limits>
#include <map>
#include <utility>

namespace {

/// Every id of the reference map is found with its ordinal, and the probes are not.
void ExpectTable(const CRedniBrojeviSlOpt& table, const std::map<int32_t, int>& expected,
                 std::initializer_list<int32_t> missing) {
    for (const auto& [id, ordinal] : expected) {
        int r = -12345;
        EXPECT_TRUE(table.Nadji(CId(id), r)) << "id " << id;
        EXPECT_EQ(r, ordinal) << "id " << id;
    }
    for (const int32_t id : missing) {
        int r = -12345;
        EXPECT_FALSE(table.Nadji(CId(id), r)) << "id " << id;
        EXPECT_EQ(r, -12345) << "a failed look-up leaves the ordinal as it was";
    }
}

} // namespace

TEST(RedniBrojeviSlOpt, FindsEveryOrdinalSetWhateverTheIds) {
    CRedniBrojeviSlOpt table;
    std::map<int32_t, int> expected;
    ExpectTable(table, expected, {0, 1, -1, 1000000});

    // Ids far beyond the number of load cases, set before the small ones, then small ids that
    // grow the table by id past where a large id was set only in the sorted list.
    for (const auto& [id, ordinal] :
         {std::pair<int32_t, int>{2000000000, 7}, {300, 3}, {-5, 4}, {2, 1}, {5, 2}, {40, 6}}) {
        table.Postavi(CId(id), ordinal);
        expected[id] = ordinal;
    }
    for (int32_t id = 6; id < 700; id += 3) {
        table.Postavi(CId(id), id + 10);
        expected[id] = id + 10;
    }
    ExpectTable(table, expected, {0, 1, 3, 4, 7, 701, 699999, -4, 2000000001});

    // Setting an ordinal again replaces it, wherever the id is kept; so does the lowest int.
    for (const auto& [id, ordinal] : {std::pair<int32_t, int>{2000000000, 9},
                                      {300, 0},
                                      {2, -1},
                                      {-5, 8},
                                      {6, std::numeric_limits<int>::min()}}) {
        table.Postavi(CId(id), ordinal);
        expected[id] = ordinal;
    }
    ExpectTable(table, expected, {0, 1, 3, 4, 7, 701, -4});
}
