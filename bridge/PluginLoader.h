// PluginLoader.h: finds the plug-in library and its configuration files and loads the plug-in at
// most once per process.
#pragma once

/// The plug-in handle for the functions of plugin.h; null when there is no plug-in. The first call
/// looks for the library by "-plugin", "-root" and the installation layout and loads it; after a
/// failure the next call tries again. Whatever wants the plug-in calls this first.
void* wa_GetPlugin();

/// Loads and initialises the plug-in from these paths and returns its handle, or null; does
/// nothing but return the handle when it is loaded already. An empty or null library path is the
/// loader's own search for "libtovik.so"; an empty configuration path counts as none.
void* wa_LoadPlugin(const char* library, const char* globalConfig, const char* localConfig);

/// Finalises the plug-in and closes its library; does nothing when none is loaded.
void wa_FreePlugin();
