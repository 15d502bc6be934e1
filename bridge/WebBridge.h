// WebBridge.h: the face of this room. It finds and loads the plug-in, reads from it what the shell
// needs, and joins pages to it: the extension directory is the shell's end of that, WebExtension.h
// and ScriptObject.h are the end in the web process.
#pragma once

#include "bridge/ExtensionDirectory.h" // IWYU pragma: export
#include "bridge/PluginLoader.h" // IWYU pragma: export
#include "bridge/PluginValues.h" // IWYU pragma: export
#include "bridge/UserAgent.h" // IWYU pragma: export
