#pragma once
// CPool: the per-class object pool of persistent classes. Objects of one class are carved
// from blocks of a fixed number of slots and freed slots are reused. Builds with
// AddressSanitizer take every object from the general heap instead, so that the sanitizer
// keeps seeing each object on its own.
#include <cstddef>
#include <memory>
#include <vector>

class CPool {
public:
    explicit CPool(size_t objectSize, size_t objectsPerBlock = 256);
    ~CPool();
    CPool(const CPool&) = delete;
    CPool& operator=(const CPool&) = delete;

    /// A slot for an object of at most the pool's object size; a larger request (a derived
    /// class without a pool of its own) comes from the general heap.
    void* Alloc(size_t size);
    void Free(void* p, size_t size);
    /// Number of slots given out and not yet freed.
    size_t InUse() const { return m_inUse; }

private:
    size_t m_slotSize;
    size_t m_perBlock;
    std::vector<std::unique_ptr<std::byte[]>> m_blocks;
    void* m_free = nullptr;
    size_t m_inUse = 0;
};
