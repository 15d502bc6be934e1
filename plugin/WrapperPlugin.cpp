#include "plugin/WrapperPlugin.h"

#include "util/StringUtil.h"

#include <cstdint>
#include <dlfcn.h>

namespace {

using NewerInitialize = void*(void*, void*, void*, void*, void** instance);
using OlderInitialize = void*(const char*, const char*, const char*, PluginCallback);

/// All bits set: a handle that stands for no library and must not be closed.
constexpr std::uintptr_t kNoHandle = UINTPTR_MAX;

/// Load address of the module that holds this address; null when none does.
void* module_of(void* address) noexcept
{
    Dl_info module = {};
    return dladdr(address, &module) == 0 ? nullptr : module.dli_fbase;
}

/// Looks up one entry point. dlsym() also searches the libraries that the plug-in links to, and may
/// find our own function of that name: then the plug-in has none.
template <typename Function>
bool bind_entry(void* library, const char* name, Function*& entry) noexcept
{
    void* symbol = dlsym(library, name);
    if (symbol != nullptr && module_of(symbol) == module_of(reinterpret_cast<void*>(&module_of))) {
        symbol = nullptr;
    }
    entry = reinterpret_cast<Function*>(symbol);
    return entry != nullptr;
}

} // namespace

struct CWrapperPlugin::EntryNames {
    const char* initialize;
    const char* finalize;
    const char* setProperty;
    const char* getProperty;
    const char* enumProperty;
    const char* invoke;
};

const CWrapperPlugin::EntryNames CWrapperPlugin::kNewerNames = {"PlgInitialize", "PlgFinalize",
    "PlgSetProperty", "PlgGetProperty", "PlgEnumProperty", "PlgInvoke"};
const CWrapperPlugin::EntryNames CWrapperPlugin::kOlderNames = {
    "P_Initialize", "P_Finalize", "P_SetProperty", "P_GetProperty", "P_EnumProperty", "P_Invoke"};

CWrapperPlugin::~CWrapperPlugin()
{
    CWrapperPlugin::Finalize();
}

bool CWrapperPlugin::bind(const EntryNames& names) noexcept
{
    return bind_entry(m_library, names.initialize, m_initialize)
        && bind_entry(m_library, names.finalize, m_finalize)
        && bind_entry(m_library, names.setProperty, m_setProperty)
        && bind_entry(m_library, names.getProperty, m_getProperty)
        && bind_entry(m_library, names.enumProperty, m_enumProperty)
        && bind_entry(m_library, names.invoke, m_invoke);
}

void* CWrapperPlugin::Available(const char* path)
{
    if (m_library != nullptr) {
        return m_library;
    }
    m_missingEntry.reset();
    const char* fileName = tovik::_strlen(path) == 0 ? "libtovik.so" : path;
    m_library = dlopen(fileName, RTLD_NOW);
    if (m_library == nullptr) {
        return nullptr;
    }
    m_newer = bind(kNewerNames);
    if (m_newer) {
        SetRoot(fileName);
    } else if (!bind(kOlderNames)) {
        m_missingEntry.reset(tovik::_strnew(dlerror()));
        Release();
    }
    return m_library;
}

void CWrapperPlugin::Release()
{
    if (m_library != nullptr && reinterpret_cast<std::uintptr_t>(m_library) != kNoHandle) {
        dlclose(m_library);
    }
    m_library = nullptr;
    m_initialize = nullptr;
    m_finalize = nullptr;
    m_setProperty = nullptr;
    m_getProperty = nullptr;
    m_enumProperty = nullptr;
    m_invoke = nullptr;
    m_newer = false;
    m_root.reset();
}

bool CWrapperPlugin::Initialize(
    const char* text, const char* globalConfig, const char* localConfig, PluginCallback callback)
{
    if (m_library == nullptr && Available(nullptr) == nullptr) {
        return false;
    }
    if (m_initialize == nullptr) { // an override of Available() has bound nothing
        return false;
    }
    if (!m_newer) {
        auto* initialize = reinterpret_cast<OlderInitialize*>(m_initialize);
        m_instance = initialize(text, globalConfig, localConfig, callback);
        return m_instance != nullptr;
    }
    auto* initialize = reinterpret_cast<NewerInitialize*>(m_initialize);
    if (initialize(nullptr, nullptr, nullptr, nullptr, &m_instance) == nullptr) {
        return false;
    }
    if (m_root) {
        SetProperty("WorkingDirectory", m_root.get());
    }
    return true;
}

void CWrapperPlugin::Finalize()
{
    m_root.reset();
    if (m_finalize != nullptr && m_instance != nullptr) {
        m_finalize(m_instance);
        m_instance = nullptr;
    }
    Release(); // NOLINT(clang-analyzer-optin.cplusplus.VirtualCall): the destructor means its own
}

bool CWrapperPlugin::IsInitialized()
{
    return m_library != nullptr;
}

void CWrapperPlugin::SetProperty(const char* name, const char* value)
{
    if (m_setProperty != nullptr) {
        m_setProperty(m_instance, name, value);
    }
}

const char* CWrapperPlugin::GetProperty(const char* name)
{
    return m_getProperty == nullptr ? nullptr : m_getProperty(m_instance, name);
}

const char* CWrapperPlugin::EnumProperty(const char* first, const char* second)
{
    return m_enumProperty == nullptr ? nullptr : m_enumProperty(m_instance, first, second);
}

unsigned long CWrapperPlugin::Invoke(const char* name)
{
    return m_invoke == nullptr ? kFunctionFailed : m_invoke(m_instance, name);
}

void CWrapperPlugin::SetRoot(const char* path)
{
    const char* slash = tovik::_strrchr(path, '/');
    if (slash != nullptr) {
        m_root.reset(tovik::_strnew(path, static_cast<std::size_t>(slash - path) + 1));
    }
}
