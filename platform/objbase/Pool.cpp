// The per-class object pool: fixed-size slots carved from blocks, freed slots reused first.
#include "objbase/Pool.h"

#include <algorithm>
#include <new>

namespace {

/// A slot holds the object or, while free, the link to the next free slot; every slot keeps
/// the strictest fundamental alignment so any pooled class fits.
size_t SlotSize(size_t objectSize) {
    constexpr size_t align = alignof(std::max_align_t);
    const size_t size = std::max(objectSize, sizeof(void*));
    return (size + align - 1) / align * align;
}

} // namespace

CPool::CPool(size_t objectSize, size_t objectsPerBlock)
    : m_slotSize(SlotSize(objectSize)), m_perBlock(std::max<size_t>(objectsPerBlock, 1)) {}

// Blocks go with the pool. Objects still in use at that point belong to a class whose
// objects outlive their pool, which the persistent classes never do (prototypes of the
// registry are not destroyed at all).
CPool::~CPool() = default;

void* CPool::Alloc(size_t size) {
#if defined(__SANITIZE_ADDRESS__)
    // Each object on its own heap block, so the sanitizer sees overruns and stale uses.
    void* p = ::operator new(size);
    if (size <= m_slotSize)
        ++m_inUse;
    return p;
#else
    if (size > m_slotSize)
        return ::operator new(size);
    if (m_free == nullptr) {
        auto block = std::make_unique<std::byte[]>(m_slotSize * m_perBlock);
        std::byte* first = block.get();
        // Thread the new slots onto the free list in address order.
        for (size_t i = m_perBlock; i-- > 0;) {
            void* slot = first + i * m_slotSize;
            *static_cast<void**>(slot) = m_free;
            m_free = slot;
        }
        m_blocks.push_back(std::move(block));
    }
    void* p = m_free;
    m_free = *static_cast<void**>(p);
    ++m_inUse;
    return p;
#endif
}

void CPool::Free(void* p, size_t size) {
    if (p == nullptr)
        return;
#if defined(__SANITIZE_ADDRESS__)
    ::operator delete(p);
    if (size <= m_slotSize)
        --m_inUse;
#else
    if (size > m_slotSize) {
        ::operator delete(p);
        return;
    }
    *static_cast<void**>(p) = m_free;
    m_free = p;
    --m_inUse;
#endif
}
