#pragma once
// Loading the loads module at run time: the host opens the shared library, finds its set-up
// entry by name and calls it with the host's command list.
#include "framework/String.h"
#include "host/OptionInfo.h"

#include <filesystem>
#include <string>

/// The name of the module's exported set-up entry: int VortaModuleSetUp(COptionInfoList*).
inline constexpr const char* kModuleSetUpEntry = "VortaModuleSetUp";
using ModuleSetUpFunction = int (*)(COptionInfoList*);

class CModuleLoader {
public:
    CModuleLoader() = default;
    ~CModuleLoader();
    CModuleLoader(const CModuleLoader&) = delete;
    CModuleLoader& operator=(const CModuleLoader&) = delete;

    /// Opens the library and calls its set-up entry; false with the reason on failure.
    bool Load(const std::filesystem::path& library, COptionInfoList& commands, std::string& error);
    bool IsLoaded() const { return m_handle != nullptr; }
    /// Where a host finds the module by default: the environment variable
    /// VORTA_OPTERECENJE_MODULE, else libopterecenje.so beside the program, else in the
    /// program's ../lib directory.
    static std::filesystem::path DefaultPath();

private:
    void* m_handle = nullptr;
};
