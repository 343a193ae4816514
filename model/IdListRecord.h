#pragma once
// The id list inside load case records: int32 count, then count x int32 ids.
#include "framework/Array.h"
#include "objbase/Id.h"
#include "stream/Filler.h"

namespace idlist {

void WriteIds(CFiller& f, const OCArray<CId>& ids);
/// Reads a count and that many ids. A stream already in error leaves the list as it was; a
/// count the stream cannot hold gives an empty list and leaves the stream in error.
void ReadIds(CFiller& f, OCArray<CId>& ids);

} // namespace idlist
