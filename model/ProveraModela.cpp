// The check of a model read from a file: ordinals and numbers, finite values, SRSS units over
// existing load cases, and the consistency repair of combinations.
#include "model/ProveraModela.h"

#include "host/MessageBox.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"
#include "text/Translator.h"

#include <cmath>
#include <memory>
#include <utility>
#include <vector>

namespace {

/// A name as a refusal quotes it: on one line and not too long.
CString Ime(const CString& naziv) {
    constexpr int kNajvise = 40;
    CString ime = naziv.Left(kNajvise);
    for (wchar_t& c : ime) {
        if (c < L' ' || c == 0x7F)
            c = L'?';
    }
    if (naziv.GetLength() > kNajvise)
        ime += L"...";
    return ime;
}

template <class Zapis> std::vector<const Zapis*> Procitaj(CBaseManager& bm, int tip) {
    std::vector<const Zapis*> objekti;
    bm.Select(tip);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
        if (const auto* p = dynamic_cast<const Zapis*>(bm.GetR(id)))
            objekti.push_back(p);
    return objekti;
}

/// Checks that the objects carry the numbers 1..n, each once; broj(p) gives an object's number
/// and ime(p) its name. vrsta names one object of the kind, vrste several.
template <class Zapis, class Broj, class ImeOf>
bool BrojeviJedanDoN(const std::vector<const Zapis*>& objekti, Broj&& broj, ImeOf&& ime,
                     const wchar_t* vrsta, const wchar_t* vrste, const wchar_t* rec,
                     CString& greska) {
    const int n = static_cast<int>(objekti.size());
    std::vector<const Zapis*> poBroju(objekti.size() + 1, nullptr);
    for (const Zapis* p : objekti) {
        const int b = broj(p);
        if (b < 1 || b > n) {
            greska = CString::Formatted(L"%s \"%s\" has the %s %d; the %d %s must be numbered 1 "
                                        L"to %d",
                                        vrsta, Ime(ime(p)).c_str(), rec, b, n, vrste, n);
            return false;
        }
        if (const Zapis* drugi = poBroju[static_cast<size_t>(b)]) {
            greska = CString::Formatted(L"%s \"%s\" and \"%s\" both have the %s %d", vrste,
                                        Ime(ime(drugi)).c_str(), Ime(ime(p)).c_str(), rec, b);
            return false;
        }
        poBroju[static_cast<size_t>(b)] = p;
    }
    return true;
}

bool ProveriSlucajeve(const std::vector<const CSlucajOpterecenja*>& slucajevi, CString& greska) {
    const auto ime = [](const CSlucajOpterecenja* p) { return p->GetNaziv(0); };
    if (!BrojeviJedanDoN(
            slucajevi, [](const CSlucajOpterecenja* p) { return p->DajRedniBroj(); }, ime,
            L"load case", L"load cases", L"ordinal", greska))
        return false;
    const int n = static_cast<int>(slucajevi.size());
    for (const CSlucajOpterecenja* p : slucajevi) {
        const CString opis =
            CString::Formatted(L"load case %d \"%s\"", p->DajRedniBroj(), Ime(ime(p)).c_str());
        if (!std::isfinite(p->GetKoeficijent())) {
            greska = opis + L" has a coefficient that is not a finite number";
            return false;
        }
        if (!p->JeliSRSS())
            continue;
        std::vector<bool> naveden(static_cast<size_t>(n) + 1, false);
        for (const CLoadCaseFactor& faktor : p->DajLCUnitZaSRSS()->GetFactors()) {
            const int r = faktor.GetLCRedniBroj();
            if (r < 1 || r > n) {
                greska = CString::Formatted(L"the SRSS unit of %s names load %d, which is not one "
                                            L"of the load cases 1 to %d",
                                            opis.c_str(), r, n);
                return false;
            }
            if (naveden[static_cast<size_t>(r)]) {
                greska = CString::Formatted(L"the SRSS unit of %s names load case %d twice",
                                            opis.c_str(), r);
                return false;
            }
            naveden[static_cast<size_t>(r)] = true;
            if (!std::isfinite(faktor.GetFaktor())) {
                greska = L"the SRSS unit of " + opis + L" has a factor that is not a finite number";
                return false;
            }
        }
    }
    return true;
}

bool ProveriKombinacije(const std::vector<const CKombinacijaOpterecenja*>& kombinacije,
                        CString& greska) {
    const auto ime = [](const CKombinacijaOpterecenja* p) { return p->Item().GetNaziv(); };
    if (!BrojeviJedanDoN(
            kombinacije, [](const CKombinacijaOpterecenja* p) { return p->Item().GetRedniBroj(); },
            ime, L"combination", L"combinations", L"ordinal", greska))
        return false;
    for (const CKombinacijaOpterecenja* p : kombinacije) {
        const CKombOptItem& item = p->Item();
        for (int i = 0; i < item.GetBrojOsnOpt(); ++i) {
            if (!std::isfinite(item.GetOsnOptKoefByIndex(i))) {
                greska = CString::Formatted(L"combination %d \"%s\" has a coefficient that is not "
                                            L"a finite number",
                                            item.GetRedniBroj(), Ime(ime(p)).c_str());
                return false;
            }
        }
    }
    return true;
}

struct UnistiObj {
    void operator()(CObj* pObj) const { pObj->Destroy(1); }
};

/// The consistency repair of every combination. Repaired combinations take the place of the
/// stored ones outside any undo step; their ordinals are listed in popravljene.
void PopraviKombinacije(CObjBase& base, CArray<int>& popravljene) {
    std::vector<std::pair<CId, std::unique_ptr<CKombinacijaOpterecenja, UnistiObj>>> zamene;
    {
        CBaseManager bm(0, &base);
        bm.Open(CBaseManager::Read);
        CRedniBrojeviSlOpt redniBrojevi;
        for (const CSlucajOpterecenja* p :
             Procitaj<CSlucajOpterecenja>(bm, CSlucajOpterecenja::Type))
            redniBrojevi.Postavi(p->GetId(), p->DajRedniBroj());
        const int nSlOpt = bm.GetObjTypeCount(CSlucajOpterecenja::Type);
        for (const CKombinacijaOpterecenja* p :
             Procitaj<CKombinacijaOpterecenja>(bm, CKombinacijaOpterecenja::Type)) {
            // Most combinations are sound: only one that needs the repair is copied.
            if (!p->Item().ImaNarusenuKonzistenciju(redniBrojevi, nSlOpt))
                continue;
            CKombOptItem item = p->Item();
            if (!item.NarusenaKonzistencija(bm))
                continue;
            if (item.IsGenericName())
                item.SetGenericNamePoRednimBrojevima(redniBrojevi);
            std::unique_ptr<CKombinacijaOpterecenja, UnistiObj> nova(new CKombinacijaOpterecenja);
            nova->SetAtribut(p->GetAtribut());
            nova->Item() = item;
            popravljene.Add(item.GetRedniBroj());
            zamene.emplace_back(p->GetId(), std::move(nova));
        }
    }
    for (auto& [id, nova] : zamene)
        base.Replace(id, nova.release());
}

} // namespace

