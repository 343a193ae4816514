// CSlucajOpterecenja: the stored load case, its record in all its versions, its checksums and
// the class-wide services over all load cases.
#include "model/SlucajOpterecenja.h"
#include "model/IdListRecord.h"

#include "diag/Assert.h"
#include "text/Translator.h"
#include "toler/Toler.h"

#include <array>
#include <string_view>
#include <vector>

namespace {

constexpr const char* kSource = "SlucajOpterecenja";
/// The version whose layout the checksum record keeps for good.
constexpr int32_t kCrcVerzija = 9;

constexpr int32_t kBitSeizmicki = 1;
constexpr int32_t kBitBudje = 2;

using idlist::ReadIds;
using idlist::WriteIds;

/// A factor that weights an SRSS member: neither exactly zero nor one within the tolerance.
bool ImaTezinskiFaktor(const CLoadCaseUnit& unit) {
    for (int i = 0; i < unit.GetSize(); ++i) {
        const double faktor = unit.GetLoadCaseFactor(i).GetFaktor();
        if (faktor != 0.0 && CToler::Razliciti(faktor, 1.0, CToler::gDefltTol))
            return true;
    }
    return false;
}

/// Records of version 10 marked NDA cases only by their short names.
bool JeNDANaziv(const CString& naziv) {
    static constexpr std::array<std::wstring_view, 4> oznake = {
        L"DDA", L"dda", L"\u0414\u0414\u0410", L"\u0434\u0434\u0430"};
    if (naziv.GetLength() < 3 || naziv.GetLength() > 5)
        return false;
    for (const std::wstring_view oznaka : oznake) {
        if (naziv.Find(oznaka) >= 0)
            return true;
    }
    return false;
}

} // namespace

// --- construction and copying ---

CSlucajOpterecenja::CSlucajOpterecenja(const CSlucajOpterecenja& src) : CPooledObj() {
    gfnAssert(static_cast<void*>(this) == validAdr, "this == validAdr", kSource, 48);
    Copy(src);
}

CSlucajOpterecenja& CSlucajOpterecenja::operator=(const CSlucajOpterecenja& src) {
    if (this != &src)
        Copy(src);
    return *this;
}

// --- values ---

CString CSlucajOpterecenja::GetNaziv(int withMarker) const {
    if (withMarker != 0 && m_ngMarker != 0)
        return m_strNaziv + L" (g)";
    return m_strNaziv;
}

void CSlucajOpterecenja::SetSeizmicki(int value) {
    if (value != 0)
        m_nFlags |= kBitSeizmicki;
    else
        m_nFlags &= ~kBitSeizmicki;
}

void CSlucajOpterecenja::PostaviBitBudje(int value) {
    if (value != 0)
        m_nFlags |= kBitBudje;
    else
        m_nFlags &= ~kBitBudje;
}

void CSlucajOpterecenja::PostaviSRSS(const CLoadCaseUnit& unit) {
    if (!m_pSRSS)
        m_pSRSS = std::make_unique<CLoadCaseUnit>();
    *m_pSRSS = unit;
    PostaviBitBudje(ImaTezinskiFaktor(*m_pSRSS) ? 1 : 0);
}

void CSlucajOpterecenja::BrisiSRSS() {
    m_pSRSS.reset();
    PostaviBitBudje(0);
}

void CSlucajOpterecenja::Set(int ordinal, const CSlOptItem& item) {
    m_nRedniBroj = ordinal;
    m_strNaziv = item.m_strNaziv;
    m_ngMarker = item.m_ngMarker;
    m_dKoeficijent = item.m_dKoeficijent;
    m_bStalno = item.m_bStalno;
    m_bAlternativno = item.m_bAlternativno;
    m_arrNeKombinujSa = item.m_arrNeKombinujSa;
    m_arrUvekKombinujSa = item.m_arrUvekKombinujSa;
    m_nUlaziUSeizmickiProracun = item.m_nUlaziUSeizmickiProracun;
}

// --- the record ---

int CSlucajOpterecenja::ToFiller(CFiller& f) const {
    CObj::ToFiller(f);
    f.WriteInt32(Verzija);
    f.WriteInt32(m_nNDA);
    f.WriteInt32(m_nUlaziUSeizmickiProracun);
    // Checksums see only the seismic bit, so marking a case weighted does not change them.
    const bool bCrc = dynamic_cast<const CCrcFiller*>(&f) != nullptr;
    WriteOdSRSS(f, bCrc ? (m_nFlags & kBitSeizmicki) : m_nFlags);
    return 1;
}

int CSlucajOpterecenja::ToCRCFiller(CFiller& f) const {
    CObj::ToFiller(f);
    f.WriteInt32(kCrcVerzija);
    WriteOdSRSS(f, m_nFlags);
    return 1;
}

