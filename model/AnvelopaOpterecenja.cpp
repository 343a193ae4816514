// CAnvelopaOpterecenja: the envelope record, its selection text and the generalized load case
// it stands for.
#include "model/AnvelopaOpterecenja.h"

#include "diag/Assert.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/LoadNumbering.h"
#include "model/ModelGlobals.h"
#include "model/SlucajOpterecenja.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <algorithm>
#include <climits>
#include <cwchar>
#include <utility>
#include <vector>

namespace {

/// A number read as the C library reads a long (leading blanks, optional sign, digits; what
/// follows is ignored; no digits give 0), saturated to the range of int.
int ProcitajBroj(const CString& text) {
    const long value = std::wcstol(text.c_str(), nullptr, 10);
    return static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
}

/// Marks one item of a selection: a single ordinal or a range a-b. False when it is invalid.
bool OznaciStavku(const CString& item, CArray<int>& flags, int n) {
    const int dash = item.Find(L'-');
    if (dash >= 1) {
        // a range; a second dash makes it invalid
        if (item.ReverseFind(L'-') != dash)
            return false;
        const int a = ProcitajBroj(item.Left(dash));
        const int b = ProcitajBroj(item.Mid(dash + 1));
        if (a < 1 || b < 1 || a >= b || b > n)
            return false;
        for (int k = a; k <= b; ++k)
            flags[k - 1] = 1;
        return true;
    }
    // a single ordinal; a dash in front reads as a minus sign
    const int k = ProcitajBroj(item);
    if (k < 1 || k > n)
        return false;
    flags[k - 1] = 1;
    return true;
}

/// Builds generalized load cases of selections. The store is counted once; under the
/// superposition theory the combinations are filed by their ordinals in one walk, when first
/// needed, and each selected combination is turned into its unit once, so that building
/// several envelopes in one call walks the combinations only once.
class CGraditelj {
public:
    /// bJednom: the builder serves one selection only, so the units of a combination are not
    /// kept for another.
    explicit CGraditelj(bool bJednom = false) : m_c(LoadNumbering::Count()), m_bJednom(bJednom) {}

    int Napravi(const CString& izbor, CGeneralizedLoadCase& glc) {
        const int nSlOpt = m_c.nSlOpt;
        glc.Reset();
        CArray<int> flags;
        if (!CAnvelopaOpterecenja::Str2FlagsArray(izbor, flags, nSlOpt + m_c.nKomb))
            return 0;
        // The units in the order of the selection; they go in together, as one by one.
        std::vector<CLoadCaseUnit> units;
        for (int g = 1; g <= flags.GetSize(); ++g) {
            if (!flags[g - 1])
                continue;
            if (g <= nSlOpt || CModelGlobals::nTeorija != 1) {
                // a load case, or a combination enveloped through its own results
                OCArray<CLoadCaseFactor> factors;
                factors.Add(CLoadCaseFactor(g, 1.0));
                CLoadCaseUnit& unit = units.emplace_back();
                unit.Set(factors, LCU_ANVELOPA);
            } else if (m_bJednom) {
                for (const CId& id : Kombinacija(g - nSlOpt).ids)
                    UnitKombinacije(KombinacijaOf(id), units.emplace_back());
            } else {
                Kombinacije& k = Kombinacija(g - nSlOpt);
                if (!k.napravljene) {
                    k.napravljene = true;
                    for (const CId& id : k.ids)
                        UnitKombinacije(KombinacijaOf(id), k.units.emplace_back());
                }
                units.insert(units.end(), k.units.begin(), k.units.end());
            }
        }
        glc.AddLoadCaseUnits(std::move(units));
        return 1;
    }

private:
    struct Kombinacije {
        std::vector<CId> ids;             // in store order
        std::vector<CLoadCaseUnit> units; // made from them when first asked for
        bool napravljene = false;
    };

