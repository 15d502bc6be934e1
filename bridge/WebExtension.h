// WebExtension.h: the entry point through which WebKit's web process takes this library, and the
// place where each document gets its script object. For files of the web process.
#pragma once

#include "util/Export.h"

typedef struct _WebKitFrame WebKitFrame;
typedef struct _WebKitScriptWorld WebKitScriptWorld;
typedef struct _WebKitWebExtension WebKitWebExtension;
typedef struct _WebKitWebPage WebKitWebPage;

/// Loads the plug-in that lies beside this library, if there is one, and has every document of
/// the default script world given its script object. WebKit calls it once per web process.
extern "C" TOVIK_EXPORT void webkit_web_extension_initialize(
    WebKitWebExtension* extension) noexcept;

/// Handler of "window-object-cleared", which comes for each new document of each frame: installs
/// the script object into the frame's script context.
void wa_window_object_cleared_cb(
    WebKitScriptWorld* world, WebKitWebPage* page, WebKitFrame* frame, void* data) noexcept;
