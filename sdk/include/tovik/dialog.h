/** \file
 * Shows a dialog from a C or C++ program and waits for its answer. Compile c/tovik_dialog.c into
 * the program; both are C99 for Linux and need nothing else.
 */
#ifndef TOVIK_DIALOG_H
#define TOVIK_DIALOG_H

#ifdef __cplusplus
extern "C" {
#endif

/** How a dialog ended. */
enum tovik_outcome {
    /** The page has answered, perhaps with a status of its own such as "ERR". */
    TOVIK_ANSWERED,
    /** "CKR_CANCEL": the page or the user has cancelled. */
    TOVIK_CANCELLED,
    /** No answer came in time; the dialog has been ended. */
    TOVIK_TIMED_OUT,
    /** The program could not be started, has failed, or gave no answer. */
    TOVIK_NOT_SHOWN,
    /** The web process has crashed, often in the plug-in, and the user has closed the window. */
    TOVIK_CRASHED,
};

/** Runs a dialog to its end. The answer comes through a pipe, so that the dialog ends when this
 * process ends, by a signal too.
 *
 *     arguments  null-terminated: the program, "tovik" or a path, and its options, without
 *                "-store". An option whose value is an option itself gives TOVIK_NOT_SHOWN.
 *                "--parent" and a handle such as "x11:0x1c00007" show the dialog above a window of
 *                this program
 *     seconds    how long to wait; 0 waits for ever
 *     answer     receives the answer of TOVIK_ANSWERED, released with free(); else null
 *
 * For example:
 *
 *     const char* const arguments[] = {"tovik", "-url", "index.html", NULL};
 *     char* answer = NULL;
 *     if (tovik_dialog(arguments, 60, &answer) == TOVIK_ANSWERED) {
 *         puts(answer);
 *     }
 *     free(answer);
 *
 * Blocks the calling thread: a program with windows calls it in a thread of its own. SIGCHLD must
 * neither be ignored nor be handled by reaping every child.
 */
enum tovik_outcome tovik_dialog(const char* const* arguments, unsigned int seconds, char** answer);

/** Returns the word that hands these names and values to the start page as its query, encoded, for
 * instance "query://?name=Ada%20L%2E"; released with free(), null when memory runs out. Make it the
 * first argument after the program: a later one that holds "://", such as a title, is then not read
 * as the query. Without pairs the page has no query.
 *
 *     pairs  null-terminated: a name, its value, the next name, and so on
 */
char* tovik_query(const char* const* pairs);

#ifdef __cplusplus
}
#endif

#endif