void CSlucajOpterecenja::WriteOdSRSS(CFiller& f, int32_t flags) const {
    f.WriteUInt8(m_pSRSS ? 1 : 0);
    if (m_pSRSS)
        m_pSRSS->ToFiller(f);
    f.WriteInt32(m_bAlternativno);
    WriteIds(f, m_arrUvekKombinujSa);
    f.WriteInt32(m_eUticajUticajneLinije);
    f.WriteInt32(m_nBrojMultimodalnih);
    f.WriteInt32(flags);
    f.WriteInt32(0); // the old influence-line flag, replaced by the influence-line kind
    f.WriteFloat64(m_dKoeficijent);
    f.WriteInt32(m_bStalno);
    WriteIds(f, m_arrNeKombinujSa);
    ClTranslator::ToFiller(f, m_strNaziv);
    f.WriteInt32(m_nRedniBroj);
    f.WriteInt32(m_ngMarker);
}

int CSlucajOpterecenja::FromFiller(CFiller& f) {
    m_pSRSS.reset();
    m_nNDA = 0;
    m_nUlaziUSeizmickiProracun = 0;
    CObj::FromFiller(f);
    if (f.IsError())
        return 0;

    const int32_t version = CTrFiller::ReadVersion(f, kSource, 1, Verzija);
    if (version == 0)
        return 0;

    // Each version is the next one without its leading fields.
    if (version >= 11)
        f.ReadInt32(m_nNDA);
    if (version >= 10)
        f.ReadInt32(m_nUlaziUSeizmickiProracun);
    if (version >= 9) {
        uint8_t bSRSS = 0;
        f.ReadUInt8(bSRSS);
        if (bSRSS != 0) {
            m_pSRSS = std::make_unique<CLoadCaseUnit>();
            m_pSRSS->FromFiller(f);
        }
    }
    if (version >= 8)
        f.ReadInt32(m_bAlternativno);
    if (version >= 7)
        ReadIds(f, m_arrUvekKombinujSa);
    if (version >= 6) {
        int32_t uticaj = m_eUticajUticajneLinije;
        if (f.ReadInt32(uticaj))
            m_eUticajUticajneLinije = static_cast<eUticajUticajneLin>(uticaj);
    }
    if (version >= 5)
        f.ReadInt32(m_nBrojMultimodalnih);
    if (version >= 4)
        f.ReadInt32(m_nFlags);
    if (version >= 3) {
        // Early records marked an influence-line case by a flag; such a case has no kind yet.
        int32_t bStaraUticajna = 0;
        f.ReadInt32(bStaraUticajna);
        if (bStaraUticajna != 0) {
            gfnAssert(m_eUticajUticajneLinije == UL_NIJEDNA,
                      "m_eUticajUticajneLinije == UL_NIJEDNA", kSource, 223);
            m_eUticajUticajneLinije = UL_STARI_ZAPIS;
        }
    }
    if (version >= 2) {
        f.ReadFloat64(m_dKoeficijent);
        f.ReadInt32(m_bStalno);
        ReadIds(f, m_arrNeKombinujSa);
    }
    ClTranslator::FromFiller(f, m_strNaziv);
    f.ReadInt32(m_nRedniBroj);
    f.ReadInt32(m_ngMarker);

    if (version == 10 && JeNDANaziv(m_strNaziv))
        m_nNDA = 1;
    // A weighted SRSS case from a file that did not know the weighted mark is renamed once,
    // so that the user sees that its results now follow the weights.
    if (!DajBitBudje() && m_pSRSS && ImaTezinskiFaktor(*m_pSRSS)) {
        m_strNaziv = L"SRSS: ******";
        PostaviBitBudje(1);
    }
    return 1;
}

// --- checksums ---

void CSlucajOpterecenja::UpdateCRC(uint32_t& crc1, uint32_t& crc2, uint32_t& crc3) const {
    (void)crc2; // load cases add nothing to the second sum
    uint32_t base1 = 0;
    uint32_t base2 = 0;
    uint32_t base3 = 0;
    CObj::UpdateCRC(base1, base2, base3);

    // Everything about the case.
    CCrcFiller sve;
    sve.WriteInt32(m_nBrojMultimodalnih);
    sve.WriteInt32(m_nFlags & kBitSeizmicki);
    sve.WriteFloat64(m_dKoeficijent);
    sve.WriteInt32(m_bStalno);
    sve.WriteInt32(m_bAlternativno);
    WriteIds(sve, m_arrNeKombinujSa);
    WriteIds(sve, m_arrUvekKombinujSa);
    sve.WriteFloat64(m_dKoeficijent);
    ClTranslator::ToFiller(sve, m_strNaziv);
    sve.WriteInt32(m_nRedniBroj);
    sve.WriteInt32(GetAtribut());
    sve.WriteInt32(m_ngMarker);
    if (m_pSRSS)
        m_pSRSS->ToFiller(sve);
    sve.WriteInt32(m_nUlaziUSeizmickiProracun);

    // What the numbering of the analysis depends on.
    CCrcFiller numeracija;
    numeracija.WriteInt32(m_nFlags & kBitSeizmicki);
    numeracija.WriteInt32(m_nRedniBroj);
    numeracija.WriteInt32(GetAtribut());
    numeracija.WriteInt32(m_ngMarker);
    numeracija.WriteInt32(m_nUlaziUSeizmickiProracun);

    crc1 += base1 + sve.GetCRC();
    if (!m_pSRSS)
        crc3 += base3 + numeracija.GetCRC();
}

