#pragma once
// CMainWindow: the desktop host's main window and its main frame for the loads module. It
// builds its menus and toolbars from the commands the module registered (the display, input
// or results, decides which of them show), draws the module's load selector in the toolbar,
// shows what the module announces in the status bar, and the model's load tables in its
// central area. Files, undo and redo, the analysis settings, printing and the language are the
// host's own.
#include "Document.h"
#include "host/MainFrame.h"
#include "host/OptionInfo.h"
#include "ui/QtModalRunner.h"

#include <QMainWindow>

#include <vector>

class CLoadTables;
class QAction;
class QComboBox;
class QLabel;
class QMenu;
class QTimer;

class CMainWindow : public QMainWindow, public CMainFrame {
    Q_OBJECT
public:
    explicit CMainWindow(COptionInfoList& commands, QWidget* parent = nullptr);
    ~CMainWindow() override;

    // ------------------------------------------------------------- what the user does
    void NewModel();
    /// Opens the file; a file that cannot be read gives a message and the open model stays.
    bool OpenFile(const QString& path);
    bool SaveFile(const QString& path);
    /// Switches between the display of load input and of results.
    void SetResultsMode(bool results);
    /// Picks a position of the load selector, as the user does in the toolbar.
    void SelectLoad(int position);
    /// Runs a command the module registered, as its menu item or button does.
    void RunCommand(int id);
    void UndoStep();
    void RedoStep();
    void SetTeorija(int teorija);
    void EditStabilnost();
    /// Chooses the language (ClTranslator's codes) and translates the window again; the
    /// choice is kept for the next start unless `remember` is false.
    void SetLanguage(int language, int subLanguage, bool remember = true);
    /// Writes the load tables to a PDF file.
    bool ExportPdf(const QString& path);

    CDocument& Document() { return m_doc; }
    CLoadTables& Tables() { return *m_tables; }
    QComboBox& Selector() { return *m_selector; }
    QString StatusText() const;
    CQtModalRunner& Runner() { return m_runner; }
    /// Runs a piece of work on the model as one command of the user (unnamed undo step).
    template <class F> void RunCommandWork(F work) { Command(CString(), work); }
    /// The module's commands that open an editor (they have a menu name), in menu order.
    std::vector<int> EditorCommands() const;
    /// The action of a module's command (null when it has none).
    QAction* CommandAction(int id) const;

    // ------------------------------------------------------------- the main frame
    CId GetCurrentSloptId(int& number) const override;
    int GetBrojTekuceFazeGradjenja() const override { return 0; }
    bool IsCommandActive() const override { return m_bCommandActive; }
    bool IsResultsMode() const override { return m_bResults; }
    void Pane0Event_SlucajOpterecenja(const CString& text, const CId& id, int envelope) override;
    void Pane2Event_UpdateUnit() override;
    void Repaint() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    struct CCommand {
        COptionInfo* info = nullptr;
        QAction* action = nullptr;
    };

    void BuildUi();
    void BuildModuleCommands(QMenu* before);
    void BuildHostActions();
    /// Shows the commands of the display (input or results) and hides the others.
    void ApplyDisplay();
    /// Runs a piece of work that may change the model as one named command of the user.
    template <class F> void Command(const CString& name, F work) {
        m_doc.BeginCommand();
        work();
        m_doc.EndCommand(name);
        AfterChange();
    }
    void AfterChange();
    void SyncSelector();
    void UpdateStates();
    void UpdateTitle();
    bool MaybeSave();
    void AddRecent(const QString& path);
    void FillRecent();
    void Open();
    bool Save();
    bool SaveAs();
    void Print();
    void ExportPdfAsk();

    COptionInfoList& m_commands;
    CDocument m_doc;
    CQtModalRunner m_runner;
    CLoadTables* m_tables = nullptr;
    QComboBox* m_selector = nullptr;
    COptionInfo* m_selectorInfo = nullptr;
    QLabel* m_status = nullptr;
    QLabel* m_display = nullptr;
    QMenu* m_recent = nullptr;
    QAction* m_undo = nullptr;
    QAction* m_redo = nullptr;
    QAction* m_resultsAction = nullptr;
    std::vector<CCommand> m_actions;
    std::vector<QAction*> m_teorija;
    QTimer* m_idle = nullptr;
    CId m_currentId;
    bool m_bResults = false;
    bool m_bCommandActive = false;
    bool m_bSyncing = false;
};