bool ProveriUcitaniModel(CObjBase& base, CString& greska) {
    {
        CBaseManager bm(0, &base);
        bm.Open(CBaseManager::Read);
        if (!ProveriSlucajeve(Procitaj<CSlucajOpterecenja>(bm, CSlucajOpterecenja::Type), greska) ||
            !ProveriKombinacije(
                Procitaj<CKombinacijaOpterecenja>(bm, CKombinacijaOpterecenja::Type), greska))
            return false;
        const auto anvelope = Procitaj<CAnvelopaOpterecenja>(bm, CAnvelopaOpterecenja::Type);
        if (!BrojeviJedanDoN(
                anvelope, [](const CAnvelopaOpterecenja* p) { return p->GetBroj(); },
                [](const CAnvelopaOpterecenja* p) { return p->GetNaziv(); }, L"envelope",
                L"envelopes", L"number", greska))
            return false;
    }
    CArray<int> popravljene;
    PopraviKombinacije(base, popravljene);
    if (!popravljene.IsEmpty()) {
        const CString poruka = CString::Formatted(
            ClTranslator::Translate(L"Iz kombinacija %s izbaceni su clanovi sa slucajevima "
                                    L"opterecenja kojih nema ili koji se ponavljaju.")
                .c_str(),
            ClTranslator::IntArray2String(popravljene).c_str());
        CVortaMessageBox::MessageBoxW(poruka, ClTranslator::Translate(L"Upozorenje"),
                                      CVortaMessageBox::MB_OK | CVortaMessageBox::MB_ICONWARNING);
    }
    return true;
}
