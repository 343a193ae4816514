// The desktop host's main window: the main frame of the loads module, files, undo, the load
// selector and the analysis settings.
#include "MainWindow.h"

#include "HostText.h"
#include "LoadTables.h"
#include "host/LoadsServices.h"
#include "host/MessageBox.h"
#include "host/VortaUtils.h"

#include <QAction>
#include <QApplication>
#include <QCloseEvent>
#include <QComboBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <QStatusBar>
#include <QTimer>

namespace {

constexpr int kSelectorCommand = 3403;
constexpr int kMaxRecent = 8;

/// The host evaluates no results of its own: it accepts every load the module makes current.
int AcceptLoadChange(const CGeneralizedLoadCase&, int) {
    return 1;
}

} // namespace

CMainWindow::CMainWindow(COptionInfoList& commands, QWidget* parent)
    : QMainWindow(parent), m_commands(commands), m_runner(this) {
    CMainFrame::Install(this);
    m_runner.Install();
    if (CLoadsServices::PostaviChangeLoadCaseTo != nullptr)
        CLoadsServices::PostaviChangeLoadCaseTo(&AcceptLoadChange);
    CVortaUtils::SetViewsHandler([this](int, int, int, int, int) {
        // Views are refreshed once the module's work is done.
        m_tables->RefreshLater();
    });

    m_tables = new CLoadTables(this);
    setCentralWidget(m_tables);
    m_status = new QLabel(this);
    m_display = new QLabel(this);
    statusBar()->addWidget(m_status, 1);
    statusBar()->addPermanentWidget(m_display);
    m_idle = new QTimer(this);
    m_idle->setSingleShot(true);
    m_idle->setInterval(300);
    // Undo steps that can no longer be reached are given back while the user does nothing.
    connect(m_idle, &QTimer::timeout, this, [this] {
        if (m_doc.Base().HasDiscarded())
            m_doc.Base().ReleaseDiscarded();
    });
    resize(1100, 720);
    BuildUi();
    m_doc.New();
    if (CMainFrame::UpdateCombo != nullptr)
        CMainFrame::UpdateCombo(-1);
    AfterChange();
}

CMainWindow::~CMainWindow() {
    CVortaUtils::SetViewsHandler(nullptr);
    if (CLoadsServices::PostaviChangeLoadCaseTo != nullptr)
        CLoadsServices::PostaviChangeLoadCaseTo(nullptr);
    CMainFrame::Install(nullptr);
}

// ----------------------------------------------------------------- the main frame

CId CMainWindow::GetCurrentSloptId(int& number) const {
    // In the results display a position is the load's ordinal on the global scale less one.
    number = Combo().GetCurSel() + (m_bResults ? 1 : 0);
    return m_currentId;
}

void CMainWindow::Pane0Event_SlucajOpterecenja(const CString& text, const CId& id, int) {
    m_currentId = id;
    m_status->setText(ToQ(text));
}

void CMainWindow::Pane2Event_UpdateUnit() {
    m_display->setText(m_bResults ? T(L"Rezultati") : T(L"Unos opterecenja"));
}

void CMainWindow::Repaint() {
    SyncSelector();
}

QString CMainWindow::StatusText() const {
    return m_status->text();
}

// ----------------------------------------------------------------- commands and refresh

void CMainWindow::AfterChange() {
    SyncSelector();
    m_tables->Refresh();
    UpdateStates();
    UpdateTitle();
    m_idle->start();
}

void CMainWindow::SyncSelector() {
    if (m_selector == nullptr)
        return;
    m_bSyncing = true;
    const CSelectorList& list = Combo();
    QStringList texts;
    for (const CString& text : list.Texts())
        texts << ToQ(text);
    bool same = m_selector->count() == texts.size();
    for (int i = 0; same && i < texts.size(); ++i)
        same = m_selector->itemText(i) == texts[i];
    if (!same) {
        m_selector->clear();
        m_selector->addItems(texts);
    }
    m_selector->setCurrentIndex(list.GetCurSel());
    m_bSyncing = false;
}

void CMainWindow::UpdateStates() {
    for (CCommand& command : m_actions) {
        if (command.info->m_pUpdate != nullptr)
            command.info->m_pUpdate(*command.info);
        command.action->setEnabled(command.info->IsEnabled());
    }
    if (m_selectorInfo != nullptr && m_selector != nullptr) {
        if (m_selectorInfo->m_pUpdate != nullptr)
            m_selectorInfo->m_pUpdate(*m_selectorInfo);
        m_selector->setEnabled(m_selectorInfo->IsEnabled());
    }
    const CString undo = m_doc.UndoName();
    const CString redo = m_doc.RedoName();
    m_undo->setEnabled(m_doc.CanUndo());
    m_redo->setEnabled(m_doc.CanRedo());
    m_undo->setText(undo.IsEmpty() ? T(L"Ponisti") : T(L"Ponisti: %1").arg(ToQ(undo)));
    m_redo->setText(redo.IsEmpty() ? T(L"Ponovi") : T(L"Ponovi: %1").arg(ToQ(redo)));
    for (QAction* action : m_teorija)
        action->setChecked(action->data().toInt() == m_doc.Teorija());
    m_resultsAction->setChecked(m_bResults);
    m_display->setText(m_bResults ? T(L"Rezultati") : T(L"Unos opterecenja"));
}

