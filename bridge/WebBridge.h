// WebBridge.h: the front door of this room, which every other room includes in place of the headers
// below: they find and load the plug-in, read what the shell needs from it, and name the extension
// directory. WebExtension.h and ScriptObject.h are the part for the web process.
#pragma once

#include "bridge/ExtensionDirectory.h" // IWYU pragma: export
#include "bridge/PluginLoader.h" // IWYU pragma: export
#include "bridge/PluginValues.h" // IWYU pragma: export
#include "bridge/UserAgent.h" // IWYU pragma: export
