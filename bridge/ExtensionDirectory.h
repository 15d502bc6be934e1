// ExtensionDirectory.h: tells WebKit where the web process finds this library. For files of the
// user-interface process.
#pragma once

typedef struct _WebKitWebContext WebKitWebContext;

/// Handler of "initialize-web-extensions" of the web context: sets the directory of web extensions
/// to the value of "-root", unchanged, or else to the directory of the plug-in library. Sets none
/// when no plug-in library exists; pages then have no `Tovik`.
void wa_web_init_web_extension_cb(WebKitWebContext* context, void* data) noexcept;
