// The document's object base: objects per type in store order, the class registry, and undo
// and redo by record images.
#include "objbase/ObjBase.h"

#include "diag/Assert.h"

#include <algorithm>
#include <deque>
#include <utility>

namespace {

struct Registered {
    CObj* prototype;
    bool persistent;
};

/// The registry lives as long as the process: prototypes come from the pools of their
/// classes, whose own destruction order at exit is not known, so they are never given back.
/// The union keeps the map from being destroyed, which also keeps every prototype reachable.
std::map<int, Registered>& Registry() {
    union Forever {
        Forever() : map() {}
        ~Forever() {}
        std::map<int, Registered> map;
    };
    static Forever registry;
    return registry.map;
}

CObjBase* g_pCurrent = nullptr;

constexpr int FirstFreeType = 1000;

} // namespace

// A record image kept by a step: where its bytes lie in the step's image store.
struct CObjBase::Kept {
    size_t block = 0;
    size_t offset = 0;
    size_t size = 0;
};

// What an object was on one side of an undo step: nothing (it did not exist), or its type
// and place in the store order with the object itself or, for an object changed in place, its
// record.
struct CObjBase::State {
    bool exists = false;
    int type = 0;
    uint64_t order = 0;
    Owned obj;
    std::optional<Kept> record;
};

// An object changed within an undo step: what it was before the step and after it. The
// after side is filled when the step is undone, from the objects the store then gives up.
struct CObjBase::Touched {
    int32_t id = -1;
    State before;
    State after;
};

struct CObjBase::Step {
    explicit Step(int32_t nextId) : nextIdBefore(nextId), nextIdAfter(nextId) {}

    // A deque: a cascade touches tens of thousands of objects, which are never moved.
    std::deque<Touched> touched;
    int32_t nextIdBefore;
    int32_t nextIdAfter;

    /// Marks the id as touched in this step; false when it was marked already.
    bool Mark(int32_t id) {
        if (id >= 0 && id < kDenseIds) {
            const size_t word = static_cast<size_t>(id) / 64;
            if (word >= marked.size())
                marked.resize(std::max(word + 1, 2 * marked.size()), 0);
            const uint64_t bit = uint64_t{1} << (static_cast<unsigned>(id) % 64);
            if ((marked[word] & bit) != 0)
                return false;
            marked[word] |= bit;
            return true;
        }
        return markedOther.insert(id).second;
    }
    /// Forgets the marks once the step is finished.
    void ForgetMarks() {
        marked = {};
        markedOther = {};
    }

    /// Keeps a copy of the bytes. Images are packed into blocks that double in size up to a
    /// limit, so a step of one object holds a small block and a cascade over thousands of
    /// objects a few large ones, instead of one allocation per image.
    Kept Keep(const std::vector<uint8_t>& bytes) {
        if (blocks.empty() || blocks.back().capacity() - blocks.back().size() < bytes.size()) {
            const size_t next = blocks.empty()
                                    ? kFirstBlock
                                    : std::min(2 * blocks.back().capacity(), kLargestBlock);
            blocks.emplace_back().reserve(std::max(next, bytes.size()));
        }
        std::vector<uint8_t>& block = blocks.back();
        const Kept kept{blocks.size() - 1, block.size(), bytes.size()};
        block.insert(block.end(), bytes.begin(), bytes.end());
        return kept;
    }
    const uint8_t* Bytes(const Kept& kept) const { return blocks[kept.block].data() + kept.offset; }

private:
    static constexpr size_t kFirstBlock = 4096;
    static constexpr size_t kLargestBlock = size_t{1} << 20;

    std::vector<uint64_t> marked;
    std::unordered_set<int32_t> markedOther;
    std::vector<std::vector<uint8_t>> blocks;
};

namespace {
// Steps that touch at most this many objects are compared with the store when they finish,
// so that objects left unchanged, and steps that changed nothing, are dropped at once. Larger
// steps (cascades over thousands of combinations) are kept as they are.
constexpr size_t kCompareSteps = 512;
// A type's list of store order is put right as soon as it holds this many more pairs than
// objects, so that changes that are never walked cannot make it grow without end.
constexpr size_t kSlackPairs = 1024;
} // namespace

