// Graphics.h: settings for the engine that depend on the graphics driver, made before it starts.
#pragma once

/// File that exists while the proprietary NVIDIA kernel module is loaded.
constexpr char kNvidiaModuleFile[] = "/proc/driver/nvidia/version";

/// Makes WebKit draw without DMA buffers if the file exists, by WEBKIT_DISABLE_DMABUF_RENDERER=1:
/// windows may stay blank with that kernel module. A variable that is set already keeps its value.
void avoid_blank_window(const char* moduleFile);
