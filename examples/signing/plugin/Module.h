// Module.h: a PKCS #11 library, which gives access to the tokens of one or more makers.
#pragma once

#include <p11-kit/pkcs11.h>
#include <string>

class Module {
public:
    Module() = default;
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;
    ~Module() { close(); }

    /// Loads and initialises the library, unless one is open. Throws Failure: with
    /// CKR_LIBRARY_LOAD_FAILED and the loader's words when it is no PKCS #11 library.
    void open(const std::string& path);

    /// Ends what open() began. Nobody else may use the module any longer.
    void close();

    /// The library's functions; only while it is open.
    const CK_FUNCTION_LIST* operator->() const { return m_functions; }

private:
    void* m_library = nullptr;
    CK_FUNCTION_LIST* m_functions = nullptr;
    bool m_isOurs = false; // whether we have to finalise it
};
