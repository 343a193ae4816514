// A load combination of the model as a stored object: its record and checksums, and the two
// cascades that delete combinations left without their load cases and renumber the rest.
#include "model/KombinacijaOpterecenja.h"

#include "diag/Assert.h"
#include "host/Model.h"
#include "model/SlucajOpterecenja.h"

#include <algorithm>
#include <memory>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace {

const char* const kSource = "KombinacijaOpterecenja";

const CKombinacijaOpterecenja* Kombinacija(const CBaseManager& bm, const CId& id) {
    const auto* pKomb = dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id));
    VASSERT(pKomb);
    return pKomb;
}

/// Ordinals of all load cases of the store by id.
CRedniBrojeviSlOpt RedniBrojeviSlOpt(CBaseManager& bm) {
    CRedniBrojeviSlOpt redniBrojevi;
    bm.Select(CSlucajOpterecenja::Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        VASSERT(pSlOpt);
        redniBrojevi.Postavi(id, pSlOpt->DajRedniBroj());
    }
    return redniBrojevi;
}

/// Gives back a pooled object that never reached the store.
struct UnistiObj {
    void operator()(CObj* pObj) const { pObj->Destroy(1); }
};
using NovaKombinacija = std::unique_ptr<CKombinacijaOpterecenja, UnistiObj>;

/// A new combination to take the place of the stored one: its attribute word and its item,
/// copied as values (much cheaper than a copy through the record), with the name left for
/// the caller to set.
NovaKombinacija KopijaBezNaziva(const CKombinacijaOpterecenja& stara) {
    NovaKombinacija pNova(new CKombinacijaOpterecenja());
    pNova->SetAtribut(stara.GetAtribut());
    pNova->Item().KopirajBezNaziva(stara.Item());
    return pNova;
}

/// Gives one combination the ordinal r (0: it keeps its ordinal) and rebuilds its generated
/// name, whose load case numerals may have changed. A combination that changes is replaced by
/// a changed copy, so the undo step keeps the old object itself and holds just what changed.
/// naziv is a buffer for the name. The view is open for writing.
void Obnovi(CBaseManager& bm, const CId& id, const CKombinacijaOpterecenja& stara, int r,
            const CRedniBrojeviSlOpt& redniBrojevi, CString& naziv) {
    const CKombOptItem& staro = stara.Item();
    const bool noviBroj = r > 0 && r != staro.GetRedniBroj();
    // An item that stands for an SRSS load case may be named by the paired rule.
    if (staro.GetId().Valid()) {
        NovaKombinacija pNova = KopijaBezNaziva(stara);
        CKombOptItem& novo = pNova->Item();
        novo.SetNaziv(staro.GetNaziv());
        if (noviBroj)
            novo.SetRedniBroj(r);
        if (staro.IsGenericName())
            novo.SetGenericName(nullptr, 0);
        if (noviBroj || novo.GetNaziv() != staro.GetNaziv())
            bm.Replace(id, pNova.release());
        return;
    }
    // Any other is named from the ordinals alone. The name is made once, into the buffer,
    // before the copy when only the name may change.
    const bool generickiNaziv = staro.IsGenericName() != 0;
    if (generickiNaziv) {
        staro.NapraviGenerickiNaziv(redniBrojevi, naziv);
        if (!noviBroj && naziv == staro.GetNaziv())
            return;
    } else if (!noviBroj) {
        return;
    }
    NovaKombinacija pNova = KopijaBezNaziva(stara);
    CKombOptItem& item = pNova->Item();
    if (noviBroj)
        item.SetRedniBroj(r);
    if (generickiNaziv)
        item.PostaviGenerickiNaziv(naziv);
    else
        item.SetNaziv(staro.GetNaziv());
    bm.Replace(id, pNova.release());
}

