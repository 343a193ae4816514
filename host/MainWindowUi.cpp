// The menus and toolbars of the main window: the host's own actions, and the commands the
// loads module registered, placed by their menu, priority and display.
#include "MainWindow.h"

#include "HostText.h"
#include "LoadTables.h"
#include "ui/ImageSet.h"

#include <QActionGroup>
#include <QApplication>
#include <QComboBox>
#include <QKeySequence>
#include <QMenuBar>
#include <QMessageBox>
#include <QTimer>
#include <QToolBar>

#include <algorithm>
#include <map>

namespace {

constexpr int kSelectorCommand = 3403;

/// The languages offered, each named in its own language and script.
struct CLanguageChoice {
    const char* name;
    int language;
    int subLanguage;
};
constexpr CLanguageChoice kLanguages[] = {
    {"Srpski (latinica)", ClTranslator::Srpski, 0},
    {"\u0421\u0440\u043f\u0441\u043a\u0438 (\u045b\u0438\u0440\u0438\u043b\u0438\u0446\u0430)",
     ClTranslator::Srpski, ClTranslator::Cirilica},
    {"English", ClTranslator::Engleski, 0},
    {"\u0411\u044a\u043b\u0433\u0430\u0440\u0441\u043a\u0438", ClTranslator::Bugarski, 0},
};

} // namespace

void CMainWindow::BuildUi() {
    menuBar()->clear();
    for (QToolBar* bar : findChildren<QToolBar*>()) {
        removeToolBar(bar);
        bar->deleteLater();
    }
    m_actions.clear();
    m_teorija.clear();
    m_selector = nullptr;
    m_selectorInfo = nullptr;
    BuildHostActions();
    FillRecent();
    ApplyDisplay();
}

void CMainWindow::BuildHostActions() {
    QToolBar* fileBar = addToolBar(T(L"Datoteka"));
    fileBar->setObjectName(QStringLiteral("fileBar"));
    const QStyle* s = style();

    QMenu* file = menuBar()->addMenu(T(L"&Datoteka"));
    QAction* a = file->addAction(s->standardIcon(QStyle::SP_FileIcon), T(L"&Novi"), this,
                                 &CMainWindow::NewModel);
    a->setShortcut(QKeySequence::New);
    fileBar->addAction(a);
    a = file->addAction(s->standardIcon(QStyle::SP_DialogOpenButton), T(L"&Otvori..."), this,
                        &CMainWindow::Open);
    a->setShortcut(QKeySequence::Open);
    fileBar->addAction(a);
    a = file->addAction(s->standardIcon(QStyle::SP_DialogSaveButton), T(L"&Snimi"), this,
                        [this] { Save(); });
    a->setShortcut(QKeySequence::Save);
    fileBar->addAction(a);
    a = file->addAction(T(L"Snimi &kao..."), this, [this] { SaveAs(); });
    a->setShortcut(QKeySequence::SaveAs);
    m_recent = file->addMenu(T(L"Skoro otvarani modeli"));
    file->addSeparator();
    a = file->addAction(T(L"&Stampa..."), this, &CMainWindow::Print);
    a->setShortcut(QKeySequence::Print);
    file->addAction(T(L"Izvoz u &PDF..."), this, &CMainWindow::ExportPdfAsk);
    file->addSeparator();
    a = file->addAction(T(L"&Kraj"), this, &QWidget::close);
    a->setShortcut(QKeySequence::Quit);

    QMenu* edit = menuBar()->addMenu(T(L"&Izmene"));
    m_undo = edit->addAction(s->standardIcon(QStyle::SP_ArrowBack), T(L"Ponisti"), this,
                             &CMainWindow::UndoStep);
    m_undo->setShortcut(QKeySequence::Undo);
    m_redo = edit->addAction(s->standardIcon(QStyle::SP_ArrowForward), T(L"Ponovi"), this,
                             &CMainWindow::RedoStep);
    m_redo->setShortcut(QKeySequence::Redo);
    fileBar->addSeparator();
    fileBar->addAction(m_undo);
    fileBar->addAction(m_redo);

    QMenu* view = menuBar()->addMenu(T(L"&Prikaz"));
    m_resultsAction = view->addAction(T(L"Prikaz &rezultata"));
    m_resultsAction->setCheckable(true);
    m_resultsAction->setShortcut(QKeySequence(Qt::Key_F9));
    connect(m_resultsAction, &QAction::triggered, this,
            [this](bool checked) { SetResultsMode(checked); });

    BuildModuleCommands(nullptr);

    QMenu* analysis = menuBar()->addMenu(T(L"&Analiza"));
    auto* group = new QActionGroup(analysis);
    for (const auto& [teorija, text] :
         {std::pair{1, T(L"Teorija I reda (superpozicija slucajeva)")},
          std::pair{2, T(L"Teorija II reda (svaka kombinacija posebno)")}}) {
        QAction* action = analysis->addAction(text);
        action->setCheckable(true);
        action->setData(teorija);
        group->addAction(action);
        const int value = teorija;
        connect(action, &QAction::triggered, this, [this, value] { SetTeorija(value); });
        m_teorija.push_back(action);
    }
    analysis->addSeparator();
    analysis->addAction(T(L"Parametri &stabilnosti..."), this, &CMainWindow::EditStabilnost);

    QMenu* language = menuBar()->addMenu(T(L"&Jezik"));
    auto* languages = new QActionGroup(language);
    for (const CLanguageChoice& choice : kLanguages) {
        QAction* action = language->addAction(QString::fromUtf8(choice.name));
        action->setCheckable(true);
        action->setChecked(ClTranslator::GetLanguage() == choice.language &&
                           ClTranslator::GetSubLanguage() == choice.subLanguage);
        languages->addAction(action);
        const int lang = choice.language;
        const int sub = choice.subLanguage;
        // The menu is built anew by the switch, so the switch runs after this action's signal.
        connect(action, &QAction::triggered, this, [this, lang, sub] {
            QTimer::singleShot(0, this, [this, lang, sub] { SetLanguage(lang, sub); });
        });
    }

    QMenu* help = menuBar()->addMenu(T(L"Po&moc"));
    help->addAction(T(L"&O programu"), this, [this] {
        QMessageBox::about(this, T(L"O programu"),
                           T(L"Vorta: modul opterecenja za proracun ramova i ploca.\n"
                             "Slucajevi i kombinacije opterecenja, anvelope, SRSS slucajevi "
                             "i parametri stabilnosti."));
    });
}

