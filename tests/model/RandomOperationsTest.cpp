// Property test of the model's operations: random sequences of adding, deleting and moving
// load cases, adding, deleting and generating combinations, adding and deleting envelopes,
// undo and redo. After every step the model file of the model is one the loads module accepts
// as it is (no refusal, nothing to repair), and undoing every step gives back, step by step,
// byte-identical files. VORTA_PROPERTY_SEQUENCES sets how many seeded sequences run.
#include "ModelFixture.h"
#include "model/ProveraModela.h"

#include <algorithm>
#include <cstdio>
#include <random>
#include <vector>

namespace {

using Bytes = std::vector<uint8_t>;

class RandomOperations : public ModelTest {
protected:
    template <class Zapis> std::vector<const Zapis*> Svi() const {
        std::vector<const Zapis*> svi;
        for (const CId& id : m_base->Ids(Zapis::Type))
            svi.push_back(dynamic_cast<const Zapis*>(m_base->Find(id)));
        return svi;
    }
    int Broj(int tip) const { return m_base->Count(tip); }
    int Nasumicno(int n) { return std::uniform_int_distribution<int>(0, n - 1)(m_rng); }

    /// The generated names of all combinations made anew (ordinals of load cases changed).
    static void Preimenuj(CBaseManager& bm) {
        bm.Select(CKombinacijaOpterecenja::Type);
        for (CId id = bm.GetFirst(); id.Valid(); id = bm.GetNext())
            if (dynamic_cast<const CKombinacijaOpterecenja*>(bm.GetR(id))->Item().IsGenericName())
                dynamic_cast<CKombinacijaOpterecenja*>(bm.GetW(id))
                    ->Item()
                    .SetGenericName(nullptr, 0);
    }
    /// Envelopes whose selection no longer fits the number of loads are deleted.
    static void BrisiNeodgovarajuceAnvelope(CBaseManager& bm) {
        const int n = bm.Count(CSlucajOpterecenja::Type) + bm.Count(CKombinacijaOpterecenja::Type);
        for (bool obrisana = true; obrisana;) {
            obrisana = false;
            bm.Select(CAnvelopaOpterecenja::Type);
            for (CId id = bm.GetFirst(); id.Valid() && !obrisana; id = bm.GetNext()) {
                const auto* p = dynamic_cast<const CAnvelopaOpterecenja*>(bm.GetR(id));
                CArray<int> flags;
                if (!CAnvelopaOpterecenja::Str2FlagsArray(p->GetIzbor(), flags, n)) {
                    CAnvelopaOpterecenja::BrisiAnvelopu(p->GetBroj());
                    obrisana = true;
                }
            }
        }
    }

