// The open model of the desktop host.
#include "Document.h"

#include "host/LoadsServices.h"
#include "host/Model.h"
#include "host/ModelFile.h"
#include "host/VortaUtils.h"
#include "objbase/BaseManager.h"

#include <functional>
#include <string_view>

namespace {

/// The host's loading flag is up while records are read.
struct CLoadingFlag {
    CLoadingFlag() { CVortaUtils::s_bLoading = true; }
    ~CLoadingFlag() { CVortaUtils::s_bLoading = false; }
    CLoadingFlag(const CLoadingFlag&) = delete;
    CLoadingFlag& operator=(const CLoadingFlag&) = delete;
};

/// Changes the model object in one undo step.
template <class F> void ChangeModel(CObjBase& base, F change) {
    CBaseManager bm(CModel::Type, &base);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    bm.Select();
    const CId id = bm.GetFirst();
    if (auto* model = dynamic_cast<CModel*>(bm.GetW(id)))
        change(*model);
    bm.Close();
}

} // namespace

CDocument::CDocument() {
    RegisterHostClasses();
    New();
}

CDocument::~CDocument() {
    if (CObjBase::GetCurrent() == m_base.get())
        CObjBase::SetCurrent(nullptr);
    m_base.reset();
}

void CDocument::Replace(std::unique_ptr<CObjBase> base) {
    // The model object carries the host's settings; a model without one gets it outside the
    // undo history, which starts empty.
    if (base->Count(CModel::Type) == 0)
        base->Insert(std::make_unique<CModel>().release());
    if (CLoadsServices::ZaboraviDokument != nullptr)
        CLoadsServices::ZaboraviDokument();
    CObjBase::SetCurrent(base.get());
    m_base = std::move(base);
    m_undo.clear();
    m_redo.clear();
    m_nState = m_nBaseState = m_nSavedState = ++m_nLastState;
    ApplySettings();
    m_nSaved = Fingerprint();
}

void CDocument::New() {
    Replace(std::make_unique<CObjBase>());
    m_path.clear();
}

bool CDocument::Open(const std::filesystem::path& file, CString& error) {
    std::unique_ptr<CObjBase> base;
    {
        const CLoadingFlag loading;
        base = CModelFile::Load(file, error);
    }
    if (!base)
        return false;
    Replace(std::move(base));
    m_path = file;
    return true;
}

bool CDocument::Save(const std::filesystem::path& file, CString& error) {
    if (!CModelFile::Save(*m_base, file, error))
        return false;
    m_path = file;
    m_nSavedState = m_nState;
    m_nSaved = Fingerprint();
    return true;
}

size_t CDocument::Fingerprint() const {
    // A hash of the whole file (its CRC-32 would be the same for every file, since the file
    // ends with the CRC-32 of what precedes it).
    const std::vector<uint8_t> bytes = CModelFile::Write(*m_base);
    return std::hash<std::string_view>()(
        std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
}

bool CDocument::HasUnsavedChanges() const {
    return IsModified() || Fingerprint() != m_nSaved;
}

void CDocument::BeginCommand() {
    m_nUndoBefore = m_base->GetUndoCount();
}

void CDocument::EndCommand(const CString& name) {
    const int now = m_base->GetUndoCount();
    if (now > m_nUndoBefore) {
        for (int i = m_nUndoBefore; i < now; ++i)
            m_undo.push_back({name, ++m_nLastState});
        m_redo.clear();
        m_nState = m_undo.back().state;
    } else if (now < m_nUndoBefore || (!m_base->CanRedo() && !m_redo.empty())) {
        // The history was cut (a change outside any step, or steps beyond the limit): the
        // model is in a state of its own.
        m_undo.clear();
        m_redo.clear();
        m_nState = m_nBaseState = ++m_nLastState;
    }
    // Steps beyond the limit are dropped from the oldest end.
    while (static_cast<int>(m_undo.size()) > now) {
        m_nBaseState = m_undo.front().state;
        m_undo.erase(m_undo.begin());
    }
}

bool CDocument::Undo() {
    if (!m_base->Undo())
        return false;
    if (!m_undo.empty()) {
        m_redo.push_back(m_undo.back());
        m_undo.pop_back();
        m_nState = m_undo.empty() ? m_nBaseState : m_undo.back().state;
    } else {
        m_nState = ++m_nLastState;
    }
    ApplySettings();
    return true;
}

bool CDocument::Redo() {
    if (!m_base->Redo())
        return false;
    if (!m_redo.empty()) {
        m_undo.push_back(m_redo.back());
        m_redo.pop_back();
        m_nState = m_undo.back().state;
    } else {
        m_nState = ++m_nLastState;
    }
    ApplySettings();
    return true;
}

CString CDocument::UndoName() const {
    return CanUndo() && !m_undo.empty() ? m_undo.back().name : CString();
}

CString CDocument::RedoName() const {
    return CanRedo() && !m_redo.empty() ? m_redo.back().name : CString();
}

const CModel* CDocument::Model() const {
    const std::vector<CId> ids = m_base->Ids(CModel::Type);
    return ids.empty() ? nullptr : dynamic_cast<const CModel*>(m_base->Find(ids.front()));
}

int CDocument::Teorija() const {
    const CModel* model = Model();
    return model != nullptr ? model->GetTeorija() : 1;
}

void CDocument::SetTeorija(int teorija) {
    if (teorija == Teorija())
        return;
    ChangeModel(*m_base, [teorija](CModel& model) { model.SetTeorija(teorija); });
    ApplySettings();
}

std::vector<uint8_t> CDocument::Stabilnost() const {
    const CModel* model = Model();
    return model != nullptr ? model->GetStabilnost() : std::vector<uint8_t>();
}

void CDocument::SetStabilnost(std::vector<uint8_t> record) {
    ChangeModel(*m_base, [&record](CModel& model) { model.SetStabilnost(std::move(record)); });
}

void CDocument::ApplySettings() const {
    if (CLoadsServices::SetTeorija != nullptr)
        CLoadsServices::SetTeorija(Teorija());
}
