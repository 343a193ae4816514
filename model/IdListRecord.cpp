#include "model/IdListRecord.h"

#include <cstdint>

namespace idlist {

void WriteIds(CFiller& f, const OCArray<CId>& ids) {
    f.WriteInt32(ids.GetSize());
    for (const CId& id : ids)
        f.WriteInt32(id.GetValue());
}

void ReadIds(CFiller& f, OCArray<CId>& ids) {
    int32_t n = 0;
    if (!f.ReadInt32(n))
        return;
    if (!f.CheckCount(n, sizeof(int32_t)))
        n = 0;
    ids.RemoveAll();
    ids.SetSize(n);
    for (CId& id : ids) {
        int32_t value = -1;
        f.ReadInt32(value);
        id.SetValue(value);
    }
}

} // namespace idlist
