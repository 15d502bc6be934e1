// Parent.h: the option "--parent", which shows the dialog above a window of another program.
#pragma once

#include "host/Library.h"

/// Makes the window that will hold `view` a dialog of the window that the handle names, before it
/// is shown. On X it is centred on that window where the library would centre it on the screen;
/// on Wayland the compositor decides. A handle of another form or of the other kind of display, and
/// a window that does not exist, give a line on standard error and a dialog without a parent.
/// handle  value of "--parent", see parent_handle(); outlives the process's windows
/// placed  whether the command line has "-position"
void give_parent(const Library& library, void* view, const char* handle, bool placed);
