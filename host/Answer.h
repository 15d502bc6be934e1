// Answer.h: the option "--print", with which a run gives its answer on standard output.
#pragma once

/// Shows the dialog that the arguments ask for and returns the exit status.
using Dialog = int (*)(int argc, char** argv);

/// Removes every "--print" from the arguments, which stay null-terminated; true when there was one.
bool take_print_option(int& argc, char** argv);

/// Runs the dialog in a child process, whose trace goes to standard error, and prints the answer
/// and a line end on standard output. The answer comes from the file of "-store", emptied before
/// the start, or else from a file in a new private directory, which is removed.
///
/// A page that restarts the program leaves the answer to the new process, which is waited for.
/// SIGTERM, SIGINT and SIGHUP end the dialog and then this process; killed otherwise, this process
/// takes at least a dialog that has not been restarted with it.
///
/// Returns 0; 1 when the answer is "CKR_CANCEL", and, with a line on standard error, when there is
/// none; or the dialog's own exit status when that is not 0.
int print_answer(int argc, char** argv, Dialog dialog);