void CObjBase::Destroyer::operator()(CObj* obj) const {
    if (obj != nullptr)
        obj->Destroy(1);
}

CObjBase::CObjBase() = default;

CObjBase::~CObjBase() {
    if (g_pCurrent == this)
        g_pCurrent = nullptr;
}

CObjBase* CObjBase::GetCurrent() {
    return g_pCurrent;
}

void CObjBase::SetCurrent(CObjBase* base) {
    g_pCurrent = base;
}

// --- registry ---

int CObjBase::RegisterSubBase(CObj* prototype, int flag) {
    VASSERT(prototype != nullptr);
    auto& registry = Registry();
    int type = prototype->GetType();
    if (type > 0 && registry.contains(type)) {
        prototype->Destroy(1);
        return type;
    }
    if (type <= 0) {
        type = FirstFreeType;
        while (registry.contains(type))
            ++type;
        prototype->SetType(type);
    }
    prototype->BuildInheritanceHistory();
    prototype->SetProtected(true);
    registry.emplace(type, Registered{prototype, flag != 0});
    return type;
}

bool CObjBase::IsRegistered(int type) {
    return Registry().contains(type);
}

bool CObjBase::IsPersistent(int type) {
    const auto it = Registry().find(type);
    return it != Registry().end() && it->second.persistent;
}

std::vector<int> CObjBase::GetRegisteredTypes() {
    std::vector<int> types;
    for (const auto& [type, registered] : Registry())
        types.push_back(type);
    return types;
}

namespace {

/// A new object of a registered type made by `make` from its prototype, without an id; null
/// for a type not registered.
CObj* Created(int type, CObj* (CObj::*make)() const) {
    const auto it = Registry().find(type);
    if (it == Registry().end())
        return nullptr;
    CObj* obj = (it->second.prototype->*make)();
    obj->SetId(CId());
    return obj;
}

} // namespace

CObj* CObjBase::CreateObject(int type) {
    return Created(type, &CObj::MakeNew);
}

CObj* CObjBase::CreateForReading(int type) {
    return Created(type, &CObj::MakeEmpty);
}

// --- contents ---

CObjBase::Entry* CObjBase::Slot(int32_t id) {
    return const_cast<Entry*>(std::as_const(*this).Slot(id));
}

const CObjBase::Entry* CObjBase::Slot(int32_t id) const {
    if (id >= 0 && static_cast<size_t>(id) < m_dense.size() && m_dense[static_cast<size_t>(id)].obj)
        return &m_dense[static_cast<size_t>(id)];
    if (m_sparse.empty())
        return nullptr;
    const auto it = m_sparse.find(id);
    return it == m_sparse.end() ? nullptr : &it->second;
}

int CObjBase::Count(int type) const {
    const auto it = m_byType.find(type);
    return it == m_byType.end() ? 0 : static_cast<int>(it->second.count);
}

int CObjBase::CountAll() const {
    return static_cast<int>(m_count);
}

const CObj* CObjBase::Find(const CId& id) const {
    const Entry* entry = Slot(id.GetValue());
    return entry != nullptr ? entry->obj.get() : nullptr;
}

void CObjBase::Compact(int type, TypeList& list) const {
    auto& members = list.members;
    // Pairs of objects that have left the type's place since go; the rest keep their order.
    size_t kept = 0;
    size_t keptSorted = 0;
    for (size_t i = 0; i < members.size(); ++i) {
        const Entry* entry = Slot(members[i].second);
        if (entry == nullptr || entry->type != type || entry->order != members[i].first)
            continue;
        members[kept++] = members[i];
        if (i < list.sorted)
            keptSorted = kept;
    }
    members.resize(kept);
    const auto tail = members.begin() + static_cast<std::ptrdiff_t>(keptSorted);
    std::sort(tail, members.end());
    std::inplace_merge(members.begin(), tail, members.end());
    // An object taken out and put back in its old place has its pair twice.
    members.erase(std::unique(members.begin(), members.end()), members.end());
    list.sorted = members.size();
    list.removed = 0;
}

