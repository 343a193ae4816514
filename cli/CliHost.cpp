// Set-up and tear-down of the command-line host around one command.
#include "CliHost.h"

#include "diag/Assert.h"
#include "host/LoadsServices.h"
#include "host/MessageBox.h"
#include "host/Model.h"
#include "host/ModelFile.h"
#include "host/VortaUtils.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace {

/// The first service the commands need that the module left empty; empty when none is.
std::string MissingService() {
    if (CMainFrame::UpdateCombo == nullptr)
        return "CMainFrame::UpdateCombo";
    if (CLoadsServices::Brojevi == nullptr)
        return "CLoadsServices::Brojevi";
    if (CLoadsServices::UkupanBrojSloptOKombinacija == nullptr)
        return "CLoadsServices::UkupanBrojSloptOKombinacija";
    if (CLoadsServices::FaktoriZaProracun == nullptr)
        return "CLoadsServices::FaktoriZaProracun";
    if (CLoadsServices::FaktoriZaIspis == nullptr)
        return "CLoadsServices::FaktoriZaIspis";
    if (CLoadsServices::GetTeorija == nullptr)
        return "CLoadsServices::GetTeorija";
    if (CLoadsServices::SetTeorija == nullptr)
        return "CLoadsServices::SetTeorija";
    if (CLoadsServices::Izvestaj == nullptr)
        return "CLoadsServices::Izvestaj";
    if (CLoadsServices::IzvestajPoTabelama == nullptr)
        return "CLoadsServices::IzvestajPoTabelama";
    if (CLoadsServices::IzvestajNaZahtev == nullptr)
        return "CLoadsServices::IzvestajNaZahtev";
    if (CLoadsServices::NapraviPrimer == nullptr)
        return "CLoadsServices::NapraviPrimer";
    if (CLoadsServices::PostaviChangeLoadCaseTo == nullptr)
        return "CLoadsServices::PostaviChangeLoadCaseTo";
    return {};
}

} // namespace

CCliHost::CCliHost() {
    // A failed check logs into the temporary directory when there is one, as the program
    // changes into it anyway, rather than into the root of the file system.
    if (const char* tmp = std::getenv("TMP"); tmp != nullptr && *tmp != '\0')
        vdiag::SetLogRoot(tmp);
    RegisterHostClasses();
    CVortaUtils::s_bLoading = false;
    // Nobody answers a box: each is one line on the error stream, answered by its first
    // button (OK).
    CVortaMessageBox::SetPresenter([](const CString& text, const CString& caption, unsigned,
                                      const std::vector<CString>& buttons) {
        std::string line = "vorta-cli: " + caption.ToUtf8() + ": " + text.ToUtf8();
        std::replace(line.begin(), line.end(), '\n', ' ');
        std::fprintf(stderr, "%s\n", line.c_str());
        std::fflush(stderr);
        return buttons.empty() ? CVortaMessageBox::IDOK : 1;
    });
}

CCliHost::~CCliHost() {
    CVortaMessageBox::SetPresenter(nullptr);
    if (CObjBase::GetCurrent() == m_document.get())
        CObjBase::SetCurrent(nullptr);
    m_document.reset();
}

bool CCliHost::LoadModule(const std::filesystem::path& library, std::string& error) {
    if (!m_loader.Load(library, m_commands, error))
        return false;
    if (const std::string missing = MissingService(); !missing.empty()) {
        error = "the module did not provide " + missing;
        return false;
    }
    // A headless host evaluates nothing when the current load changes; it only accepts it.
    CLoadsServices::PostaviChangeLoadCaseTo([](const CGeneralizedLoadCase&, int) { return 1; });
    return true;
}

void CCliHost::NewDocument() {
    SetDocument(std::make_unique<CObjBase>());
}

bool CCliHost::OpenDocument(const std::filesystem::path& file, std::string& error) {
    CString reason;
    std::unique_ptr<CObjBase> document;
    {
        // The host's loading flag is up while records are read, as in a window host.
        struct LoadingFlag {
            LoadingFlag() { CVortaUtils::s_bLoading = true; }
            ~LoadingFlag() { CVortaUtils::s_bLoading = false; }
        } loading;
        document = CModelFile::Load(file, reason);
    }
    if (!document) {
        error = reason.ToUtf8();
        return false;
    }
    SetDocument(std::move(document));
    return true;
}

bool CCliHost::SaveDocument(const std::filesystem::path& file, std::string& error) const {
    CString reason;
    if (m_document && CModelFile::Save(*m_document, file, reason))
        return true;
    error = m_document ? reason.ToUtf8() : std::string("there is no open document");
    return false;
}

void CCliHost::SetDocument(std::unique_ptr<CObjBase> document) {
    CObjBase::SetCurrent(document.get());
    m_document = std::move(document);
}
