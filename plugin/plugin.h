// plugin.h: the plug-in interface that the library exports, over one wrapper per process. Whoever
// needs the plug-in goes through these functions. They carry the names and argument lists of a
// plug-in's older entry points; see WrapperPlugin.h for what each does.
#pragma once

#include "util/Export.h"

/// Why the last P_Available() returned null, in the loader's words; null when it has none. Valid
/// until the next call of the loader. This function is the library's own and not exported.
const char* plugin_failure() noexcept;

extern "C" {

/// Loads and binds the plug-in library at `path`; its dlopen() handle, or null.
TOVIK_EXPORT void* P_Available(const char* path) noexcept;

/// Initialises the plug-in; returns the plug-in handle that the functions below take, or null.
TOVIK_EXPORT void* P_Initialize(const char* text, const char* globalConfig, const char* localConfig,
    void (*callback)(const char*, unsigned long)) noexcept;

/// Finalises the plug-in and closes its library. Here as below, any value but the plug-in handle
/// is ignored.
TOVIK_EXPORT void P_Finalize(void* plugin) noexcept;

/// Sets a property.
TOVIK_EXPORT void P_SetProperty(void* plugin, const char* name, const char* value) noexcept;

/// Value of a property, the plug-in's own text; null for another handle.
TOVIK_EXPORT const char* P_GetProperty(void* plugin, const char* name) noexcept;

/// Answer to an enumeration, the plug-in's own text; null for another handle.
TOVIK_EXPORT const char* P_EnumProperty(
    void* plugin, const char* first, const char* second) noexcept;

/// Status of a command; 6, the CKR_FUNCTION_FAILED of PKCS #11, for another handle.
TOVIK_EXPORT unsigned long P_Invoke(void* plugin, const char* name) noexcept;
}
