#pragma once
// CKombOptItem: one load combination as a value (a name, an ordinal and the basic load cases
// with their coefficients), and CKombOptItemArray, an ordered list of them.
#include "framework/Array.h"
#include "framework/String.h"
#include "model/LoadCaseDescriptions.h"
#include "objbase/Id.h"
#include "stream/Filler.h"

#include <cstdint>
#include <limits>
#include <utility>
#include <vector>

class CBaseManager;

/// The ordinals of a model's load cases by id, gathered once so that many combinations can be
/// named without looking every load case up in the store.
class CRedniBrojeviSlOpt {
public:
    /// Sets the ordinal of a load case (ids usually come in ascending order).
    void Postavi(const CId& id, int redniBroj);
    /// The ordinal of the load case with that id; false when the table has none.
    bool Nadji(const CId& id, int& redniBroj) const {
        const int32_t kljuc = id.GetValue();
        if (kljuc >= 0 && static_cast<size_t>(kljuc) < m_arrPoIdu.size()) {
            const int r = m_arrPoIdu[static_cast<size_t>(kljuc)];
            if (r != kNema) {
                redniBroj = r;
                return true;
            }
        }
        return NadjiSortirano(kljuc, redniBroj);
    }

private:
    /// Marks an id without an entry in the table by id.
    static constexpr int kNema = std::numeric_limits<int>::min();
    bool NadjiSortirano(int32_t kljuc, int& redniBroj) const;

    // Sorted by id: small, contiguous and searched by halving, whatever the ids are.
    std::vector<std::pair<int32_t, int>> m_arrRedniBroj;
    // The same ordinals indexed by id, for ids small enough to keep the table dense (store
    // ids are small positive numbers); an id beyond it is looked up in the sorted list.
    std::vector<int> m_arrPoIdu;
};

/// Item record (no version of its own; always inside a versioned record): string name,
/// int32 generic-name flag, int32 ordinal, int32 n, n x (int32 load case id, float64
/// coefficient). The item's own id is not written.
class CKombOptItem : public CFillerUser {
public:
    CKombOptItem() = default;
    CKombOptItem(const CKombOptItem& src) : CFillerUser() { Copy(src); }
    CKombOptItem& operator=(const CKombOptItem& src) {
        if (this != &src)
            Copy(src);
        return *this;
    }

    const CId& GetId() const { return m_Id; }
    void SetId(const CId& id) { m_Id = id; }
    const CString& GetNaziv() const { return m_strNaziv; }
    /// Sets a name given by the user: the generic-name flag is cleared.
    void SetNaziv(const CString& naziv) {
        m_strNaziv = naziv;
        m_bGenericName = 0;
    }
    /// 1 when the name was made by SetGenericName.
    int IsGenericName() const { return m_bGenericName; }
    int GetRedniBroj() const { return m_nRedniBroj; }
    void SetRedniBroj(int value) { m_nRedniBroj = value; }

    int GetBrojOsnOpt() const { return m_arrKoef.GetSize(); }
    void DodajOsnOpt(double koef, const CId& id);
    /// Empties both lists; name, flag, ordinal and id stay.
    void Obrisi();
    int SetOsnOptKoef(int i, double koef);
    int SetOsnOptId(int i, const CId& id);
    int SetOsnOptKoef(const CId& id, double koef);
    /// Entry i (0 when there is none); the tables and the factor vectors ask this of every
    /// entry of every combination, so it is written where callers can expand it.
    int GetOsnOptByIndex(int i, double& koef, CId& id) const {
        if (i < 0 || i >= GetBrojOsnOpt())
            return 0;
        koef = m_arrKoef[i];
        id = m_arrId[i];
        return 1;
    }
    int GetOsnOptById(int& i, double& koef, const CId& id) const;
    /// Asks the processor to bring the entries into its cache ahead of their reading: a walk
    /// that reads little more than the entries of every combination of a large model waits
    /// mostly for memory, the entries of each combination lying apart from the others'.
    void Predohvati() const {
        __builtin_prefetch(m_arrKoef.Vector().data());
        __builtin_prefetch(m_arrId.Vector().data());
    }
    /// The coefficient of entry i; the index guard is deliberately lax (callers keep i in range):
    /// only the array's own check of the index stands.
    double GetOsnOptKoefByIndex(int i) const { return m_arrKoef[i]; }
    int DaLiSadrziSloptId(const CId& id) const;
    /// 1 when a non-zero entry names a load case marked 1 in either pair of tables.
    int SadrziSeizmickiSlopt(const CArray<int>& flags1, const CArray<CId>& ids1,
                             const CArray<int>& flags2, const CArray<CId>& ids2) const;

