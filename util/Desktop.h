// Desktop.h: hand-offs to the desktop: a URL to the browser of the user, and a script of the user
// or the system. Each runs in a process of its own, which may outlive this one; see FreshProcess.h.
#pragma once

#include <cstddef>
#include <span>

/// Opens `url` in the desktop browser and returns at once; does nothing when no opener exists.
void wa_open_url(const char* url);

/// Runs the script `name`. When `search` is non-zero, it is looked for in ".tovik/" in the home of
/// the user, then in "/etc/tovik/"; else, and when neither has it, it is the file "." + `name` of
/// the working directory. Returns when the script has ended, after 100 seconds at the latest; a
/// script that has not ended by then runs on.
void wa_call_script(const char* name, unsigned char search);

/// wa_open_url() with the first of these programs that exists, or with the next one when no process
/// can be made.
void open_url_with(std::span<const char* const> openers, const char* url);

/// Capacity of a script's path; a candidate that does not fit is skipped.
inline constexpr std::size_t kScriptCapacity = 256;

/// Stores the path of the script `name`: the first of home + "/.tovik/" + name and system + name
/// that exists, else "." + name, whether that exists or not. A null directory is not searched.
/// False when that last path does not fit.
bool find_script(
    const char* home, const char* system, const char* name, char (&path)[kScriptCapacity]);

/// How long a script is waited for, in microseconds.
struct ScriptWait {
    unsigned int first; // before the first poll
    unsigned int between; // after each poll that finds it running
    int polls; // at most
};

/// Runs the script at `path` without arguments and waits for it.
void run_script(const char* path, const ScriptWait& wait);
