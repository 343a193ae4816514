// Loading the loads module at run time with the dynamic linker.
#include "host/ModuleLoader.h"

#include "host/LoadsServices.h"
#include "host/MainFrame.h"
#include "host/Model.h"

#include <cstdlib>
#include <dlfcn.h>
#include <system_error>

namespace {

constexpr const char* kModuleFile = "libopterecenje.so";
constexpr const char* kModuleEnvironment = "VORTA_OPTERECENJE_MODULE";

/// The last error of the dynamic linker, or the fallback when it reports none.
std::string LinkerError(const char* fallback) {
    const char* text = ::dlerror();
    return text != nullptr ? std::string(text) : std::string(fallback);
}

/// The directory of the running program, empty when it cannot be found.
std::filesystem::path ProgramDirectory() {
    std::error_code ec;
    const std::filesystem::path exe = std::filesystem::read_symlink("/proc/self/exe", ec);
    return ec ? std::filesystem::path() : exe.parent_path();
}

/// Forgets every function pointer that points into the module, so nothing calls into a
/// library that is no longer mapped.
void ForgetModulePointers() {
    CLoadsServices::Reset();
    CMainFrame::UpdateCombo = nullptr;
    CModel::SnimiUskladisteneKombinacije = nullptr;
    CModel::UcitajUskladisteneKombinacije = nullptr;
}

} // namespace

CModuleLoader::~CModuleLoader() {
    if (m_handle == nullptr)
        return;
    ForgetModulePointers();
    ::dlclose(m_handle);
    m_handle = nullptr;
}

bool CModuleLoader::Load(const std::filesystem::path& library, COptionInfoList& commands,
                         std::string& error) {
    error.clear();
    if (m_handle != nullptr) {
        error = "the loads module is already loaded";
        return false;
    }
    ::dlerror(); // forget an error left by an earlier call
    // The module stays mapped after dlclose: the object base's class registry lives as long
    // as the process and keeps the module's prototypes, so their code must stay too (and a
    // module loaded again finds its classes registered by the same code).
    void* handle = ::dlopen(library.c_str(), RTLD_NOW | RTLD_GLOBAL | RTLD_NODELETE);
    if (handle == nullptr) {
        error = LinkerError("cannot open the library");
        return false;
    }
    ::dlerror();
    void* symbol = ::dlsym(handle, kModuleSetUpEntry);
    if (symbol == nullptr) {
        error = LinkerError("the set-up entry is missing");
        ::dlclose(handle);
        return false;
    }
    const auto setUp = reinterpret_cast<ModuleSetUpFunction>(symbol);
    if (setUp(&commands) == 0) {
        error = "the module's set-up failed";
        ForgetModulePointers();
        ::dlclose(handle);
        return false;
    }
    m_handle = handle;
    return true;
}

std::filesystem::path CModuleLoader::DefaultPath() {
    if (const char* named = std::getenv(kModuleEnvironment); named != nullptr && *named != '\0')
        return named;
    const std::filesystem::path dir = ProgramDirectory();
    if (dir.empty())
        return kModuleFile;
    std::error_code ec;
    const std::filesystem::path beside = dir / kModuleFile;
    if (std::filesystem::exists(beside, ec))
        return beside;
    return (dir / ".." / "lib" / kModuleFile).lexically_normal();
}
