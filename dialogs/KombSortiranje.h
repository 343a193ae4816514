#pragma once
// The order in which the combination editor's sort leaves its list, and which combinations
// its duplicate removal keeps, each found in O(n log n).
//
// Combinations are ordered as CKombOptItem::Uporedi orders them: fewer load cases first, then
// entry by entry the lower load case ordinal, then the smaller coefficient (exactly, without
// tolerance). Combinations that compare equal may still differ in name, so where each of them
// ends up is part of the result.
//
// The editor's sort takes each combination in turn and walks the sorted ones before it,
// exchanging the combination it carries with every one that the carried one sorts strictly
// before. Equal combinations are therefore not kept in list order: a combination inserted
// before a run of equal ones takes the place of the run's first member, which is carried on
// to the end of the run, and so on through every later run. So each run of equal combinations
// grows at its end as its members come, and every combination of a lower run that comes after
// its first member turns the run by one: its first member goes to its end. Counting, for each
// run, the lower combinations that come between its members gives every run's final order
// without walking the list once per combination.
//
// Duplicate removal keeps one combination of every run of equal ones, in list order: the one
// with the longest user-given name (the earliest of equally long ones), or the earliest one
// when all names are generated.
#include "model/KombOptItem.h"

#include <vector>

namespace kombsort {

/// The list sorted: entry p is the index of the combination that ends at position p. smer is
/// +1 for the ascending sort, -1 for the descending one. The ordinals of the load cases come
/// from the table; a load case missing from it sorts after every other one.
std::vector<int> PoredakPosleSortiranja(const CKombOptItemArray& lista,
                                        const CRedniBrojeviSlOpt& redniBrojevi, int smer);

/// For every combination of the list, whether duplicate removal keeps it.
std::vector<bool> PosleIzbacivanjaDuplikata(const CKombOptItemArray& lista,
                                            const CRedniBrojeviSlOpt& redniBrojevi);

} // namespace kombsort
