/* dialog.h: shows a dialog from a C or C++ program and waits for its answer. Compile
 * c/tovik_dialog.c into the program; both are C99 and POSIX and need nothing else.
 */
#ifndef TOVIK_DIALOG_H
#define TOVIK_DIALOG_H

#ifdef __cplusplus
extern "C" {
#endif

enum tovik_outcome {
    TOVIK_ANSWERED, /* the page has answered, perhaps with a status of its own such as "ERR" */
    TOVIK_CANCELLED, /* "CKR_CANCEL": the page or the user has cancelled */
    TOVIK_TIMED_OUT, /* no answer in time; the dialog has been ended */
    TOVIK_NOT_SHOWN, /* the program could not be started or has failed, or gave no answer */
};

/* Runs a dialog to its end. The answer travels through a private folder, which is removed.
 *
 * arguments  null-terminated: the program, "tovik" or a path, and its options, without "-store"
 * seconds    how long to wait, 0 for ever
 * answer     receives the answer of TOVIK_ANSWERED, released with free(); else null
 *
 * Blocks the calling thread. SIGCHLD must neither be ignored nor be handled by reaping every child.
 */
enum tovik_outcome tovik_dialog(const char* const* arguments, unsigned int seconds, char** answer);

#ifdef __cplusplus
}
#endif

#endif
