#pragma once
// CDocument: the one model the desktop host has open. It owns the object base, knows its file
// and whether it changed since it was read or saved, keeps the names of the undo steps the
// host's commands made, and keeps the analysis settings the host owns (the theory and the
// stability parameters) in the model object, so that they are saved with the model.
//
// Opening or starting a model makes the loads module forget everything it kept of the model
// before, so that one model at a time leaves nothing behind.
#include "framework/String.h"
#include "objbase/ObjBase.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <vector>

class CModel;

class CDocument {
public:
    CDocument();
    ~CDocument();
    CDocument(const CDocument&) = delete;
    CDocument& operator=(const CDocument&) = delete;

    CObjBase& Base() { return *m_base; }
    const std::filesystem::path& Path() const { return m_path; }

    /// An empty model, current, without a file.
    void New();
    /// Reads the file into a new model and makes it current; on failure (false, with the
    /// reason) the open model stays as it was.
    bool Open(const std::filesystem::path& file, CString& error);
    /// Writes the model to the file, which becomes its file.
    bool Save(const std::filesystem::path& file, CString& error);
    /// Whether the host's commands changed the model since it was last read or saved (cheap:
    /// by the undo steps, for the window's title).
    bool IsModified() const { return m_nState != m_nSavedState; }
    /// Whether the model differs in any way from what was last read or saved (it compares the
    /// whole model: for the question before a model is closed).
    bool HasUnsavedChanges() const;

    // ------------------------------------------------------------- undo with step names
    /// Brackets one command of the user: the undo steps it made get its name.
    void BeginCommand();
    void EndCommand(const CString& name);
    bool CanUndo() const { return m_base->CanUndo(); }
    bool CanRedo() const { return m_base->CanRedo(); }
    bool Undo();
    bool Redo();
    /// The name of the step Undo (Redo) would take back (bring back); empty when unnamed.
    CString UndoName() const;
    CString RedoName() const;

    // ------------------------------------------------------------- analysis settings
    int Teorija() const;
    /// Sets the theory as one undo step and gives it to the module.
    void SetTeorija(int teorija);
    std::vector<uint8_t> Stabilnost() const;
    /// Keeps new stability parameters (the module's record) as one undo step.
    void SetStabilnost(std::vector<uint8_t> record);
    /// Gives the module the settings the model holds (after opening, undo and redo).
    void ApplySettings() const;

private:
    void Replace(std::unique_ptr<CObjBase> base);
    const CModel* Model() const;
    size_t Fingerprint() const;

    std::unique_ptr<CObjBase> m_base;
    std::filesystem::path m_path;
    size_t m_nSaved = 0;
    /// An undo step the host's commands made: its name and the state of the model it leads
    /// to (a number that no other state of the model has).
    struct CStep {
        CString name;
        uint64_t state = 0;
    };
    std::vector<CStep> m_undo;  // the newest last
    std::vector<CStep> m_redo;  // the next to redo last
    uint64_t m_nState = 0;      // the state of the model now
    uint64_t m_nBaseState = 0;  // the state before the oldest step of m_undo
    uint64_t m_nSavedState = 0; // the state last read or saved
    uint64_t m_nLastState = 0;  // the last number given to a state
    int m_nUndoBefore = 0;
};
