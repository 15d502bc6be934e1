// CallRecorder.h: lets the doctor run the library's own searches and see what they look at.
//
// The doctor is made of the library's rooms, so that it never disagrees with them; but they would
// take it, and not the library, for the installed module, and they keep to themselves where they
// looked. So these functions, which the rooms call, are wrapped by the linker in the doctor alone:
// dladdr (by which the rooms know their own file), stat (by which they look whether a file is
// there), the loading of a plug-in, and the call that gives WebKit the extension directory. The
// library that is delivered contains none of this.
#pragma once

#include <optional>
#include <string>

struct CallRecorder {
    /// File of the library that the rooms take themselves for.
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

/// The places looked at since the last call.
std::string places_looked_at();
