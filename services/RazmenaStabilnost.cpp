// The stability parameters of a model in the interchange: read from the model object's record
// of them, and written into it as the stability dialog would leave them.
#include "host/Model.h"
#include "model/StabilnostParams.h"
#include "objbase/BaseManager.h"
#include "services/RazmenaOpis.h"
#include "stream/Filler.h"

namespace opterecenje::razmena {

namespace {

const CModel* ModelZaCitanje(CBaseManager& bm) {
    bm.Select(CBaseManager::ModelType);
    const CId id = bm.GetFirst();
    return id.Valid() ? dynamic_cast<const CModel*>(bm.GetR(id)) : nullptr;
}

} // namespace

std::optional<CStabilnostOpisa> ProcitajStabilnost(CBaseManager& bm) {
    const CModel* model = ModelZaCitanje(bm);
    if (model == nullptr || model->GetStabilnost().empty())
        return std::nullopt;
    CStabilnostParams params;
    CFiller f;
    f.SetBuffer(model->GetStabilnost());
    f.Open(CFiller::Mode::Read);
    params.FromFiller(f);
    // Parameters built for other loads than the model's now are those the stability dialog
    // throws away: they are not part of the model's loads any more.
    CStabilnostParams sveze;
    sveze.InitDefault();
    if (f.IsError() || !CStabilnostParams::JednakiStabilnostParams(params, sveze))
        return std::nullopt;
    CStabilnostOpisa opis;
    opis.opseg = params.GetOpsegZaDelta();
    opis.tacnost = params.GetTacnostZaDelta();
    opis.iskljucTorziju = params.GetIskljucTorzGreda() != 0 ? 1 : 0;
    for (int k = 0; k < params.BrojSloptItema(); ++k) {
        const CStabilnostSloptItem& item = params.GetSloptItem(k);
        if (item.IsDozvoljen() && item.IsFiksan())
            opis.fiksni.push_back({k, item.GetFaktor()});
    }
    for (int j = 0; j < params.BrojKombItema(); ++j) {
        const CStabilnostKombItem& item = params.GetKombItem(j);
        if (item.IsOdobren() && item.IsIzabran())
            opis.izabrane.push_back(j);
    }
    return opis;
}

void UpisiStabilnost(CBaseManager& bm, const std::optional<CStabilnostOpisa>& opis) {
    std::vector<uint8_t> zapis;
    if (opis) {
        // As the stability dialog starts: every value from the model's loads, then what the
        // user set over it. What the model does not let take part stays out.
        CStabilnostParams params;
        params.InitDefault();
        for (const CClan& c : opis->fiksni)
            if (c.indeks < params.BrojSloptItema() && params.GetSloptItem(c.indeks).IsDozvoljen()) {
                params.GetSloptItem(c.indeks).SetFiksan(1);
                params.GetSloptItem(c.indeks).SetFaktor(c.koef);
            }
        for (const int32_t j : opis->izabrane)
            if (j < params.BrojKombItema() && params.GetKombItem(j).IsOdobren())
                params.GetKombItem(j).SetIzabran(1);
        params.SetOpsegZaDelta(opis->opseg);
        params.SetTacnostZaDelta(opis->tacnost);
        params.SetIskljucTorzGreda(opis->iskljucTorziju);
        params.Update();
        CFiller f;
        f.Open(CFiller::Mode::Write);
        params.ToFiller(f);
        f.Close();
        zapis = f.Buffer();
    }
    const CModel* model = ModelZaCitanje(bm);
    if (model == nullptr || model->GetStabilnost() == zapis)
        return;
    auto* promenljiv = dynamic_cast<CModel*>(bm.GetW(model->GetId()));
    if (promenljiv != nullptr)
        promenljiv->SetStabilnost(std::move(zapis));
}

} // namespace opterecenje::razmena
