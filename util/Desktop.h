// Desktop.h: hand-offs to the desktop: a URL for the user's browser, a script of the installation.
#pragma once

/// Opens `url` in the desktop browser and returns at once; does nothing when no opener is there.
void wa_open_url(const char* url);

/// Runs the script `name`, from ".tovik/" in the user's home or "/etc/tovik/" when `search` is
/// non-zero, else "." directly followed by the name in the working directory. Returns when it has
/// ended, after 100 seconds at the latest.
void wa_call_script(const char* name, unsigned char search);
