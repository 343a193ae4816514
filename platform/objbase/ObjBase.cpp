// The document's object base: objects per type in store order, the class registry, and undo
// and redo by record images.
#include "objbase/ObjBase.h"

#include "diag/Assert.h"

#include <algorithm>

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

// One stored object with its type and its place in the store order of the type.
struct CObjBase::Entry {
    Entry(CObj* object, int objectType, uint64_t objectOrder)
        : obj(object), type(objectType), order(objectOrder) {}
    ~Entry() { DestroyObject(obj); }
    Entry(const Entry&) = delete;
    Entry& operator=(const Entry&) = delete;

    CObj* obj;
    int type;
    uint64_t order;
};

// A record image kept by a step: where its bytes lie in the step's image store.
struct CObjBase::Kept {
    size_t block = 0;
    size_t offset = 0;
    size_t size = 0;
};

// An object changed within an undo step: what it was before the step and after it. A missing
// image means the object did not exist then.
struct CObjBase::Touched {
    int32_t id = -1;
    int typeBefore = 0;
    uint64_t orderBefore = 0;
    std::optional<Kept> before;
    int typeAfter = 0;
    uint64_t orderAfter = 0;
    std::optional<Kept> after;
};

struct CObjBase::Step {
    explicit Step(int32_t nextId) : nextIdBefore(nextId), nextIdAfter(nextId) {}

    std::vector<Touched> touched;
    int32_t nextIdBefore;
    int32_t nextIdAfter;
    // Whether the after images have been taken (see FinishStep).
    bool afterTaken = false;

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

    bool Unchanged(const Touched& t) const {
        if (t.before.has_value() != t.after.has_value())
            return false;
        if (!t.before)
            return true;
        if (t.typeBefore != t.typeAfter || t.orderBefore != t.orderAfter ||
            t.before->size != t.after->size)
            return false;
        const uint8_t* before = Bytes(*t.before);
        return std::equal(before, before + t.before->size, Bytes(*t.after));
    }

private:
    // Ids below this are marked in a bit table, any other in a set.
    static constexpr int32_t kDenseIds = int32_t{1} << 22;
    static constexpr size_t kFirstBlock = 4096;
    static constexpr size_t kLargestBlock = size_t{1} << 20;

    std::vector<uint64_t> marked;
    std::unordered_set<int32_t> markedOther;
    std::vector<std::vector<uint8_t>> blocks;
};

namespace {
// Steps that touch at most this many objects take their after images when they finish, so
// that objects left unchanged, and steps that changed nothing, are dropped at once. Larger
// steps (cascades over thousands of combinations) take them only when they are undone: the
// store then holds exactly the state the step left, and nothing is serialized twice on the
// user's way.
constexpr size_t kEagerAfterImages = 512;
} // namespace

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

CObj* CObjBase::CreateObject(int type) {
    const auto it = Registry().find(type);
    if (it == Registry().end())
        return nullptr;
    CObj* obj = it->second.prototype->MakeNew();
    obj->SetId(CId());
    return obj;
}

// --- contents ---

int CObjBase::Count(int type) const {
    const auto it = m_byType.find(type);
    return it == m_byType.end() ? 0 : static_cast<int>(it->second.size());
}

int CObjBase::CountAll() const {
    return static_cast<int>(m_objects.size());
}

const CObj* CObjBase::Find(const CId& id) const {
    const auto it = m_objects.find(id.GetValue());
    return it == m_objects.end() ? nullptr : it->second->obj;
}

std::vector<CId> CObjBase::Ids(int type, bool sorted) const {
    std::vector<CId> ids;
    const auto it = m_byType.find(type);
    if (it == m_byType.end())
        return ids;
    ids.reserve(it->second.size());
    for (const auto& [order, id] : it->second)
        ids.emplace_back(id);
    if (sorted)
        std::sort(ids.begin(), ids.end());
    return ids;
}

void CObjBase::Clear() {
    m_byType.clear();
    m_objects.clear();
    m_nextId = 1;
    m_nextOrder = 1;
    m_undo.clear();
    m_redo.clear();
    // A step in progress starts again from the empty store.
    if (m_current)
        m_current = std::make_unique<Step>(m_nextId);
}

// --- changes ---

void CObjBase::DestroyObject(CObj* obj) {
    if (obj != nullptr)
        obj->Destroy(1);
}

void CObjBase::Place(CObj* obj, int type, uint64_t order) {
    const int32_t id = obj->GetId().GetValue();
    m_byType[type][order] = id;
    m_objects[id] = std::make_unique<Entry>(obj, type, order);
}

void CObjBase::Remove(const CId& id) {
    const auto it = m_objects.find(id.GetValue());
    if (it == m_objects.end())
        return;
    const auto typeIt = m_byType.find(it->second->type);
    if (typeIt != m_byType.end()) {
        typeIt->second.erase(it->second->order);
        if (typeIt->second.empty())
            m_byType.erase(typeIt);
    }
    m_objects.erase(it);
}

CObjBase::Kept CObjBase::Image(const CObj& obj, Step& step) const {
    m_scratch.Open(CFiller::Mode::Write);
    obj.ToFiller(m_scratch);
    m_scratch.Close();
    return step.Keep(m_scratch.Buffer());
}