std::vector<CId> CObjBase::Ids(int type, bool sorted) const {
    std::vector<CId> ids;
    const auto it = m_byType.find(type);
    if (it == m_byType.end())
        return ids;
    TypeList& list = it->second;
    if (list.removed != 0 || list.sorted != list.members.size())
        Compact(type, list);
    ids.reserve(list.members.size());
    for (const auto& [order, id] : list.members)
        ids.emplace_back(id);
    if (sorted)
        std::sort(ids.begin(), ids.end());
    return ids;
}

void CObjBase::Clear() {
    m_byType.clear();
    m_dense.clear();
    m_sparse.clear();
    m_count = 0;
    m_nextId = 1;
    m_nextOrder = 1;
    m_undo.clear();
    m_redo.clear();
    m_discarded.clear();
    // A step in progress starts again from the empty store.
    if (m_current)
        m_current = std::make_unique<Step>(m_nextId);
}

// --- changes ---

CObjBase::TypeList& CObjBase::List(int type) {
    return m_byType[type];
}

void CObjBase::Place(Owned obj, int type, uint64_t order) {
    const int32_t id = obj->GetId().GetValue();
    Entry* entry = nullptr;
    const auto index = static_cast<size_t>(id);
    if (id >= 0 && id < kDenseIds && index < std::max(m_dense.size(), 4 * m_count + kDenseSlack) &&
        (m_sparse.empty() || !m_sparse.contains(id))) {
        if (index >= m_dense.size())
            m_dense.resize(std::max(index + 1, 2 * m_dense.size()));
        entry = &m_dense[index];
    } else {
        entry = &m_sparse[id];
    }
    VASSERT(!entry->obj);
    *entry = Entry{std::move(obj), type, order};
    ++m_count;

    TypeList& list = List(type);
    auto& members = list.members;
    if (list.sorted == members.size() && (members.empty() || members.back().first < order))
        ++list.sorted;
    members.emplace_back(order, id);
    ++list.count;
    if (members.size() > 2 * list.count + kSlackPairs)
        Compact(type, list);
}

CObjBase::Owned CObjBase::Remove(int32_t id) {
    Entry* entry = Slot(id);
    if (entry == nullptr)
        return nullptr;
    TypeList& list = List(entry->type);
    --list.count;
    // The last pair of the list is the object's own when it came last in store order.
    if (!list.members.empty() && list.members.back() == std::make_pair(entry->order, id) &&
        list.sorted == list.members.size()) {
        list.members.pop_back();
        --list.sorted;
    } else {
        ++list.removed;
    }
    Owned obj = std::move(entry->obj);
    if (id < 0 || static_cast<size_t>(id) >= m_dense.size() ||
        entry != &m_dense[static_cast<size_t>(id)])
        m_sparse.erase(id);
    --m_count;
    return obj;
}

CObjBase::Kept CObjBase::Image(const CObj& obj, Step& step) const {
    m_scratch.Open(CFiller::Mode::Write);
    obj.ToFiller(m_scratch);
    m_scratch.Close();
    return step.Keep(m_scratch.Buffer());
}

CObjBase::Touched* CObjBase::Touch(const CId& id) {
    if (!m_current) {
        // A change outside any opening for writing cannot be undone, and the steps kept so
        // far no longer lead back to a state that existed.
        m_undo.clear();
        m_redo.clear();
        return nullptr;
    }
    if (!m_current->Mark(id.GetValue()))
        return nullptr;
    Touched& touched = m_current->touched.emplace_back();
    touched.id = id.GetValue();
    if (const Entry* entry = Slot(id.GetValue())) {
        touched.before.exists = true;
        touched.before.type = entry->type;
        touched.before.order = entry->order;
    }
    return &touched;
}

CObj* CObjBase::GetWritable(const CId& id) {
    Entry* entry = Slot(id.GetValue());
    if (entry == nullptr)
        return nullptr;
    // The object is changed in place, so what it was is kept as its record.
    if (Touched* touched = Touch(id))
        touched->before.record = Image(*entry->obj, *m_current);
    return entry->obj.get();
}

