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
// an object is first changed within a step, what it was is kept: the record of an object
// taken for writing (GetW), the object itself when it is deleted or replaced (Replace), the
// fact that it did not exist when it is inserted. Undoing a step brings back every such object
// exactly (id, fields, store order and the next id to be given), and redoing it brings back
// the state undo left. Only an object changed in place is made again from its record; the
// objects that undo and redo take out of the store are kept by the step in their turn, so
// that going back and forth serializes nothing. Undo and redo do not notify objects. A
// step of up to a few hundred objects that changed nothing is not kept (larger steps are kept
// as they are, so that a cascade over thousands of objects costs nothing more than its
// changes); a change made with no opening for writing cannot be undone and empties the history.
// An object that is deleted is kept as its NotifyDelete leaves it.
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
    /// A new object of a registered type that a whole record is then read into, or null.
    static CObj* CreateForReading(int type);

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
    /// Frees the steps that can no longer be reached: those that could have been redone
    /// before a new step was made, and the oldest ones beyond the limit. Giving back the
    /// objects of a large step takes time, so a finished step only sets them aside and the
    /// host calls this when it is idle; what is set aside is freed at the latest when the next
    /// step finishes.
    void ReleaseDiscarded();
    /// Whether any unreachable steps wait to be freed.
    bool HasDiscarded() const { return !m_discarded.empty(); }

    // --- used by CBaseManager ---
    void BeginWrite();
    void EndWrite();
    void FreezeUndoCounter();
    void UnfreezeUndoCounter();
    bool IsFrozen() const { return m_freeze > 0; }
    CObj* GetWritable(const CId& id);
    /// Takes the object over and gives it the next id; its class must be registered.
    CId Insert(CObj* obj);
    /// The highest id an object read from a file may carry: the ids above it are left for the
    /// objects the document receives afterwards.
    static constexpr int32_t MaxLoadedId = INT32_MAX - (int32_t{1} << 24);
    /// Inserts an object read from a file under the id its record carries, at the end of its
    /// type's store order. Returns false (and destroys the object) when the id is invalid,
    /// above MaxLoadedId or taken, or the class is not registered.
    bool InsertLoaded(CObj* obj);
    bool Delete(const CId& id);
    /// Puts obj (taken over; of the same type) in place of the stored object with that id: it
    /// gets the id and the place in the store order, and the old object is kept by the undo
    /// step instead of its record. No notification is sent. Returns false (and destroys obj)
    /// when there is no such object.
    bool Replace(const CId& id, CObj* obj);

private:
    /// Destroys a stored object through its class (pooled objects go back to their pool).
    struct Destroyer {
        void operator()(CObj* obj) const;
    };
    using Owned = std::unique_ptr<CObj, Destroyer>;
    /// One stored object with its type and its place in the store order of the type; an
    /// empty entry holds no object.
    struct Entry {
        Owned obj;
        int type = 0;
        uint64_t order = 0;
    };
    /// The objects of one type as (order, id) pairs. The first `sorted` pairs are in store
    /// order; pairs placed out of order follow them, and pairs of objects removed since stay
    /// until the list is next walked, when it is put right once for every walk after it.
    struct TypeList {
        std::vector<std::pair<uint64_t, int32_t>> members;
        size_t sorted = 0;
        size_t count = 0;
        size_t removed = 0;
    };
    struct Kept;
    struct State;
    struct Touched;
    struct Step;

    Entry* Slot(int32_t id);
    const Entry* Slot(int32_t id) const;
    /// The step's slot for the id when this is its first change within the step in progress,
    /// otherwise null (also when no step is open; the history is then emptied).
    Touched* Touch(const CId& id);
    /// Writes the object's record into the step's image store.
    Kept Image(const CObj& obj, Step& step) const;
    void FinishStep();
    /// Sets the oldest undo steps beyond the limit aside.
    void TrimUndo();
    /// Whether the object is now exactly what the step kept of it before.
    bool Unchanged(const Touched& touched, const Step& step) const;
    /// Takes the object with that id out of the store; the state is empty when there is none.
    State Detach(int32_t id);
    /// The state's object, made from its record when only the record is kept.
    static Owned Revive(int32_t id, State& state, const Step& step);
    /// Puts the state's object back in its place, when it existed.
    void Attach(int32_t id, State& state, const Step& step);
    /// Goes from one side of every touched object to the other: the store's objects become
    /// the `from` side and the `to` side's objects come into the store.
    void Swap(Step& step, State Touched::*from, State Touched::*to);
    void Place(Owned obj, int type, uint64_t order);
    Owned Remove(int32_t id);
    TypeList& List(int type);
    void Compact(int type, TypeList& list) const;

    static constexpr int32_t kDenseIds = int32_t{1} << 20;
    /// How far beyond the stored objects the table by index may reach for a new id.
    static constexpr size_t kDenseSlack = 4096;
    // Objects by id: ids the store hands out are small positive numbers, kept by index; an id
    // that lies far beyond the objects there are (read from a file, say) goes into a hash map,
    // so that a few objects never cost a table of a million entries.
    std::vector<Entry> m_dense;
    std::unordered_map<int32_t, Entry> m_sparse;
    size_t m_count = 0;
    mutable std::map<int, TypeList> m_byType;
    int32_t m_nextId = 1;
    uint64_t m_nextOrder = 1;

    int m_openWrite = 0;
    int m_freeze = 0;
    std::unique_ptr<Step> m_current;
    std::vector<std::unique_ptr<Step>> m_undo;
    std::vector<std::unique_ptr<Step>> m_redo;
    std::vector<std::unique_ptr<Step>> m_discarded;
    size_t m_undoLimit = 200;
    // The streams records are written into before a step keeps their bytes or compares them,
    // so that an image costs no allocation of its own.
    mutable CFiller m_scratch;
    mutable CFiller m_scratch2;
};