    /// The combinations whose own ordinal is j (1..nKomb), with their units once made.
    Kombinacije& Kombinacija(int j) {
        if (m_poRednomBroju.empty()) {
            m_bm.Open(CBaseManager::Read);
            m_poRednomBroju.resize(static_cast<size_t>(m_c.nKomb) + 1);
            m_bm.Select(CBaseManager::KombinacijaOpterecenjaType);
            for (CId id = m_bm.GetFirst(); id.Valid(); id = m_bm.GetNext()) {
                const int rb = KombinacijaOf(id).GetRedniBroj();
                if (rb >= 1 && rb <= m_c.nKomb)
                    m_poRednomBroju[static_cast<size_t>(rb)].ids.push_back(id);
            }
        }
        return m_poRednomBroju[static_cast<size_t>(j)];
    }

    const CKombOptItem& KombinacijaOf(const CId& id) const {
        const auto* pKombOpt = dynamic_cast<const CKombinacijaOpterecenja*>(m_bm.GetR(id));
        VASSERT(pKombOpt);
        return pKombOpt->Item();
    }

    /// The unit of a combination: the members with a non-zero coefficient whose load case
    /// exists, with the load case's ordinal, sorted.
    void UnitKombinacije(const CKombOptItem& item, CLoadCaseUnit& unit) const {
        OCArray<CLoadCaseFactor>& factors = unit.Factors();
        factors.Reserve(item.GetBrojOsnOpt());
        for (int m = 0; m < item.GetBrojOsnOpt(); ++m) {
            double koef = 0.0;
            CId slOptId;
            item.GetOsnOptByIndex(m, koef, slOptId);
            if (!CToler::Razliciti(koef, 0.0) || !slOptId.Valid())
                continue;
            const auto* pSlOpt = dynamic_cast<const CSlucajOpterecenja*>(m_bm.GetR(slOptId));
            if (pSlOpt != nullptr)
                factors.Add(CLoadCaseFactor(pSlOpt->DajRedniBroj(), koef));
        }
        unit.Set(factors, LCU_ANVELOPA);
    }

    LoadNumbering::Counts m_c;
    bool m_bJednom;
    CBaseManager m_bm; // open for reading from the first combination on; closed at the end
    std::vector<Kombinacije> m_poRednomBroju;
};

const CAnvelopaOpterecenja* AnvelopaOf(const CBaseManager& bm, const CId& id) {
    const auto* pAnvOpt = dynamic_cast<const CAnvelopaOpterecenja*>(bm.GetR(id));
    VASSERT(pAnvOpt);
    return pAnvOpt;
}

} // namespace

CAnvelopaOpterecenja::CAnvelopaOpterecenja(const CAnvelopaOpterecenja& src) : CPooledObj() {
    VASSERT(this == validAdr);
    Copy(src);
}

CAnvelopaOpterecenja& CAnvelopaOpterecenja::operator=(const CAnvelopaOpterecenja& src) {
    if (this != &src)
        Copy(src);
    return *this;
}

int CAnvelopaOpterecenja::ToFiller(CFiller& f) const {
    CObj::ToFiller(f);
    f.WriteInt32(Verzija);
    f.WriteInt32(m_nMod);
    ClTranslator::ToFiller(f, m_strIzbor);
    ClTranslator::ToFiller(f, m_strNaziv);
    f.WriteInt32(m_nBroj);
    return 1;
}

int CAnvelopaOpterecenja::FromFiller(CFiller& f) {
    if (!CObj::FromFiller(f) || f.IsError())
        return 0;
    const int32_t version = CTrFiller::ReadVersion(f, "AnvelopaOpterecenja", 1, Verzija);
    if (version == 0)
        return 0;
    if (version >= 2)
        f.ReadInt32(m_nMod);
    else
        m_nMod = 0; // records from before the mode existed
    ClTranslator::FromFiller(f, m_strIzbor);
    ClTranslator::FromFiller(f, m_strNaziv);
    f.ReadInt32(m_nBroj);
    return f.IsError() ? 0 : 1;
}

