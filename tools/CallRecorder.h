// CallRecorder.h: lets the doctor run the library's own searches and see what they look at.
//
// The doctor is made of the library's rooms, so that it never disagrees with them; but they would
// consider it, and not the library, the installed module. So the linker wraps these functions,
// which the rooms call, in the doctor alone: dladdr (which tells the rooms their own file), the
// loading of a plug-in, and the call that gives WebKit the extension directory. The delivered
// library contains none of this. The places that the rooms look at come from their own
// g_FileObserver.
#pragma once

#include <optional>
#include <string>

struct CallRecorder {
    /// File of the library that the rooms speak for.
    std::string module;

    /// While false, the plug-in is found but not loaded.
    bool loadsPlugin = false;

    /// Each place looked at, and whether it was there, in words.
    std::string places;

    /// What the loading of the plug-in is asked for; empty where nothing was found.
    std::string plugin;
    std::string globalConfig;
    std::string localConfig;

    /// File from which the plug-in was loaded, and why it was not.
    std::string loadedPlugin;
    std::string loadFailure;

    /// Directory that WebKit is given.
    std::optional<std::string> extensionDirectory;
};

/// Written by the wrapped functions and, before it calls into the rooms, by the doctor.
extern CallRecorder g_CallRecorder;

/// Adds a place to g_CallRecorder.places; to be set as g_FileObserver.
void record_place(const char* path, bool exists);

/// The places looked at since the last call.
std::string places_looked_at();
