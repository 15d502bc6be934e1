// Answer.h: the option "--print", which prints the answer of a run on standard output.
#pragma once

/// Exit status of a dialog, for the process that prints its answer, when a web process has ended
/// before its page did.
constexpr int kWebProcessEnded = 4;

/// Function that shows the dialog that the arguments ask for and returns the exit status.
using DialogMain = int (*)(int argc, char** argv);

/// Runs the dialog without "--print" in a child process, whose trace goes to standard error, and
/// prints the answer and a line end on standard output. The answer comes from the file of "-store",
/// emptied before the start, or else from memory of this process.
///
/// If a page restarts the program, the answer of the restarted program is waited for and printed.
/// SIGTERM, SIGINT and SIGHUP end the dialog and then this process; so does the end of the reader
/// if standard output is a pipe or a socket. The dialog ends when this process ends.
///
/// Returns 0 for an answer that was printed; 1 when it is "CKR_CANCEL"; 1, with a line on standard
/// error, when there is no answer or it could not be printed whole; kWebProcessEnded in place of a
/// "CKR_CANCEL", which then stays in the file alone, after a web process had ended; the dialog's
/// own exit status when that is not 0.
int print_answer(int argc, char** argv, DialogMain dialog);

/// Id of the process that prints the answer of a dialog with these arguments; 0 when none does.
int printing_process(int argc, char** argv);