void CMainWindow::BuildModuleCommands(QMenu*) {
    // The commands by menu, each menu in the order of its commands' priorities; the menus
    // in the order of their first command.
    std::vector<COptionInfo*> ordered;
    for (int i = 0; i < m_commands.GetSize(); ++i)
        ordered.push_back(&m_commands.GetAt(i));
    std::stable_sort(
        ordered.begin(), ordered.end(),
        [](const COptionInfo* a, const COptionInfo* b) { return a->m_nPriority < b->m_nPriority; });

    QToolBar* commandBar = addToolBar(T(L"Opterecenje"));
    commandBar->setObjectName(QStringLiteral("commandBar"));
    commandBar->setIconSize(QSize(24, 24));
    QToolBar* selectorBar = addToolBar(T(L"Izbor opterecenja"));
    selectorBar->setObjectName(QStringLiteral("selectorBar"));
    selectorBar->setIconSize(QSize(24, 24));

    std::map<std::wstring, QMenu*> menus;
    QAction* previous = nullptr;
    QAction* next = nullptr;
    for (COptionInfo* info : ordered) {
        if (info->m_bCombo) {
            if (info->m_nId != kSelectorCommand)
                continue;
            m_selector = new QComboBox(selectorBar);
            m_selector->setObjectName(QStringLiteral("loadSelector"));
            m_selector->setFixedWidth(info->m_nComboWidth);
            m_selector->setMaxVisibleItems(24);
            m_selector->setToolTip(T(L"Izbor opterecenja"));
            m_selectorInfo = info;
            connect(m_selector, &QComboBox::activated, this, [this](int index) {
                if (!m_bSyncing)
                    SelectLoad(index);
            });
            continue;
        }
        QMenu* menu = nullptr;
        if (!info->m_strParent.IsEmpty()) {
            QMenu*& slot = menus[info->m_strParent];
            if (slot == nullptr) {
                slot = new QMenu(ToQ(ClTranslator::Translate(info->m_strParent)), menuBar());
                slot->setProperty("moduleMenu", true);
                menuBar()->addMenu(slot);
            }
            menu = slot;
        }
        QAction* action = nullptr;
        if (info->m_bSeparator) {
            if (menu == nullptr)
                continue;
            action = menu->addSeparator();
        } else {
            const CString name = ClTranslator::Translate(info->m_strName);
            const CString tip = ClTranslator::Translate(info->m_strTip);
            action = new QAction(ImageSet::Command(info->m_nIcon),
                                 ToQ(!name.IsEmpty() ? name : tip), this);
            action->setToolTip(ToQ(!tip.IsEmpty() ? tip : name));
            const int id = info->m_nId;
            connect(action, &QAction::triggered, this, [this, id] { RunCommand(id); });
            if (info->m_strName.IsEmpty()) {
                // Commands with a tip only step through the loads beside the selector.
                (previous == nullptr ? previous : next) = action;
            } else {
                if (menu != nullptr)
                    menu->addAction(action);
                commandBar->addAction(action);
            }
        }
        action->setVisible((info->m_nMode & (m_bResults ? 4 : 1)) != 0);
        m_actions.push_back({info, action});
    }
    if (previous != nullptr)
        selectorBar->addAction(previous);
    if (m_selector != nullptr)
        selectorBar->addWidget(m_selector);
    if (next != nullptr)
        selectorBar->addAction(next);
    selectorBar->addSeparator();
    selectorBar->addAction(m_resultsAction);
}
