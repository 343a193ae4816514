#pragma once
// A large model for the combination benchmarks: 200 load cases and 32768 generated
// combinations of 20 load cases each, with generated names, in a document of its own,
// optionally with 100 envelopes; and the start of such a model that other benchmarks fill in
// their own way.
#include "host/Model.h"
#include "model/AnvelopaOpterecenja.h"
#include "model/KombinacijaOpterecenja.h"
#include "model/ModelRegistration.h"
#include "model/SlucajOpterecenja.h"
#include "objbase/BaseManager.h"

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

namespace benchmodel {

constexpr int kSlucajeva = 200;
constexpr int kKombinacija = 32768;
constexpr int kClanova = 20;
constexpr int kAnvelopa = 100;
/// Every tenth envelope spans every load case and combination.
constexpr int kSveAnvelope = 10;

/// A new current document with the model object and kSlucajeva load cases of ordinals 1 up,
/// whose ids are given in slucajevi.
inline std::unique_ptr<CObjBase> NoviModel(std::vector<CId>& slucajevi) {
    RegisterHostClasses();
    RegisterLoadClasses();
    auto base = std::make_unique<CObjBase>();
    CObjBase::SetCurrent(base.get());
    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    bm.Insert(std::make_unique<CModel>().release());
    for (int k = 1; k <= kSlucajeva; ++k) {
        auto p = std::make_unique<CSlucajOpterecenja>();
        p->SetNaziv(CString::Formatted(L"Slucaj opterecenja %d", k));
        p->PostaviRedniBroj(k);
        slucajevi.push_back(bm.Insert(p.release()));
    }
    return base;
}

/// Envelopes 1..n into the current document: every kSveAnvelope-th one over every load case and
/// combination, the others over the first twenty load cases and 301 combinations.
inline void DodajAnvelope(int n) {
    CBaseManager bm;
    bm.Open(CBaseManager::Write);
    const int nSlOpt = bm.Count(CBaseManager::SlucajOpterecenjaType);
    const int nKomb = bm.Count(CBaseManager::KombinacijaOpterecenjaType);
    for (int e = 1; e <= n; ++e) {
        auto p = std::make_unique<CAnvelopaOpterecenja>();
        p->SetBroj(e);
        p->SetNaziv(CString::Formatted(L"Anvelopa %d", e));
        const int od = nSlOpt + 1 + (e * 311) % std::max(1, nKomb - 400);
        p->SetIzbor(e % kSveAnvelope == 0 ? CString::Formatted(L"1-%d", nSlOpt + nKomb)
                                          : CString::Formatted(L"1-20,%d-%d", od,
                                                               std::min(od + 300, nSlOpt + nKomb)));
        bm.Insert(p.release());
    }
    bm.Close();
}

struct CombinationModel {
    /// With nAnvelopa envelopes after the combinations (see DodajAnvelope).
    explicit CombinationModel(int nAnvelopa = 0) {
        base = NoviModel(slucajevi);
        CBaseManager bm;
        bm.Open(CBaseManager::Write);
        // Each combination takes 20 different load cases, picked by a fixed pseudo-random
        // sequence, with the usual partial factors.
        static constexpr double kKoef[] = {1.0, 1.35, 1.5, 0.9, 1.05, 0.75};
        uint32_t seed = 12345;
        auto next = [&seed] {
            seed = seed * 1664525u + 1013904223u;
            return seed >> 8;
        };
        for (int j = 0; j < kKombinacija; ++j) {
            auto p = std::make_unique<CKombinacijaOpterecenja>();
            p->Item().SetRedniBroj(j + 1);
            std::vector<int> izabrani;
            while (static_cast<int>(izabrani.size()) < kClanova) {
                const int k = static_cast<int>(next() % kSlucajeva);
                if (std::find(izabrani.begin(), izabrani.end(), k) == izabrani.end())
                    izabrani.push_back(k);
            }
            for (const int k : izabrani)
                p->Item().DodajOsnOpt(kKoef[next() % std::size(kKoef)],
                                      slucajevi[static_cast<size_t>(k)]);
            p->Item().SetGenericName(nullptr, 0);
            kombinacije.push_back(bm.Insert(p.release()));
        }
        bm.Close();
        DodajAnvelope(nAnvelopa);
    }
    ~CombinationModel() { CObjBase::SetCurrent(nullptr); }

    std::unique_ptr<CObjBase> base;
    std::vector<CId> slucajevi;
    std::vector<CId> kombinacije;
};

} // namespace benchmodel
