// Graphics.h: what the engine has to be told about the machine's graphics before it starts.
#pragma once

/// File that is there while the proprietary NVIDIA kernel module is loaded.
constexpr char kNvidiaModuleFile[] = "/proc/driver/nvidia/version";

/// Has WebKit draw without DMA buffers when the file exists: with that module windows would stay
/// blank. An environment that already says how to draw is left as it is.
void avoid_blank_window(const char* moduleFile);
