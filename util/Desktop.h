// Desktop.h: hand-offs to the desktop: a URL for the user's browser, a script of the installation.
// Each runs in a process that starts as FreshProcess.h says and outlives this one.
#pragma once

#include <cstddef>
#include <span>

/// Opens `url` in the desktop browser and returns at once; does nothing when no opener is there.
void wa_open_url(const char* url);

/// Runs the script `name`, from ".tovik/" in the user's home or "/etc/tovik/" when `search` is
/// non-zero, else "." directly followed by the name in the working directory. Returns when it has
/// ended, after 100 seconds at the latest; a script that is not done by then runs on.
void wa_call_script(const char* name, unsigned char search);

/// wa_open_url() with the first of these programs that exists; the next one when no process can
/// be made for it.
void open_url_with(std::span<const char* const> openers, const char* url);

/// Capacity of a script's path; a candidate that does not fit is skipped.
inline constexpr std::size_t kScriptCapacity = 256;

/// Path of the script `name`: home + "/.tovik/" + name or system + name when one of them exists,
/// else "." + name, whether that exists or not. A null directory is not searched. False when not
/// even the last one fits.
bool find_script(
    const char* home, const char* system, const char* name, char (&path)[kScriptCapacity]);

/// How long a script is waited for, in microseconds.
struct ScriptWait {
    unsigned int first; // before the first poll
    unsigned int between; // after each poll that finds it running
    int polls;
};

/// Runs the script at `path` without arguments and waits for it.
void run_script(const char* path, const ScriptWait& wait);
