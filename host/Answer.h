// Answer.h: the option "--print", with which a run gives its answer on standard output.
#pragma once

/// Shows the dialog that the arguments ask for and returns the exit status.
using DialogMain = int (*)(int argc, char** argv);

/// Runs the dialog without "--print" in a child process, whose trace goes to standard error, and
/// prints the answer and a line end on standard output. The answer comes from the file of "-store",
/// emptied before the start, or else from memory of this process.
///
/// A page that restarts the program leaves the answer to the new process, which is waited for.
/// SIGTERM, SIGINT, SIGHUP, and the end of the reader where standard output is a pipe or a socket,
/// end the dialog and then this process. The dialog does not outlive this process.
///
/// Returns 0; 1 when the answer is "CKR_CANCEL", and, with a line on standard error, when there is
/// none as a whole; or the dialog's own exit status when that is not 0.
int print_answer(int argc, char** argv, DialogMain dialog);

/// The process that prints the answer of a dialog with these arguments; 0 when none does.
int printing_process(int argc, char** argv);
