// CModuleLoader: the loads module opened at run time, its set-up entry called, the module's
// services forgotten when the loader goes, and the reasons when a library will not do.
#include "host/ModuleLoader.h"
#include "host/LoadsServices.h"
#include "host/MainFrame.h"
#include "host/Model.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <dlfcn.h>

namespace {

/// Which of the services that point into the module are filled.
std::vector<bool> Filled() {
    return {CLoadsServices::Brojevi != nullptr,
            CLoadsServices::UkupanBrojSloptOKombinacija != nullptr,
            CLoadsServices::FaktoriZaProracun != nullptr,
            CLoadsServices::FaktoriZaIspis != nullptr,
            CLoadsServices::GetTeorija != nullptr,
            CLoadsServices::SetTeorija != nullptr,
            CLoadsServices::Izvestaj != nullptr,
            CLoadsServices::NapraviPrimer != nullptr,
            CLoadsServices::PostaviChangeLoadCaseTo != nullptr,
            CMainFrame::UpdateCombo != nullptr,
            CModel::SnimiUskladisteneKombinacije != nullptr,
            CModel::UcitajUskladisteneKombinacije != nullptr};
}
const std::vector<bool> kAll(12, true), kNone(12, false);

} // namespace

TEST(ModuleLoader, LoadsTheModuleAndForgetsItsServicesWhenGone) {
    for (int round = 0; round < 2; ++round) {
        // A module loaded again after its loader went sets itself up again.
        COptionInfoList commands;
        {
            CModuleLoader loader;
            std::string error = "left over";
            ASSERT_TRUE(loader.Load(VORTA_MODULE_PATH, commands, error)) << error;
            EXPECT_EQ(error, "");
            EXPECT_TRUE(loader.IsLoaded());
            EXPECT_EQ(Filled(), kAll);
            EXPECT_EQ(commands.GetSize(), 8);
            ASSERT_NE(commands.Find(3403), nullptr);
            EXPECT_TRUE(commands.Find(3403)->m_bCombo);
            // The module shows the process its set-up entry and the generalized load case,
            // and keeps the rest (here the combination command) to itself.
            void* module = ::dlopen(VORTA_MODULE_PATH, RTLD_NOW | RTLD_NOLOAD);
            ASSERT_NE(module, nullptr);
            EXPECT_NE(::dlsym(module, kModuleSetUpEntry), nullptr);
            EXPECT_NE(::dlsym(module, "_ZNK20CGeneralizedLoadCase8ToFillerER7CFiller"), nullptr);
            EXPECT_EQ(::dlsym(module, "_ZN15COpterecenjeApp24OnKombinacijeOpterecenjaEv"), nullptr);
            ::dlclose(module);
            // One loader holds one module.
            EXPECT_FALSE(loader.Load(VORTA_MODULE_PATH, commands, error));
            EXPECT_NE(error, "");
            EXPECT_EQ(commands.GetSize(), 8);
        }
        EXPECT_EQ(Filled(), kNone) << "round " << round;
    }
}

TEST(ModuleLoader, RefusesLibrariesThatAreNotTheModule) {
    COptionInfoList commands;
    CModuleLoader loader;
    std::string error;
    EXPECT_FALSE(loader.Load("/nonexistent/libopterecenje.so", commands, error));
    EXPECT_NE(error.find("/nonexistent/libopterecenje.so"), std::string::npos) << error;
    // A shared library without the set-up entry: the reason names the missing entry.
    EXPECT_FALSE(loader.Load(VORTA_OTHER_LIBRARY_PATH, commands, error));
    EXPECT_NE(error.find(kModuleSetUpEntry), std::string::npos) << error;
    EXPECT_FALSE(loader.IsLoaded());
    EXPECT_EQ(commands.GetSize(), 0);
    EXPECT_EQ(Filled(), kNone);
}

TEST(ModuleLoader, DefaultPathIsTheEnvironmentOrTheBuildsLibraryDirectory) {
    const char* old = std::getenv("VORTA_OPTERECENJE_MODULE");
    const std::string saved = old != nullptr ? old : "";
    ::setenv("VORTA_OPTERECENJE_MODULE", "/opt/other/libopterecenje.so", 1);
    EXPECT_EQ(CModuleLoader::DefaultPath(), "/opt/other/libopterecenje.so");
    // Empty or unset: the test program lies in bin/ and the module in lib/ beside it, as
    // with vorta-cli.
    ::setenv("VORTA_OPTERECENJE_MODULE", "", 1);
    EXPECT_EQ(CModuleLoader::DefaultPath(), std::filesystem::path(VORTA_MODULE_PATH));
    ::unsetenv("VORTA_OPTERECENJE_MODULE");
    EXPECT_EQ(CModuleLoader::DefaultPath(), std::filesystem::path(VORTA_MODULE_PATH));
    if (old != nullptr)
        ::setenv("VORTA_OPTERECENJE_MODULE", saved.c_str(), 1);
}
