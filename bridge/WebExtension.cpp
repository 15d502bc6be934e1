#include "bridge/WebExtension.h"

#include "bridge/PluginLoader.h"
#include "bridge/ScriptObject.h"
#include "util/Utility.h"

#include <webkit2/webkit-web-extension.h>

namespace {

/// Loads lib<brand>.so with <brand>.conf from the directory of this library.
void load_plugin_beside_module()
{
    char root[kPathCapacity];
    char brand[kBrandCapacity];
    if (!osGetModuleRoot(root, sizeof root) || !osGetBrandName(brand, sizeof brand)) {
        return;
    }
    char library[kPathCapacity];
    char config[kPathCapacity];
    if (BoundedPath(library).append(root).append("lib").append(brand).append(".so").exists()) {
        const bool hasConfig
            = BoundedPath(config).append(root).append(brand).append(".conf").exists();
        wa_LoadPlugin(library, hasConfig ? config : nullptr, nullptr);
    }
}

} // namespace

void webkit_web_extension_initialize(WebKitWebExtension*) noexcept
{
    load_plugin_beside_module();
    g_signal_connect(webkit_script_world_get_default(), "window-object-cleared",
        G_CALLBACK(wa_window_object_cleared_cb), nullptr);
}

void wa_window_object_cleared_cb(
    WebKitScriptWorld* world, WebKitWebPage*, WebKitFrame* frame, void*) noexcept
{
    // The call that replaces this one returns a GLib type; the script class needs the C type.
    G_GNUC_BEGIN_IGNORE_DEPRECATIONS
    JSGlobalContextRef context = webkit_frame_get_javascript_context_for_script_world(frame, world);
    G_GNUC_END_IGNORE_DEPRECATIONS
    if (context != nullptr) {
        wa_addJSClasses(context);
    }
}
