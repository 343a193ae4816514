// The list of command registration records a module hands to the host.
#include "host/OptionInfo.h"

#include "framework/Exceptions.h"

COptionInfo& COptionInfoList::AddNew() {
    m_items.push_back(std::make_unique<COptionInfo>());
    return *m_items.back();
}

COptionInfo& COptionInfoList::GetAt(int i) {
    if (i < 0 || i >= GetSize())
        throw CInvalidArgException("COptionInfoList::GetAt: index out of range");
    return *m_items[static_cast<size_t>(i)];
}

const COptionInfo& COptionInfoList::GetAt(int i) const {
    if (i < 0 || i >= GetSize())
        throw CInvalidArgException("COptionInfoList::GetAt: index out of range");
    return *m_items[static_cast<size_t>(i)];
}

COptionInfo* COptionInfoList::Find(int id) {
    for (const auto& item : m_items)
        if (item->m_nId == id)
            return item.get();
    return nullptr;
}
