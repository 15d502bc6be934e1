// WebExtension.h: the entry point that the web process calls in this library, and the handler that
// gives each document its script object. For files of the web process.
#pragma once

#include "util/Export.h"

typedef struct _WebKitFrame WebKitFrame;
typedef struct _WebKitScriptWorld WebKitScriptWorld;
typedef struct _WebKitWebExtension WebKitWebExtension;
typedef struct _WebKitWebPage WebKitWebPage;

/// Loads the plug-in beside this library, if it exists, and connects the handler that gives every
/// document of the default script world its script object. WebKit calls it once per web process.
extern "C" TOVIK_EXPORT void webkit_web_extension_initialize(
    WebKitWebExtension* extension) noexcept;

/// Handler of "window-object-cleared", which WebKit emits for each new document of each frame:
/// installs the script object in the script context of the frame.
void wa_window_object_cleared_cb(
    WebKitScriptWorld* world, WebKitWebPage* page, WebKitFrame* frame, void* data) noexcept;
