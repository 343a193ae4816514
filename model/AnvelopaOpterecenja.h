#pragma once
// CAnvelopaOpterecenja: an envelope, a named selection of load cases and combinations (by
// their ordinals on the common scale) whose results are enveloped.
#include "framework/Array.h"
#include "framework/String.h"
#include "model/GeneralizedLoadCase.h"
#include "objbase/BaseManager.h"

/// Record: the base record, int32 version = 2, int32 mode, string selection, string name,
/// int32 number. Version 1 lacks the mode (read as 0).
class CAnvelopaOpterecenja
    : public CPooledObj<CAnvelopaOpterecenja, CBaseManager::AnvelopaOpterecenjaType> {
public:
    static constexpr int Verzija = 2;

    CAnvelopaOpterecenja() = default;
    /// Only for the object that the pool has just given out (MakeNew).
    CAnvelopaOpterecenja(const CAnvelopaOpterecenja& src);
    CAnvelopaOpterecenja& operator=(const CAnvelopaOpterecenja& src);

    const CString& GetIzbor() const { return m_strIzbor; }
    void SetIzbor(const CString& value) { m_strIzbor = value; }
    const CString& GetNaziv() const { return m_strNaziv; }
    void SetNaziv(const CString& value) { m_strNaziv = value; }
    int GetBroj() const { return m_nBroj; }
    void SetBroj(int value) { m_nBroj = value; }
    int GetMod() const { return m_nMod; }
    void SetMod(int value) { m_nMod = value; }

    /// Parses a selection such as 1,3-5,12 into n flags (flag k-1 for ordinal k); 1 when the
    /// whole text is valid, 0 at the first invalid item.
    static int Str2FlagsArray(const CString& s, CArray<int>& flags, int n);
    /// The envelope's generalized load case; 0 when the selection is invalid.
    int NapraviGeneralizedLoadcase(CGeneralizedLoadCase& glc) const;
    /// The generalized load case of envelope number broj; 0 when there is none or it fails.
    static int GeneralizedLoadcase(int broj, CGeneralizedLoadCase& glc);
    /// Deletes envelope number broj and closes the gap in the numbering.
    static void BrisiAnvelopu(int broj);
    /// A report heading for a generalized load case, naming the envelope it equals.
    static CString DajIspisZaIzvestaj(const CGeneralizedLoadCase& glc);

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;
    void UpdateCRC(uint32_t& crc1, uint32_t& crc2, uint32_t& crc3) const override;

private:
    CString m_strIzbor;
    CString m_strNaziv;
    int32_t m_nBroj = 0;
    int32_t m_nMod = 0;
};
