// PluginLoader.h: finds the plug-in library and its configuration files and loads the plug-in at
// most once per process.
#pragma once

/// The plug-in handle for the functions of plugin.h; null without a plug-in. The first call looks
/// for the library by "-plugin", "-root" and the installation layout and loads it; after a failure
/// the next call tries again. To be called before every use of the plug-in.
void* wa_GetPlugin();

/// Loads and initialises the plug-in from these paths and returns its handle, or null. Returns the
/// handle of a plug-in loaded before at once. An empty or null library path leaves the search for
/// "libtovik.so" to the loader; an empty configuration path counts as none.
void* wa_LoadPlugin(const char* library, const char* globalConfig, const char* localConfig);

/// Finalises the plug-in and closes its library; does nothing without a plug-in.
void wa_FreePlugin();
