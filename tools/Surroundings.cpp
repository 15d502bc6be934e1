// Examines what a run depends on beside its files: the engine, its environment variables, the
// graphics driver.
#include "host/Graphics.h"
#include "host/ProductLayout.h"
#include "process/ProcessState.h"
#include "tools/CallRecorder.h"
#include "tools/Doctor.h"

#include <webkit2/webkit2.h>

#include <cstdlib>
#include <filesystem>

namespace fs = std::filesystem;

namespace {

/// Whether the variable is set to anything but "0", which WebKit reads as on.
bool is_on(const char* variable)
{
    const char* value = std::getenv(variable);
    return value != nullptr && value != std::string("0");
}

} // namespace

void examine_surroundings(Report& report)
{
    const std::string host = fs::path(g_ARGV[0]).filename();
    const std::string library = fs::path(g_CallRecorder.module).filename();
    if (program_of_library(library) == host) {
        avoid_blank_window(kNvidiaModuleFile); // as the host of this name does for its own process
    }
    report.ok("WebKitGTK",
        std::to_string(webkit_get_major_version()) + "."
            + std::to_string(webkit_get_minor_version()) + "."
            + std::to_string(webkit_get_micro_version()));
    if (is_on("WEBKIT_FORCE_SANDBOX")) {
        report.wrong("sandbox",
            "forced by WEBKIT_FORCE_SANDBOX: the plug-in for pages then reaches "
            "no device, no service and few files; unset it");
    } else {
        report.ok("sandbox", "not forced");
    }
    if (!is_there(kNvidiaModuleFile) && !is_there("/sys/module/nvidia")) {
        report.ok("graphics driver", "no NVIDIA module");
    } else if (is_on("WEBKIT_DISABLE_DMABUF_RENDERER")) {
        report.ok("graphics driver", "NVIDIA module, and the DMA-BUF renderer is switched off");
    } else {
        report.wrong("graphics driver",
            "NVIDIA module: pages may stay blank; set "
            "WEBKIT_DISABLE_DMABUF_RENDERER=1");
    }
}
