/* A program with a window of its own that asks for a signature:
 *
 *     caller PROGRAM [OPTION]...
 *
 * PROGRAM is tovik or a product, and the options are those of the dialog, for instance
 * "caller tovik -url dialog.html". The dialog belongs to this program's window, which goes on
 * drawing while it is open; closing that window ends the dialog.
 */
#include <tovik/dialog.h>

#include <gtk/gtk.h>
#ifdef GDK_WINDOWING_WAYLAND
#include <gdk/gdkwayland.h>
#endif
#ifdef GDK_WINDOWING_X11
#include <gdk/gdkx.h>
#endif
#include <stdlib.h>

typedef struct {
    char** command; /* the program and its options */
    GtkWidget* window;
    GtkWidget* button;
    GtkWidget* status;
} Caller;

/* What one request needs, in whatever thread; belongs to its task. */
typedef struct {
    GStrv command;
    enum tovik_outcome outcome;
} Request;

static void free_request(void* data)
{
    Request* request = data;
    g_strfreev(request->command);
    g_free(request);
}

/* Runs in a thread of its own, because tovik_dialog() returns when the dialog is gone. */
static void ask(GTask* task, gpointer source, gpointer data, GCancellable* cancellable)
{
    (void)source, (void)cancellable;
    Request* request = data;
    char* answer = NULL;
    request->outcome = tovik_dialog((const char* const*)request->command, 0, &answer);
    g_task_return_pointer(task, answer, free);
}

static const char* text_of(enum tovik_outcome outcome)
{
    switch (outcome) {
    case TOVIK_CANCELLED:
        return "Not signed: cancelled.";
    case TOVIK_CRASHED:
        return "Not signed: the dialog has crashed.";
    default:
        return "Not signed: the dialog could not be shown.";
    }
}

/* Runs in the main thread again. The window holds the dialog's handle no longer. */
static void answered(GObject* source, GAsyncResult* result, gpointer data)
{
    (void)source;
    Caller* caller = data;
    const Request* request = g_task_get_task_data(G_TASK(result));
    char* answer = g_task_propagate_pointer(G_TASK(result), NULL);
    gtk_label_set_text(
        GTK_LABEL(caller->status), answer == NULL ? text_of(request->outcome) : answer);
    gtk_widget_set_sensitive(caller->button, TRUE);
    gtk_widget_grab_focus(caller->button);
#ifdef GDK_WINDOWING_WAYLAND
    GdkWindow* window = gtk_widget_get_window(caller->window);
    if (GDK_IS_WAYLAND_WINDOW(window)) {
        gdk_wayland_window_unexport_handle(window);
    }
#endif
    if (answer != NULL) {
        g_print("%s\n", answer);
    }
    free(answer);
}

/* Starts the dialog; without a handle it has no parent. */
static void start(Caller* caller, const char* handle)
{
    GStrvBuilder* words = g_strv_builder_new();
    g_strv_builder_add(words, caller->command[0]);
    if (handle != NULL) {
        g_strv_builder_add_many(words, "--parent", handle, NULL);
    }
    g_strv_builder_addv(words, (const char**)caller->command + 1);
    Request* request = g_new0(Request, 1);
    request->command = g_strv_builder_end(words);
    g_strv_builder_unref(words);
    GTask* task = g_task_new(NULL, NULL, answered, caller);
    g_task_set_task_data(task, request, free_request);
    g_task_run_in_thread(task, ask);
    g_object_unref(task);
}

#ifdef GDK_WINDOWING_WAYLAND
static void exported(GdkWindow* window, const char* token, gpointer data)
{
    (void)window;
    char* handle = g_strconcat("wayland:", token, NULL);
    start(data, handle);
    g_free(handle);
}
#endif

/* Gets the handle of the window, which comes later on Wayland, and starts the dialog. */
static void clicked(GtkButton* button, gpointer data)
{
    Caller* caller = data;
    GdkWindow* window = gtk_widget_get_window(caller->window);
    gtk_widget_set_sensitive(GTK_WIDGET(button), FALSE);
    gtk_label_set_text(GTK_LABEL(caller->status), "Waiting for the signature ...");
#ifdef GDK_WINDOWING_WAYLAND
    if (GDK_IS_WAYLAND_WINDOW(window)
        && gdk_wayland_window_export_handle(window, exported, caller, NULL)) {
        return;
    }
#endif
    char* handle = NULL;
#ifdef GDK_WINDOWING_X11
    if (GDK_IS_X11_WINDOW(window)) {
        handle = g_strdup_printf("x11:%#lx", gdk_x11_window_get_xid(window));
    }
#endif
    start(caller, handle);
    g_free(handle);
}

int main(int count, char** words)
{
    gtk_init(&count, &words);
    if (count < 2) {
        g_printerr("usage: caller PROGRAM [OPTION]...\n");
        return 2;
    }
    Caller caller = {words + 1, gtk_window_new(GTK_WINDOW_TOPLEVEL),
        gtk_button_new_with_mnemonic("_Sign ..."), gtk_label_new("Invoice 4711, 120.00 EUR")};
    GtkWidget* box = gtk_box_new(GTK_ORIENTATION_VERTICAL, 24);
    gtk_container_set_border_width(GTK_CONTAINER(box), 24);
    gtk_box_pack_start(GTK_BOX(box), caller.status, TRUE, TRUE, 0);
    gtk_box_pack_start(GTK_BOX(box), caller.button, FALSE, FALSE, 0);
    gtk_container_add(GTK_CONTAINER(caller.window), box);
    gtk_window_set_title(GTK_WINDOW(caller.window), "Invoices");
    gtk_window_set_default_size(GTK_WINDOW(caller.window), 640, 400);
    g_signal_connect(caller.button, "clicked", G_CALLBACK(clicked), &caller);
    g_signal_connect(caller.window, "destroy", G_CALLBACK(gtk_main_quit), NULL);
    gtk_widget_show_all(caller.window);
    gtk_main();
    return 0;
}
