// Load case list items and their list: values, records and the list's editing helpers.
#include "model/SlOptItem.h"
#include "model/IdListRecord.h"

#include "text/Translator.h"

namespace {

constexpr int32_t kVerzija = 1;
/// Bytes of the smallest item record: version, id, an empty name, six int32 values, the
/// coefficient, the permanent flag and two empty id lists.
constexpr size_t kItemRecordSize = 4 + 4 + 4 + 6 * 4 + 8 + 4 + 4 + 4;

using idlist::ReadIds;
using idlist::WriteIds;

} // namespace

// --- CSlOptItem ---

CSlOptItem::CSlOptItem(const CString& naziv, int vrednost1, int gMarker, int uticajnaLinija,
                       const CId& id, double koeficijent, int stalno, int alternativno,
                       const OCArray<CId>& neKombinujSa, const OCArray<CId>& uvekKombinujSa,
                       int ulaziUSeizmickiProracun)
    : m_Id(id), m_strNaziv(naziv), m_nVrednost1(vrednost1), m_ngMarker(gMarker),
      m_bUticajnaLinija(uticajnaLinija), m_bAlternativno(alternativno),
      m_nUlaziUSeizmickiProracun(ulaziUSeizmickiProracun), m_dKoeficijent(koeficijent),
      m_bStalno(stalno), m_arrNeKombinujSa(neKombinujSa), m_arrUvekKombinujSa(uvekKombinujSa) {}

void CSlOptItem::Copy(const CSlOptItem& src) {
    if (this == &src)
        return;
    m_Id = src.m_Id;
    m_strNaziv = src.m_strNaziv;
    m_nVrednost1 = src.m_nVrednost1;
    m_ngMarker = src.m_ngMarker;
    m_bUticajnaLinija = src.m_bUticajnaLinija;
    m_bAlternativno = src.m_bAlternativno;
    m_nVrednost3 = src.m_nVrednost3;
    m_nUlaziUSeizmickiProracun = src.m_nUlaziUSeizmickiProracun;
    m_dKoeficijent = src.m_dKoeficijent;
    m_bStalno = src.m_bStalno;
    m_arrNeKombinujSa = src.m_arrNeKombinujSa;
    m_arrUvekKombinujSa = src.m_arrUvekKombinujSa;
}

int CSlOptItem::ToFiller(CFiller& f) const {
    f.WriteInt32(kVerzija);
    f.WriteInt32(m_Id.GetValue());
    ClTranslator::ToFiller(f, m_strNaziv);
    f.WriteInt32(m_nVrednost1);
    f.WriteInt32(m_ngMarker);
    f.WriteInt32(m_bUticajnaLinija);
    f.WriteInt32(m_bAlternativno);
    f.WriteInt32(m_nVrednost3);
    f.WriteInt32(m_nUlaziUSeizmickiProracun);
    f.WriteFloat64(m_dKoeficijent);
    f.WriteInt32(m_bStalno);
    WriteIds(f, m_arrNeKombinujSa);
    WriteIds(f, m_arrUvekKombinujSa);
    return 1;
}

int CSlOptItem::FromFiller(CFiller& f) {
    // The item has only ever had version 1; the field is read and not judged. A stream in
    // error reads nothing further, so the item keeps what it held.
    int32_t version = 0;
    f.ReadInt32(version);
    int32_t id = m_Id.GetValue();
    if (f.ReadInt32(id))
        m_Id = CId(id);
    ClTranslator::FromFiller(f, m_strNaziv);
    f.ReadInt32(m_nVrednost1);
    f.ReadInt32(m_ngMarker);
    f.ReadInt32(m_bUticajnaLinija);
    f.ReadInt32(m_bAlternativno);
    f.ReadInt32(m_nVrednost3);
    f.ReadInt32(m_nUlaziUSeizmickiProracun);
    f.ReadFloat64(m_dKoeficijent);
    f.ReadInt32(m_bStalno);
    ReadIds(f, m_arrNeKombinujSa);
    ReadIds(f, m_arrUvekKombinujSa);
    return 1;
}

// --- CSlOptItemArray ---

void CSlOptItemArray::Copy(const CSlOptItemArray& src) {
    if (this != &src)
        m_arr = src.m_arr;
}

void CSlOptItemArray::AddNew() {
    m_arr.Add(CSlOptItem());
}

void CSlOptItemArray::AddNew(const CString& naziv, int position, int vrednost1, int gMarker,
                             int uticajnaLinija, const CId& id) {
    AddNew(naziv, position, vrednost1, gMarker, uticajnaLinija, id, 1.0, 0, 0, OCArray<CId>(),
           OCArray<CId>(), 0);
}

void CSlOptItemArray::AddNew(const CString& naziv, int position, int vrednost1, int gMarker,
                             int uticajnaLinija, const CId& id, double koeficijent, int stalno,
                             int alternativno, const OCArray<CId>& neKombinujSa,
                             const OCArray<CId>& uvekKombinujSa, int ulaziUSeizmickiProracun) {
    const CSlOptItem item(naziv, vrednost1, gMarker, uticajnaLinija, id, koeficijent, stalno,
                          alternativno, neKombinujSa, uvekKombinujSa, ulaziUSeizmickiProracun);
    m_arr.SetAtGrow(position - 1, item);
}

void CSlOptItemArray::InsertNewAt(int position, const CSlOptItem& item) {
    m_arr.InsertAt(position - 1, item);
}

int CSlOptItemArray::ToFiller(CFiller& f) const {
    f.WriteInt32(kVerzija);
    f.WriteInt32(m_arr.GetSize());
    for (const CSlOptItem& item : m_arr)
        item.ToFiller(f);
    return 1;
}

int CSlOptItemArray::FromFiller(CFiller& f) {
    int32_t version = 0;
    f.ReadInt32(version);
    int32_t n = 0;
    if (!f.ReadInt32(n))
        return 1;
    if (!f.CheckCount(n, kItemRecordSize))
        n = 0;
    m_arr.RemoveAll();
    m_arr.SetSize(n);
    for (CSlOptItem& item : m_arr)
        item.FromFiller(f);
    return 1;
}
