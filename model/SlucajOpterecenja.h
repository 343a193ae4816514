#pragma once
// CSlucajOpterecenja: the stored object of one basic load case of the model.
#include "framework/Map.h"
#include "model/LoadCaseDescriptions.h"
#include "model/SlOptItem.h"
#include "objbase/BaseManager.h"

#include <memory>

/// What an influence-line load case is an influence line of; -1 for an ordinary case.
enum eUticajUticajneLin : int32_t {
    UL_NIJEDNA = -1,     ///< not an influence-line case
    UL_STARI_ZAPIS = -2, ///< marked by the old influence-line flag of early records
    UL_MOMENT = 0,
    UL_TRANSVERZALNA_SILA = 1,
    UL_NORMALNA_SILA = 2,
    UL_POMERANJE = 3,
    UL_REAKCIJA = 4,
};

/// Record (after the base record), version 11, little-endian:
///   int32 version, int32 NDA, int32 enters seismic analysis, uint8 SRSS present,
///   [unit record], int32 alternating, int32 c2 + c2 x int32 always-combine ids,
///   int32 influence-line kind, int32 multimodal count, int32 flag word (bit 0 only into a
///   checksum stream), int32 0 (old influence-line flag), float64 coefficient,
///   int32 permanent, int32 c1 + c1 x int32 never-combine ids, string name, int32 ordinal,
///   int32 g marker.
/// Versions 1 to 10 are the same without their leading fields and are all read.
class CSlucajOpterecenja
    : public CPooledObj<CSlucajOpterecenja, CBaseManager::SlucajOpterecenjaType> {
public:
    static constexpr int32_t Verzija = 11;

    CSlucajOpterecenja() = default;
    /// Only for the object that the pool has just given out (MakeNew).
    CSlucajOpterecenja(const CSlucajOpterecenja& src);
    CSlucajOpterecenja& operator=(const CSlucajOpterecenja& src);
    ~CSlucajOpterecenja() override = default;

    // name and g marker
    /// The name, followed by " (g)" when withMarker is non-zero and the g marker is set.
    CString GetNaziv(int withMarker = 0) const;
    void SetNaziv(const CString& naziv) { m_strNaziv = naziv; }
    int GetgMarker() const { return m_ngMarker; }
    void SetgMarker(int value) { m_ngMarker = value; }

    double GetKoeficijent() const { return m_dKoeficijent; }
    void SetKoeficijent(double value) { m_dKoeficijent = value; }
    int GetStalno() const { return m_bStalno; }
    void SetStalno(int value) { m_bStalno = value; }
    int GetAlternativno() const { return m_bAlternativno; }
    void SetAlternativno(int value) { m_bAlternativno = value; }
    const OCArray<CId>& GetNeKombinujSa() const { return m_arrNeKombinujSa; }
    void SetNeKombinujSa(const OCArray<CId>& ids) { m_arrNeKombinujSa = ids; }
    const OCArray<CId>& GetUvekKombinujSa() const { return m_arrUvekKombinujSa; }
    void SetUvekKombinujSa(const OCArray<CId>& ids) { m_arrUvekKombinujSa = ids; }

    // seismic, NDA, multimodal, influence line
    int IsSeizmicki() const { return (m_nFlags & 1) != 0; }
    void SetSeizmicki(int value);
    int JeLiNDA() const { return m_nNDA; }
    void PostaviNDA(int value) { m_nNDA = value; }
    int GetBrojMultimodalnih() const { return m_nBrojMultimodalnih; }
    void SetBrojMultimodalnih(int value) { m_nBrojMultimodalnih = value; }
    eUticajUticajneLin GetUticajUticajneLinije() const { return m_eUticajUticajneLinije; }
    void SetUticajUticajneLinije(eUticajUticajneLin value) { m_eUticajUticajneLinije = value; }
    int IsUticajnaLinija() const { return m_eUticajUticajneLinije != UL_NIJEDNA; }
    int DajUlaziUSeizmickiProracun() const { return m_nUlaziUSeizmickiProracun; }
    void PostaviUlaziUSeizmickiProracun(int value) { m_nUlaziUSeizmickiProracun = value; }
    int GetFlags() const { return m_nFlags; }

    // SRSS
    /// True when the case has an SRSS unit.
    int JeliSRSS() const { return m_pSRSS != nullptr; }
    /// The SRSS unit; ask JeliSRSS first.
    const CLoadCaseUnit* DajLCUnitZaSRSS() const { return m_pSRSS.get(); }
    /// Sets the SRSS unit and marks the case weighted when a factor is neither 0 nor 1.
    void PostaviSRSS(const CLoadCaseUnit& unit);
    /// Removes the SRSS unit and the weighted mark.
    void BrisiSRSS();

    // ordinal
    int DajRedniBroj() const { return m_nRedniBroj; }
    void PostaviRedniBroj(int value) { m_nRedniBroj = value; }

    /// Takes the editable values of a list item and the ordinal.
    void Set(int ordinal, const CSlOptItem& item);

    // record and checksums
    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;
    void UpdateCRC(uint32_t& crc1, uint32_t& crc2, uint32_t& crc3) const override;
    /// The checksum record: the base record and the fields in the layout of version 9.
    int ToCRCFiller(CFiller& f) const;

    // class operations
    static const CSlucajOpterecenja* GetSlucajOpterecenja(int ordinal);
    static void UmnoziSlOptZaIzvoz(CSlucajOpterecenja* dst, const CSlucajOpterecenja* src);
    static void TEST_ProveriIspravnostRednihBrojeva();
    static uint32_t GetCRCsvihSRSSopt();

    // the multimodal tone map (ordinal of a multimodal case -> index of its tone)
    static void ResetujMapuTonovaZaMultiModalne();
    static void PrekopirajMapuTonovaZaMultiModalne(const CMap<int, int, int, int>& map);
    static void GetKopijuMapeTonovaZaMultiModalne(CMap<int, int, int, int>& map);
    static void SetIndexTonaZaRedniBrojMM(int ordinal, int tone);
    static int GetIndexTonaZaRedniBrojMM(int ordinal);

    /// Releases the SRSS unit (called when the object is destroyed).
    void DestroyMe() { m_pSRSS.reset(); }

private:
    /// The fields from the SRSS presence byte to the g marker, with the given flag word: the
    /// part that the record and the checksum record share.
    void WriteOdSRSS(CFiller& f, int32_t flags) const;
    int DajBitBudje() const { return (m_nFlags & 2) != 0; }
    void PostaviBitBudje(int value);

    CString m_strNaziv;
    int32_t m_ngMarker = 0;
    double m_dKoeficijent = 1.0;
    int32_t m_bStalno = 0;
    int32_t m_bAlternativno = 0;
    OCArray<CId> m_arrNeKombinujSa;
    OCArray<CId> m_arrUvekKombinujSa;
    int32_t m_nFlags = 0;
    int32_t m_nNDA = 0;
    int32_t m_nBrojMultimodalnih = 0;
    eUticajUticajneLin m_eUticajUticajneLinije = UL_NIJEDNA;
    std::unique_ptr<CLoadCaseUnit> m_pSRSS;
    int32_t m_nUlaziUSeizmickiProracun = 0;
    int32_t m_nRedniBroj = -1;

    static inline CMap<int, int, int, int> s_mapTonovi;
};
