// DialogProcess.h: a dialog in a child process, followed through restarts, and ended when nobody
// waits for its answer any more.
#pragma once

#include "host/Answer.h"

struct DialogEnd {
    int request; // signal that asked this process to end, SIGPIPE for a reader that is gone, or 0
    int killed; // signal that ended the dialog, or 0
    int status; // exit status of the dialog
};

/// Runs the dialog in a child process with standard error as its standard output, and waits until
/// it is gone. A child that ended well and left `file` missing or empty has restarted the program:
/// then the process in which it goes on is waited for as well. Signals do what they did before
/// when it returns.
DialogEnd run_dialog(int argc, char** argv, const char* file, DialogMain dialog);

/// Lets the signal end this process; returns where it cannot.
void end_by(int signal);