    /// Checksum of what matters to a second-order analysis (not the name).
    uint32_t CRC_BitanZaTeorijuII() const;
    /// 1 when this item sorts before other, -1 after, 0 equal.
    int Uporedi(const CKombOptItem& other) const;
    /// Removes entries whose coefficient is zero; 1 when anything was removed.
    int IzbaciNepotrebneNule(CBaseManager& bm);
    /// Removes entries of missing load cases, out-of-range ordinals and repeated load cases;
    /// 1 when anything was removed.
    int NarusenaKonzistencija(CBaseManager& bm);
    /// True when NarusenaKonzistencija would remove anything, with the ordinals of the model's
    /// nSlOpt load cases taken from a table: a model being checked copies only the
    /// combinations that need the repair.
    bool ImaNarusenuKonzistenciju(const CRedniBrojeviSlOpt& redniBrojevi, int nSlOpt) const;
    /// Builds the generated name (Roman numerals of the load cases with their coefficients).
    void SetGenericName(const CLoadCaseUnit* unit, int bKorijen);
    /// The name SetGenericName(nullptr, 0) gives an item without an id, with the load case
    /// ordinals taken from a table instead of the store; for renaming many combinations at
    /// once. A load case missing from the table asserts "pSlOpt" as a missing load case does.
    void SetGenericNamePoRednimBrojevima(const CRedniBrojeviSlOpt& redniBrojevi);
    /// The name that SetGenericNamePoRednimBrojevima would set, leaving the item as it is.
    CString NapraviGenerickiNaziv(const CRedniBrojeviSlOpt& redniBrojevi) const;
    /// The same name written into naziv (emptied first), so that one buffer serves many items.
    void NapraviGenerickiNaziv(const CRedniBrojeviSlOpt& redniBrojevi, CString& naziv) const;
    /// Sets a name that NapraviGenerickiNaziv made for this item; the generic-name flag is set.
    void PostaviGenerickiNaziv(const CString& naziv) {
        m_strNaziv = naziv;
        m_bGenericName = 1;
    }
    /// Makes this item src in everything but the name, which is left empty (and the
    /// generic-name flag cleared) for the caller to set: renaming many items copies no name
    /// that is replaced at once.
    void KopirajBezNaziva(const CKombOptItem& src) {
        m_Id = src.m_Id;
        m_strNaziv.clear();
        m_bGenericName = 0;
        m_nRedniBroj = src.m_nRedniBroj;
        m_arrKoef = src.m_arrKoef;
        m_arrId = src.m_arrId;
    }
    void SortIndices() {}
    void Dump() const {}

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

    /// Pairs "linked" entries of an SRSS unit (first[k] with second[k]); set by another module
    /// of the application, null otherwise.
    static inline void (*fnVratiParovePovezanih)(const CId& slOptId, const CLoadCaseUnit* unit,
                                                 CArray<int, int>& first,
                                                 CArray<int, int>& second) = nullptr;

private:
    void Copy(const CKombOptItem& src);
    /// The name by the plain naming rule over the entries, with redniBroj(id) giving the
    /// ordinal of a load case; bKorijen writes square roots of the coefficients.
    template <class Lookup>
    void NazivPoRednimBrojevima(Lookup&& redniBroj, bool bKorijen, CString& naziv) const;

    CId m_Id;
    CString m_strNaziv;
    int32_t m_bGenericName = 0;
    int32_t m_nRedniBroj = -1;
    CArray<double> m_arrKoef;
    CArray<CId> m_arrId;
};

/// List record: int32 version (written 1, not checked on reading), int32 count, the items.
class CKombOptItemArray : public CFillerUser {
public:
    CKombOptItemArray() = default;
    CKombOptItemArray(const CKombOptItemArray& src) : CFillerUser() { Copy(src); }
    CKombOptItemArray& operator=(const CKombOptItemArray& src) {
        Copy(src);
        return *this;
    }
    void Copy(const CKombOptItemArray& src);

    int GetSize() const { return m_arr.GetSize(); }
    const CKombOptItem& GetAt(int i) const { return m_arr[i]; }
    CKombOptItem& GetAt(int i) { return m_arr[i]; }
    const CKombOptItem& operator[](int i) const { return m_arr[i]; }
    CKombOptItem& operator[](int i) { return m_arr[i]; }
    void RemoveAt(int i) { m_arr.RemoveAt(i); }
    void RemoveAll() { m_arr.RemoveAll(); }

    void AddNew();
    void AddNew(const CKombOptItem& item);
    /// Puts a copy at the 1-based position n, growing the list to n first when needed.
    void AddNew(int n, const CKombOptItem& item);
    /// Inserts a default item before the 1-based position n.
    void InsertNewAt(int n);

    int ToFiller(CFiller& f) const override;
    int FromFiller(CFiller& f) override;

    /// The stored-combinations section of the model file: written empty, read away.
    static void UcitajUskladisteneKombinacije(CFiller& f, int version);
    static void SnimiUskladisteneKombinacije(CFiller& f);

private:
    OCArray<CKombOptItem> m_arr;
};
