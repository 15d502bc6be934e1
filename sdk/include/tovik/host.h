/** \file
 * The entry points of the library, for a program that shows the dialog in its own process.
 *
 *     void* library = dlopen(TOVIK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
 *     tovik_main* run = (tovik_main*)dlsym(library, "Main");
 *
 * Load the library and do not link to it: its file name carries the brand, and WebKit opens the
 * same file in the web process, by a name that ends in ".so". RTLD_LOCAL keeps its functions, which
 * have the names of a plug-in's, out of the program's scope. The library uses GTK on the calling
 * thread, and a process runs it once. It never closes a window of the program's own.
 *
 * This header is C99 and C++ and needs no other.
 */
#ifndef TOVIK_HOST_H
#define TOVIK_HOST_H

#ifdef __cplusplus
extern "C" {
#endif

/** "Main": shows the window that the options ask for, runs GTK's main loop until the page or the
 * user ends it, and writes the file of "-store". arguments[0] is the program's path. The
 * arguments stay the caller's and are used until the function returns. Returns 0 in every case,
 * also when there is no display: the outcome is in the file. Call gtk_init_check() first to find
 * out whether there is one.
 */
typedef int tovik_main(int count, char** arguments);

/** "EntryAdmin": the same for a command line in one text, program first. Spaces separate its
 * arguments, which may stand in double quotes. `first` and `second` are ignored.
 */
typedef int tovik_entry_admin(void* first, void* second, const char* command_line);

#ifdef __cplusplus
}
#endif

#endif
