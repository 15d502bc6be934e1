// plugin.h: the plug-in interface that the library exports, over the one wrapper of the process.
// All other rooms reach the plug-in through these functions. They have the names and parameters of
// the older entry points of a plug-in; WrapperPlugin.h says what each does.
#pragma once

#include "util/Export.h"

/// Reason of the loader why the last P_Available() returned null; null when it gives none. Valid
/// until the next call of the loader. Not exported.
const char* plugin_failure() noexcept;

extern "C" {

/// Loads and binds the plug-in library at `path`; returns its dlopen() handle, or null.
TOVIK_EXPORT void* P_Available(const char* path) noexcept;

/// Initialises the plug-in; returns the plug-in handle for the functions below, or null.
///
///     if (P_Available("/opt/app/lib/libtovik.so") != nullptr) {
///         void* plugin = P_Initialize(nullptr, "/opt/app/lib/tovik.conf", nullptr, nullptr);
///         const unsigned long status = P_Invoke(plugin, "Sign");
///         P_Finalize(plugin);
///     }
TOVIK_EXPORT void* P_Initialize(const char* text, const char* globalConfig, const char* localConfig,
    void (*callback)(const char*, unsigned long)) noexcept;

/// Finalises the plug-in and closes its library. This and the following functions ignore any value
/// but the plug-in handle.
TOVIK_EXPORT void P_Finalize(void* plugin) noexcept;

/// Sets a property.
TOVIK_EXPORT void P_SetProperty(void* plugin, const char* name, const char* value) noexcept;

/// Value of a property, a text that the plug-in owns; null for another handle.
TOVIK_EXPORT const char* P_GetProperty(void* plugin, const char* name) noexcept;

/// Answer to an enumeration, a text that the plug-in owns; null for another handle.
TOVIK_EXPORT const char* P_EnumProperty(
    void* plugin, const char* first, const char* second) noexcept;

/// Status of a command; 6, the CKR_FUNCTION_FAILED of PKCS #11, for another handle.
TOVIK_EXPORT unsigned long P_Invoke(void* plugin, const char* name) noexcept;
}