CId CObjBase::Insert(CObj* obj) {
    VASSERT(obj != nullptr);
    Owned owned(obj);
    // Undo recreates objects by type, so only registered classes can be stored.
    if (!IsRegistered(obj->GetType()))
        gfnAssertFailed("IsRegistered (pObj->GetType ())", gfnSourceName(__FILE__), __LINE__);
    VASSERT(m_nextId < INT32_MAX);
    const CId id(m_nextId);
    Touch(id);
    ++m_nextId;
    obj->SetId(id);
    Place(std::move(owned), obj->GetType(), m_nextOrder++);
    obj->NotifyInsert();
    return id;
}

bool CObjBase::InsertLoaded(CObj* obj) {
    if (obj == nullptr)
        return false;
    Owned owned(obj);
    const CId id = obj->GetId();
    if (!id.Valid() || id.GetValue() > MaxLoadedId || Slot(id.GetValue()) != nullptr ||
        !IsRegistered(obj->GetType()))
        return false;
    Touch(id);
    Place(std::move(owned), obj->GetType(), m_nextOrder++);
    m_nextId = std::max(m_nextId, id.GetValue() + 1);
    return true;
}

bool CObjBase::Delete(const CId& id) {
    Entry* entry = Slot(id.GetValue());
    if (entry == nullptr)
        return false;
    Touched* touched = Touch(id);
    entry->obj->NotifyDelete();
    Owned obj = Remove(id.GetValue());
    // The deleted object itself is what undo brings back.
    if (touched != nullptr)
        touched->before.obj = std::move(obj);
    return true;
}

bool CObjBase::Replace(const CId& id, CObj* obj) {
    VASSERT(obj != nullptr);
    Owned owned(obj);
    Entry* entry = Slot(id.GetValue());
    if (entry == nullptr)
        return false;
    if (obj->GetType() != entry->type)
        gfnAssertFailed("pObj->GetType () == pOld->GetType ()", gfnSourceName(__FILE__), __LINE__);
    obj->SetId(id);
    Touched* touched = Touch(id);
    Owned old = std::exchange(entry->obj, std::move(owned));
    if (touched != nullptr)
        touched->before.obj = std::move(old);
    return true;
}

// --- undo ---

void CObjBase::BeginWrite() {
    if (!m_current)
        m_current = std::make_unique<Step>(m_nextId);
    ++m_openWrite;
}

void CObjBase::EndWrite() {
    if (m_openWrite > 0)
        --m_openWrite;
    if (m_openWrite == 0 && m_freeze == 0)
        FinishStep();
}

void CObjBase::FreezeUndoCounter() {
    ++m_freeze;
}

void CObjBase::UnfreezeUndoCounter() {
    if (m_freeze == 0)
        return;
    --m_freeze;
    if (m_freeze == 0 && m_openWrite == 0)
        FinishStep();
}

bool CObjBase::Unchanged(const Touched& t, const Step& step) const {
    const Entry* now = Slot(t.id);
    if (t.before.exists != (now != nullptr))
        return false;
    if (now == nullptr)
        return true;
    if (t.before.type != now->type || t.before.order != now->order)
        return false;
    m_scratch.Open(CFiller::Mode::Write);
    now->obj->ToFiller(m_scratch);
    m_scratch.Close();
    const std::vector<uint8_t>& after = m_scratch.Buffer();
    if (t.before.record) {
        const uint8_t* before = step.Bytes(*t.before.record);
        return t.before.record->size == after.size() &&
               std::equal(after.begin(), after.end(), before);
    }
    if (!t.before.obj)
        return false;
    m_scratch2.Open(CFiller::Mode::Write);
    t.before.obj->ToFiller(m_scratch2);
    m_scratch2.Close();
    return m_scratch2.Buffer() == after;
}

