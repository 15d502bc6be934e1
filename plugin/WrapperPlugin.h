// WrapperPlugin.h: one native plug-in library behind one interface, whichever of the two
// generations of entry points it exports.
#pragma once

#include "util/Owned.h"

/// Callback that the older initialise entry receives; its meaning belongs to the plug-in.
using PluginCallback = void (*)(const char* text, unsigned long number);

/// Loads a plug-in library, binds its newer ("Plg...") or older ("P_...") entry points, always as
/// a whole set, and forwards to them. Texts that a plug-in returns stay the plug-in's: copy them
/// before the next call. Calls of one operation to another go through the virtual slots, so an
/// override changes them all. Not for use by two threads at once.
class CWrapperPlugin {
public:
    constexpr CWrapperPlugin() = default;
    CWrapperPlugin(const CWrapperPlugin&) = delete;
    CWrapperPlugin& operator=(const CWrapperPlugin&) = delete;

    /// Finalises the plug-in and closes its library.
    virtual ~CWrapperPlugin();

    /// Loads and binds the library at `path`, "libtovik.so" by the loader's search for null or
    /// empty. Returns its dlopen() handle, at once when one is loaded already; null when the
    /// library cannot be opened, for which dlerror() has the reason, or has no complete set, for
    /// which MissingEntry() has it.
    virtual void* Available(const char* path);

    /// The loader's text about the entry point that the last Available() missed before it closed
    /// the library, which clears dlerror(); null when it did not come to that.
    const char* MissingEntry() const { return m_missingEntry.get(); }

    /// Closes the library and unbinds its entry points; the plug-in's instance is kept.
    virtual void Release();

    /// Creates the plug-in's instance, loading "libtovik.so" first when no library is loaded. An
    /// older plug-in receives the four arguments unchanged; a newer one receives none of them but
    /// is told its own directory as the property "WorkingDirectory". True on success.
    virtual bool Initialize(const char* text, const char* globalConfig, const char* localConfig,
        PluginCallback callback);

    /// Ends the plug-in's instance, if there is one, and releases the library.
    virtual void Finalize();

    /// True exactly while a library is loaded, whether or not it was initialised.
    virtual bool IsInitialized();

    /// Sets a property; does nothing while no library is loaded.
    virtual void SetProperty(const char* name, const char* value);

    /// Value of a property, or null.
    virtual const char* GetProperty(const char* name);

    /// The plug-in's answer to an enumeration, or null.
    virtual const char* EnumProperty(const char* first, const char* second);

    /// Status of a command; kFunctionFailed while no library is loaded.
    virtual unsigned long Invoke(const char* name);

    /// Keeps the directory part of `path`, with its last "/", as the plug-in's directory; a path
    /// without "/", an empty and a null one change nothing.
    virtual void SetRoot(const char* path);

    /// Status of a call that could not be made: CKR_FUNCTION_FAILED of PKCS #11.
    static constexpr unsigned long kFunctionFailed = 6;

private:
    struct EntryNames;
    static const EntryNames kNewerNames;
    static const EntryNames kOlderNames;

    bool bind(const EntryNames& names) noexcept;

    void* m_library = nullptr;
    void (*m_initialize)() = nullptr; // either generation's; m_newer tells its type
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
