// Services a host calls around its documents: forgetting the state of the document that was
// open, and the stability parameters the host keeps with its model.
#include "model/SlucajOpterecenja.h"
#include "model/StabilnostParams.h"
#include "services/ModuleServices.h"
#include "services/Opterecenje.h"
#include "stream/Filler.h"

namespace opterecenje {

void ZaboraviDokument() {
    COpterecenjeApp::gComboItemArray.RemoveAll();
    COpterecenjeApp::gTekuciComboItem = CComboItem();
    COpterecenjeApp::ResetArrayLabilnihSlOpt();
    COpterecenjeApp::gnLastGoodStabile = -1;
    COpterecenjeApp::ResetAnvelope();
    COpterecenjeApp::ResetSelektora();
    CSlucajOpterecenja::ResetujMapuTonovaZaMultiModalne();
    COpterecenjeApp::gbTeorija = 1;
}

bool UrediStabilnost(std::vector<uint8_t>& zapis, void* roditelj) {
    CStabilnostParams params;
    bool bProcitan = false;
    if (!zapis.empty()) {
        CFiller f;
        f.SetBuffer(zapis);
        f.Open(CFiller::Mode::Read);
        params.FromFiller(f);
        bProcitan = !f.IsError();
    }
    // Parameters built from other loads than the document's now are built afresh.
    CStabilnostParams sveze;
    sveze.InitDefault();
    if (!bProcitan || !CStabilnostParams::JednakiStabilnostParams(params, sveze))
        params = sveze;
    params.Update();
    if (COpterecenjeApp::OnStabilnost(roditelj, params) != 1)
        return false;
    CFiller f;
    f.Open(CFiller::Mode::Write);
    params.ToFiller(f);
    f.Close();
    zapis = f.Buffer();
    return true;
}

} // namespace opterecenje
