// Inspector.h: the option "--inspect", which lets a browser on this machine inspect the page.
#pragma once

#include "host/Library.h"

/// What follows "--inspect" or "--inspect=" in the last such word: a port or the empty text; null
/// without the option.
const char* inspect_option(int argc, char** argv);

/// Has the engine serve its inspector on 127.0.0.1 and this port, a free one for the empty text,
/// and prints the URL on standard error; to be called before the library is loaded. False, with a
/// line on standard error, when the port is none or cannot be had.
bool serve_inspector(const char* port);

/// Has GIO find its proxy resolver; to be called before Main. The engine would have it found while
/// it sets up its own types, and with the settings and the network monitor of newer desktops, which
/// ask the session bus, that never ends.
void prepare_inspector(const Library& library);

/// Lets the view be inspected, in a browser and in its own window by F12.
void allow_inspector(const Library& library, void* view);
