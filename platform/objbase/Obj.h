#pragma once
// CObj: the base of every persistent record of the object store.
//
// Base record (written first by every persistent record, little-endian):
//   int32 version = 1
//   int32 id             (the object's CId; -1 before the object is stored)
//   int32 attribute      (a word the host may give objects; included in checksums)
// Reading any other version is a version error of the source "Obj".
#include "framework/Map.h"
#include "objbase/Id.h"
#include "objbase/Pool.h"
#include "stream/Filler.h"

#include <cstdint>

using CTransMap = CMap<CId, const CId&, CId, const CId&>;

class CObj : public CFillerUser {
public:
    static constexpr int32_t BaseVersion = 1;
    /// The inheritance bit of CObj itself; classes derived from it add their own bits.
    static constexpr unsigned InheritanceHistory = 1u;

    CObj() = default;
    ~CObj() override = default;

    /// Makes this object what src's record says (through the record, see the derived classes).
    virtual void Copy(const CObj& src);
    /// Releases what the object owns; with bDelete non-zero the object deletes itself. A
    /// protected object (a registered prototype) is never destroyed.
    virtual void Destroy(int bDelete);
    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;
    /// Adds the checksum of the base record's attribute word to each of the three sums.
    virtual void UpdateCRC(uint32_t& crc1, uint32_t& crc2, uint32_t& crc3) const;
    virtual CObj* MakeNew() const = 0;
    /// A new object of the same class to read a whole record into: its record will say what
    /// a copy of the prototype would have held, so nothing is copied first.
    virtual CObj* MakeEmpty() const { return MakeNew(); }
    virtual void NotifyInsert() {}
    virtual void NotifyDelete() {}
    /// Rewrites ids that the object holds through the map (old id to new id).
    virtual void ReplaceIds(const CTransMap& map) { (void)map; }
    virtual void BuildInheritanceHistory() {}
    virtual bool IsChildOf(unsigned mask) const { return (InheritanceHistory & mask) == mask; }
    virtual void SetType(int type) = 0;
    virtual int GetType() const = 0;

    const CId& GetId() const { return m_Id; }
    void SetId(const CId& id) { m_Id = id; }
    int32_t GetAtribut() const { return m_nAtribut; }
    void SetAtribut(int32_t value) { m_nAtribut = value; }
    bool IsProtected() const { return m_bProtected; }
    void SetProtected(bool value) { m_bProtected = value; }

protected:
    CObj(const CObj&) = default;
    CObj& operator=(const CObj&) = default;

private:
    CId m_Id;
    int32_t m_nAtribut = 0;
    bool m_bProtected = false;
};

/// What every pooled persistent class shares: its type number, its inheritance bits, its
/// pool, the address that the pool gave out last (validAdr), the class-level new and delete,
/// and MakeNew. Derived is the persistent class; TypeNumber its store type.
template <class Derived, int TypeNumber> class CPooledObj : public CObj {
public:
    inline static int Type = TypeNumber;
    inline static unsigned InheritanceHistory = CObj::InheritanceHistory;
    inline static CPool memPool{sizeof(Derived)};
    inline static void* validAdr = nullptr;

    static void* operator new(size_t size) {
        validAdr = memPool.Alloc(size);
        return validAdr;
    }
    static void* operator new(size_t size, const char* /*file*/, int /*line*/) {
        return operator new(size);
    }
    static void operator delete(void* p, size_t size) { memPool.Free(p, size); }
    static void operator delete(void* p, const char* /*file*/, int /*line*/) {
        memPool.Free(p, sizeof(Derived));
    }

    /// Copying is done through the record: a copy is exactly what saving and loading give.
    void Copy(const CObj& src) override { CopyThroughRecord(src); }
    /// A new pooled object made a copy of this one through its record.
    CObj* MakeNew() const override {
        auto* p = new Derived();
        p->Copy(*this);
        return p;
    }
    CObj* MakeEmpty() const override { return new Derived(); }
    void Destroy(int bDelete) override {
        if (IsProtected())
            return;
        static_cast<Derived*>(this)->DestroyMe();
        CObj::Destroy(0);
        if (bDelete)
            delete static_cast<Derived*>(this);
    }
    void BuildInheritanceHistory() override { InheritanceHistory = CObj::InheritanceHistory; }
    bool IsChildOf(unsigned mask) const override { return (InheritanceHistory & mask) == mask; }
    void SetType(int type) override { Type = type; }
    int GetType() const override { return Type; }

    /// Releases what the object owns before destruction; classes that own parts override it.
    void DestroyMe() {}

protected:
    CPooledObj() = default;
    CPooledObj(const CPooledObj&) = default;
    CPooledObj& operator=(const CPooledObj&) = default;
    /// Copies src into this object through src's record written to a memory stream. The
    /// stream of the class is kept from one copy to the next, so that a copy allocates nothing
    /// for it (a copy made while another is under way takes a stream of its own).
    void CopyThroughRecord(const CObj& src) {
        static thread_local CFiller kept(256);
        static thread_local bool inUse = false;
        if (inUse) {
            CFiller own(256);
            CopyThrough(src, own);
            return;
        }
        struct InUse {
            InUse() { inUse = true; }
            ~InUse() { inUse = false; }
        } guard;
        CopyThrough(src, kept);
    }

private:
    void CopyThrough(const CObj& src, CFiller& f) {
        f.Open(CFiller::Mode::Write);
        src.ToFiller(f);
        f.Close();
        f.Open(CFiller::Mode::Read);
        FromFiller(f);
        f.Close();
    }
};