void CMainWindow::UpdateTitle() {
    const QString name = m_doc.Path().empty()
                             ? T(L"Novi model")
                             : QFileInfo(QString::fromStdString(m_doc.Path().string())).fileName();
    setWindowTitle(QStringLiteral("%1[*] - Vorta").arg(name));
    setWindowModified(m_doc.IsModified());
}

std::vector<int> CMainWindow::EditorCommands() const {
    std::vector<int> ids;
    for (const CCommand& command : m_actions)
        if (!command.info->m_bSeparator && !command.info->m_strName.IsEmpty())
            ids.push_back(command.info->m_nId);
    return ids;
}

QAction* CMainWindow::CommandAction(int id) const {
    for (const CCommand& command : m_actions)
        if (command.info->m_nId == id)
            return command.action;
    return nullptr;
}

void CMainWindow::RunCommand(int id) {
    COptionInfo* info = m_commands.Find(id);
    if (info == nullptr || info->m_pFunction == nullptr)
        return;
    if (info->m_pUpdate != nullptr) {
        info->m_pUpdate(*info);
        if (!info->IsEnabled())
            return;
    }
    const CString name =
        ClTranslator::Translate(!info->m_strName.IsEmpty() ? info->m_strName : info->m_strTip);
    Command(name, [info] { info->m_pFunction(); });
}

void CMainWindow::SelectLoad(int position) {
    if (m_selectorInfo == nullptr || m_selectorInfo->m_pFunction == nullptr)
        return;
    Combo().SetCurSel(position);
    Command(CString(), [this] { m_selectorInfo->m_pFunction(); });
}

void CMainWindow::SetResultsMode(bool results) {
    m_bResults = results;
    ApplyDisplay();
    if (CMainFrame::UpdateCombo != nullptr)
        CMainFrame::UpdateCombo(-1);
    Pane2Event_UpdateUnit();
    AfterChange();
}

void CMainWindow::ApplyDisplay() {
    const bool results = m_bResults;
    for (CCommand& command : m_actions)
        command.action->setVisible((command.info->m_nMode & (results ? 4 : 1)) != 0);
    for (QMenu* menu : menuBar()->findChildren<QMenu*>(QString(), Qt::FindDirectChildrenOnly)) {
        if (menu->property("moduleMenu").toBool()) {
            bool any = false;
            for (QAction* action : menu->actions())
                any = any || (action->isVisible() && !action->isSeparator());
            menu->menuAction()->setVisible(any);
        }
    }
}

void CMainWindow::UndoStep() {
    if (!m_doc.Undo())
        return;
    if (CMainFrame::UpdateCombo != nullptr)
        CMainFrame::UpdateCombo(-1);
    AfterChange();
}

void CMainWindow::RedoStep() {
    if (!m_doc.Redo())
        return;
    if (CMainFrame::UpdateCombo != nullptr)
        CMainFrame::UpdateCombo(-1);
    AfterChange();
}

void CMainWindow::SetTeorija(int teorija) {
    Command(ClTranslator::Translate(L"Teorija"), [this, teorija] { m_doc.SetTeorija(teorija); });
    if (CMainFrame::UpdateCombo != nullptr)
        CMainFrame::UpdateCombo(-1);
    SyncSelector();
}

void CMainWindow::EditStabilnost() {
    if (CLoadsServices::UrediStabilnost == nullptr)
        return;
    std::vector<uint8_t> record = m_doc.Stabilnost();
    if (!CLoadsServices::UrediStabilnost(record, this))
        return;
    Command(ClTranslator::Translate(L"Parametri stabilnosti"),
            [this, &record] { m_doc.SetStabilnost(std::move(record)); });
}

// ----------------------------------------------------------------- files

void CMainWindow::NewModel() {
    if (!MaybeSave())
        return;
    m_doc.New();
    m_currentId = CId();
    m_status->clear();
    if (CMainFrame::UpdateCombo != nullptr)
        CMainFrame::UpdateCombo(-1);
    AfterChange();
}

