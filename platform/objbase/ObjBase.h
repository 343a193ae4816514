#pragma once
// CObjBase: the document's object base, a typed store of persistent objects with undo.
//
// Objects are kept per type. Store order, the order in which Select walks a type, is the
// order of insertion: an object inserted later comes later, and an object brought back by
// undo or redo takes its old place again. Sorted order (SelectSorted) is ascending id.
//
// Undo: every opening of the store for writing is one undo step; openings made while the
// undo counter is frozen, or while another writing view is open, join the step in progress.
// A step is finished when the last writing view closes with the counter not frozen. Before
// an object is first changed (GetW), deleted or inserted within a step, its record is kept;
// undoing a step brings back every such object exactly (id, fields, store order and the next
// id to be given), and redoing it brings back the state undo left. Undo and redo recreate
// objects from their records and do not notify them. A step of up to a few hundred objects
// that changed nothing is not kept (larger steps are kept as they are, so that a cascade over
// thousands of objects records each one only once on its way); a change made with no opening for
// writing cannot be undone and empties the history.
//
// The classes that can live in a store are registered once per process with RegisterSubBase;
// their prototypes create objects by type when records are read.
#include "objbase/Obj.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <unordered_map>
#include <unordered_set>
#include <vector>

class CObjBase {
public:
    CObjBase();
    ~CObjBase();
    CObjBase(const CObjBase&) = delete;
    CObjBase& operator=(const CObjBase&) = delete;

    /// The document's object base that CBaseManager views see unless they are given another.
    static CObjBase* GetCurrent();
    static void SetCurrent(CObjBase* base);

    // --- registry of persistent classes (process-wide) ---
    /// Registers the class of the prototype (taken over) under its type number: the one the
    /// class already carries when it is positive, otherwise the next free number from 1000,
    /// which is given to the class with SetType. The class's inheritance bits are built. A
    /// class registered before keeps its first prototype; the new one is destroyed. flag 1
    /// marks the class persistent (written to model files). Returns the type number.
    static int RegisterSubBase(CObj* prototype, int flag);
    static bool IsRegistered(int type);
    static bool IsPersistent(int type);
    /// Registered type numbers in ascending order.
    static std::vector<int> GetRegisteredTypes();
    /// A new default object of a registered type (a copy of the prototype), or null.
    static CObj* CreateObject(int type);

    // --- contents ---
    int Count(int type) const;
    int CountAll() const;
    const CObj* Find(const CId& id) const;
    /// Ids of one type in store order, or in ascending id order.
    std::vector<CId> Ids(int type, bool sorted = false) const;
    /// Empties the store and its undo history.
    void Clear();
    /// The id the next inserted object will receive.
    int32_t GetNextId() const { return m_nextId; }

    // --- undo ---
    bool CanUndo() const;
    bool CanRedo() const;
    bool Undo();
    bool Redo();
    /// Number of finished undo steps that can be undone.
    int GetUndoCount() const { return static_cast<int>(m_undo.size()); }
    void SetUndoLimit(int steps);

    // --- used by CBaseManager ---
    void BeginWrite();
    void EndWrite();
    void FreezeUndoCounter();
    void UnfreezeUndoCounter();
    bool IsFrozen() const { return m_freeze > 0; }
    CObj* GetWritable(const CId& id);
    /// Takes the object over and gives it the next id; its class must be registered.
    CId Insert(CObj* obj);
    /// Inserts an object read from a file under the id its record carries, at the end of its
    /// type's store order. Returns false (and destroys the object) when the id is invalid or
    /// taken or the class is not registered.
    bool InsertLoaded(CObj* obj);
    bool Delete(const CId& id);

private:
    struct Entry;
    struct Kept;
    struct Touched;
    struct Step;
    static void DestroyObject(CObj* obj);
    void Touch(const CId& id);
    void Restore(const CId& id, int type, uint64_t order, const Step& step,
                 const std::optional<Kept>& image);
    /// Writes the object's record into the step's image store.
    Kept Image(const CObj& obj, Step& step) const;
    void FinishStep();
    void TakeAfterImages(Step& step) const;
    void Place(CObj* obj, int type, uint64_t order);
    void Remove(const CId& id);

    std::unordered_map<int32_t, std::unique_ptr<Entry>> m_objects;
    std::map<int, std::map<uint64_t, int32_t>> m_byType;
    int32_t m_nextId = 1;
    uint64_t m_nextOrder = 1;

    int m_openWrite = 0;
    int m_freeze = 0;
    std::unique_ptr<Step> m_current;
    std::vector<std::unique_ptr<Step>> m_undo;
    std::vector<std::unique_ptr<Step>> m_redo;
    size_t m_undoLimit = 200;
    // The stream every record image is written into before the step keeps its bytes, so that
    // an image costs no allocation of its own.
    mutable CFiller m_scratch;
};
