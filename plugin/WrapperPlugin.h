// WrapperPlugin.h: one interface to a native plug-in library, whichever of the two generations of
// entry points it exports.
#pragma once

#include "util/Owned.h"

/// Callback that the older initialise entry receives; its meaning belongs to the plug-in.
using PluginCallback = void (*)(const char* text, unsigned long number);

/// Loads a plug-in library, binds its newer ("Plg...") or older ("P_...") entry points, always a
/// whole set, and forwards calls to them. The plug-in owns the texts that it returns: copy them
/// before the next call. Operations call each other through virtual calls, which an override
/// changes. For one thread at a time.
class CWrapperPlugin {
public:
    /// A wrapper without a library.
    constexpr CWrapperPlugin() = default;
    CWrapperPlugin(const CWrapperPlugin&) = delete;
    CWrapperPlugin& operator=(const CWrapperPlugin&) = delete;

    /// Finalises the plug-in and closes its library.
    virtual ~CWrapperPlugin();

    /// Loads and binds the library at `path`, "libtovik.so" by the loader's search for null or
    /// empty. Returns its dlopen() handle, or at once that of a library loaded before. Returns null
    /// when the library cannot be opened, for which dlerror() has the reason, or has no complete
    /// set, for which MissingEntry() has it.
    virtual void* Available(const char* path);

    /// Text of the loader about the entry point that the last Available() missed, kept because
    /// closing the library clears dlerror(); null when that call missed none.
    const char* MissingEntry() const { return m_missingEntry.get(); }

    /// Closes the library and unbinds its entry points; keeps the instance of the plug-in.
    virtual void Release();

    /// Creates the instance of the plug-in; loads "libtovik.so" first when no library is loaded. An
    /// older plug-in receives the four arguments unchanged. A newer one receives none of them; it
    /// receives its own directory as the property "WorkingDirectory". True on success.
    virtual bool Initialize(const char* text, const char* globalConfig, const char* localConfig,
        PluginCallback callback);

    /// Ends the instance of the plug-in, if it exists, and releases the library.
    virtual void Finalize();

    /// True while a library is loaded, initialised or not.
    virtual bool IsInitialized();

    /// Sets a property; does nothing while no library is loaded.
    virtual void SetProperty(const char* name, const char* value);

    /// Value of a property, or null.
    virtual const char* GetProperty(const char* name);

    /// Answer of the plug-in to an enumeration, or null.
    virtual const char* EnumProperty(const char* first, const char* second);

    /// Status of a command; kFunctionFailed while no library is loaded.
    virtual unsigned long Invoke(const char* name);

    /// Keeps the directory part of `path`, with its last "/", as the directory of the plug-in. A
    /// path without "/", an empty and a null one change nothing.
    virtual void SetRoot(const char* path);

    /// Status of a call that could not be made: CKR_FUNCTION_FAILED of PKCS #11.
    static constexpr unsigned long kFunctionFailed = 6;

private:
    struct EntryNames;
    static const EntryNames kNewerNames;
    static const EntryNames kOlderNames;

    bool bind(const EntryNames& names) noexcept;

    void* m_library = nullptr;
    void (*m_initialize)() = nullptr; // of either generation, which m_newer tells
    void (*m_finalize)(void* instance) = nullptr;
    void (*m_setProperty)(void* instance, const char* name, const char* value) = nullptr;
    const char* (*m_getProperty)(void* instance, const char* name) = nullptr;
    const char* (*m_enumProperty)(void* instance, const char* first, const char* second) = nullptr;
    unsigned long (*m_invoke)(void* instance, const char* name) = nullptr;
    void* m_instance = nullptr;
    OwnedText m_root;
    bool m_newer = false;
    OwnedText m_missingEntry;
};
