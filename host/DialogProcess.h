// DialogProcess.h: runs a dialog in a child process, follows it through restarts, and ends it when
// nobody waits for its answer any more.
#pragma once

#include "host/Answer.h"

/// How a dialog ended.
struct DialogEnd {
    /// Signal that asked this process to end, SIGPIPE for a reader that is gone, or 0.
    int request;
    /// Signal that ended the dialog, or 0.
    int killed;
    /// Exit status of the dialog.
    int status;
};

/// Runs the dialog in a child process with standard error as its standard output, and waits until
/// it has ended. If the child ended with status 0 and left `file` missing or empty, its page may
/// have restarted the program: then the process of the restarted program is waited for as well. The
/// signal mask is the one from before when the function returns.
DialogEnd run_dialog(int argc, char** argv, const char* file, DialogMain dialog);

/// Unblocks the signal and sends it to this process, which it ends; returns if the process ignores
/// it.
void end_by(int signal);