void CAnvelopaOpterecenja::UpdateCRC(uint32_t& crc1, uint32_t& /*crc2*/, uint32_t& /*crc3*/) const {
    // The base record's attribute word does not enter the envelope's checksum, and nothing of
    // an envelope matters to the other two sums.
    uint32_t scratch1 = 0, scratch2 = 0, scratch3 = 0;
    CObj::UpdateCRC(scratch1, scratch2, scratch3);

    CCrcFiller crc;
    crc.WriteInt32(m_nMod);
    ClTranslator::ToFiller(crc, m_strIzbor);
    ClTranslator::ToFiller(crc, m_strNaziv);
    crc.WriteInt32(m_nBroj);
    crc1 += crc.GetCRC();
}

int CAnvelopaOpterecenja::Str2FlagsArray(const CString& s, CArray<int>& flags, int n) {
    flags.SetSize(n);
    for (int& flag : flags)
        flag = 0;
    CString rest = s;
    while (!rest.IsEmpty()) {
        // The item runs to the first comma unless the comma leads the text: then the whole
        // rest is one item, which cannot read as a valid ordinal.
        CString item;
        const int comma = rest.Find(L',');
        if (comma >= 1) {
            item = rest.Left(comma);
            rest = rest.Mid(comma + 1);
        } else {
            item = rest;
            rest.Empty();
        }
        if (!OznaciStavku(item, flags, n))
            return 0;
    }
    return 1;
}

int CAnvelopaOpterecenja::NapraviGeneralizedLoadcase(CGeneralizedLoadCase& glc) const {
    CGraditelj graditelj(true);
    return graditelj.Napravi(m_strIzbor, glc);
}

int CAnvelopaOpterecenja::GeneralizedLoadcase(int broj, CGeneralizedLoadCase& glc) {
    glc.Reset();
    CString izbor;
    bool found = false;
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Read);
        bm.Select(CBaseManager::AnvelopaOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            const CAnvelopaOpterecenja* pAnvOpt = AnvelopaOf(bm, id);
            if (pAnvOpt->GetBroj() == broj) {
                izbor = pAnvOpt->GetIzbor();
                found = true;
                break;
            }
        }
    }
    if (!found)
        return 0;
    CGraditelj graditelj(true);
    return graditelj.Napravi(izbor, glc);
}

void CAnvelopaOpterecenja::BrisiAnvelopu(int broj) {
    CId idAnv;
    {
        CBaseManager bm;
        bm.Open(CBaseManager::Read);
        bm.Select(CBaseManager::AnvelopaOpterecenjaType);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
            if (AnvelopaOf(bm, id)->GetBroj() == broj) {
                idAnv = id;
                break;
            }
        }
    }
    gfnAssert(idAnv.Valid(), "idAnv.Valid ()", gfnSourceName(__FILE__), __LINE__);

    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    bm.Select(CBaseManager::AnvelopaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        // The deleted envelope is renumbered too; it goes at the end.
        if (AnvelopaOf(bm, id)->GetBroj() < broj)
            continue;
        auto* pAnvOpt = dynamic_cast<CAnvelopaOpterecenja*>(bm.GetW(id));
        VASSERT(pAnvOpt);
        pAnvOpt->SetBroj(pAnvOpt->GetBroj() - 1);
    }
    bm.Delete(idAnv);
    bm.Close();
}

CString CAnvelopaOpterecenja::DajIspisZaIzvestaj(const CGeneralizedLoadCase& glc) {
    CString result = ClTranslator::Translate(L"Dimenzionisanje grupe slucajeva opterecenja");
    result += L": ";
    result += glc.PretvoriUSpisakRednihBrojevaSlucajevaOpterecenja();

    CGraditelj graditelj;
    CBaseManager bm;
    bm.Open(CBaseManager::Read);
    bm.Select(CBaseManager::AnvelopaOpterecenjaType);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const CAnvelopaOpterecenja* pAnvOpt = AnvelopaOf(bm, id);
        CGeneralizedLoadCase anv;
        anv.SetRbrFaze(1);
        if (graditelj.Napravi(pAnvOpt->GetIzbor(), anv) && anv == glc) {
            result += L" (";
            result += pAnvOpt->GetNaziv();
            result += L")";
            break;
        }
    }
    bm.Close();
    return result;
}