/// Gives every combination the ordinal novi(id, old ordinal) (0: it keeps its ordinal) and
/// rebuilds the generated names. The view is open for writing.
template <class NoviRedniBroj> void PrenumerisiIPreimenuj(CBaseManager& bm, NoviRedniBroj&& novi) {
    const CRedniBrojeviSlOpt redniBrojevi = RedniBrojeviSlOpt(bm);
    CString naziv;
    bm.Select(CKombinacijaOpterecenja::Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const CKombinacijaOpterecenja& stara = *Kombinacija(bm, id);
        Obnovi(bm, id, stara, novi(id, stara.Item().GetRedniBroj()), redniBrojevi, naziv);
    }
}

} // namespace

CKombinacijaOpterecenja::CKombinacijaOpterecenja(const CKombinacijaOpterecenja& src)
    : CPooledObj() {
    gfnAssert(this == validAdr, "this == validAdr", kSource, __LINE__);
    Copy(src);
}

CKombinacijaOpterecenja& CKombinacijaOpterecenja::operator=(const CKombinacijaOpterecenja& src) {
    Copy(src);
    return *this;
}

// --- record and checksums ---

int CKombinacijaOpterecenja::ToFiller(CFiller& f) const {
    CObj::ToFiller(f);
    f.WriteInt32(1);
    m_Item.ToFiller(f);
    return 1;
}

int CKombinacijaOpterecenja::FromFiller(CFiller& f) {
    if (!CObj::FromFiller(f) || f.IsError())
        return 0;
    if (CTrFiller::ReadVersion(f, kSource, 1, 1) == 0)
        return 0;
    return m_Item.FromFiller(f);
}

void CKombinacijaOpterecenja::UpdateCRC(uint32_t& crc1, uint32_t& /*crc2*/, uint32_t& crc3) const {
    // Only the combination itself counts, not the base record's attribute word.
    uint32_t zanemaren1 = 0;
    uint32_t zanemaren2 = 0;
    uint32_t zanemaren3 = 0;
    CObj::UpdateCRC(zanemaren1, zanemaren2, zanemaren3);

    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const bool bTeorijaII = JeTeorijaII(bm);
    bm.Close();
    DodajCRC(crc1, crc3, bTeorijaII);
}

void CKombinacijaOpterecenja::DodajCRC(uint32_t& crc1, uint32_t& crc3, bool bTeorijaII) const {
    CCrcFiller crc;
    m_Item.ToFiller(crc);
    crc1 += crc.GetCRC();
    // A second-order analysis depends on the combination's load cases and coefficients.
    if (bTeorijaII)
        crc3 += m_Item.CRC_BitanZaTeorijuII();
}

bool CKombinacijaOpterecenja::JeTeorijaII(CBaseManager& bm) {
    bm.Select(CModel::Type);
    const auto* pModel = dynamic_cast<const CModel*>(bm.GetR(bm.GetFirst()));
    gfnAssert(pModel != nullptr, "pModel", kSource, __LINE__);
    return pModel->GetAnaliza() >= 2;
}

// --- cascades ---

void CKombinacijaOpterecenja::BrisiKombOptKojeSadrzeNepostojeciSlOpt() {
    if (bSacuvajKombinacije)
        return;

    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const int nSlOpt = bm.Count(CSlucajOpterecenja::Type);
    const int nKomb = bm.Count(Type);
    // Combination ids by ordinal - 1.
    CArray<CId> tabela;
    tabela.SetSize(nKomb);
    std::unordered_set<CId> zaBrisanje;
    bm.Select(Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const CKombOptItem& item = Kombinacija(bm, id)->Item();
        tabela[item.GetRedniBroj() - 1] = id;
        for (int i = 0; i < item.GetBrojOsnOpt(); ++i) {
            double koef = 0.0;
            CId slOptId;
            item.GetOsnOptByIndex(i, koef, slOptId);
            if (!slOptId.Valid())
                continue;
            // Any entry counts as a reference, whatever its coefficient.
            const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(slOptId));
            if (pSlOpt == nullptr || pSlOpt->DajRedniBroj() > nSlOpt)
                zaBrisanje.insert(id);
        }
    }
    bm.Close();

    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    bm.FreezeUndoCounter();
    for (int i = tabela.GetSize() - 1; i >= 0; --i) {
        if (zaBrisanje.contains(tabela[i]))
            bm.Delete(tabela[i]);
    }
    // The survivors keep their order and close the gaps.
    std::erase_if(tabela.Vector(), [&](const CId& id) { return zaBrisanje.contains(id); });
    std::unordered_map<CId, int> noviRedniBroj;
    for (int i = 0; i < tabela.GetSize(); ++i)
        noviRedniBroj[tabela[i]] = i + 1;
    PrenumerisiIPreimenuj(bm, [&](const CId& id, int) {
        const auto it = noviRedniBroj.find(id);
        return it != noviRedniBroj.end() ? it->second : 0;
    });
    bm.UnfreezeUndoCounter();
    bm.Close();
}

int CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(CId slOpt) {
    if (bSacuvajKombinacije)
        return 0;

    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const int nKomb = bm.Count(Type);
    // The ordinal r at place r - 1, or 0 for a combination that goes.
    CArray<int> tabela;
    tabela.SetSize(nKomb);
    std::vector<CId> zaBrisanje;
    bm.Select(Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const CKombOptItem& item = Kombinacija(bm, id)->Item();
        const int r = item.GetRedniBroj();
        tabela[r - 1] = r;
        int i = 0;
        double koef = 0.0;
        // Any entry counts as a reference, whatever its coefficient.
        if (item.GetOsnOptById(i, koef, slOpt)) {
            zaBrisanje.push_back(id);
            tabela[r - 1] = 0;
        }
    }
    bm.Close();
    if (zaBrisanje.empty())
        return 0;

    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    bm.FreezeUndoCounter();
    for (const CId& id : zaBrisanje)
        bm.Delete(id);
    // The surviving old ordinals in ascending order; each one's new ordinal is its position.
    std::erase(tabela.Vector(), 0);
    std::vector<int> noviRedniBroj(static_cast<size_t>(nKomb) + 1, 0);
    for (int i = 0; i < tabela.GetSize(); ++i)
        noviRedniBroj[static_cast<size_t>(tabela[i])] = i + 1;
    PrenumerisiIPreimenuj(bm, [&](const CId&, int r) {
        return r >= 1 && r <= nKomb ? noviRedniBroj[static_cast<size_t>(r)] : 0;
    });
    bm.UnfreezeUndoCounter();
    bm.Close();
    return static_cast<int>(zaBrisanje.size());
}

void CKombinacijaOpterecenja::ObnoviGenerickeNazive(const std::vector<CId>& slucajevi) {
    // Marks of the renumbered load cases by id (store ids are small positive numbers).
    std::vector<bool> oznaceni;
    for (const CId& id : slucajevi) {
        if (!id.Valid())
            continue;
        if (static_cast<size_t>(id.GetValue()) >= oznaceni.size())
            oznaceni.resize(static_cast<size_t>(id.GetValue()) + 1, false);
        oznaceni[static_cast<size_t>(id.GetValue())] = true;
    }
    auto sadrzi = [&](const CKombOptItem& item) {
        for (int i = 0; i < item.GetBrojOsnOpt(); ++i) {
            double koef = 0.0;
            CId id;
            item.GetOsnOptByIndex(i, koef, id);
            if (id.Valid() && static_cast<size_t>(id.GetValue()) < oznaceni.size() &&
                oznaceni[static_cast<size_t>(id.GetValue())])
                return true;
        }
        return false;
    };

    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    const CRedniBrojeviSlOpt redniBrojevi = RedniBrojeviSlOpt(bm);
    CString naziv;
    bm.Select(Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const CKombinacijaOpterecenja& stara = *Kombinacija(bm, id);
        // Only a generated name, or one an SRSS item may take, can change.
        const CKombOptItem& item = stara.Item();
        if ((item.IsGenericName() || item.GetId().Valid()) && sadrzi(item))
            Obnovi(bm, id, stara, 0, redniBrojevi, naziv);
    }
    bm.Close();
}