    void DodajSlucaj(CBaseManager& bm) {
        auto* p = new CSlucajOpterecenja;
        p->SetNaziv(CString::Formatted(L"Slucaj %d", Nasumicno(1000)));
        p->SetStalno(Nasumicno(3) == 0);
        p->PostaviRedniBroj(bm.Count(CSlucajOpterecenja::Type) + 1);
        bm.Insert(p);
    }
    void BrisiSlucaj(CBaseManager& bm) {
        const auto slucajevi = Svi<CSlucajOpterecenja>();
        const CSlucajOpterecenja* p =
            slucajevi[static_cast<size_t>(Nasumicno(static_cast<int>(slucajevi.size())))];
        const CId id = p->GetId();
        const int r = p->DajRedniBroj();
        CKombinacijaOpterecenja::BrisiIzBazeSveKombOptKojeSadrzeSlOpt(id);
        bm.Delete(id);
        for (const CSlucajOpterecenja* q : Svi<CSlucajOpterecenja>())
            if (q->DajRedniBroj() > r)
                dynamic_cast<CSlucajOpterecenja*>(bm.GetW(q->GetId()))
                    ->PostaviRedniBroj(q->DajRedniBroj() - 1);
        Preimenuj(bm);
    }
    void PomeriSlucaj(CBaseManager& bm) {
        const auto slucajevi = Svi<CSlucajOpterecenja>();
        const auto n = static_cast<int>(slucajevi.size());
        auto* a = dynamic_cast<CSlucajOpterecenja*>(
            bm.GetW(slucajevi[static_cast<size_t>(Nasumicno(n))]->GetId()));
        auto* b = dynamic_cast<CSlucajOpterecenja*>(
            bm.GetW(slucajevi[static_cast<size_t>(Nasumicno(n))]->GetId()));
        const int ra = a->DajRedniBroj();
        a->PostaviRedniBroj(b->DajRedniBroj());
        b->PostaviRedniBroj(ra);
        Preimenuj(bm);
    }
    void DodajKombinaciju(CBaseManager& bm) {
        static constexpr double kKoef[] = {1.0, 1.35, 1.5, 0.3, 0.0};
        auto* p = new CKombinacijaOpterecenja;
        p->Item().SetRedniBroj(bm.Count(CKombinacijaOpterecenja::Type) + 1);
        for (const CSlucajOpterecenja* s : Svi<CSlucajOpterecenja>())
            if (Nasumicno(2) == 0)
                p->Item().DodajOsnOpt(kKoef[Nasumicno(5)], s->GetId());
        if (Nasumicno(4) == 0)
            p->Item().SetNaziv(L"Rucno");
        else
            p->Item().SetGenericName(nullptr, 0);
        bm.Insert(p);
    }
    void BrisiKombinaciju(CBaseManager& bm) {
        const auto kombinacije = Svi<CKombinacijaOpterecenja>();
        const int r =
            kombinacije[static_cast<size_t>(Nasumicno(static_cast<int>(kombinacije.size())))]
                ->Item()
                .GetRedniBroj();
        for (const CKombinacijaOpterecenja* k : kombinacije) {
            if (k->Item().GetRedniBroj() == r)
                bm.Delete(k->GetId());
            else if (k->Item().GetRedniBroj() > r)
                dynamic_cast<CKombinacijaOpterecenja*>(bm.GetW(k->GetId()))
                    ->Item()
                    .SetRedniBroj(k->Item().GetRedniBroj() - 1);
        }
    }
    /// Replaces every combination by generated ones: the permanent cases with 1.35 and each
    /// other case in turn with 1.50.
    void GenerisiKombinacije(CBaseManager& bm) {
        bm.DeleteAll(CKombinacijaOpterecenja::Type);
        auto slucajevi = Svi<CSlucajOpterecenja>();
        std::sort(slucajevi.begin(), slucajevi.end(),
                  [](auto* a, auto* b) { return a->DajRedniBroj() < b->DajRedniBroj(); });
        int rb = 0;
        for (const CSlucajOpterecenja* promenljivo : slucajevi) {
            if (promenljivo->GetStalno())
                continue;
            auto* p = new CKombinacijaOpterecenja;
            p->Item().SetRedniBroj(++rb);
            for (const CSlucajOpterecenja* s : slucajevi)
                if (s->GetStalno())
                    p->Item().DodajOsnOpt(1.35, s->GetId());
            p->Item().DodajOsnOpt(1.5, promenljivo->GetId());
            p->Item().SetGenericName(nullptr, 0);
            bm.Insert(p);
        }
    }
    void DodajAnvelopu(CBaseManager& bm) {
        const int n = bm.Count(CSlucajOpterecenja::Type) + bm.Count(CKombinacijaOpterecenja::Type);
        const int a = 1 + Nasumicno(n);
        auto* p = new CAnvelopaOpterecenja;
        p->SetBroj(bm.Count(CAnvelopaOpterecenja::Type) + 1);
        p->SetIzbor(a < n ? CString::Formatted(L"%d-%d", a, n) : CString::Formatted(L"%d", a));
        p->SetNaziv(L"Anvelopa");
        bm.Insert(p);
    }

