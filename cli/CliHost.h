#pragma once
// CCliHost: what the command-line host sets up around one command: its main frame, its own
// persistent classes, the loads module loaded at run time and the open document.
//
// The members are declared so that they are torn down in the safe order: the document goes
// first (its objects belong to classes of the module), then the module is unloaded, then the
// frame is removed.
#include "HeadlessFrame.h"
#include "host/ModuleLoader.h"
#include "host/OptionInfo.h"
#include "objbase/ObjBase.h"

#include <filesystem>
#include <memory>
#include <string>

class CCliHost {
public:
    /// Installs the frame and registers the host's classes.
    CCliHost();
    ~CCliHost();
    CCliHost(const CCliHost&) = delete;
    CCliHost& operator=(const CCliHost&) = delete;

    /// Loads the module and checks that it filled every service the commands use; false with
    /// the reason otherwise.
    bool LoadModule(const std::filesystem::path& library, std::string& error);

    /// Makes a new empty document current.
    void NewDocument();
    /// Reads a model file into a fresh document and makes it current; false with the reason
    /// when the file is missing, unreadable or damaged (the open document stays as it was).
    bool OpenDocument(const std::filesystem::path& file, std::string& error);
    /// Writes the current document to a model file.
    bool SaveDocument(const std::filesystem::path& file, std::string& error) const;

    CHeadlessFrame& Frame() { return m_frame; }
    const COptionInfoList& Commands() const { return m_commands; }

private:
    void SetDocument(std::unique_ptr<CObjBase> document);

    CHeadlessFrame m_frame;
    CFrameInstallation m_installation{m_frame};
    COptionInfoList m_commands;
    CModuleLoader m_loader;
    std::unique_ptr<CObjBase> m_document;
};
