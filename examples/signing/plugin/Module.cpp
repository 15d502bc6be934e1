#include "Module.h"

#include "Failure.h"

#include <dlfcn.h>

void Module::open(const std::string& path)
{
    if (m_functions != nullptr) {
        return;
    }
    close(); // a library that did not initialise last time
    m_library = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    const auto list = m_library == nullptr
        ? nullptr
        : reinterpret_cast<CK_C_GetFunctionList>(dlsym(m_library, "C_GetFunctionList"));
    if (list == nullptr) {
        const char* reason = dlerror();
        throw Failure(CKR_LIBRARY_LOAD_FAILED, reason == nullptr ? path : reason);
    }
    CK_FUNCTION_LIST* functions = nullptr;
    check(list(&functions));

    CK_C_INITIALIZE_ARGS arguments = {};
    arguments.flags = CKF_OS_LOCKING_OK; // each command has a thread of its own
    const CK_RV status = functions->C_Initialize(&arguments);
    // Another part of the process may use the same module.
    if (status != CKR_CRYPTOKI_ALREADY_INITIALIZED) {
        check(status);
        m_isOurs = true;
    }
    m_functions = functions;
}

void Module::close()
{
    if (m_functions != nullptr && m_isOurs) {
        m_functions->C_Finalize(nullptr);
    }
    if (m_library != nullptr) {
        dlclose(m_library);
    }
    m_library = nullptr;
    m_functions = nullptr;
    m_isOurs = false;
}