// --- class operations ---

const CSlucajOpterecenja* CSlucajOpterecenja::GetSlucajOpterecenja(int ordinal) {
    CBaseManager bm(Type);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const CSlucajOpterecenja* found = nullptr;
    bm.Select(Type);
    for (CId id = bm.GetFirst(); id.Valid() && found == nullptr; id = bm.GetNext()) {
        const auto* p = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        if (p != nullptr && p->m_nRedniBroj == ordinal)
            found = p;
    }
    bm.Close();
    return found;
}

void CSlucajOpterecenja::UmnoziSlOptZaIzvoz(CSlucajOpterecenja* dst,
                                            const CSlucajOpterecenja* src) {
    // NDA and the SRSS unit stay behind: they refer to the source model's analysis.
    dst->m_strNaziv = src->m_strNaziv;
    dst->m_nRedniBroj = src->m_nRedniBroj;
    dst->m_ngMarker = src->m_ngMarker;
    dst->m_dKoeficijent = src->m_dKoeficijent;
    dst->m_bStalno = src->m_bStalno;
    dst->m_bAlternativno = src->m_bAlternativno;
    if (dst != src) {
        dst->m_arrNeKombinujSa = src->m_arrNeKombinujSa;
        dst->m_arrUvekKombinujSa = src->m_arrUvekKombinujSa;
    }
    dst->m_nFlags = src->m_nFlags;
    dst->m_nBrojMultimodalnih = src->m_nBrojMultimodalnih;
    dst->m_eUticajUticajneLinije = src->m_eUticajUticajneLinije;
    dst->m_nUlaziUSeizmickiProracun = src->m_nUlaziUSeizmickiProracun;
}

void CSlucajOpterecenja::TEST_ProveriIspravnostRednihBrojeva() {
    CBaseManager bm(Type);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    const int nOsnovnihOpt = bm.Count(Type);
    std::vector<int> nizIndeks(static_cast<size_t>(nOsnovnihOpt), -1);
    bm.Select(Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* p = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        if (p == nullptr)
            continue;
        const int nIndex = p->m_nRedniBroj - 1;
        gfnAssert(nIndex >= 0 && nIndex < nOsnovnihOpt, "nIndex >= 0 && nIndex < nOsnovnihOpt",
                  kSource, 630);
        gfnAssert(nizIndeks[static_cast<size_t>(nIndex)] == -1, "nizIndeks[nIndex] == -1", kSource,
                  633);
        nizIndeks[static_cast<size_t>(nIndex)] = nIndex;
    }
    bm.Close();
    for (int i = 0; i < nOsnovnihOpt; ++i)
        gfnAssert(nizIndeks[static_cast<size_t>(i)] == i, "nizIndeks[i] == i", kSource, 641);
}

uint32_t CSlucajOpterecenja::GetCRCsvihSRSSopt() {
    CBaseManager bm(Type);
    CBaseManager::AssertOpenOK(bm.Open(CBaseManager::Read));
    CCrcFiller crc;
    bm.SelectSorted(Type);
    for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext()) {
        const auto* p = dynamic_cast<const CSlucajOpterecenja*>(bm.GetR(id));
        if (p != nullptr && p->JeliSRSS())
            p->ToFiller(crc);
    }
    bm.Close();
    return crc.GetCRC();
}

// --- the multimodal tone map ---

void CSlucajOpterecenja::ResetujMapuTonovaZaMultiModalne() {
    s_mapTonovi.RemoveAll();
}

void CSlucajOpterecenja::PrekopirajMapuTonovaZaMultiModalne(const CMap<int, int, int, int>& map) {
    if (&map == &s_mapTonovi)
        return;
    s_mapTonovi.RemoveAll();
    for (const auto& [ordinal, tone] : map)
        s_mapTonovi.SetAt(ordinal, tone);
}

void CSlucajOpterecenja::GetKopijuMapeTonovaZaMultiModalne(CMap<int, int, int, int>& map) {
    if (&map == &s_mapTonovi)
        return;
    map.RemoveAll();
    for (const auto& [ordinal, tone] : s_mapTonovi)
        map.SetAt(ordinal, tone);
}

void CSlucajOpterecenja::SetIndexTonaZaRedniBrojMM(int ordinal, int tone) {
    s_mapTonovi.SetAt(ordinal, tone);
}

int CSlucajOpterecenja::GetIndexTonaZaRedniBrojMM(int ordinal) {
    int tone = 0;
    if (s_mapTonovi.IsEmpty() || !s_mapTonovi.Lookup(ordinal, tone))
        return 0;
    return tone;
}