void CObjBase::Touch(const CId& id) {
    if (!m_current) {
        // A change outside any opening for writing cannot be undone, and the steps kept so
        // far no longer lead back to a state that existed.
        m_undo.clear();
        m_redo.clear();
        return;
    }
    if (!m_current->Mark(id.GetValue()))
        return;
    Touched touched;
    touched.id = id.GetValue();
    if (const auto it = m_objects.find(id.GetValue()); it != m_objects.end()) {
        touched.typeBefore = it->second->type;
        touched.orderBefore = it->second->order;
        touched.before = Image(*it->second->obj, *m_current);
    }
    m_current->touched.push_back(touched);
}

CObj* CObjBase::GetWritable(const CId& id) {
    const auto it = m_objects.find(id.GetValue());
    if (it == m_objects.end())
        return nullptr;
    Touch(id);
    return it->second->obj;
}

CId CObjBase::Insert(CObj* obj) {
    VASSERT(obj != nullptr);
    // Undo recreates objects by type, so only registered classes can be stored.
    gfnAssert(IsRegistered(obj->GetType()), "IsRegistered (pObj->GetType ())",
              gfnSourceName(__FILE__), __LINE__);
    const CId id(m_nextId);
    Touch(id);
    ++m_nextId;
    obj->SetId(id);
    Place(obj, obj->GetType(), m_nextOrder++);
    obj->NotifyInsert();
    return id;
}

bool CObjBase::InsertLoaded(CObj* obj) {
    if (obj == nullptr)
        return false;
    const CId id = obj->GetId();
    if (!id.Valid() || m_objects.contains(id.GetValue()) || !IsRegistered(obj->GetType())) {
        DestroyObject(obj);
        return false;
    }
    Touch(id);
    Place(obj, obj->GetType(), m_nextOrder++);
    m_nextId = std::max(m_nextId, id.GetValue() + 1);
    return true;
}

bool CObjBase::Delete(const CId& id) {
    const auto it = m_objects.find(id.GetValue());
    if (it == m_objects.end())
        return false;
    Touch(id);
    it->second->obj->NotifyDelete();
    Remove(id);
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

void CObjBase::TakeAfterImages(Step& step) const {
    for (Touched& touched : step.touched) {
        if (const auto it = m_objects.find(touched.id); it != m_objects.end()) {
            touched.typeAfter = it->second->type;
            touched.orderAfter = it->second->order;
            touched.after = Image(*it->second->obj, step);
        }
    }
    step.afterTaken = true;
}

void CObjBase::FinishStep() {
    std::unique_ptr<Step> step = std::move(m_current);
    if (!step)
        return;
    step->nextIdAfter = m_nextId;
    step->ForgetMarks();
    if (step->touched.size() <= kEagerAfterImages) {
        TakeAfterImages(*step);
        // Objects opened for writing but left as they were are no part of the step; a step
        // that changed nothing is not kept at all.
        std::erase_if(step->touched, [&step](const Touched& t) { return step->Unchanged(t); });
        if (step->touched.empty() && step->nextIdBefore == step->nextIdAfter)
            return;
    }
    m_undo.push_back(std::move(step));
    m_redo.clear();
    while (m_undo.size() > m_undoLimit)
        m_undo.erase(m_undo.begin());
}

void CObjBase::Restore(const CId& id, int type, uint64_t order, const Step& step,
                       const std::optional<Kept>& image) {
    Remove(id);
    if (!image)
        return;
    CObj* obj = CreateObject(type);
    VASSERT(obj != nullptr);
    CFiller f;
    const uint8_t* bytes = step.Bytes(*image);
    f.SetBuffer(std::vector<uint8_t>(bytes, bytes + image->size));
    f.Open(CFiller::Mode::Read);
    obj->FromFiller(f);
    f.Close();
    obj->SetId(id);
    Place(obj, type, order);
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
    if (!step->afterTaken)
        TakeAfterImages(*step);
    // Take every touched object away first, then bring back the ones that existed, so that
    // an id never meets an object that is still to be replaced.
    for (const Touched& t : step->touched)
        Remove(CId(t.id));
    for (const Touched& t : step->touched)
        Restore(CId(t.id), t.typeBefore, t.orderBefore, *step, t.before);
    m_nextId = step->nextIdBefore;
    m_redo.push_back(std::move(step));
    return true;
}

bool CObjBase::Redo() {
    if (!CanRedo())
        return false;
    std::unique_ptr<Step> step = std::move(m_redo.back());
    m_redo.pop_back();
    for (const Touched& t : step->touched)
        Remove(CId(t.id));
    for (const Touched& t : step->touched)
        Restore(CId(t.id), t.typeAfter, t.orderAfter, *step, t.after);
    m_nextId = step->nextIdAfter;
    m_undo.push_back(std::move(step));
    return true;
}

void CObjBase::SetUndoLimit(int steps) {
    m_undoLimit = static_cast<size_t>(std::max(steps, 0));
    while (m_undo.size() > m_undoLimit)
        m_undo.erase(m_undo.begin());
}
