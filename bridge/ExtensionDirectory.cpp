#include "bridge/ExtensionDirectory.h"

#include "process/ProcessArguments.h"
#include "util/StringUtil.h"
#include "util/Utility.h"

#include <webkit2/webkit2.h>

void wa_web_init_web_extension_cb(WebKitWebContext* context, void*) noexcept
{
    const char* root = nullptr;
    if (wa_get_argument("-root", &root) != 0) {
        webkit_web_context_set_web_extensions_directory(context, root);
        return;
    }
    char path[kPathCapacity];
    if (!osGetLibrary(path, sizeof path)) {
        return;
    }
    char* slash = tovik::_strrchr(path, '/');
    if (slash != nullptr) {
        *slash = 0;
        webkit_web_context_set_web_extensions_directory(context, path);
    }
}