bool CMainWindow::OpenFile(const QString& path) {
    CString error;
    if (!m_doc.Open(path.toStdString(), error)) {
        CVortaMessageBox::MessageBoxW(
            FromQ(T(L"Model \"%1\" ne moze da se otvori.\n%2").arg(path, ToQ(error))),
            ClTranslator::Translate(L"Greska"), CVortaMessageBox::MB_ICONSTOP);
        return false;
    }
    m_currentId = CId();
    m_status->clear();
    if (CMainFrame::UpdateCombo != nullptr)
        CMainFrame::UpdateCombo(-1);
    AddRecent(path);
    AfterChange();
    return true;
}

bool CMainWindow::SaveFile(const QString& path) {
    CString error;
    if (!m_doc.Save(path.toStdString(), error)) {
        CVortaMessageBox::MessageBoxW(
            FromQ(T(L"Model \"%1\" ne moze da se snimi.\n%2").arg(path, ToQ(error))),
            ClTranslator::Translate(L"Greska"), CVortaMessageBox::MB_ICONSTOP);
        return false;
    }
    AddRecent(path);
    UpdateTitle();
    return true;
}

void CMainWindow::Open() {
    if (!MaybeSave())
        return;
    const QString path =
        QFileDialog::getOpenFileName(this, T(L"Otvori model"), QString(), T(L"Modeli (*.vld)"));
    if (!path.isEmpty())
        OpenFile(path);
}

bool CMainWindow::Save() {
    if (m_doc.Path().empty())
        return SaveAs();
    return SaveFile(QString::fromStdString(m_doc.Path().string()));
}

bool CMainWindow::SaveAs() {
    QString path =
        QFileDialog::getSaveFileName(this, T(L"Snimi model"), QString(), T(L"Modeli (*.vld)"));
    if (path.isEmpty())
        return false;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".vld");
    return SaveFile(path);
}

bool CMainWindow::MaybeSave() {
    if (!m_doc.HasUnsavedChanges())
        return true;
    const int answer = CVortaMessageBox::MessageBoxW(
        ClTranslator::Translate(L"Model je izmenjen. Da li zelite da snimite izmene?"),
        ClTranslator::Translate(L"Upozorenje"),
        CVortaMessageBox::MB_YESNOCANCEL | CVortaMessageBox::MB_ICONQUESTION);
    if (answer == CVortaMessageBox::IDYES)
        return Save();
    return answer == CVortaMessageBox::IDNO;
}

void CMainWindow::closeEvent(QCloseEvent* event) {
    if (MaybeSave())
        event->accept();
    else
        event->ignore();
}

void CMainWindow::AddRecent(const QString& path) {
    QSettings settings;
    QStringList recent = settings.value(QStringLiteral("recentFiles")).toStringList();
    const QString full = QFileInfo(path).absoluteFilePath();
    recent.removeAll(full);
    recent.prepend(full);
    while (recent.size() > kMaxRecent)
        recent.removeLast();
    settings.setValue(QStringLiteral("recentFiles"), recent);
    FillRecent();
}

void CMainWindow::FillRecent() {
    if (m_recent == nullptr)
        return;
    m_recent->clear();
    const QStringList recent = QSettings().value(QStringLiteral("recentFiles")).toStringList();
    for (int i = 0; i < recent.size(); ++i) {
        const QString path = recent[i];
        m_recent->addAction(QStringLiteral("&%1 %2").arg(i + 1).arg(path), this, [this, path] {
            if (MaybeSave())
                OpenFile(path);
        });
    }
    m_recent->setEnabled(!recent.isEmpty());
}

// ----------------------------------------------------------------- printing and language

void CMainWindow::Print() {
    QPrinter printer(QPrinter::HighResolution);
    QPrintDialog dialog(&printer, this);
    if (dialog.exec() == QDialog::Accepted)
        m_tables->Print(printer, windowTitle().remove(QStringLiteral("[*]")));
}

bool CMainWindow::ExportPdf(const QString& path) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    printer.setOutputFileName(path);
    printer.setPageOrientation(QPageLayout::Landscape);
    m_tables->Print(printer, windowTitle().remove(QStringLiteral("[*]")));
    return QFileInfo::exists(path);
}

void CMainWindow::ExportPdfAsk() {
    QString path =
        QFileDialog::getSaveFileName(this, T(L"Izvoz u PDF"), QString(), T(L"PDF (*.pdf)"));
    if (path.isEmpty())
        return;
    if (QFileInfo(path).suffix().isEmpty())
        path += QStringLiteral(".pdf");
    ExportPdf(path);
}

void CMainWindow::SetLanguage(int language, int subLanguage, bool remember) {
    ClTranslator::SetLanguage(language, subLanguage);
    if (remember)
        QSettings().setValue(QStringLiteral("language"), language * 16 + subLanguage);
    BuildUi();
    SetResultsMode(m_bResults);
}
