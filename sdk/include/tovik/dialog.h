/* dialog.h: shows a dialog from a C or C++ program and waits for its answer. Compile
 * c/tovik_dialog.c into the program; both are C99 for Linux and need nothing else.
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

/* Runs a dialog to its end. The answer travels through a pipe; when this process ends, however it
 * does, so does the dialog.
 *
 * arguments  null-terminated: the program, "tovik" or a path, and its options, without "-store".
 *            An option whose value is an option itself gives TOVIK_NOT_SHOWN
 * seconds    how long to wait, 0 for ever
 * answer     receives the answer of TOVIK_ANSWERED, released with free(); else null
 *
 * Blocks the calling thread. SIGCHLD must neither be ignored nor be handled by reaping every child.
 */
enum tovik_outcome tovik_dialog(const char* const* arguments, unsigned int seconds, char** answer);

/* The word that hands these names and values to the start page as its query, encoded, for instance
 * "query://?name=Ada%20L%2E". Give it as the first argument after the program: no later one that
 * holds "://", such as a title, then takes the place of the query. Without pairs, the page has
 * none.
 *
 * pairs      null-terminated: a name, its value, the next name, and so on
 *
 * Released with free(); null when memory runs out.
 */
char* tovik_query(const char* const* pairs);

#ifdef __cplusplus
}
#endif

#endif