    /// One random operation as one undo step; false when it cannot be made now.
    bool Korak() {
        const int nSlOpt = Broj(CSlucajOpterecenja::Type);
        const int nKomb = Broj(CKombinacijaOpterecenja::Type);
        const int nAnv = Broj(CAnvelopaOpterecenja::Type);
        const int op = Nasumicno(9);
        if ((op == 1 || op == 2 || op == 4) && nSlOpt == 0)
            return false;
        if ((op == 3 && nKomb == 0) || (op == 7 && nSlOpt + nKomb == 0) || (op == 8 && nAnv == 0))
            return false;
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        bm.FreezeUndoCounter();
        switch (op) {
        case 0:
            DodajSlucaj(bm);
            break;
        case 1:
            BrisiSlucaj(bm);
            break;
        case 2:
            PomeriSlucaj(bm);
            break;
        case 3:
            BrisiKombinaciju(bm);
            break;
        case 4:
        case 5:
            DodajKombinaciju(bm);
            break;
        case 6:
            GenerisiKombinacije(bm);
            break;
        case 7:
            DodajAnvelopu(bm);
            break;
        default:
            CAnvelopaOpterecenja::BrisiAnvelopu(1 + Nasumicno(nAnv));
            break;
        }
        BrisiNeodgovarajuceAnvelope(bm);
        bm.UnfreezeUndoCounter();
        bm.Close();
        return true;
    }

    /// The model file of the model, checked: the module takes it as it is.
    Bytes Fajl() {
        const Bytes bytes = CModelFile::Write(*m_base);
        CString greska;
        std::unique_ptr<CObjBase> procitan = CModelFile::Read(bytes, greska);
        EXPECT_TRUE(procitan) << greska.ToUtf8();
        if (!procitan)
            return bytes;
        EXPECT_TRUE(ProveriUcitaniModel(*procitan, greska)) << greska.ToUtf8();
        EXPECT_EQ(CModelFile::Write(*procitan), bytes) << "the module repaired the model";
        return bytes;
    }

    std::mt19937 m_rng;
};

} // namespace

TEST_F(RandomOperations, KeepEveryInvariantAndUndoGivesBackEveryFile) {
    const char* zadato = std::getenv("VORTA_PROPERTY_SEQUENCES");
    const int nizova = zadato != nullptr ? std::atoi(zadato) : 40;
    constexpr int kKoraka = 100;
    long operacija = 0;
    m_base->SetUndoLimit(kKoraka + 1);
    for (int seed = 1; seed <= nizova && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        m_rng.seed(static_cast<unsigned>(seed));
        m_base->Clear();
        // The model object comes as from a file: no undo step.
        auto* model = new CModel;
        model->SetId(CId(1));
        ASSERT_TRUE(m_base->InsertLoaded(model));
        std::vector<Bytes> fajlovi = {Fajl()}; // the file after each step that is not undone
        size_t tekuci = 0;
        for (int k = 0; k < kKoraka && !HasFailure(); ++k) {
            const int izbor = Nasumicno(10);
            if (izbor == 0 && m_base->CanUndo()) {
                ASSERT_TRUE(m_base->Undo());
                ASSERT_EQ(Fajl(), fajlovi[--tekuci]) << "undo at step " << k;
            } else if (izbor == 1 && m_base->CanRedo()) {
                ASSERT_TRUE(m_base->Redo());
                ASSERT_EQ(Fajl(), fajlovi[++tekuci]) << "redo at step " << k;
            } else if (const int koraka = m_base->GetUndoCount(); Korak()) {
                // A step that changed nothing is not kept.
                if (m_base->GetUndoCount() == koraka) {
                    ASSERT_EQ(Fajl(), fajlovi[tekuci]) << "step " << k;
                } else {
                    fajlovi.resize(++tekuci);
                    fajlovi.push_back(Fajl());
                }
            } else {
                continue;
            }
            ++operacija;
        }
        // Undoing every step gives back every file in turn, down to the first.
        while (m_base->CanUndo()) {
            ASSERT_TRUE(m_base->Undo());
            ASSERT_GT(tekuci, 0u);
            ASSERT_EQ(Fajl(), fajlovi[--tekuci]);
        }
        EXPECT_EQ(tekuci, 0u);
    }
    std::printf("property test: %d sequences, %ld operations\n", nizova, operacija);
}
