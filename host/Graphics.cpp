#include "host/Graphics.h"

#include <cstdlib>
#include <unistd.h>

void avoid_blank_window(const char* moduleFile)
{
    if (access(moduleFile, F_OK) == 0) {
        setenv("WEBKIT_DISABLE_DMABUF_RENDERER", "1", 0);
    }
}
