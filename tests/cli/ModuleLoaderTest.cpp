// CModuleLoader: the loads module opened at run time, its set-up entry called, the module's
// services forgotten when the loader goes, and the reasons when a library will not do.
#include "host/ModuleLoader.h"
#include "host/LoadsServices.h"
#include "host/MainFrame.h"
#include "host/Model.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

namespace {

bool AllServicesFilled() {
    return CLoadsServices::Brojevi && CLoadsServices::UkupanBrojSloptOKombinacija &&
           CLoadsServices::FaktoriZaProracun && CLoadsServices::FaktoriZaIspis &&
           CLoadsServices::GetTeorija && CLoadsServices::SetTeorija && CLoadsServices::Izvestaj &&
           CLoadsServices::NapraviPrimer && CMainFrame::UpdateCombo &&
           CModel::SnimiUskladisteneKombinacije && CModel::UcitajUskladisteneKombinacije;
}

bool AnyServiceFilled() {
    return CLoadsServices::Brojevi || CLoadsServices::UkupanBrojSloptOKombinacija ||
           CLoadsServices::FaktoriZaProracun || CLoadsServices::FaktoriZaIspis ||
           CLoadsServices::GetTeorija || CLoadsServices::SetTeorija || CLoadsServices::Izvestaj ||
           CLoadsServices::NapraviPrimer || CMainFrame::UpdateCombo ||
           CModel::SnimiUskladisteneKombinacije || CModel::UcitajUskladisteneKombinacije;
}

/// Sets or clears an environment variable for the life of the guard.
class CEnvironment {
public:
    CEnvironment(const char* name, const char* value) : m_name(name) {
        if (const char* old = std::getenv(name))
            m_old = old;
        if (value != nullptr)
            ::setenv(name, value, 1);
        else
            ::unsetenv(name);
    }
    ~CEnvironment() {
        if (m_old)
            ::setenv(m_name, m_old->c_str(), 1);
        else
            ::unsetenv(m_name);
    }
    CEnvironment(const CEnvironment&) = delete;
    CEnvironment& operator=(const CEnvironment&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_old;
};

} // namespace

TEST(ModuleLoader, LoadsTheModuleAndForgetsItsServicesWhenGone) {
    for (int round = 0; round < 2; ++round) {
        // A module loaded again after its loader went sets itself up again.
        COptionInfoList commands;
        {
            CModuleLoader loader;
            EXPECT_FALSE(loader.IsLoaded());
            std::string error = "left over";
            ASSERT_TRUE(loader.Load(VORTA_MODULE_PATH, commands, error)) << error;
            EXPECT_EQ(error, "");
            EXPECT_TRUE(loader.IsLoaded());
            EXPECT_TRUE(AllServicesFilled());
            EXPECT_EQ(commands.GetSize(), 8);
            ASSERT_NE(commands.Find(3403), nullptr);
            EXPECT_TRUE(commands.Find(3403)->m_bCombo);

            // One loader holds one module.
            EXPECT_FALSE(loader.Load(VORTA_MODULE_PATH, commands, error));
            EXPECT_NE(error, "");
            EXPECT_EQ(commands.GetSize(), 8);
            EXPECT_TRUE(loader.IsLoaded());
        }
        EXPECT_FALSE(AnyServiceFilled()) << "round " << round;
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
    EXPECT_FALSE(AnyServiceFilled());
}

TEST(ModuleLoader, DefaultPathIsTheEnvironmentOrTheBuildsLibraryDirectory) {
    {
        CEnvironment named("VORTA_OPTERECENJE_MODULE", "/opt/other/libopterecenje.so");
        EXPECT_EQ(CModuleLoader::DefaultPath(), "/opt/other/libopterecenje.so");
    }
    {
        CEnvironment empty("VORTA_OPTERECENJE_MODULE", "");
        EXPECT_EQ(CModuleLoader::DefaultPath(), std::filesystem::path(VORTA_MODULE_PATH));
    }
    // The test program lies in bin/ and the module in lib/ beside it, as with vorta-cli.
    CEnvironment unset("VORTA_OPTERECENJE_MODULE", nullptr);
    EXPECT_EQ(CModuleLoader::DefaultPath(), std::filesystem::path(VORTA_MODULE_PATH));
}
