/* host.h: the entry points of the library, for a program that shows the dialog in its own process.
 *
 *     void* library = dlopen(TOVIK_LIBRARY, RTLD_NOW | RTLD_LOCAL);
 *     tovik_main* run = (tovik_main*)dlsym(library, "Main");
 *
 * Load the library and do not link to it: its file name carries the brand, and WebKit opens it once
 * more in the web process, by a name that ends in ".so". RTLD_LOCAL, because it exports functions
 * with the names of a plug-in's. It uses GTK on the calling thread, once per process, and never
 * closes a window of the program's own. This header is C99 and C++ and needs no other.
 */
#ifndef TOVIK_HOST_H
#define TOVIK_HOST_H

#ifdef __cplusplus
extern "C" {
#endif

/* "Main": shows the window that the options ask for, runs GTK's main loop until the page or the
 * user ends it, and writes the file of "-store". arguments[0] is the program's path; the arguments
 * stay the caller's and are used until the function returns. Always 0, also when there is no
 * display: the outcome is in the file. Call gtk_init_check() first to tell the two apart.
 */
typedef int tovik_main(int count, char** arguments);

/* "EntryAdmin": the same for a command line in one text, program first, whose arguments are
 * separated by spaces and may stand in double quotes. The first two arguments are ignored.
 */
typedef int tovik_entry_admin(void* first, void* second, const char* command_line);

#ifdef __cplusplus
}
#endif

#endif
