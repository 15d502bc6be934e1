// ExportedWindow.h: asks the compositor of Wayland for a window that another program has exported.
#pragma once

#include "host/Library.h"

/// What the compositor says.
enum class ExportedWindow : char {
    exists,
    unknown, // no program has exported a window under that name, or the window is gone
    unsupported // the compositor exports no windows
};

/// Whether a window is exported under the name `token`. GDK itself does not tell, and writes a
/// message when the compositor exports none.
/// display  a GdkWaylandDisplay
ExportedWindow exported_window(const Library& library, void* display, const char* token);
