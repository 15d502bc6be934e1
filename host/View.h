// View.h: what the host does with the web view of a run, which the library creates.
#pragma once

#include "host/Library.h"

/// The run of this process.
struct Run {
    /// The library, loaded.
    const Library& library;
    /// Arguments of Main().
    int argc;
    /// The same, null-terminated.
    char** argv;
    /// What "--console" and "--inspect" ask for.
    bool console;
    bool inspect;
    /// The web view, null until the library shows it.
    void* view;
    /// Whether a web process has ended before its page did.
    bool webProcessEnded;
};

/// Gives the view, as soon as it exists, a language that scripts understand, has the end of a web
/// process reported on standard error, and starts the console and the inspector and gives the
/// window a parent if they are asked for. `run` is used until the end of the process.
void await_view(Run& run);

/// Reports on standard error, when the main loop starts, that the start page was not found.
void report_missing_page(Run& run);
