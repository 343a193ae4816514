// The desktop host in a test.
#include "HostFixture.h"

#include "Languages.h"
#include "host/LoadsServices.h"
#include "host/MainFrame.h"

#include <QStandardPaths>

#include <string>
#include <unistd.h>

namespace {

CModuleLoader& Loader() {
    static CModuleLoader loader;
    return loader;
}

} // namespace

COptionInfoList& HostTest::Commands() {
    static COptionInfoList commands;
    return commands;
}

void HostTest::SetUpTestSuite() {
    QtTestApp();
    // Recent files and the language go to a settings file of the tests, not the user's.
    QStandardPaths::setTestModeEnabled(true);
    if (!Loader().IsLoaded()) {
        std::string error;
        ASSERT_TRUE(Loader().Load(CModuleLoader::DefaultPath(), Commands(), error)) << error;
        ASSERT_GT(Languages::LoadCatalogs(Languages::CatalogDirectory()), 0);
    }
}

void HostTest::SetUp() {
    ClTranslator::SetLanguage(ClTranslator::Srpski);
    // Of this process too: the same tests may run at once from another build of the project.
    m_dir = std::filesystem::temp_directory_path() /
            ("vorta-host-" + std::to_string(::getpid()) + "-" +
             std::string(::testing::UnitTest::GetInstance()->current_test_info()->name()));
    std::filesystem::remove_all(m_dir);
    std::filesystem::create_directories(m_dir);
    m_window = std::make_unique<CMainWindow>(Commands());
    m_window->show();
}

void HostTest::TearDown() {
    // Nothing asks to save what a test leaves.
    m_window->Document().New();
    m_window.reset();
    std::filesystem::remove_all(m_dir);
    ClTranslator::SetLanguage(ClTranslator::Srpski);
}

std::filesystem::path HostTest::ExampleFile(const char* name) {
    m_window->RunCommandWork([] {
        CLoadsServices::NapraviPrimer();
        CMainFrame::UpdateCombo(-1);
    });
    const std::filesystem::path file = m_dir / name;
    EXPECT_TRUE(m_window->SaveFile(QString::fromStdString(file.string())));
    return file;
}
