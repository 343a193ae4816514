// The model's envelopes as an editable list, and their selections on the global scale.
#include "services/Anvelope.h"

#include "diag/Assert.h"
#include "model/AnvelopaOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"

#include <algorithm>
#include <map>
#include <memory>
#include <unordered_map>
#include <utility>

namespace opterecenje {

namespace {

const CAnvelopaOpterecenja* Anvelopa(const CBaseManager& bm, const CId& id) {
    const auto* pAnvOpt = dynamic_cast<const CAnvelopaOpterecenja*>(bm.GetR(id));
    VASSERT(pAnvOpt);
    return pAnvOpt;
}

/// The envelopes of the store by number (equal numbers in store order).
std::multimap<int, CId> PoBroju(CBaseManager& bm) {
    std::multimap<int, CId> poBroju;
    bm.Select(CBaseManager::AnvelopaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
        poBroju.emplace(Anvelopa(bm, id)->GetBroj(), id);
    return poBroju;
}

/// Gives the envelope the number when it has another one.
void PostaviBroj(CBaseManager& bm, const CId& id, int broj) {
    if (Anvelopa(bm, id)->GetBroj() == broj)
        return;
    auto* pAnvOpt = dynamic_cast<CAnvelopaOpterecenja*>(bm.GetW(id));
    VASSERT(pAnvOpt);
    pAnvOpt->SetBroj(broj);
}

} // namespace

std::vector<CAnvelopaListe> DajAnvelope() {
    std::vector<CAnvelopaListe> lista;
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    for (const auto& [broj, id] : PoBroju(bm)) {
        const CAnvelopaOpterecenja* pAnvOpt = Anvelopa(bm, id);
        lista.push_back({id, pAnvOpt->GetNaziv(), pAnvOpt->GetIzbor(), pAnvOpt->GetMod()});
    }
    bm.Close();
    return lista;
}

bool PrimeniAnvelope(const std::vector<CAnvelopaListe>& lista) {
    CBaseManager bm;
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    std::unordered_map<CId, int> uListi;
    for (size_t i = 0; i < lista.size(); ++i)
        if (lista[i].id.Valid())
            uListi[lista[i].id] = static_cast<int>(i) + 1;
    // Nothing to do when every stored envelope stands in the list as it is, at its number.
    bool bIsto = bm.Count(CBaseManager::AnvelopaOpterecenjaType) == static_cast<int>(lista.size());
    for (const CAnvelopaListe& a : lista) {
        if (!bIsto)
            break;
        const auto* pAnvOpt =
            a.id.Valid() ? dynamic_cast<const CAnvelopaOpterecenja*>(bm.GetR(a.id)) : nullptr;
        bIsto = pAnvOpt != nullptr && pAnvOpt->GetNaziv() == a.naziv &&
                pAnvOpt->GetIzbor() == a.izbor && pAnvOpt->GetMod() == a.nMod &&
                pAnvOpt->GetBroj() == uListi[a.id];
    }
    bm.Close();
    if (bIsto)
        return false;

    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Write));
    bm.FreezeUndoCounter();
    std::vector<CId> zaBrisanje;
    bm.Select(CBaseManager::AnvelopaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
        if (!uListi.contains(id))
            zaBrisanje.push_back(id);
    for (const CId& id : zaBrisanje)
        bm.Delete(id);
    for (size_t i = 0; i < lista.size(); ++i) {
        const CAnvelopaListe& a = lista[i];
        const int broj = static_cast<int>(i) + 1;
        const auto* pStara =
            a.id.Valid() ? dynamic_cast<const CAnvelopaOpterecenja*>(bm.GetR(a.id)) : nullptr;
        if (pStara == nullptr) {
            auto pNova = std::make_unique<CAnvelopaOpterecenja>();
            pNova->SetNaziv(a.naziv);
            pNova->SetIzbor(a.izbor);
            pNova->SetMod(a.nMod);
            pNova->SetBroj(broj);
            bm.Insert(pNova.release());
            continue;
        }
        if (pStara->GetNaziv() == a.naziv && pStara->GetIzbor() == a.izbor &&
            pStara->GetMod() == a.nMod && pStara->GetBroj() == broj)
            continue;
        auto* pAnvOpt = dynamic_cast<CAnvelopaOpterecenja*>(bm.GetW(a.id));
        VASSERT(pAnvOpt);
        pAnvOpt->SetNaziv(a.naziv);
        pAnvOpt->SetIzbor(a.izbor);
        pAnvOpt->SetMod(a.nMod);
        pAnvOpt->SetBroj(broj);
    }
    bm.UnfreezeUndoCounter();
    bm.Close();
    return true;
}

bool ProcitajIzbor(const CString& izbor, int n, std::vector<int>& redniBrojevi) {
    redniBrojevi.clear();
    CArray<int> flags;
    if (!CAnvelopaOpterecenja::Str2FlagsArray(izbor, flags, std::max(n, 0)))
        return false;
    for (int g = 1; g <= flags.GetSize(); ++g)
        if (flags[g - 1])
            redniBrojevi.push_back(g);
    return true;
}

CString NapisiIzbor(const std::vector<int>& redniBrojevi) {
    CArray<int> niz;
    niz.Vector() = redniBrojevi;
    return ClTranslator::IntArray2String(niz);
}

int PreslikajAnvelope(CBaseManager& bm, const std::vector<int>& novi, bool bPisi) {
    const int nStaro = static_cast<int>(novi.size());
    bool bIdentitet = true;
    for (int g = 1; g <= nStaro && bIdentitet; ++g)
        bIdentitet = novi[static_cast<size_t>(g - 1)] == g;
    if (bIdentitet)
        return 0;

    int nObrisano = 0;
    int broj = 0;
    // Buffers of flags over the old and the new scale serve every envelope.
    const int nNovo = *std::max_element(novi.begin(), novi.end());
    CArray<int> flags;
    std::vector<char> noviFlags(static_cast<size_t>(std::max(nNovo, 0)) + 1, 0);
    std::vector<int> stari;
    std::vector<int> preslikani;
    for (const auto& [stariBroj, id] : PoBroju(bm)) {
        const CAnvelopaOpterecenja* pAnvOpt = Anvelopa(bm, id);
        // A selection that no longer fits the loads cannot be carried over: it goes.
        bool bOstaje = CAnvelopaOpterecenja::Str2FlagsArray(pAnvOpt->GetIzbor(), flags, nStaro);
        stari.clear();
        preslikani.clear();
        for (int g = 1; g <= flags.GetSize() && bOstaje; ++g) {
            if (!flags[g - 1])
                continue;
            stari.push_back(g);
            if (const int n = novi[static_cast<size_t>(g - 1)]; n > 0)
                noviFlags[static_cast<size_t>(n)] = 1;
        }
        // The new ordinals in ascending order.
        for (int n = 1; n <= nNovo; ++n)
            if (std::exchange(noviFlags[static_cast<size_t>(n)], 0) != 0)
                preslikani.push_back(n);
        bOstaje = bOstaje && (stari.empty() || !preslikani.empty());
        if (!bOstaje) {
            ++nObrisano;
            if (bPisi)
                bm.Delete(id);
            continue;
        }
        ++broj;
        if (!bPisi)
            continue;
        PostaviBroj(bm, id, broj);
        if (preslikani != stari) {
            auto* pPromenjena = dynamic_cast<CAnvelopaOpterecenja*>(bm.GetW(id));
            VASSERT(pPromenjena);
            pPromenjena->SetIzbor(NapisiIzbor(preslikani));
        }
    }
    return nObrisano;
}

} // namespace opterecenje
