// Typed views of the object base: opening for reading or writing, selections, reading and
// changing objects within the undo step of the opening.
#include "objbase/BaseManager.h"

#include "diag/Assert.h"

namespace {

/// The check that guards every change: the view must be open for writing.
void AssertWrite(bool bWrite, int line) {
    if (!bWrite)
        gfnAssertFailed("IsWrite ()", gfnSourceName(__FILE__), line);
}

} // namespace

CBaseManager::CBaseManager(int type, CObjBase* base)
    : m_base(base != nullptr ? base : CObjBase::GetCurrent()), m_type(type) {}

CBaseManager::~CBaseManager() {
    Close();
}

int CBaseManager::Open(int mode) {
    if (m_base == nullptr || m_open)
        return 0;
    m_open = true;
    m_mode = mode == Write ? Write : Read;
    if (m_mode == Write)
        m_base->BeginWrite();
    return 1;
}

void CBaseManager::AssertOpenOK(int bOpenOK) {
    VASSERT(bOpenOK);
}

void CBaseManager::Close() {
    // Freezes this view left in place are undone first, so that a writing opening closed
    // here finishes its undo step.
    while (m_frozenHere > 0) {
        --m_frozenHere;
        m_base->UnfreezeUndoCounter();
    }
    m_selection.clear();
    m_cursor = 0;
    if (!m_open)
        return;
    m_open = false;
    if (m_mode == Write)
        m_base->EndWrite();
}

int CBaseManager::Select(int type) {
    m_selType = type;
    m_selection = m_base != nullptr ? m_base->Ids(type) : std::vector<CId>();
    m_cursor = 0;
    return static_cast<int>(m_selection.size());
}

int CBaseManager::SelectSorted(int type) {
    m_selType = type;
    m_selection = m_base != nullptr ? m_base->Ids(type, true) : std::vector<CId>();
    m_cursor = 0;
    return static_cast<int>(m_selection.size());
}

CId CBaseManager::GetFirst() {
    m_cursor = 0;
    return GetNext();
}

CId CBaseManager::GetNext() {
    while (m_cursor < m_selection.size()) {
        const CId id = m_selection[m_cursor++];
        if (m_base->Find(id) != nullptr)
            return id;
    }
    return CId();
}

const CObj* CBaseManager::GetR(const CId& id) const {
    return m_base != nullptr ? m_base->Find(id) : nullptr;
}

CObj* CBaseManager::GetW(const CId& id) {
    AssertWrite(IsWrite(), __LINE__);
    return m_base->GetWritable(id);
}

CId CBaseManager::Insert(CObj* obj) {
    AssertWrite(IsWrite(), __LINE__);
    return m_base->Insert(obj);
}

bool CBaseManager::Delete(const CId& id) {
    AssertWrite(IsWrite(), __LINE__);
    return m_base->Delete(id);
}

bool CBaseManager::Replace(const CId& id, CObj* obj) {
    AssertWrite(IsWrite(), __LINE__);
    return m_base->Replace(id, obj);
}

int CBaseManager::DeleteAll(int type) {
    AssertWrite(IsWrite(), __LINE__);
    int deleted = 0;
    for (const CId& id : m_base->Ids(type))
        deleted += m_base->Delete(id) ? 1 : 0;
    return deleted;
}

int CBaseManager::Count() const {
    return Count(m_type != 0 ? m_type : m_selType);
}

int CBaseManager::Count(int type) const {
    return m_base != nullptr ? m_base->Count(type) : 0;
}

void CBaseManager::FreezeUndoCounter() {
    if (m_base == nullptr)
        return;
    ++m_frozenHere;
    m_base->FreezeUndoCounter();
}

void CBaseManager::UnfreezeUndoCounter() {
    if (m_frozenHere == 0)
        return;
    --m_frozenHere;
    m_base->UnfreezeUndoCounter();
}