void CObjBase::FinishStep() {
    std::unique_ptr<Step> step = std::move(m_current);
    if (!step)
        return;
    step->nextIdAfter = m_nextId;
    step->ForgetMarks();
    if (step->touched.size() <= kCompareSteps) {
        // Objects opened for writing but left as they were are no part of the step; a step
        // that changed nothing is not kept at all.
        std::erase_if(step->touched,
                      [this, &step](const Touched& t) { return Unchanged(t, *step); });
        if (step->touched.empty() && step->nextIdBefore == step->nextIdAfter)
            return;
    }
    // What could have been redone is out of reach now: it is set aside, to be freed when
    // the host is idle (ReleaseDiscarded) or when the next step finishes.
    m_discarded.clear();
    m_discarded.swap(m_redo);
    m_undo.push_back(std::move(step));
    TrimUndo();
}

void CObjBase::ReleaseDiscarded() {
    m_discarded.clear();
}

void CObjBase::TrimUndo() {
    if (m_undo.size() <= m_undoLimit)
        return;
    const auto beyond = m_undo.begin() + static_cast<std::ptrdiff_t>(m_undo.size() - m_undoLimit);
    m_discarded.insert(m_discarded.end(), std::make_move_iterator(m_undo.begin()),
                       std::make_move_iterator(beyond));
    m_undo.erase(m_undo.begin(), beyond);
}

CObjBase::State CObjBase::Detach(int32_t id) {
    State state;
    if (const Entry* entry = Slot(id)) {
        state.exists = true;
        state.type = entry->type;
        state.order = entry->order;
        state.obj = Remove(id);
    }
    return state;
}

CObjBase::Owned CObjBase::Revive(int32_t id, State& state, const Step& step) {
    Owned obj = std::move(state.obj);
    if (!obj) {
        VASSERT(state.record.has_value());
        obj.reset(CreateObject(state.type));
        VASSERT(obj != nullptr);
        CFiller f;
        f.SetView(step.Bytes(*state.record), state.record->size);
        f.Open(CFiller::Mode::Read);
        obj->FromFiller(f);
        f.Close();
    }
    obj->SetId(CId(id));
    return obj;
}

void CObjBase::Attach(int32_t id, State& state, const Step& step) {
    if (state.exists)
        Place(Revive(id, state, step), state.type, state.order);
}

void CObjBase::Swap(Step& step, State Touched::*from, State Touched::*to) {
    // An object whose other side stands in the same place is exchanged where it stands. The
    // others are all taken away first and then brought back, so that an id never meets an
    // object that is still to be replaced.
    std::vector<char> exchanged(step.touched.size(), 0);
    for (size_t i = 0; i < step.touched.size(); ++i) {
        Touched& t = step.touched[i];
        State& leaving = t.*from;
        State& coming = t.*to;
        Entry* entry = Slot(t.id);
        if (entry != nullptr && coming.exists && entry->type == coming.type &&
            entry->order == coming.order) {
            Owned obj = Revive(t.id, coming, step);
            leaving = State{true, entry->type, entry->order, nullptr, std::nullopt};
            leaving.obj = std::exchange(entry->obj, std::move(obj));
            exchanged[i] = 1;
        } else {
            leaving = Detach(t.id);
        }
    }
    for (size_t i = 0; i < step.touched.size(); ++i) {
        if (exchanged[i] == 0)
            Attach(step.touched[i].id, step.touched[i].*to, step);
    }
}

bool CObjBase::CanUndo() const {
    return !m_undo.empty() && m_openWrite == 0 && !m_current;
}

bool CObjBase::CanRedo() const {
    return !m_redo.empty() && m_openWrite == 0 && !m_current;
}

bool CObjBase::Undo() {
    if (!CanUndo())
        return false;
    std::unique_ptr<Step> step = std::move(m_undo.back());
    m_undo.pop_back();
    Swap(*step, &Touched::after, &Touched::before);
    m_nextId = step->nextIdBefore;
    m_redo.push_back(std::move(step));
    return true;
}

bool CObjBase::Redo() {
    if (!CanRedo())
        return false;
    std::unique_ptr<Step> step = std::move(m_redo.back());
    m_redo.pop_back();
    Swap(*step, &Touched::before, &Touched::after);
    m_nextId = step->nextIdAfter;
    m_undo.push_back(std::move(step));
    return true;
}

void CObjBase::SetUndoLimit(int steps) {
    m_undoLimit = static_cast<size_t>(std::max(steps, 0));
    TrimUndo();
}
