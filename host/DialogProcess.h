// DialogProcess.h: a dialog in a child process, followed through restarts, and ended by signals
// that ask this process to end.
#pragma once

#include "host/Answer.h"

struct DialogEnd {
    int signal; // that asked this process to end, or 0
    int status; // exit status of the dialog; 0 when it was killed
};

/// Runs the dialog in a child process with standard error as its standard output, and waits until
/// the child is gone. A child that ended well and left `file` missing or empty has restarted the
/// program: then the processes that it left behind are waited for as well, until one of them has
/// filled the file. Leaves the signals SIGTERM, SIGINT, SIGHUP and SIGCHLD blocked.
DialogEnd run_dialog(int argc, char** argv, const char* file, Dialog dialog);

/// Lets a signal that run_dialog() has caught end this process; returns for 0.
void raise_again(int signal);
